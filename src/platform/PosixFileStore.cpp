// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileSteps.h"
#include "platform/SystemFileStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <filesystem>

namespace {

// The path itself if it exists, or that of a file whose name differs only in case.
QString ExistingName(const QString& path)
{
    const QFileInfo info(path);
    if (info.exists() || info.isSymLink()) {
        return path;
    }
    const QStringList names = info.dir().entryList(QDir::Files | QDir::System | QDir::Hidden);
    for (const QString& name : names) {
        if (name.compare(info.fileName(), Qt::CaseInsensitive) == 0) {
            return info.dir().filePath(name);
        }
    }
    return path;
}

// The target of a chain of symbolic links, which need not exist. Empty for a circle and for a link that can't
// be read: a new file must not replace the link.
std::filesystem::path ResolvedName(const QString& path)
{
    std::filesystem::path name = QFile::encodeName(ExistingName(path)).toStdString();
    constexpr int kMostLinks = 40;
    for (int i = 0; i < kMostLinks; ++i) {
        std::array<char, PATH_MAX> link{};
        const ssize_t length = TEMP_FAILURE_RETRY(::readlink(name.c_str(), link.data(), link.size()));
        if (length < 0) {
            return errno == EINVAL || errno == ENOENT ? name : std::filesystem::path();
        }
        name = name.parent_path() / std::string(link.data(), static_cast<std::size_t>(length));
    }
    return {};
}

// A process that was killed during a save leaves its temporary file, without the lock.
void RemoveLeftovers(const QFileInfo& target)
{
    for (const QString& name : FilesBeside(target)) {
        QFile leftover(name);
        if (leftover.open(QIODevice::ReadOnly) && ::flock(leftover.handle(), LOCK_EX | LOCK_NB) == 0) {
            // By name: leftover.remove() would close the file first, and with it release the lock.
            QFile::remove(leftover.fileName());
        }
    }
}

// Opens with these flags of open(2); on failure errno is set.
bool Open(QFile& file, const char* name, int flags, mode_t mode = 0)
{
    const auto descriptor =
        static_cast<int>(TEMP_FAILURE_RETRY(::open(name, flags | O_RDWR | O_CLOEXEC, mode)));
    return descriptor >= 0 && file.open(descriptor, QIODevice::ReadWrite, QFile::AutoCloseHandle);
}

// Creates and locks a temporary file beside the target. Another instance may delete it before it is locked;
// then retry with a new one. Empty, with errno set, if no file can be created.
QByteArray CreateBeside(const std::filesystem::path& target, mode_t mode, QFile& file, struct stat& made)
{
    constexpr int kMostTries = 100;
    for (int i = 0; i < kMostTries; ++i) {
        QByteArray name = QByteArray::fromStdString(target.string()) + NewSuffix();
        if (!Open(file, name.constData(), O_CREAT | O_EXCL, mode)) {
            return {};
        }
        const bool isTaken =
            TEMP_FAILURE_RETRY(::flock(file.handle(), LOCK_EX | LOCK_NB)) != 0 && errno == EWOULDBLOCK;
        if (!isTaken && TEMP_FAILURE_RETRY(::fstat(file.handle(), &made)) == 0 && made.st_nlink > 0) {
            return name;
        }
        ::unlink(name.constData());
        file.close();
    }
    errno = EAGAIN;
    return {};
}

// Gives the new file the owner and the mode of the old one; false on failure.
bool TakeAfter(int descriptor, const struct stat& made, const struct stat& old)
{
    return ((made.st_uid == old.st_uid && made.st_gid == old.st_gid) ||
            TEMP_FAILURE_RETRY(::fchown(descriptor, old.st_uid, old.st_gid)) == 0) &&
           TEMP_FAILURE_RETRY(::fchmod(descriptor, old.st_mode & 07777)) == 0;
}

// Writes from offset 0 and truncates a longer old content.
bool Overwrite(int descriptor, const QByteArray& content, qsizetype oldSize)
{
    for (qsizetype done = 0; done < content.size();) {
        const auto rest = static_cast<std::size_t>(content.size() - done);
        const ssize_t count =
            TEMP_FAILURE_RETRY(::pwrite(descriptor, content.constData() + done, rest, done));
        if (count <= 0) {
            return false;
        }
        done += count;
    }
    return (content.size() >= oldSize || TEMP_FAILURE_RETRY(::ftruncate(descriptor, content.size())) == 0) &&
           TEMP_FAILURE_RETRY(::fsync(descriptor)) == 0;
}

// For folders without a temporary file. Restores the old content after an error; a crash damages the file.
bool WriteInPlace(const std::filesystem::path& target, const QByteArray& content)
{
    QFile file;
    struct stat status = {};
    if (!Open(file, target.c_str(), 0) || TEMP_FAILURE_RETRY(::fstat(file.handle(), &status)) != 0) {
        return false;
    }
    const int descriptor = file.handle();
    QByteArray old(status.st_size, '\0');
    if (TEMP_FAILURE_RETRY(::pread(descriptor, old.data(), static_cast<std::size_t>(old.size()), 0)) !=
        old.size()) {
        return false;
    }
    // Allocate first, so that a full disk is noticed before the old content is overwritten.
    int error = content.size() > old.size() ? EINTR : 0;
    while (error == EINTR) {
        error = ::posix_fallocate(descriptor, 0, content.size());
    }
    if (error == 0 && Overwrite(descriptor, content, old.size())) {
        return true;
    }
    // Restore the length at least: a document of the wrong length is damaged.
    static_cast<void>(Overwrite(descriptor, old, content.size()) ||
                      TEMP_FAILURE_RETRY(::ftruncate(descriptor, old.size())) == 0);
    return false;
}

} // namespace

std::optional<QByteArray> SystemFileStore::Read(const QString& path, qint64 limit) const
{
    QFile file(ExistingName(path));
    // Reading a pipe or a device would block or never end.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return WholeContent(file, limit);
}

bool SystemFileStore::Replace(const QString& path, const QByteArray& content)
{
    const std::filesystem::path target = ResolvedName(path);
    struct stat old = {};
    const bool exists = TEMP_FAILURE_RETRY(::stat(target.c_str(), &old)) == 0;
    // Owner and mode must be known to be kept, and a rename would replace a read-only file.
    const bool isReplaceable =
        exists ? S_ISREG(old.st_mode) &&
                     TEMP_FAILURE_RETRY(::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS)) == 0
               : errno == ENOENT && !target.empty();
    if (!isReplaceable) {
        return false;
    }
    RemoveLeftovers(QFileInfo(QFile::decodeName(target.c_str())));
    QFile file;
    struct stat made = {};
    const QByteArray beside = CreateBeside(target, exists ? 0600 : 0666, file, made);
    if (beside.isEmpty()) {
        const bool folderRefuses = errno == EACCES || errno == EROFS || errno == EPERM;
        return folderRefuses && exists && WriteInPlace(target, content);
    }
    const bool isAlike = !exists || TakeAfter(file.handle(), made, old);
    if (!isAlike || !Overwrite(file.handle(), content, 0) ||
        TEMP_FAILURE_RETRY(::rename(beside.constData(), target.c_str())) != 0) {
        ::unlink(beside.constData());
        return !isAlike && WriteInPlace(target, content);
    }
    // The temporary file stays locked until it has its final name.
    const int folder = ::open((target.parent_path() / ".").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return true;
}

bool SystemFileStore::Write(const QString& path, const QByteArray& content)
{
    const QFileInfo info(path);
    QFile file(path);
    // Opening a pipe would block.
    if ((info.exists() && !info.isFile()) || !file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        return false;
    }
    const bool isWritten = file.write(content) == content.size();
    file.close();
    return isWritten && file.error() == QFileDevice::NoError;
}
