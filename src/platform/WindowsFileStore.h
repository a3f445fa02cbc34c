// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileStore.h"

/// The files of Windows.
class WindowsFileStore final : public FileStore
{
public:
    [[nodiscard]] std::optional<QByteArray> Read(const QString& path, qint64 limit) const override;
    bool Replace(const QString& path, const QByteArray& content) override;
    bool Write(const QString& path, const QByteArray& content) override;
};
