// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ProxySettings.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace {

// The system separates entries by semicolons or white space.
QStringList Entries(const QString& list)
{
    static const QRegularExpression kSeparators(QStringLiteral("[;\\s]+"));
    return list.split(kSeparators, Qt::SkipEmptyParts);
}

bool IsException(const QString& entry, const QString& host)
{
    if (entry.compare(u"<local>", Qt::CaseInsensitive) == 0) {
        return !host.contains(u'.') && !host.contains(u':');
    }
    const QRegularExpression pattern(QRegularExpression::wildcardToRegularExpression(entry),
                                     QRegularExpression::CaseInsensitiveOption);
    return pattern.match(host).hasMatch();
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
        if (const QString address = AddressFor(entry, kind); !address.isEmpty()) {
            return address;
        }
    }
    return {};
}

// With the port that the system means where it is missing; libcurl means another one.
QByteArray WithPort(const QString& address, const char* port)
{
    static const QRegularExpression kPort(QStringLiteral(":[0-9]+/?$"));
    return address.toUtf8() + (kPort.match(address).hasMatch() ? QByteArray() : QByteArray(port));
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
