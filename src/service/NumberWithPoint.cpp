// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/NumberWithPoint.h"

#include "support/Conversions.h"
#include "support/ModRegion.h"

double NumberWithPoint(const QString& text, const RegionalSettings& region)
{
    return ToDouble(QString(text).replace(u'.', GetDecimalSign(region)), region.UserLocale());
}
