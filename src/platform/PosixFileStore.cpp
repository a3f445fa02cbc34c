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
#include <utility>

namespace {

// A call again until no signal comes in between.
template <typename Call>
auto Uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

class FileDescriptor final
{
public:
    explicit FileDescriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~FileDescriptor() { Close(); }
    FileDescriptor(FileDescriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
    {
    }
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

    /// Over what is there, from the beginning.
    [[nodiscard]] bool WriteAll(const QByteArray& content) const
    {
        qsizetype written = 0;
        while (written < content.size()) {
            const ssize_t count = Uninterrupted([&] {
                return ::pwrite(m_descriptor, content.constData() + written,
                                static_cast<std::size_t>(content.size() - written),
                                static_cast<off_t>(written));
            });
            if (count <= 0) {
                return false;
            }
            written += count;
        }
        return true;
    }
    /// The first @p size bytes; nothing if there are fewer.
    [[nodiscard]] std::optional<QByteArray> ReadAll(qsizetype size) const
    {
        QByteArray content(size, '\0');
        qsizetype total = 0;
        while (total < size) {
            const ssize_t count = Uninterrupted([&] {
                return ::pread(m_descriptor, content.data() + total, static_cast<std::size_t>(size - total),
                               static_cast<off_t>(total));
            });
            if (count <= 0) {
                return std::nullopt;
            }
            total += count;
        }
        return content;
    }
    [[nodiscard]] bool Truncate(qsizetype size) const
    {
        return Uninterrupted([&] { return ::ftruncate(m_descriptor, static_cast<off_t>(size)); }) == 0;
    }
    [[nodiscard]] bool Describe(struct stat& status) const
    {
        return Uninterrupted([&] { return ::fstat(m_descriptor, &status); }) == 0;
    }
    [[nodiscard]] bool Sync() const
    {
        return Uninterrupted([&] { return ::fsync(m_descriptor); }) == 0;
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
// Empty if links lead around in a circle, or if that can't be found out.
QByteArray ResolvedName(const QString& path)
{
    QByteArray name = QFile::encodeName(ExistingName(path));
    constexpr int kMostLinks = 40;
    for (int i = 0; i < kMostLinks; ++i) {
        std::array<char, PATH_MAX> target{};
        const ssize_t length =
            Uninterrupted([&] { return ::readlink(name.constData(), target.data(), target.size()); });
        if (length < 0) {
            // Not knowing whether it is a link is no reason to put a file in the link's place.
            return errno == EINVAL || errno == ENOENT ? name : QByteArray();
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
bool Overwrite(const FileDescriptor& descriptor, const QByteArray& content, qsizetype oldSize)
{
    const auto reserve = [&] {
        const int error = ::posix_fallocate(descriptor.Number(), 0, static_cast<off_t>(content.size()));
        errno = error;
        return error == 0 ? 0 : -1;
    };
    return (content.size() <= oldSize || Uninterrupted(reserve) == 0) && descriptor.WriteAll(content) &&
           (content.size() >= oldSize || descriptor.Truncate(content.size())) && descriptor.Sync();
}

// Where no file can be put beside it. A write that fails is taken back; against a crash in its middle there
// is no help.
bool WriteInPlace(const QByteArray& file, const QByteArray& content)
{
    const FileDescriptor descriptor(
        Uninterrupted([&] { return ::open(file.constData(), O_RDWR | O_CLOEXEC); }));
    struct stat status = {};
    if (!descriptor.IsOpen() || !descriptor.Describe(status)) {
        return false;
    }
    const std::optional<QByteArray> old = descriptor.ReadAll(static_cast<qsizetype>(status.st_size));
    if (!old) {
        return false;
    }
    if (Overwrite(descriptor, content, old->size())) {
        return true;
    }
    // Both, whatever becomes of the first: a text of the wrong length is a damaged one.
    const bool isBack = descriptor.WriteAll(*old);
    static_cast<void>(descriptor.Truncate(old->size()) && isBack && descriptor.Sync());
    return false;
}

// True if the new file could be given owner and mode of the old one.
bool TakeAfter(const FileDescriptor& descriptor, const struct stat& old)
{
    struct stat made = {};
    if (!descriptor.Describe(made)) {
        return false;
    }
    if ((made.st_uid != old.st_uid || made.st_gid != old.st_gid) &&
        Uninterrupted([&] { return ::fchown(descriptor.Number(), old.st_uid, old.st_gid); }) != 0) {
        return false;
    }
    return Uninterrupted([&] { return ::fchmod(descriptor.Number(), old.st_mode & 07777); }) == 0;
}

// A new file beside the target, named in @p beside and held by a lock. Somebody else's tidying can take it
// for a leftover until the lock is there; then there is another one.
FileDescriptor CreateBeside(const QByteArray& target, QByteArray& beside)
{
    constexpr int kMostTries = 100;
    for (int i = 0; i < kMostTries; ++i) {
        FileDescriptor descriptor(Uninterrupted([&] {
            beside = target + kBesideSuffix;
            return ::mkostemp(beside.data(), O_CLOEXEC);
        }));
        if (!descriptor.IsOpen()) {
            return descriptor;
        }
        const bool isTaken =
            Uninterrupted([&] { return ::flock(descriptor.Number(), LOCK_EX | LOCK_NB); }) != 0 &&
            errno == EWOULDBLOCK;
        struct stat made = {};
        const bool isGone = descriptor.Describe(made) && made.st_nlink == 0;
        if (!isTaken && !isGone) {
            return descriptor;
        }
        ::unlink(beside.constData());
    }
    errno = EAGAIN;
    return FileDescriptor(-1);
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
    if (!file.open(QIODevice::ReadOnly) || file.size() > limit) {
        return std::nullopt;
    }
    // What is asked for takes room, read or not. A file that has no size, or has grown, has more to give.
    QByteArray content = file.read(file.size() + 1);
    if (!file.atEnd()) {
        content += file.read(limit + 1 - content.size());
    }
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
    const bool exists = Uninterrupted([&] { return ::stat(target.constData(), &old); }) == 0;
    if (!exists && errno != ENOENT) {
        // A file whose owner and mode can't be seen would lose them.
        return false;
    }
    // Renaming over it would write a file that says that it is not to be written.
    if (exists &&
        (!S_ISREG(old.st_mode) ||
         Uninterrupted([&] { return ::faccessat(AT_FDCWD, target.constData(), W_OK, AT_EACCESS); }) != 0)) {
        return false;
    }
    RemoveLeftovers(target);
    QByteArray beside;
    const FileDescriptor descriptor = CreateBeside(target, beside);
    if (!descriptor.IsOpen()) {
        const bool folderRefuses = errno == EACCES || errno == EROFS || errno == EPERM;
        return folderRefuses && exists && WriteInPlace(target, content);
    }
    if (exists && !TakeAfter(descriptor, old)) {
        ::unlink(beside.constData());
        return WriteInPlace(target, content);
    }
    if (!exists) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        Uninterrupted([&] { return ::fchmod(descriptor.Number(), 0666 & ~mask); });
    }
    // Closed after the rename, because the lock ends with it.
    const bool replaced =
        descriptor.WriteAll(content) && descriptor.Sync() &&
        Uninterrupted([&] { return ::rename(beside.constData(), target.constData()); }) == 0;
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
