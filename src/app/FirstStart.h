// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class SimpleXML;
struct Configuration;
struct Platform;

/// Whether the installation identifier is to be requested: on the first start, and later with a network while
/// there is none.
[[nodiscard]] bool NeedsIdentifier(const SimpleXML& settings, bool isConnected);

/// Requests the identifier from the service address in @p configuration and saves it in settings.xml. A
/// failed request is not an error: the next start repeats it. Throws kInvalidCall if the identifier can't be
/// written.
void RequestIdentifier(const Platform& platform, SimpleXML& settings, const Configuration& configuration);
