// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/IncomingFolder.h"

#include "messages/IncomingMail.h"
#include "support/DurableFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <system_error>

namespace beacond {

namespace {

namespace fs = std::filesystem;

// Names take some megabytes.
constexpr std::size_t kMostNames = 100'000;
// The programs for text messages write their files in place.
constexpr std::chrono::seconds kSettled{1};

// Closes a descriptor.
struct Descriptor
{
    int number = -1;
    ~Descriptor()
    {
        if (number >= 0) {
            ::close(number);
        }
    }
};

std::string ReadBeginning(int descriptor)
{
    std::string content(kMailBytesRead, '\0');
    std::size_t size = 0;
    while (size < content.size()) {
        const ::ssize_t count = ::read(descriptor, content.data() + size, content.size() - size);
        if (count <= 0) {
            break;
        }
        size += static_cast<std::size_t>(count);
    }
    content.resize(size);
    return content;
}

} // namespace

IncomingFolder::IncomingFolder(FolderFormat format, const fs::path& folder)
    : m_format(format)
    , m_watched(format == FolderFormat::Maildir ? folder / "new" : folder)
    , m_aside(folder / (format == FolderFormat::Maildir ? "cur" : "other"))
{
}

std::vector<std::string> IncomingFolder::Names() const
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_watched)) {
        std::string name = entry.path().filename().string();
        const bool isFile = !name.starts_with('.') && !name.ends_with(".LOCK") && !entry.is_symlink() &&
                            entry.is_regular_file();
        if (isFile) {
            names.push_back(std::move(name));
        }
        if (names.size() == kMostNames) {
            break;
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<IncomingFile> IncomingFolder::Open(const std::string& name) const
{
    IncomingFile file{name, m_watched / name, {}, {}, {}};
    // A pipe must not block, and a link must not lead to another file.
    const Descriptor descriptor{::open(file.path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW)};
    if (descriptor.number < 0 && errno != ENOENT && errno != ELOOP) {
        throw fs::filesystem_error("", std::error_code(errno, std::generic_category()));
    }
    struct stat state = {};
    if (descriptor.number < 0 || ::fstat(descriptor.number, &state) != 0 || !S_ISREG(state.st_mode)) {
        return std::nullopt;
    }
    file.age = std::chrono::seconds(std::time(nullptr) - state.st_mtim.tv_sec);
    const bool isLocked = m_format == FolderFormat::Smstools && fs::exists(file.path.string() + ".LOCK");
    const bool isSettled = m_format == FolderFormat::Maildir || std::chrono::abs(file.age) > kSettled;
    if (isLocked || !isSettled) {
        return std::nullopt;
    }
    file.identity = name + ' ' + std::to_string(state.st_mtim.tv_sec) + '.' +
                    std::to_string(state.st_mtim.tv_nsec) + ' ' + std::to_string(state.st_size);
    file.content = ReadBeginning(descriptor.number);
    return file;
}

void IncomingFolder::Remove(const IncomingFile& file) const
{
    fs::remove(file.path);
}

void IncomingFolder::SetAside(const IncomingFile& file) const
{
    if (const std::error_code error = MakePrivateFolder(m_aside)) {
        throw fs::filesystem_error("", m_aside, error);
    }
    fs::rename(file.path, m_aside / (m_format == FolderFormat::Maildir ? file.name + ":2," : file.name));
}

void IncomingFolder::DropSetAside() const
{
    if (!fs::is_directory(m_aside)) {
        return;
    }
    const fs::file_time_type oldest = fs::file_time_type::clock::now() - std::chrono::hours(24 * kDaysAside);
    for (const fs::directory_entry& entry : fs::directory_iterator(m_aside)) {
        const bool isUnread = m_format != FolderFormat::Maildir || entry.path().native().ends_with(":2,");
        std::error_code gone;
        const bool isOld = entry.is_regular_file(gone) && entry.last_write_time(gone) < oldest && !gone;
        if (isUnread && isOld) {
            fs::remove(entry.path());
        }
    }
}

} // namespace beacond
