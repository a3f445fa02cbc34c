// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "protocol/StartCounter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(StartCounter, take_returnsTheStartsSinceTheLastCall)
{
    StartCounter counter;
    counter.Add(20'000, "SA", "other");
    counter.Add(20'000, "SA", "other");
    counter.Add(20'000, "DE", "mosque", 5);

    EXPECT_THAT(counter.Drain(),
                ElementsAre(StartCount{20'000, "DE", "mosque", 5}, StartCount{20'000, "SA", "other", 2}));
    EXPECT_THAT(counter.Drain(), IsEmpty());
}
