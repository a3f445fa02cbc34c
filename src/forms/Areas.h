// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <functional>
#include <memory>

class QWidget;

/// Keeps mouse moves over the controls of @p window from what lies behind them, so that the pointer stays as
/// it is there. Links are left out: a disabled one lets moves through. To be called before the first
/// HoverArea.
void KeepMouseMoves(QWidget& window);

/// The controls of a .ui file, made in @p window, with KeepMouseMoves.
template <typename Controls, typename Window>
[[nodiscard]] std::unique_ptr<Controls> MakeControls(Window& window)
{
    auto controls = std::make_unique<Controls>();
    controls->setupUi(&window);
    KeepMouseMoves(window);
    return controls;
}

/// Calls a handler when the left button goes down and up again over an enabled widget: Click for a picture,
/// one for a double click too.
class ClickArea final : public QObject
{
    Q_OBJECT

public:
    /// @param widget also the parent of this object
    /// @param handler must not let an exception out
    ClickArea(QWidget* widget, std::function<void()> handler);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> m_handler;
    bool m_pressed = false;
};

/// Calls a handler whenever the mouse moves over an enabled widget itself, or over a disabled link on it, but
/// not over its other children.
class HoverArea final : public QObject
{
    Q_OBJECT

public:
    /// @param widget also the parent of this object
    /// @param handler must not let an exception out
    HoverArea(QWidget* widget, std::function<void()> handler);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> m_handler;
};
