// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileStore.h"

#include <map>

/// Files in memory, faster than a disk. Names that differ only in case mean one file.
class MemoryFiles final : public FileStore
{
public:
    [[nodiscard]] std::optional<QByteArray> Read(const QString& path, qint64 limit) const override
    {
        const auto found = m_contents.find(path.toLower());
        const bool isThere = found != m_contents.end() && found->second.size() <= limit;
        return isThere ? std::optional(found->second) : std::nullopt;
    }
    bool Replace(const QString& path, const QByteArray& content) override
    {
        ++saves;
        return Write(path, content);
    }
    bool Write(const QString& path, const QByteArray& content) override
    {
        m_contents[path.toLower()] = content;
        return true;
    }

    int saves = 0;

private:
    std::map<QString, QByteArray> m_contents;
};
