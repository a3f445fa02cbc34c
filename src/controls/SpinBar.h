// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollBar>

#include <functional>

/// A small vertical bar with two arrows: the top one raises the value by a step, the bottom one lowers it.
/// Raises Change inside the setter when the value really changes.
class SpinBar final : public QScrollBar
{
    Q_OBJECT

public:
    /// @param lowest,highest closed interval of the value
    SpinBar(int lowest, int highest, int value, QWidget* parent);

    [[nodiscard]] int Value() const { return value(); }
    /// Throws kInvalidPropertyValue for a value outside the limits.
    void SetValue(int value);
    /// @param handler must not let an exception out
    void OnChange(std::function<void()> handler) { m_change = std::move(handler); }

private:
    std::function<void()> m_change;
};
