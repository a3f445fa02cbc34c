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

    /// Opens http and https addresses; any other fails. Failures are not reported.
    virtual void Open(const QString& url) = 0;
};

/// Modal message boxes with plain text, which block all windows except the popup and the tray icon.
/// If the program ends while a box is open, the call does not return, since there is no answer.
class MessageBoxes
{
public:
    static inline const QString kDefaultTitle = QStringLiteral("Dusk Beacon");

    /// The button that the Enter key presses, unless the user moves to the other one.
    enum class DefaultAnswer { Yes, No };

    MessageBoxes() = default;
    MessageBoxes(const MessageBoxes&) = delete;
    MessageBoxes& operator=(const MessageBoxes&) = delete;
    virtual ~MessageBoxes() = default;

    /// One OK button.
    virtual void Show(const QString& text, const QString& title = kDefaultTitle) = 0;
    /// Yes and No buttons; true for Yes.
    [[nodiscard]] virtual bool Ask(const QString& text, const QString& title = kDefaultTitle,
                                   DefaultAnswer defaultAnswer = DefaultAnswer::Yes) = 0;
};

/// The icon in the notification area. Failures are not reported: without a notification area there is no
/// icon.
class TrayIcon
{
public:
    TrayIcon() = default;
    TrayIcon(const TrayIcon&) = delete;
    TrayIcon& operator=(const TrayIcon&) = delete;
    virtual ~TrayIcon() = default;

    /// @param menu opens on release of the right mouse button over the icon; must outlive the icon
    virtual void Add(const QIcon& icon, const QString& tip, QMenu& menu) = 0;
    /// Without an icon it has no effect.
    virtual void Remove() = 0;
    /// True while a notification area shows the icon.
    [[nodiscard]] virtual bool IsShown() const = 0;
};
