// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Desktop.h"
#include "platform/Process.h"
#include "support/ModRegion.h"

// The interfaces for which Qt has a complete implementation on each system.

/// The default browser of the desktop.
class QtBrowser final : public Browser
{
public:
    void Open(const QString& url) override;
};

class QtMessageBoxes final : public MessageBoxes
{
public:
    void Show(const QString& text, const QString& title) override;
    [[nodiscard]] bool Ask(const QString& text, const QString& title, DefaultAnswer defaultAnswer) override;
};

class QtProcess final : public Process
{
public:
    void End() override;
    void Sleep(int milliseconds) override;
    [[nodiscard]] QString ApplicationFolder() const override;
    [[nodiscard]] QString UserDataFolder() const override;
};

/// The locale of the environment.
class QtRegionalSettings final : public RegionalSettings
{
public:
    [[nodiscard]] std::uint32_t GetUserDefaultLCID() const override;
    int GetLocaleInfo(std::uint32_t lcid, std::uint32_t lctype, QChar* buffer, int length) const override;
    [[nodiscard]] QLocale UserLocale() const override;
};
