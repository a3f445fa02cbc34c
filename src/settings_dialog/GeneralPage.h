// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings_dialog/CalculationMethod.h"

#include <memory>

class DialogContext;
class OptionButton;
class QFrame;

/// The page of the calculation and display of prayer times. Each control stores its attribute at once.
class GeneralPage final
{
public:
    /// @param frame the frame in which the page is created
    GeneralPage(DialogContext& context, QFrame& frame);
    ~GeneralPage();

    /// Loads the file, shows the frame and fills the controls. Stores nothing.
    void Load();

private:
    void ConnectOptions();
    void ConnectGeneral();
    void StoreOnClick(OptionButton* option, const QString& attribute, const QString& value);

    void LoadAdvanceAlert();
    void OnAdvWarnClick();
    void OnAdvWarnTextChange();

    DialogContext& m_context;
    QFrame& m_frame;
    std::unique_ptr<Ui::GeneralPage> m_ui;
    CalculationMethod m_method;
};
