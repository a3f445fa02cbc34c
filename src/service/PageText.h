// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// The text of a page, in the encoding that it names near its beginning, <meta charset="…"> or
/// <meta … content="…; charset=…">; windows-1252 if it names none or an unknown one.
[[nodiscard]] QString PageText(const QByteArray& page);
