// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PosixFileStore.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// The file calls of this process, which fail on demand. The test program's own functions of these names
/// stand in front of the C library's, for the program's code and for Qt's.
namespace FaultySystem {

struct Fault
{
    static constexpr int kForEver = 1 << 30;

    /// Number of the call that fails, from 0.
    int call = 0;
    /// What it fails with; 0 for a write that writes only half.
    int error = 0;
    /// How often; later ones are those of the same name.
    int times = 1;
    /// All calls from this one on fail, with any name.
    bool everything = false;
};

/// What always fails, by name, as on a system of another kind.
using Premises = std::map<std::string, int>;

/// Is told the number of each call ahead of it; what it does itself is not counted.
using Bystander = std::function<void(int call)>;

void Arm(const Premises& premises, const std::optional<Fault>& fault, Bystander bystander = nullptr);
/// The names of the calls since Arm, in order.
std::vector<std::string> Disarm();

} // namespace FaultySystem

/// The real files, whose saves meet a fault.
class FaultyFiles final : public FileStore
{
public:
    [[nodiscard]] std::optional<QByteArray> Read(const QString& path, qint64 limit) const override
    {
        return m_files.Read(path, limit);
    }
    bool Replace(const QString& path, const QByteArray& content) override
    {
        FaultySystem::Arm(premises, fault, bystander);
        const bool isSaved = m_files.Replace(path, content);
        calls = FaultySystem::Disarm();
        return isSaved;
    }
    bool Write(const QString& path, const QByteArray& content) override
    {
        return m_files.Write(path, content);
    }

    FaultySystem::Premises premises;
    std::optional<FaultySystem::Fault> fault;
    FaultySystem::Bystander bystander;
    /// The calls of the last save.
    std::vector<std::string> calls;

private:
    PosixFileStore m_files;
};
