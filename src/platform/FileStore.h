// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Files by name. Relative names start at the working directory. If there is no file of the exact name, Read
/// and Replace use one whose name differs only in case, on every file system.
class FileStore
{
public:
    FileStore() = default;
    FileStore(const FileStore&) = delete;
    FileStore& operator=(const FileStore&) = delete;
    virtual ~FileStore() = default;

    /// The whole content of a regular file; std::nullopt if it can't be read or is longer than @p limit
    /// bytes.
    [[nodiscard]] virtual std::optional<QByteArray> Read(const QString& path, qint64 limit) const = 0;
    /// Replaces the content atomically: after a crash the file holds all of the old or all of the new
    /// content. Owner, mode and symbolic links are kept; on Windows the list of rights, the attributes and
    /// symbolic links. False if the file can't be written; it is then unchanged. If the folder accepts no new
    /// file, or the new file can't be given the old one's properties, the old file is overwritten: after an
    /// error its content is restored, after a crash it is not. On Windows a file that another process holds
    /// open is tried again for 0.8 seconds.
    virtual bool Replace(const QString& path, const QByteArray& content) = 0;
    /// Overwrites or creates the file of exactly this name, not atomically.
    virtual bool Write(const QString& path, const QByteArray& content) = 0;
};
