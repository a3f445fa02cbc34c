// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/ServiceAddresses.h"

#include "store/Configuration.h"

#include <QRegularExpression>
#include <QUrl>

namespace {

// The mobile page has two lines for the address and the words around it; a longer address would need a third.
constexpr qsizetype kLongestSignup = 50;

// Strict, so that libcurl and the browser, which parse the text again, find the same host in it.
bool IsWebAddress(const QUrl& address)
{
    return address.isValid() && (address.scheme() == u"http" || address.scheme() == u"https") &&
           !address.host().isEmpty() && !address.authority().contains(u'@');
}

bool IsBase(const QUrl& address)
{
    return IsWebAddress(address) && !address.hasQuery() && !address.hasFragment();
}

bool IsMailAddress(const QString& text)
{
    static const QRegularExpression kForm(
        QRegularExpression::anchoredPattern(QStringLiteral("[A-Za-z0-9._%+'-]+@[A-Za-z0-9.-]+")));
    return text.size() <= kLongestSignup && kForm.match(text).hasMatch();
}

} // namespace

namespace ServiceAddresses {

QString Base(const Configuration& configuration)
{
    QString base = configuration.ServiceText.trimmed();
    if (!IsBase(QUrl(base, QUrl::StrictMode))) {
        base = QStringLiteral(DUSKBEACON_SERVICE_URL);
    }
    while (base.endsWith(u'/')) {
        base.chop(1);
    }
    return base;
}

QString Signup(const Configuration& configuration)
{
    const QString address = configuration.SignupText.trimmed();
    return IsMailAddress(address) ? address : QStringLiteral("signup@") + QUrl(Base(configuration)).host();
}

QString Probe(const Configuration& configuration)
{
    const QString page = configuration.ProbeText.trimmed();
    return IsWebAddress(QUrl(page, QUrl::StrictMode)) ? page : QStringLiteral(DUSKBEACON_PROBE_URL);
}

} // namespace ServiceAddresses
