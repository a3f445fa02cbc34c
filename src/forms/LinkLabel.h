// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

#include <functional>

/// A text that acts as a link: Click by mouse or keyboard, one for a double click too, and MouseMove without
/// a button. While disabled it takes no click, and the mouse moves over whatever lies behind it. It is grey
/// while it or its frame is disabled, not while its window is.
class LinkLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit LinkLabel(QWidget* parent);

    /// @param handler must not let an exception out
    void OnClick(std::function<void()> handler) { m_click = std::move(handler); }
    /// @param handler must not let an exception out
    void OnMouseMove(std::function<void()> handler) { m_move = std::move(handler); }
    /// Runs the Click handler if the label is enabled.
    void Click();
    /// In place of the widget's own, which tells nobody of a change inside a disabled window.
    void setEnabled(bool enabled);

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void ApplyColour();

    std::function<void()> m_click;
    std::function<void()> m_move;
    bool m_pressed = false;
};

/// Makes link labels known as links to screen readers; once, before the first window.
void InstallLinkAccessibility();
