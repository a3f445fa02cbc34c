// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QString>

#include <sys/stat.h>
#include <unistd.h>

#include <optional>

/// While it lives the process has only the file permissions of a user other than root. Makes the given
/// folder writable for every user.
class PlainUser final
{
public:
    explicit PlainUser(const QString& folder)
    {
        if (m_wasRoot) {
            constexpr uid_t kNobody = 65534;
            ::chmod(QFile::encodeName(folder).constData(), 0777);
            m_isPlain = ::setegid(kNobody) == 0 && ::seteuid(kNobody) == 0;
        }
    }
    ~PlainUser()
    {
        if (m_wasRoot && (::seteuid(0) != 0 || ::setegid(m_group) != 0)) {
            qFatal("the rights can't be taken back");
        }
    }
    PlainUser(const PlainUser&) = delete;
    PlainUser& operator=(const PlainUser&) = delete;

    [[nodiscard]] bool IsPlain() const { return m_isPlain; }

private:
    bool m_wasRoot = ::geteuid() == 0;
    gid_t m_group = ::getegid();
    bool m_isPlain = !m_wasRoot;
};

/// While it lives the process can't read this file. In the working directory, which becomes writable for
/// every user.
class UnreadableFile final
{
public:
    explicit UnreadableFile(const QString& name)
        : m_file(name)
    {
        if (!m_file.setPermissions({}) || !m_user.emplace(QStringLiteral(".")).IsPlain()) {
            qFatal("the file stays readable");
        }
    }
    ~UnreadableFile()
    {
        m_user.reset();
        m_file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    }
    UnreadableFile(const UnreadableFile&) = delete;
    UnreadableFile& operator=(const UnreadableFile&) = delete;

private:
    QFile m_file;
    std::optional<PlainUser> m_user;
};
