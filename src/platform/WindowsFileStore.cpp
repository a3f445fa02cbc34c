// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileSteps.h"
#include "platform/SystemFileStore.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>

#include <aclapi.h>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

struct Closer
{
    void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};

/// Null if the file could not be opened; GetLastError() tells why.
using Handle = std::unique_ptr<void, Closer>;

constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Repeats a step that fails since another process, such as a virus scanner, has the file open for a moment.
class Patience final
{
public:
    /// @param step false on failure, with the reason in GetLastError()
    /// @param momentary the reason that may pass, beside those that always may
    template <typename Step>
    bool Try(Step step, DWORD momentary = ERROR_SHARING_VIOLATION)
    {
        while (!step()) {
            const DWORD error = ::GetLastError();
            const bool mayPass =
                error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == momentary;
            if (!mayPass || m_end.hasExpired()) {
                ::SetLastError(error);
                return false;
            }
            ::Sleep(kPauseMilliseconds);
        }
        return true;
    }

private:
    static constexpr DWORD kPauseMilliseconds = 10;
    // For all steps together. The event loop stands still meanwhile, and no second may pass without a tick.
    static constexpr int kMostMilliseconds = 800;

    QDeadlineTimer m_end{kMostMilliseconds};
};

// The full path in the form that may be of any length. Empty for a device such as NUL, on which a call may
// wait for ever.
std::wstring FullName(const QString& path)
{
    constexpr DWORD kLongest = 32767;
    std::wstring name(kLongest, L'\0');
    const DWORD length = ::GetFullPathNameW(path.toStdWString().c_str(), kLongest, name.data(), nullptr);
    name.resize(length < kLongest ? length : 0);
    if (name.empty() || name.starts_with(L"\\\\.\\")) {
        return {};
    }
    if (name.starts_with(L"\\\\?\\")) {
        return name;
    }
    return name.starts_with(L"\\\\") ? L"\\\\?\\UNC" + name.substr(1) : L"\\\\?\\" + name;
}

// The name to which a symbolic link leads.
std::wstring TargetName(HANDLE file, const std::wstring& name)
{
    constexpr DWORD kLongest = 32767;
    std::wstring target(kLongest, L'\0');
    const DWORD length = ::GetFinalPathNameByHandleW(file, target.data(), kLongest, FILE_NAME_NORMALIZED);
    target.resize(length < kLongest ? length : 0);
    return target.empty() ? name : target;
}

Handle Open(const std::wstring& name, DWORD access, DWORD sharing, DWORD disposition)
{
    const HANDLE handle =
        ::CreateFileW(name.c_str(), access, sharing, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return Handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

Handle OpenShared(const std::wstring& name, DWORD access, DWORD disposition, Patience& patience)
{
    Handle file;
    patience.Try([&] {
        file = Open(name, access, kShared, disposition);
        return file != nullptr;
    });
    return file;
}

// A pipe would block, a device never end.
bool IsRegular(const Handle& file)
{
    return ::GetFileType(file.get()) == FILE_TYPE_DISK;
}

bool SetLength(HANDLE file, qint64 length)
{
    LARGE_INTEGER position = {};
    position.QuadPart = length;
    return ::SetFilePointerEx(file, position, nullptr, FILE_BEGIN) != FALSE && ::SetEndOfFile(file) != FALSE;
}

// Writes from the start and cuts off a longer old content. Does not wait for the disk.
bool OverwriteInMemory(HANDLE file, const QByteArray& content)
{
    const LARGE_INTEGER start = {};
    DWORD written = 0;
    return ::SetFilePointerEx(file, start, nullptr, FILE_BEGIN) != FALSE &&
           ::WriteFile(file, content.constData(), static_cast<DWORD>(content.size()), &written, nullptr) !=
               FALSE &&
           written == content.size() && SetLength(file, content.size());
}

bool Overwrite(HANDLE file, const QByteArray& content)
{
    return OverwriteInMemory(file, content) && ::FlushFileBuffers(file) != FALSE;
}

// A process that was killed during a save leaves its temporary file. The file of a save that runs is not
// shared, so that it can't be removed.
void RemoveLeftovers(const std::wstring& target)
{
    for (const QString& name : FilesBeside(QFileInfo(QString::fromStdWString(target)))) {
        ::DeleteFileW(FullName(name).c_str());
    }
}

// Gives the new file the list of rights of the old one; a file system without rights has nothing to give.
bool TakeRights(HANDLE made, HANDLE old)
{
    PACL rights = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (::GetSecurityInfo(old, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &rights, nullptr,
                          &descriptor) != ERROR_SUCCESS) {
        return true;
    }
    const std::unique_ptr<void, decltype(&::LocalFree)> freed(descriptor, &::LocalFree);
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    ::GetSecurityDescriptorControl(descriptor, &control, &revision);
    const SECURITY_INFORMATION inheritance = (control & SE_DACL_PROTECTED) != 0
                                                 ? PROTECTED_DACL_SECURITY_INFORMATION
                                                 : UNPROTECTED_DACL_SECURITY_INFORMATION;
    return ::SetSecurityInfo(made, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | inheritance, nullptr, nullptr,
                             rights, nullptr) == ERROR_SUCCESS;
}

struct NewFile
{
    Handle handle;
    bool maySetRights = true;
};

// Creates a temporary file without sharing: no other process can open or delete it before it is complete.
NewFile MakeBeside(const std::wstring& name)
{
    constexpr DWORD kAccess = GENERIC_READ | GENERIC_WRITE | DELETE;
    const std::wstring beside = name + QString::fromLatin1(NewSuffix()).toStdWString();
    NewFile made{Open(beside, kAccess | WRITE_DAC, 0, CREATE_NEW)};
    if (!made.handle && ::GetLastError() == ERROR_ACCESS_DENIED) {
        // A shared folder may let its users change files but no rights; files inherit those of the folder.
        made = {Open(beside, kAccess, 0, CREATE_NEW), false};
    }
    return made;
}

// Gives the new file the rights and attributes of the old one; false on failure.
bool TakeAfter(const NewFile& made, HANDLE old)
{
    constexpr DWORD kKept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                            FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    FILE_BASIC_INFO found = {};
    if (::GetFileInformationByHandleEx(old, FileBasicInfo, &found, sizeof found) == FALSE) {
        return false;
    }
    // A 0 leaves the property as it is: the times.
    FILE_BASIC_INFO taken = {};
    taken.FileAttributes = found.FileAttributes & kKept;
    return ::SetFileInformationByHandle(made.handle.get(), FileBasicInfo, &taken, sizeof taken) != FALSE &&
           (!made.maySetRights || TakeRights(made.handle.get(), old));
}

bool RenameAs(FILE_INFO_BY_HANDLE_CLASS kind, DWORD flags, HANDLE file, const std::wstring& name)
{
    const std::size_t nameBytes = name.size() * sizeof(wchar_t);
    std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + nameBytes);
    auto* const information = new (buffer.data()) FILE_RENAME_INFO{};
    information->FileNameLength = static_cast<DWORD>(nameBytes);
    std::copy(name.begin(), name.end(), &information->FileName[0]);
    // A union of ReplaceIfExists and Flags.
    std::memcpy(buffer.data(), &flags, sizeof flags);
    return ::SetFileInformationByHandle(file, kind, information, static_cast<DWORD>(buffer.size())) != FALSE;
}

// Renames the open file over another one, in one step: no other process can open it before it has its name.
bool Rename(HANDLE file, const std::wstring& name)
{
    // FileRenameInfoEx with its flags for replacing and for an open file. The headers of mingw have them for
    // newer systems only.
    constexpr auto kRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
    constexpr DWORD kReplace = 1;
    constexpr DWORD kAlsoIfOpen = 2;
    // The first way also replaces a file that another program has open and allows to delete, but not every
    // file system knows it.
    return RenameAs(kRenameInfoEx, kReplace | kAlsoIfOpen, file, name) ||
           RenameAs(FileRenameInfo, TRUE, file, name);
}

// When the last handle is closed.
void Delete(HANDLE file)
{
    FILE_DISPOSITION_INFO deletion = {};
    deletion.DeleteFile = TRUE;
    ::SetFileInformationByHandle(file, FileDispositionInfo, &deletion, sizeof deletion);
}

std::optional<QByteArray> Content(Handle handle, qint64 limit)
{
    const int descriptor =
        ::_open_osfhandle(reinterpret_cast<std::intptr_t>(handle.get()), _O_RDONLY | _O_BINARY);
    QFile file;
    if (descriptor < 0) {
        return std::nullopt;
    }
    // Closed with the descriptor.
    static_cast<void>(handle.release());
    if (!file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle)) {
        ::_close(descriptor);
        return std::nullopt;
    }
    return WholeContent(file, limit);
}

// For folders without a temporary file. Restores the old content after an error; a crash damages the file.
bool WriteInPlace(const std::wstring& name, HANDLE file, const QByteArray& content)
{
    Patience patience;
    LARGE_INTEGER oldSize = {};
    Handle reader = OpenShared(name, GENERIC_READ, OPEN_EXISTING, patience);
    if (!reader || ::GetFileSizeEx(file, &oldSize) == FALSE) {
        return false;
    }
    const std::optional<QByteArray> old = Content(std::move(reader), oldSize.QuadPart);
    if (!old) {
        return false;
    }
    // Allocate first, so that a full disk is noticed before the old content is overwritten.
    if ((content.size() <= old->size() || SetLength(file, content.size())) && Overwrite(file, content)) {
        return true;
    }
    // Restore the length at least: a document of the wrong length is damaged.
    static_cast<void>(Overwrite(file, *old) || SetLength(file, old->size()));
    return false;
}

} // namespace

std::optional<QByteArray> SystemFileStore::Read(const QString& path, qint64 limit) const
{
    Patience patience;
    Handle file = OpenShared(FullName(path), GENERIC_READ, OPEN_EXISTING, patience);
    return file && IsRegular(file) ? Content(std::move(file), limit) : std::nullopt;
}

bool SystemFileStore::Replace(const QString& path, const QByteArray& content)
{
    Patience patience;
    std::wstring name = FullName(path);
    // To write too, although it is replaced by a rename: that would replace a read-only file.
    Handle old = OpenShared(name, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING, patience);
    if (old ? !IsRegular(old) : name.empty() || ::GetLastError() != ERROR_FILE_NOT_FOUND) {
        return false;
    }
    name = old ? TargetName(old.get(), name) : name;
    RemoveLeftovers(name);
    const NewFile made = MakeBeside(name);
    const Handle& file = made.handle;
    if (!file) {
        return old && ::GetLastError() == ERROR_ACCESS_DENIED && WriteInPlace(name, old.get(), content);
    }
    if (old && !TakeAfter(made, old.get())) {
        Delete(file.get());
        return WriteInPlace(name, old.get(), content);
    }
    // An open file can't be replaced.
    old.reset();
    if (!Overwrite(file.get(), content) ||
        !patience.Try([&] { return Rename(file.get(), name); }, ERROR_ACCESS_DENIED)) {
        Delete(file.get());
        return false;
    }
    ::FlushFileBuffers(file.get());
    return true;
}

bool SystemFileStore::Write(const QString& path, const QByteArray& content)
{
    Patience patience;
    const Handle file = OpenShared(FullName(path), GENERIC_WRITE, OPEN_ALWAYS, patience);
    return file && IsRegular(file) && OverwriteInMemory(file.get(), content);
}
