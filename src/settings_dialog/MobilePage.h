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

/// The page of the sign-up of a mobile device for text messages at prayer time.
class MobilePage final
{
public:
    /// @param frame the frame in which the page is created
    MobilePage(DialogContext& context, MobileSignup& signup, QFrame& frame);
    ~MobilePage();

    /// Shows the frame and fills the controls from the dialog's document in memory. Saves nothing.
    void LoadMobilePage();
    /// Stores the result of a sign-up and shows the device in the boxes, which are disabled if the device is
    /// confirmed.
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
