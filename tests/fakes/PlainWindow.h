// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"
#include "forms/Forms.h"
#include "support/RuntimeError.h"

#include <memory>
#include <optional>

/// An empty window that counts its paints and focus requests.
class PlainWindow final : public Form
{
public:
    PlainWindow(Forms& forms, const QString& name)
        : Form(forms, name, Qt::Window)
    {
        resize(120, 80);
    }
    static void Register(Forms& forms, const QString& name)
    {
        forms.Register(name, [&forms, name] { return std::make_unique<PlainWindow>(forms, name); });
    }
    static PlainWindow& Touch(Forms& forms, const QString& name)
    {
        return static_cast<PlainWindow&>(forms.Touch(name));
    }

    void SetFocus() override
    {
        ++focusRequests;
        if (focusError.has_value()) {
            throw RuntimeError(*focusError, QStringLiteral("no focus"));
        }
        Form::SetFocus();
    }

    int focusRequests = 0;
    int paints = 0;
    /// Error thrown by the next SetFocus calls.
    std::optional<int> focusError;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        ++paints;
        Form::paintEvent(event);
    }
};
