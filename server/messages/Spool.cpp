// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Spool.h"

#include "support/DurableFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace beacond {

namespace {

constexpr std::string_view kPrefix = "message-";

std::string Failure(const std::filesystem::path& path, int reason)
{
    return path.string() + ": " + std::strerror(reason);
}

[[noreturn]] void Fail(const std::filesystem::path& path, int reason)
{
    throw ChannelError(Failure(path, reason));
}

struct NewFile
{
    std::string name;
    int descriptor = -1;
};

// Creates the file, accessible only to its owner. Throws ChannelError.
NewFile CreateIn(const std::filesystem::path& folder)
{
    NewFile file{(folder / (std::string(kPrefix) + std::to_string(std::time(nullptr)) + "-XXXXXX")).string()};
    file.descriptor = ::mkostemp(file.name.data(), O_CLOEXEC);
    if (file.descriptor < 0) {
        Fail(folder, errno);
    }
    return file;
}

} // namespace

Spool::Spool(std::filesystem::path folder)
    : m_folder(std::move(folder))
{
    if (const std::error_code error = MakePrivateFolder(m_folder)) {
        throw ChannelError(m_folder.string() + ": " + error.message());
    }
    // Create a file to detect an unwritable folder; RemoveUnfinished deletes it.
    ::close(CreateIn(m_folder).descriptor);
    RemoveUnfinished();
}

void Spool::RemoveUnfinished() const
{
    std::error_code error;
    for (std::filesystem::directory_iterator entry(m_folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with(kPrefix) && name.find('.') == std::string::npos) {
            ::unlink(entry->path().c_str());
        }
    }
    if (error) {
        throw ChannelError(m_folder.string() + ": " + error.message());
    }
}

std::optional<std::string> Spool::Send(std::string_view address, std::string_view text) const
{
    const auto [name, descriptor] = CreateIn(m_folder);
    const std::string content = "To: " + std::string(address) + "\n\n" + std::string(text) + "\n";
    bool isWritten = WriteAll(descriptor, content) && ::fsync(descriptor) == 0;
    int reason = errno;
    isWritten = ::close(descriptor) == 0 && isWritten;
    if (isWritten && ::rename(name.c_str(), (name + ".txt").c_str()) == 0) {
        // From here on the message may be taken: it counts as handed over even if the sync of the folder
        // fails.
        return SyncFolder(m_folder) ? std::nullopt : std::optional(Failure(m_folder, errno));
    }
    reason = isWritten ? errno : reason;
    ::unlink(name.c_str());
    Fail(m_folder, reason);
}

} // namespace beacond
