// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileStore.h"

/// Files through the calls of the system; each system has its own source file.
class SystemFileStore final : public FileStore
{
public:
    [[nodiscard]] std::optional<QByteArray> Read(const QString& path, qint64 limit) const override;
    bool Replace(const QString& path, const QByteArray& content) override;
    bool Write(const QString& path, const QByteArray& content) override;
};
