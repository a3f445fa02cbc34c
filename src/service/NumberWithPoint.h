// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;
class RegionalSettings;

/// Reads a number with a decimal point, as in settings.xml and in replies, on any locale.
/// Throws kTypeMismatch for a text that is not a number.
[[nodiscard]] double NumberWithPoint(const QString& text, const RegionalSettings& region);
