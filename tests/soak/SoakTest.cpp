// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/Environment.h"
#include "soak/SoakWorld.h"

#include <gtest/gtest.h>

namespace {

constexpr int kDays = 400;
constexpr int kSeed = 20270101;

TEST(Soak, fourHundredDays_eachAlertThatIsDueIsGiven)
{
    const auto seed = static_cast<unsigned>(FromEnvironment("DUSKBEACON_SOAK_SEED", kSeed));
    const int days = FromEnvironment("DUSKBEACON_SOAK_DAYS", kDays);
    SoakWorld world(seed);
    world.PassDays(days);
    const int due = world.model.alarms + world.model.warnings;
    std::printf("figure: soak of %d days, seed %u: alerts due %d, given %d; ticks %lld, actions %d, clock "
                "changes %d, "
                "service faults %d, requests that hung %d, slots dropped %d\n",
                days, seed, due, world.given, static_cast<long long>(world.ticks), world.actions,
                world.clockChanges, world.faults, world.hangs, world.model.dropped);
    EXPECT_EQ(world.Difference().toStdString(), "");
    EXPECT_EQ(world.given, due);
    EXPECT_GT(world.model.alarms, days);
    EXPECT_GT(world.model.warnings, days / 2);
}

} // namespace
