// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FirstTouchFixture.h"

namespace {

/// The state of the program at each moment at which the start serves events.
class StartUpOrderTest : public FirstTouchFixture
{
protected:
    StartUpOrderTest()
    {
        platform.http.reachable = true;
        platform.http.replies[QStringLiteral("getAd.pl")] = "<root/>";
    }
    /// Runs @p act once, inside the request for @p script.
    void Inside(const char* script, const std::function<void()>& act)
    {
        platform.http.whileWaiting = [=, this] {
            if (platform.http.requests.back().contains(QLatin1String(script))) {
                ++seen;
                act();
            } else {
                Inside(script, act);
            }
        };
    }

    int seen = 0;
};

TEST_F(StartUpOrderTest, attention_isTheMainWindowsBeforeTheFirstRequest)
{
    Inside("startup.pl", [this] {
        EXPECT_EQ(forms.Variables().ActiveForm, QStringLiteral("FrmMain"))
            << "or alerts would be dropped meanwhile";
        EXPECT_TRUE(IsRunning());
        EXPECT_EQ(Text("LblLocation"), QStringLiteral("Chicago, Illinois"));
        // An alert that comes now.
        forms.Variables().ActiveForm = QStringLiteral("FrmPopup");
    });
    Window();
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(forms.Variables().ActiveForm, QStringLiteral("FrmPopup")) << "not overwritten";
}

TEST_F(StartUpOrderTest, icon_isAddedAfterAllRequestsAndTheQuestionForTheNewVersion)
{
    platform.http.replies[QStringLiteral("version.pl")] = "<root version_name='2' version_sequence='6'/>";
    int questions = 0;
    const auto look = [this] {
        EXPECT_EQ(platform.tray.added, 0);
        EXPECT_NE(forms.Loaded(DlgStart::kName), nullptr) << "the splash stays until the end";
    };
    platform.boxes.whileOpen = [&] {
        ++questions;
        look();
    };
    for (const char* script : {"startup.pl", "getAd.pl", "version.pl"}) {
        forms.Unload(FrmMain::kName);
        platform.tray.added = 0;
        Inside(script, look);
        Window();
        EXPECT_EQ(platform.tray.added, 1) << script;
        EXPECT_EQ(forms.Loaded(DlgStart::kName), nullptr);
    }
    EXPECT_EQ(seen, 3);
    EXPECT_EQ(questions, 1) << "the answer No is remembered";
}

TEST_F(StartUpOrderTest, debugMode_addsNoIcon)
{
    Inside("startup.pl", [this] { forms.Variables().DebugMode = true; });
    Window();
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(platform.tray.added, 0);
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

} // namespace
