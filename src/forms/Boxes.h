// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>

#include <functional>

/// A check box that raises Click only when its value changes, by the user or inside the setter.
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

/// A radio button. Raises Click when it becomes selected, by the user or inside the setter, but not when it
/// is selected already.
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

/// A one-line text box that raises Change when its text changes, by an edit of the user or inside the setter.
class TextBox : public QLineEdit
{
    Q_OBJECT

public:
    explicit TextBox(QWidget* parent);

    [[nodiscard]] QString Text() const { return text(); }
    void SetText(const QString& value) { setText(value); }
    /// @param handler must not let an exception out
    void OnChange(std::function<void()> handler) { m_change = std::move(handler); }
    /// Sets the handler of the Enter key.
    /// @param handler must not let an exception out
    void OnEnter(std::function<void()> handler) { m_enter = std::move(handler); }

protected:
    /// Raises Change.
    virtual void Changed();

private:
    std::function<void()> m_change;
    std::function<void()> m_enter;
};
