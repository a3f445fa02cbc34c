// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace beacond {

/// A program of the operator that writes each incoming message as a file.
enum class FolderFormat {
    Maildir,
    Gammu,   ///< the inbox of gammu-smsd, service "files"
    Smstools ///< the folder "incoming" of smstools
};

/// A file in such a folder.
struct IncomingFile
{
    std::string name;
    std::filesystem::path path;
    std::string content;        ///< its beginning
    std::string identity;       ///< of this file: another file of the same name has another one
    std::chrono::seconds age{}; ///< time since its last change; negative if the clock was set back
};

/// The days for which a file stays that is not for the service.
inline constexpr int kDaysAside = 30;

/// A folder from which messages are taken. The files are its programs', so that the account of the service
/// needs the right to write into it. Only one service may use it. Calls block for the disk.
class IncomingFolder final
{
public:
    /// @param folder of a Maildir: the one that contains "new" and "cur"
    IncomingFolder(FolderFormat format, const std::filesystem::path& folder);

    [[nodiscard]] FolderFormat Format() const { return m_format; }
    /// The folder in which files appear.
    [[nodiscard]] const std::filesystem::path& Watched() const { return m_watched; }

    /// The names of the regular files, at most 100,000, sorted: in the order of their arrival by the names
    /// that those programs give. Links, pipes and folders stay. Throws std::filesystem::filesystem_error.
    [[nodiscard]] std::vector<std::string> Names() const;
    /// Nothing if it is no regular file, has gone, or is still being written. Throws
    /// std::filesystem::filesystem_error if it can't be read.
    [[nodiscard]] std::optional<IncomingFile> Open(const std::string& name) const;
    /// Deletes a file that has been handled. Throws std::filesystem::filesystem_error.
    void Remove(const IncomingFile& file) const;
    /// Keeps a file that is not for the service: in "cur" of a Maildir, unread; otherwise in a folder
    /// "other", which is created. Throws std::filesystem::filesystem_error.
    void SetAside(const IncomingFile& file) const;
    /// Deletes the files that were set aside and have not been changed for kDaysAside. Keeps mails that have
    /// a flag: a person has read them. Throws std::filesystem::filesystem_error.
    void DropSetAside() const;

private:
    FolderFormat m_format;
    std::filesystem::path m_watched;
    std::filesystem::path m_aside;
};

} // namespace beacond
