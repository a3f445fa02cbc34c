// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <functional>
#include <memory>

class QWidget;

/// Stops mouse moves over the controls of @p window from reaching the widgets behind them, so that the
/// pointer keeps its shape there. Links are an exception: a disabled link lets mouse moves through. Call
/// before the first HoverArea is made.
void KeepMouseMoves(QWidget& window);

/// Creates the controls of a .ui file in @p window and calls KeepMouseMoves.
template <typename Controls, typename Window>
[[nodiscard]] std::unique_ptr<Controls> MakeControls(Window& window)
{
    auto controls = std::make_unique<Controls>();
    controls->setupUi(&window);
    KeepMouseMoves(window);
    return controls;
}

/// Calls a handler when the left button is pressed and released over an enabled widget: Click for a picture.
/// A double click counts as one click.
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
