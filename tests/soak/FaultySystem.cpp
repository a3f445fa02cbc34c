// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "soak/FaultySystem.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <utility>

namespace {

using FaultySystem::Fault;

struct State
{
    FaultySystem::PermanentErrors permanentErrors;
    std::optional<Fault> fault;
    FaultySystem::Observer observer;
    std::vector<std::string> calls;
    std::string failingName;
    int failures = 0;
};

// Threads of Qt are not affected: each thread has its own.
thread_local State* armed = nullptr;

// The errno of the call; -1 if it does not fail, 0 if it writes only half.
int ErrorOfCall(const char* name)
{
    if (armed == nullptr) {
        return -1;
    }
    const int number = static_cast<int>(armed->calls.size());
    armed->calls.emplace_back(name);
    if (armed->observer) {
        State* const state = std::exchange(armed, nullptr);
        state->observer(number);
        armed = state;
    }
    if (const auto permanent = armed->permanentErrors.find(name); permanent != armed->permanentErrors.end()) {
        return permanent->second;
    }
    if (!armed->fault || number < armed->fault->call) {
        return -1;
    }
    if (number == armed->fault->call) {
        armed->failingName = name;
    }
    const bool isMeant = armed->fault->everything || armed->failingName == name;
    return isMeant && armed->failures++ < armed->fault->times ? armed->fault->error : -1;
}

bool Fails(const char* name)
{
    const int error = ErrorOfCall(name);
    if (error <= 0) {
        return false;
    }
    errno = error;
    return true;
}

template <typename Function>
Function* Real(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

mode_t ModeOf(int flags, va_list arguments)
{
    return (flags & O_CREAT) != 0 ? static_cast<mode_t>(va_arg(arguments, unsigned int)) : mode_t{0};
}

} // namespace

void FaultySystem::Arm(const PermanentErrors& permanentErrors, const std::optional<Fault>& fault,
                       Observer observer)
{
    static thread_local State state;
    state = State{permanentErrors, fault, std::move(observer), {}, {}, 0};
    armed = &state;
}

std::vector<std::string> FaultySystem::Disarm()
{
    return std::move(std::exchange(armed, nullptr)->calls);
}

// Qt must find them, although everything else in the program is hidden from it.
#pragma GCC visibility push(default)
extern "C" {

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    static auto* const real = Real<int(const char*, int, ...)>("open");
    return Fails((flags & O_EXCL) != 0 ? "create" : "open") ? -1 : real(path, flags, mode);
}

int open64(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    static auto* const real = Real<int(const char*, int, ...)>("open64");
    return Fails("open64") ? -1 : real(path, flags, mode);
}

int close(int descriptor)
{
    static auto* const real = Real<int(int)>("close");
    const bool fails = Fails("close");
    const int error = errno;
    // It is closed all the same, as it is on Linux.
    const int result = real(descriptor);
    if (fails) {
        errno = error;
    }
    return fails ? -1 : result;
}

ssize_t pwrite(int descriptor, const void* bytes, size_t count, off_t offset)
{
    static auto* const real = Real<ssize_t(int, const void*, size_t, off_t)>("pwrite");
    const int error = ErrorOfCall("pwrite");
    if (error > 0) {
        errno = error;
        return -1;
    }
    return real(descriptor, bytes, error == 0 && count > 1 ? count / 2 : count, offset);
}

ssize_t pread(int descriptor, void* bytes, size_t count, off_t offset)
{
    static auto* const real = Real<ssize_t(int, void*, size_t, off_t)>("pread");
    return Fails("pread") ? -1 : real(descriptor, bytes, count, offset);
}

int fsync(int descriptor)
{
    static auto* const real = Real<int(int)>("fsync");
    // No power cut is simulated, and thousands of real syncs would take long.
    const bool isCounted = armed != nullptr;
    return Fails("fsync") ? -1 : isCounted ? 0 : real(descriptor);
}

int ftruncate(int descriptor, off_t size) noexcept
{
    static auto* const real = Real<int(int, off_t)>("ftruncate");
    return Fails("ftruncate") ? -1 : real(descriptor, size);
}

int posix_fallocate(int descriptor, off_t offset, off_t size)
{
    static auto* const real = Real<int(int, off_t, off_t)>("posix_fallocate");
    const int error = ErrorOfCall("posix_fallocate");
    return error > 0 ? error : real(descriptor, offset, size);
}

int rename(const char* from, const char* to) noexcept
{
    static auto* const real = Real<int(const char*, const char*)>("rename");
    return Fails("rename") ? -1 : real(from, to);
}

int unlink(const char* path) noexcept
{
    static auto* const real = Real<int(const char*)>("unlink");
    return Fails("unlink") ? -1 : real(path);
}

ssize_t readlink(const char* path, char* buffer, size_t size) noexcept
{
    static auto* const real = Real<ssize_t(const char*, char*, size_t)>("readlink");
    return Fails("readlink") ? -1 : real(path, buffer, size);
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    static auto* const real = Real<int(int, mode_t)>("fchmod");
    return Fails("fchmod") ? -1 : real(descriptor, mode);
}

int fchown(int descriptor, uid_t owner, gid_t group) noexcept
{
    static auto* const real = Real<int(int, uid_t, gid_t)>("fchown");
    return Fails("fchown") ? -1 : real(descriptor, owner, group);
}

int flock(int descriptor, int operation) noexcept
{
    static auto* const real = Real<int(int, int)>("flock");
    return Fails("flock") ? -1 : real(descriptor, operation);
}

int stat(const char* path, struct stat* status) noexcept
{
    static auto* const real = Real<int(const char*, struct stat*)>("stat");
    return Fails("stat") ? -1 : real(path, status);
}

int fstat(int descriptor, struct stat* status) noexcept
{
    static auto* const real = Real<int(int, struct stat*)>("fstat");
    return Fails("fstat") ? -1 : real(descriptor, status);
}

int statx(int folder, const char* path, int flags, unsigned int mask, struct statx* status) noexcept
{
    static auto* const real = Real<int(int, const char*, int, unsigned int, struct statx*)>("statx");
    return Fails("statx") ? -1 : real(folder, path, flags, mask, status);
}

int faccessat(int folder, const char* path, int mode, int flags) noexcept
{
    static auto* const real = Real<int(int, const char*, int, int)>("faccessat");
    return Fails("faccessat") ? -1 : real(folder, path, mode, flags);
}

DIR* opendir(const char* path)
{
    static auto* const real = Real<DIR*(const char*)>("opendir");
    return Fails("opendir") ? nullptr : real(path);
}

} // extern "C"
#pragma GCC visibility pop
