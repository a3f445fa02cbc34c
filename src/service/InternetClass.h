// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

struct Platform;

/// The connectivity probe and four text codecs.
///
/// The codecs work on the bytes of the single-byte code page and do not follow the rules of URLs or HTML;
/// each oddity is intended. They do not check their input. A text of spaces only is returned unchanged.
class InternetClass final
{
public:
    /// @param probe the page that is requested to test the network
    InternetClass(const Platform& platform, const QString& probe)
        : m_platform(platform)
        , m_probe(probe)
    {
    }

    /// Whether the page of the probe was reached. Blocks for as long as the request takes, at most
    /// Http::kLongestReachMilliseconds.
    [[nodiscard]] bool VerifyConnectivity() const;

    [[nodiscard]] QString URLDecodeEx(const QString& Text) const;
    /// Escapes everything but letters, digits and the space, which becomes "+".
    [[nodiscard]] QString URLEncodeEx(const QString& Text) const;
    /// Throws kTypeMismatch, kOverflow or kInvalidCall for a "#" entity whose number is invalid or not a
    /// byte.
    /// @param vfHREFDecode has no effect
    /// @param vstrAmpChar text that introduces an entity, in any case
    [[nodiscard]] QString HTMLDecodeEx(const QString& Text, bool vfHREFDecode,
                                       const QString& vstrAmpChar) const;
    /// @param vfHREFEncode whether a space becomes "%20" instead of an entity
    [[nodiscard]] QString HTMLEncodeEx(const QString& Text, bool vfHREFEncode,
                                       const QString& vstrAmpChar) const;

private:
    const Platform& m_platform;
    QString m_probe;
};
