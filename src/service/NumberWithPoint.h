// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;
class RegionalSettings;

/// A number that settings.xml or a reply writes with a point, whatever the user's decimal sign.
/// Throws kTypeMismatch for a text that is no number.
[[nodiscard]] double NumberWithPoint(const QString& text, const RegionalSettings& region);
