// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Ascii.h"

#include <gtest/gtest.h>

TEST(Trimmed, spacesAtTheEnds_areRemoved)
{
    EXPECT_EQ(beacond::Trimmed("  New York "), "New York");
    EXPECT_EQ(beacond::Trimmed("\t a\r\n", " \t\r\n"), "a");
    EXPECT_EQ(beacond::Trimmed("   "), "");
    EXPECT_EQ(beacond::Trimmed(""), "");
}
