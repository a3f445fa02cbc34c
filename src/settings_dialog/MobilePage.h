// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

class DialogContext;
class MobileSignup;
class QFrame;
class QString;
struct MobileDevice;
namespace Ui {
class MobilePage;
}

/// The sign-up of a mobile device for text messages at prayer time.
class MobilePage final
{
public:
    /// @param frame that the page is made in
    MobilePage(DialogContext& context, MobileSignup& signup, QFrame& frame);
    ~MobilePage();

    /// Shows the frame and fills the controls from the dialog's document as it stands. Saves nothing.
    void LoadMobilePage();
    /// Stores the outcome of a sign-up through the dialog's document and shows it: the device in the boxes,
    /// locked once it is confirmed.
    void ShowSignup(const MobileDevice& device, const QString& result);

private:
    void Connect();

    void OnMobilEnableClick();
    void OnMobilRegClick();
    void OnResetClick();
    void ForgetDevice();

    DialogContext& m_context;
    MobileSignup& m_signup;
    QFrame& m_frame;
    std::unique_ptr<Ui::MobilePage> m_ui;
};
