// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

struct Platform;

/// The connectivity probe and four text codecs.
///
/// The codecs work on the bytes of the single-byte code page and not by the rules of URLs or HTML of today;
/// each oddity is wanted. None checks its input. A text of nothing but blanks comes back as it is.
class InternetClass final
{
public:
    /// @param probe the page that is asked whether the network is there
    InternetClass(const Platform& platform, const QString& probe)
        : m_platform(platform)
        , m_probe(probe)
    {
    }

    /// Whether the probe's page could be reached. Blocks for as long as the request takes, at most
    /// Http::kLongestReachMilliseconds.
    [[nodiscard]] bool VerifyConnectivity() const;

    [[nodiscard]] QString URLDecodeEx(const QString& Text) const;
    /// Escapes everything but letters, digits and the blank, which becomes "+".
    [[nodiscard]] QString URLEncodeEx(const QString& Text) const;
    /// Throws kTypeMismatch, kOverflow or kInvalidCall for a "#" entity whose number is none or is no byte.
    /// @param vfHREFDecode has no effect
    /// @param vstrAmpChar what introduces an entity, in any case
    [[nodiscard]] QString HTMLDecodeEx(const QString& Text, bool vfHREFDecode,
                                       const QString& vstrAmpChar) const;
    /// @param vfHREFEncode whether a blank becomes "%20" instead of an entity
    [[nodiscard]] QString HTMLEncodeEx(const QString& Text, bool vfHREFEncode,
                                       const QString& vstrAmpChar) const;

private:
    const Platform& m_platform;
    QString m_probe;
};
