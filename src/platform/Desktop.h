// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QIcon;
class QMenu;

/// The user's web browser.
class Browser
{
public:
    Browser() = default;
    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;
    virtual ~Browser() = default;

    /// Opens http and https addresses only; anything else is an open that failed. Nothing reports a failure.
    virtual void Open(const QString& url) = 0;
};

/// Modal message boxes, which block all windows but the popup and the tray icon; the texts are plain.
/// A box that the end of the program closes has no answer: the call does not return.
class MessageBoxes
{
public:
    static inline const QString kDefaultTitle = QStringLiteral("Dusk Beacon");

    MessageBoxes() = default;
    MessageBoxes(const MessageBoxes&) = delete;
    MessageBoxes& operator=(const MessageBoxes&) = delete;
    virtual ~MessageBoxes() = default;

    /// One OK button.
    virtual void Show(const QString& text, const QString& title = kDefaultTitle) = 0;
    /// Yes and No buttons; true for Yes.
    [[nodiscard]] virtual bool Ask(const QString& text, const QString& title = kDefaultTitle) = 0;
};

/// The entry in the notification area. Nothing reports a failure: without a notification area there is no
/// icon.
class TrayIcon
{
public:
    TrayIcon() = default;
    TrayIcon(const TrayIcon&) = delete;
    TrayIcon& operator=(const TrayIcon&) = delete;
    virtual ~TrayIcon() = default;

    /// @param menu opens when the right mouse button is released over the icon; must outlive the icon
    virtual void Add(const QIcon& icon, const QString& tip, QMenu& menu) = 0;
    /// Harmless when there is no icon.
    virtual void Remove() = 0;
    /// True while a notification area shows the icon.
    [[nodiscard]] virtual bool IsShown() const = 0;
};
