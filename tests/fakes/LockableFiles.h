// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SystemFileStore.h"

/// Real files that can be made unwritable, for root too.
class LockableFiles final : public FileStore
{
public:
    [[nodiscard]] std::optional<QByteArray> Read(const QString& path, qint64 limit) const override
    {
        return m_files.Read(path, limit);
    }
    bool Replace(const QString& path, const QByteArray& content) override
    {
        return !isLocked && m_files.Replace(path, content);
    }
    bool Write(const QString& path, const QByteArray& content) override
    {
        return !isLocked && m_files.Write(path, content);
    }

    bool isLocked = false;

private:
    SystemFileStore m_files;
};
