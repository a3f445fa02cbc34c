// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PosixFileStore.h"

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
#include <cstdlib>

namespace {

class FileDescriptor final
{
public:
    explicit FileDescriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~FileDescriptor() { Close(); }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    [[nodiscard]] bool IsOpen() const { return m_descriptor >= 0; }
    [[nodiscard]] int Number() const { return m_descriptor; }

    bool Close()
    {
        const bool closed = m_descriptor < 0 || ::close(m_descriptor) == 0;
        m_descriptor = -1;
        return closed;
    }

    [[nodiscard]] bool WriteAll(const QByteArray& content) const
    {
        qsizetype written = 0;
        while (written < content.size()) {
            const ssize_t count = ::write(m_descriptor, content.constData() + written,
                                          static_cast<std::size_t>(content.size() - written));
            if (count < 0 && errno == EINTR) {
                continue;
            }
            if (count <= 0) {
                return false;
            }
            written += count;
        }
        return true;
    }

private:
    int m_descriptor = -1;
};

// The name as the file system has it: another spelling in case finds the file that is there.
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

QByteArray FolderOf(const QByteArray& file)
{
    return file.left(file.lastIndexOf('/') + 1);
}

// Where the name leads in the end; a link that leads nowhere is followed to the file that it would make.
// Empty if links lead around in a circle.
QByteArray ResolvedName(const QString& path)
{
    QByteArray name = QFile::encodeName(ExistingName(path));
    constexpr int kMostLinks = 40;
    for (int i = 0; i < kMostLinks; ++i) {
        std::array<char, PATH_MAX> target{};
        const ssize_t length = ::readlink(name.constData(), target.data(), target.size());
        if (length < 0) {
            return name;
        }
        const QByteArray link(target.data(), length);
        name = link.startsWith('/') ? link : FolderOf(name) + link;
    }
    return {};
}

// What a save writes before it takes the place of the file; the lock says that somebody is at it.
constexpr char kBesideSuffix[] = ".saving-XXXXXX";

// A process that was killed in the middle of a save leaves its file, and the lock on it is gone.
void RemoveLeftovers(const QByteArray& target)
{
    const QByteArray folder = FolderOf(target);
    const QString pattern = QFile::decodeName(target.mid(folder.size())) + QStringLiteral(".saving-??????");
    const QDir directory(folder.isEmpty() ? QStringLiteral(".") : QFile::decodeName(folder));
    const QStringList names = directory.entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString& name : names) {
        if (!QDir::match(pattern, name)) {
            continue;
        }
        const QByteArray leftover = folder + QFile::encodeName(name);
        const FileDescriptor descriptor(::open(leftover.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
        if (descriptor.IsOpen() && ::flock(descriptor.Number(), LOCK_EX | LOCK_NB) == 0) {
            ::unlink(leftover.constData());
        }
    }
}

void SyncFolder(const QByteArray& file)
{
    const QByteArray folder = FolderOf(file);
    const FileDescriptor descriptor(
        ::open(folder.isEmpty() ? "." : folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.IsOpen()) {
        ::fsync(descriptor.Number());
    }
}

// Takes the room that the content needs before it touches what is there, so that a full disk costs nothing.
bool WriteInPlace(const QByteArray& file, const QByteArray& content, off_t oldSize)
{
    FileDescriptor descriptor(::open(file.constData(), O_WRONLY | O_CLOEXEC));
    if (!descriptor.IsOpen()) {
        return false;
    }
    const auto size = static_cast<off_t>(content.size());
    if (size > oldSize && ::posix_fallocate(descriptor.Number(), 0, size) != 0) {
        static_cast<void>(::ftruncate(descriptor.Number(), oldSize) == 0);
        return false;
    }
    return descriptor.WriteAll(content) && ::ftruncate(descriptor.Number(), size) == 0 &&
           ::fsync(descriptor.Number()) == 0 && descriptor.Close();
}

// True if the new file could be given owner and mode of the old one.
bool TakeAfter(const FileDescriptor& descriptor, const struct stat& old)
{
    struct stat made = {};
    if (::fstat(descriptor.Number(), &made) != 0) {
        return false;
    }
    if ((made.st_uid != old.st_uid || made.st_gid != old.st_gid) &&
        ::fchown(descriptor.Number(), old.st_uid, old.st_gid) != 0) {
        return false;
    }
    return ::fchmod(descriptor.Number(), old.st_mode & 07777) == 0;
}

} // namespace

std::optional<QByteArray> PosixFileStore::Read(const QString& path, qint64 limit) const
{
    const QString name = ExistingName(path);
    // A pipe or a device would block or never end.
    if (!QFileInfo(name).isFile()) {
        return std::nullopt;
    }
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    QByteArray content = file.read(limit + 1);
    if (file.error() != QFileDevice::NoError || content.size() > limit) {
        return std::nullopt;
    }
    return content;
}

bool PosixFileStore::Replace(const QString& path, const QByteArray& content)
{
    const QByteArray target = ResolvedName(path);
    if (target.isEmpty()) {
        return false;
    }
    struct stat old = {};
    const bool exists = ::stat(target.constData(), &old) == 0;
    // Renaming over it would write a file that says that it is not to be written.
    if (exists &&
        (!S_ISREG(old.st_mode) || ::faccessat(AT_FDCWD, target.constData(), W_OK, AT_EACCESS) != 0)) {
        return false;
    }
    RemoveLeftovers(target);
    QByteArray beside = target + kBesideSuffix;
    FileDescriptor descriptor(::mkostemp(beside.data(), O_CLOEXEC));
    if (!descriptor.IsOpen()) {
        const bool folderRefuses = errno == EACCES || errno == EROFS || errno == EPERM;
        return folderRefuses && exists && WriteInPlace(target, content, old.st_size);
    }
    ::flock(descriptor.Number(), LOCK_EX | LOCK_NB);
    if (exists && !TakeAfter(descriptor, old)) {
        ::unlink(beside.constData());
        return WriteInPlace(target, content, old.st_size);
    }
    if (!exists) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        ::fchmod(descriptor.Number(), 0666 & ~mask);
    }
    // Closed after the rename, because the lock ends with it.
    const bool replaced = descriptor.WriteAll(content) && ::fsync(descriptor.Number()) == 0 &&
                          ::rename(beside.constData(), target.constData()) == 0;
    if (!replaced) {
        ::unlink(beside.constData());
        return false;
    }
    SyncFolder(target);
    return true;
}

bool PosixFileStore::Write(const QString& path, const QByteArray& content)
{
    FileDescriptor descriptor(::open(QFile::encodeName(path).constData(),
                                     O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0666));
    return descriptor.IsOpen() && descriptor.WriteAll(content) && descriptor.Close();
}
