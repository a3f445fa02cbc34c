// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCheckBox>

#include <functional>

/// A check box that raises Click when its value changes, by hand or by code, inside the setter, and not
/// otherwise.
class CheckBox final : public QCheckBox
{
    Q_OBJECT

public:
    explicit CheckBox(const QString& caption, QWidget* parent);

    /// 1 ticked, 0 clear
    [[nodiscard]] int Value() const { return isChecked() ? 1 : 0; }
    void SetValue(int value) { setChecked(value != 0); }
    /// @param handler must not let an exception out
    void OnClick(std::function<void()> handler) { m_click = std::move(handler); }

private:
    std::function<void()> m_click;
};
