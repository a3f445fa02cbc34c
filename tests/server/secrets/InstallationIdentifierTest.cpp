// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "secrets/InstallationIdentifier.h"

#include "secrets/Keys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using testing::MatchesRegex;

namespace {

constexpr std::int32_t kDay = 20'780;

Key KeyOf(unsigned char fill)
{
    std::array<unsigned char, Key::kBytes> bytes{};
    bytes.fill(fill);
    return Key(bytes);
}

} // namespace

TEST(InstallationIdentifier, new_needsNoEscape_andContainsItsDay)
{
    const std::string identifier = MakeInstallationIdentifier(KeyOf(1), kDay);

    EXPECT_THAT(identifier, MatchesRegex("[A-Za-z0-9_-]{32}"));
    EXPECT_EQ(DayOfInstallationIdentifier(KeyOf(1), identifier), kDay);
}

TEST(InstallationIdentifier, anyCharacterChanged_isNotOurs)
{
    const std::string identifier = MakeInstallationIdentifier(KeyOf(1), kDay);
    for (std::size_t i = 0; i < identifier.size(); ++i) {
        std::string changed = identifier;
        changed[i] = changed[i] == 'A' ? 'B' : 'A';
        EXPECT_FALSE(DayOfInstallationIdentifier(KeyOf(1), changed)) << i;
    }
}

TEST(InstallationIdentifier, otherTexts_areNotOurs)
{
    const std::string identifier = MakeInstallationIdentifier(KeyOf(1), kDay);
    for (const std::string& text :
         {std::string(), identifier.substr(1), identifier + "A", std::string(10'000, 'A'), std::string("a b"),
          identifier + "=", std::string(32, '\xFF')}) {
        EXPECT_FALSE(DayOfInstallationIdentifier(KeyOf(1), text)) << text;
    }
    EXPECT_FALSE(DayOfInstallationIdentifier(KeyOf(2), identifier));
}
