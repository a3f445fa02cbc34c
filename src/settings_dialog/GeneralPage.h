// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings_dialog/CalculationMethod.h"

#include <memory>

class DialogContext;
class OptionButton;
class QFrame;

/// How prayer times are calculated and shown. Each control stores its own attribute at once.
class GeneralPage final
{
public:
    /// @param frame that the page is made in
    GeneralPage(DialogContext& context, QFrame& frame);
    ~GeneralPage();

    /// Shows the frame and fills the controls from the file, which it loads. Writes nothing.
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
