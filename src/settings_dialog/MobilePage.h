// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class CheckBox;
class DialogContext;
class LinkLabel;
class MobileSignup;
class QFrame;
class QPushButton;
class QRect;
class QString;
class TextBox;
struct MobileDevice;

/// The sign-up of a mobile device for text messages at prayer time.
class MobilePage final
{
public:
    MobilePage(DialogContext& context, MobileSignup& signup, const QRect& place);

    QFrame* FrmMobilAlert;

    /// Shows the frame and fills the controls from the dialog's document as it stands. Saves nothing.
    void LoadMobilePage();
    /// Stores the outcome of a sign-up through the dialog's document and shows it: the device in the boxes,
    /// locked once it is confirmed.
    void ShowSignup(const MobileDevice& device, const QString& result);

private:
    void BuildHead();
    void BuildSteps();
    void BuildEntry();
    void Connect();

    void OnMobilEnableClick();
    void OnMobilRegClick();
    void OnResetClick();
    void ForgetDevice();

    DialogContext& m_context;
    MobileSignup& m_signup;
    CheckBox* ChkMobilEnable = nullptr;
    QFrame* FrmMobilSub = nullptr;
    TextBox* TxtMDID = nullptr;
    TextBox* TxtPC = nullptr;
    QPushButton* CmdMobilReg = nullptr;
    LinkLabel* LblReset = nullptr;
};
