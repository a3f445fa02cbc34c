// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings_dialog/DialogTest.h"

inline const QString kOffline = QStringLiteral(
    "You must be connected to the Internet to confirm Mobil Alerts Setup.  Please check your connection.");

/// The mobile page of the settings dialog, with a network.
class MobilePageFixture : public DialogTest
{
protected:
    MobilePageFixture() { platform.http.reachable = true; }

    static void WriteMobile(const char* enabled, const char* confirm, const char* did = "",
                            const char* pc = "")
    {
        WriteSettings(SettingsWith(
            {{"mobileEnabled", enabled}, {"mobileConfirm", confirm}, {"mobileDID", did}, {"mobilePC", pc}}));
    }
    void Reply(const char* text)
    {
        platform.http.replies[QStringLiteral("confirmSignup.pl")] = QByteArray(text);
    }
    /// The page of a device that is confirmed.
    void OpenConfirmed()
    {
        WriteMobile("true", "1", "D1", "P1");
        Open(2);
    }
    void ExpectShown(const char* did, const char* pc) const
    {
        EXPECT_EQ(TextOf("TxtMDID"), QString::fromUtf8(did));
        EXPECT_EQ(TextOf("TxtPC"), QString::fromUtf8(pc));
    }
    /// The page with both boxes filled, as by typing.
    void OpenFilled()
    {
        Open(2);
        QTest::keyClicks(&Widget("TxtMDID"), QStringLiteral("15551234"));
        QTest::keyClicks(&Widget("TxtPC"), QStringLiteral("55 21&"));
        Forget();
    }
    void ExpectLive(bool form, bool entry) const
    {
        for (const char* const control : {"FrmMobilSub", "LblReset"}) {
            EXPECT_EQ(IsLive(control), form) << control;
        }
        for (const char* const control : {"TxtMDID", "TxtPC", "CmdMobilReg"}) {
            EXPECT_EQ(IsLive(control), entry) << control;
        }
    }
    void ExpectBox(const QString& text) const
    {
        EXPECT_EQ(platform.boxes.boxes, std::vector{FakeMessageBoxes::Message(text)});
    }
    static void ExpectStored(const char* did, const char* pc, const char* confirm)
    {
        EXPECT_EQ(Stored("mobileDID"), QString::fromUtf8(did));
        EXPECT_EQ(Stored("mobilePC"), QString::fromUtf8(pc));
        EXPECT_EQ(Stored("mobileConfirm"), QString::fromUtf8(confirm));
    }
};
