// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Files by name. Relative names are taken against the working directory. Read and Replace take another
/// spelling in case where the exact one is not there, on every file system.
class FileStore
{
public:
    FileStore() = default;
    FileStore(const FileStore&) = delete;
    FileStore& operator=(const FileStore&) = delete;
    virtual ~FileStore() = default;

    /// The whole content of a regular file; nothing if it can't be read or holds more than @p limit bytes.
    [[nodiscard]] virtual std::optional<QByteArray> Read(const QString& path, qint64 limit) const = 0;
    /// Replaces the content so that after a crash at any instant the old or the new content is there, whole.
    /// Owner, mode and symbolic links on the way survive. False if the file can't be written; it is then as
    /// before. In a folder that takes no new file, or gives it another owner, the old one is overwritten: an
    /// error is taken back there too, a crash in the middle is not.
    virtual bool Replace(const QString& path, const QByteArray& content) = 0;
    /// Overwrites the file of exactly this name, or creates it. For content that may be lost.
    virtual bool Write(const QString& path, const QByteArray& content) = 0;
};
