// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollBar>

#include <functional>

/// A horizontal scroll bar that raises Change when the thumb is released or a step is made, not while it is
/// dragged, and inside the setter.
class LevelBar final : public QScrollBar
{
    Q_OBJECT

public:
    /// @param lowest,highest closed interval of the value
    LevelBar(int lowest, int highest, QWidget* parent);

    [[nodiscard]] int Value() const { return value(); }
    /// Throws kInvalidPropertyValue for a value outside the limits.
    void SetValue(int value);
    /// @param handler must not let an exception out
    void OnChange(std::function<void()> handler) { m_change = std::move(handler); }

private:
    std::function<void()> m_change;
};
