// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRadioButton>

#include <functional>

/// One of several choices in the same container. Raises Click when it becomes selected, by hand or by code,
/// inside the setter; selecting the one that is selected already raises nothing.
class OptionButton final : public QRadioButton
{
    Q_OBJECT

public:
    explicit OptionButton(const QString& caption, QWidget* parent);

    [[nodiscard]] bool Value() const { return isChecked(); }
    void Select() { setChecked(true); }
    /// @param handler must not let an exception out
    void OnClick(std::function<void()> handler) { m_click = std::move(handler); }

private:
    std::function<void()> m_click;
};
