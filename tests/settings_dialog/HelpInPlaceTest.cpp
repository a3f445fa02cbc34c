// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/MobilePageFixture.h"

namespace {

using HelpInPlaceTest = MobilePageFixture;

TEST_F(HelpInPlaceTest, reset_defaultAnswerIsNo)
{
    OpenConfirmed();
    Click("LblReset");
    EXPECT_EQ(platform.boxes.lastDefault, MessageBoxes::DefaultAnswer::No);
}

} // namespace
