// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>

#include <functional>

/// A check box that raises Click when its value changes, by hand or by code, inside the setter, and not
/// otherwise.
class CheckBox final : public QCheckBox
{
    Q_OBJECT

public:
    explicit CheckBox(QWidget* parent);

    /// 1 ticked, 0 clear
    [[nodiscard]] int Value() const { return isChecked() ? 1 : 0; }
    void SetValue(int value) { setChecked(value != 0); }
    /// @param handler must not let an exception out
    void OnClick(std::function<void()> handler) { m_click = std::move(handler); }

private:
    std::function<void()> m_click;
};

/// One of several choices in the same container. Raises Click when it becomes selected, by hand or by code,
/// inside the setter; selecting the one that is selected already raises nothing.
class OptionButton final : public QRadioButton
{
    Q_OBJECT

public:
    explicit OptionButton(QWidget* parent);

    [[nodiscard]] bool Value() const { return isChecked(); }
    void Select() { setChecked(true); }
    /// @param handler must not let an exception out
    void OnClick(std::function<void()> handler) { m_click = std::move(handler); }

private:
    std::function<void()> m_click;
};

/// A one-line text box that raises Change inside the setter, and at each edit, when the text really changes.
class TextBox : public QLineEdit
{
    Q_OBJECT

public:
    explicit TextBox(QWidget* parent);

    [[nodiscard]] QString Text() const { return text(); }
    void SetText(const QString& value) { setText(value); }
    /// @param handler must not let an exception out
    void OnChange(std::function<void()> handler) { m_change = std::move(handler); }
    /// The Enter key. @param handler must not let an exception out
    void OnEnter(std::function<void()> handler) { m_enter = std::move(handler); }

protected:
    /// Raises Change.
    virtual void Changed();

private:
    std::function<void()> m_change;
    std::function<void()> m_enter;
};
