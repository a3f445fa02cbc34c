// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/WindowsFileStore.h"

std::optional<QByteArray> WindowsFileStore::Read(const QString& /*path*/, qint64 /*limit*/) const
{
    return std::nullopt;
}

bool WindowsFileStore::Replace(const QString& /*path*/, const QByteArray& /*content*/)
{
    return false;
}

bool WindowsFileStore::Write(const QString& /*path*/, const QByteArray& /*content*/)
{
    return false;
}
