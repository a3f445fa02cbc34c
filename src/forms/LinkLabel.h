// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

#include <functional>
#include <optional>

/// A label that acts as a link. Raises Click by mouse or keyboard, once for a double click, and MouseMove,
/// also without a pressed button. While the label is disabled it raises nothing, and mouse moves reach the
/// widget behind it. It is grey while it or its frame is disabled, but not if only its window is.
/// Otherwise it has the colour of the role Link of its palette. A label that opens a page of its window
/// can be a page tab.
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
    /// Makes the label a page tab, bold while its page is shown.
    void SetSelected(bool selected);
    [[nodiscard]] bool IsPageTab() const { return m_selected.has_value(); }
    [[nodiscard]] bool IsSelected() const { return m_selected.value_or(false); }
    /// Replaces that of QWidget, which raises no event for a change inside a disabled window.
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
    /// Only a page tab has a value.
    std::optional<bool> m_selected;
};

/// Presents link labels to screen readers as links or page tabs. Call once, before the first window is made.
void InstallLinkAccessibility();
