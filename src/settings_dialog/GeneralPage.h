// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings_dialog/CalculationMethod.h"

class CheckBox;
class DialogContext;
class OptionButton;
class QFrame;
class QRect;
class SpinBar;
class TextBox;

/// How prayer times are calculated and shown. Each control stores its own attribute at once.
class GeneralPage final
{
public:
    GeneralPage(DialogContext& context, const QRect& place);

    QFrame* FrmGeneral;

    /// Shows the frame and fills the controls from the file, which it loads. Writes nothing.
    void Load();

private:
    void BuildAsr();
    void BuildFormat();
    void BuildGeneral();
    void ConnectGeneral();
    void BuildFoot();
    void StoreOnClick(OptionButton* option, const QString& attribute, const QString& value);

    void LoadAdvanceAlert();
    void OnAdvWarnClick();
    void OnAdvWarnTextChange();

    DialogContext& m_context;
    CalculationMethod m_method;
    OptionButton* OptShafi = nullptr;
    OptionButton* OptHanafi = nullptr;
    OptionButton* Opt12Hour = nullptr;
    OptionButton* Opt24Hour = nullptr;
    CheckBox* ChkDLS = nullptr;
    CheckBox* ChkAdvWarn = nullptr;
    TextBox* TxtAdvWarn = nullptr;
    SpinBar* VScroll1 = nullptr;
};
