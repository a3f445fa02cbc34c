// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDir>
#include <QString>

#include <windows.h>

/// No user of Windows is above the rights of files.
class PlainUser final
{
public:
    explicit PlainUser(const QString& /*folder*/) {}

    [[nodiscard]] static bool IsPlain() { return true; }
};

/// While it lives the process can't read this file: it is held open without sharing.
class UnreadableFile final
{
public:
    explicit UnreadableFile(const QString& name)
        : m_file(::CreateFileW(reinterpret_cast<const wchar_t*>(QDir::toNativeSeparators(name).utf16()),
                               GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr))
    {
        if (m_file == INVALID_HANDLE_VALUE) {
            qFatal("the file stays readable");
        }
    }
    ~UnreadableFile() { ::CloseHandle(m_file); }
    UnreadableFile(const UnreadableFile&) = delete;
    UnreadableFile& operator=(const UnreadableFile&) = delete;

private:
    HANDLE m_file;
};
