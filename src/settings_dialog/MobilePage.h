// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class CheckBox;
class DialogContext;
class LinkLabel;
class QFrame;
class QPushButton;
class QRect;
class TextBox;

/// The sign-up of a mobile device for text messages at prayer time.
class MobilePage final
{
public:
    MobilePage(DialogContext& context, const QRect& place);

    QFrame* FrmMobilAlert;

    /// Shows the frame and fills the controls from the dialog's document as it stands. Saves nothing.
    void LoadMobilePage();

private:
    void BuildHead();
    void BuildSteps();
    void BuildEntry();
    void Connect();

    void OnMobilEnableClick();
    void OnMobilRegClick();
    void OnResetClick();
    /// Asks the service to confirm the code that was typed, and stores what it says.
    void ConfirmSignup();
    void ForgetDevice();

    DialogContext& m_context;
    CheckBox* ChkMobilEnable = nullptr;
    QFrame* FrmMobilSub = nullptr;
    TextBox* TxtMDID = nullptr;
    TextBox* TxtPC = nullptr;
    QPushButton* CmdMobilReg = nullptr;
    LinkLabel* LblReset = nullptr;
};
