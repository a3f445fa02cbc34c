// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"
#include "forms/Forms.h"

/// The verbs of a main window, without effect.
class SilentMain : public MainForm
{
public:
    int UpdateEverything() override { return 1; }
    void PopLocation() override {}
    void PopPrayerFrame() override {}
    void Enable(bool /*enabled*/) override {}
    void TakeFocus() override {}
    void EnableStopLink() override {}
    void RefreshAd() override {}
};

/// An empty main window that is the active form.
class FakeMain : public Form, public SilentMain
{
public:
    explicit FakeMain(Forms& forms)
        : Form(forms, kName, Qt::Window)
    {
        resize(602, 423);
        forms.SetMain(*this);
        Variables().ActiveForm = kName;
    }
    void Enable(bool enabled) override { Form::Enable(enabled); }
};
