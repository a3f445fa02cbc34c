// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/PictureBytes.h"

#include "platform/ProcessorTime.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

constexpr int kLimit = 200;

void TakeMilliseconds(double wanted)
{
    const double end = ProcessorMilliseconds() + wanted;
    while (ProcessorMilliseconds() < end) {
    }
}

TEST(PictureBytes, timeOfItsThread_isLimited)
{
    PictureBytes bytes("GIF89a");
    bytes.LimitTime(kLimit);
    TakeMilliseconds(kLimit + 1);
    EXPECT_EQ(bytes.read(1), "");
    EXPECT_TRUE(bytes.IsOverdue());
    bytes.LimitTime(kLimit);
    EXPECT_EQ(bytes.read(1), "G");
    EXPECT_FALSE(bytes.IsOverdue());
}

// A sound or a request, for example, takes its time on another thread.
TEST(PictureBytes, timeOfAnotherThread_doesNotCount)
{
    PictureBytes bytes("GIF89a");
    bytes.LimitTime(kLimit);
    std::thread([] { TakeMilliseconds(kLimit + 1); }).join();
    EXPECT_EQ(bytes.read(1), "G");
    EXPECT_FALSE(bytes.IsOverdue());
}

} // namespace
