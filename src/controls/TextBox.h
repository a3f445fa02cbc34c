// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

#include <functional>

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
