// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ProxySettings.h"

#include <QStringList>

#include <algorithm>

// QRegularExpression is not used here: requests run on a thread of their own, and with MinGW the end of a
// thread that has used it destroys its memory twice.

namespace {

// The system separates entries by semicolons or white space.
QStringList Entries(QString list)
{
    return list.replace(u';', u' ').simplified().split(u' ', Qt::SkipEmptyParts);
}

// Whether the name is the pattern, in which "*" stands for any letters.
bool Matches(const QString& pattern, const QString& name)
{
    const QStringList parts = pattern.split(u'*');
    if (parts.size() == 1) {
        return name.compare(pattern, Qt::CaseInsensitive) == 0;
    }
    if (!name.startsWith(parts.first(), Qt::CaseInsensitive) ||
        !name.endsWith(parts.last(), Qt::CaseInsensitive)) {
        return false;
    }
    qsizetype end = parts.first().size();
    for (qsizetype i = 1; i + 1 < parts.size(); ++i) {
        const qsizetype begin = name.indexOf(parts[i], end, Qt::CaseInsensitive);
        if (begin < 0) {
            return false;
        }
        end = begin + parts[i].size();
    }
    return end + parts.last().size() <= name.size();
}

bool IsException(const QString& entry, const QString& host)
{
    if (entry.compare(u"<local>", Qt::CaseInsensitive) == 0) {
        return !host.contains(u'.') && !host.contains(u':');
    }
    return Matches(entry, host);
}

// The address of an entry for @p kind, which has its kind before an equals sign or serves all; empty if it is
// for another kind.
QString AddressFor(const QString& entry, const QString& kind)
{
    const qsizetype sign = entry.indexOf(u'=');
    if (sign < 0) {
        return entry;
    }
    return entry.left(sign).compare(kind, Qt::CaseInsensitive) == 0 ? entry.mid(sign + 1) : QString();
}

QString FirstAddress(const QStringList& entries, const QString& kind)
{
    for (const QString& entry : entries) {
        if (QString address = AddressFor(entry, kind); !address.isEmpty()) {
            return address;
        }
    }
    return {};
}

// With the port that the system means where it is missing; libcurl means another one.
QByteArray WithPort(const QString& address, const char* port)
{
    const qsizetype colon = address.lastIndexOf(u':');
    const bool hasPort =
        colon > address.lastIndexOf(u']') && colon + 1 < address.size() && address[colon + 1].isDigit();
    return address.toUtf8() + (hasPort ? QByteArray() : QByteArray(port));
}

} // namespace

QByteArray ProxySettings::ProxyFor(const QByteArray& scheme, const QByteArray& host) const
{
    const QStringList direct = Entries(exceptions);
    const QString name = QString::fromUtf8(host);
    const auto isException = [&name](const QString& entry) { return IsException(entry, name); };
    if (std::any_of(direct.begin(), direct.end(), isException)) {
        return {};
    }
    const QStringList entries = Entries(proxies);
    if (const QString address = FirstAddress(entries, QString::fromLatin1(scheme)); !address.isEmpty()) {
        return WithPort(address, ":80");
    }
    const QString address = FirstAddress(entries, QStringLiteral("socks"));
    return address.isEmpty() ? QByteArray() : "socks4a://" + WithPort(address, ":1080");
}
