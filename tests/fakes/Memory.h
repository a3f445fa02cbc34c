// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QFile>

#include <malloc.h>

/// The memory of this process, in bytes.
namespace Memory {

/// False with a sanitizer, which keeps freed memory.
#ifdef __SANITIZE_ADDRESS__
inline constexpr bool kIsTrue = false;
#else
inline constexpr bool kIsTrue = true;
#endif

[[nodiscard]] inline qint64 Line(const QByteArray& name)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("no /proc/self/status");
    }
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(name + ':')) {
            return line.mid(name.size() + 1).trimmed().split(' ').first().toLongLong() * 1024;
        }
    }
    qFatal("no such line");
}

[[nodiscard]] inline qint64 Resident()
{
    return Line("VmRSS");
}

/// The peak since the last ForgetPeak.
[[nodiscard]] inline qint64 Peak()
{
    return Line("VmHWM");
}

/// The resident memory after free blocks have been returned to the system.
[[nodiscard]] inline qint64 Trimmed()
{
    ::malloc_trim(0);
    return Resident();
}

/// Resets the peak; returns the resident memory.
inline qint64 ForgetPeak()
{
    const qint64 now = Trimmed();
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (!file.open(QIODevice::WriteOnly) || file.write("5") != 1) {
        qFatal("the peak can't be forgotten");
    }
    return now;
}

} // namespace Memory
