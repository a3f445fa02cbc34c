// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SystemFileStore.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// The file calls of this process, which fail on demand. Functions of the test program with these names
/// replace those of the C library, in the program's code and in Qt's.
namespace FaultySystem {

struct Fault
{
    static constexpr int kForEver = 1 << 30;

    /// Number of the call that fails, from 0.
    int call = 0;
    /// The errno that it sets; 0 for a write that writes only half.
    int error = 0;
    /// How often; later ones are those of the same name.
    int times = 1;
    /// All calls from this one on fail, with any name.
    bool everything = false;
};

/// The errors of calls that always fail, by name, as on another kind of file system.
using PermanentErrors = std::map<std::string, int>;

/// Called before each call with its number; its own calls are not counted.
using Observer = std::function<void(int call)>;

void Arm(const PermanentErrors& permanentErrors, const std::optional<Fault>& fault,
         Observer observer = nullptr);
/// The names of the calls since Arm, in order.
std::vector<std::string> Disarm();

} // namespace FaultySystem

/// Real files, whose saves have a fault.
class FaultyFiles final : public FileStore
{
public:
    [[nodiscard]] std::optional<QByteArray> Read(const QString& path, qint64 limit) const override
    {
        return m_files.Read(path, limit);
    }
    bool Replace(const QString& path, const QByteArray& content) override
    {
        FaultySystem::Arm(permanentErrors, fault, observer);
        const bool isSaved = m_files.Replace(path, content);
        calls = FaultySystem::Disarm();
        return isSaved;
    }
    bool Write(const QString& path, const QByteArray& content) override
    {
        return m_files.Write(path, content);
    }

    FaultySystem::PermanentErrors permanentErrors;
    std::optional<FaultySystem::Fault> fault;
    FaultySystem::Observer observer;
    /// The calls of the last save.
    std::vector<std::string> calls;

private:
    SystemFileStore m_files;
};
