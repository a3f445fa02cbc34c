// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"
#include "forms/Form.h"
#include "support/RuntimeError.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace {

TEST(Guard, fatalBox_exactWords_thenTheEnd)
{
    FakePlatform platform;
    for (int number = 1; number <= 7; ++number) {
        platform.boxes.boxes.clear();
        platform.boxes.whileOpen = [&] { EXPECT_EQ(platform.process.ended, number - 1) << "first the box"; };
        EndWithFatalBox(platform.interfaces, number);
        EXPECT_EQ(platform.boxes.boxes, std::vector{FakeMessageBoxes::Fatal(number)});
        EXPECT_EQ(platform.process.ended, number);
    }
}

TEST(Guard, handlerThatEndsWell_isLeftAlone)
{
    FakePlatform platform;
    int calls = 0;
    RunGuarded(platform.interfaces, [&calls] { ++calls; });
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_EQ(platform.process.ended, 0);
}

TEST(Guard, errorThatNobodyCaught_isShown_andEndsTheProgram)
{
    FakePlatform platform;
    RunGuarded(platform.interfaces, [] { throw std::runtime_error("broken"); });
    EXPECT_EQ(platform.boxes.boxes,
              std::vector{FakeMessageBoxes::Message(QStringLiteral("Run-time error '51':\r\n\r\nbroken"))});
    EXPECT_EQ(platform.process.ended, 1);
}

TEST(Guard, eachKindOfError_isShownUnderItsNumber)
{
    constexpr std::pair<int, int> kRows[] = {{ErrorNumber::kInvalidCall, 5},
                                             {ErrorNumber::kOverflow, 6},
                                             {ErrorNumber::kSubscript, 9},
                                             {ErrorNumber::kDivisionByZero, 11},
                                             {ErrorNumber::kTypeMismatch, 13},
                                             {ErrorNumber::kLibraryNotFound, 53},
                                             {ErrorNumber::kObjectNotSet, 91},
                                             {ErrorNumber::kFormUnloaded, 364},
                                             {ErrorNumber::kInvalidPropertyValue, 380},
                                             {ErrorNumber::kFunctionNotFound, 453},
                                             {ErrorNumber::kConfiguration, 2002}};
    for (const auto& [error, number] : kRows) {
        FakePlatform platform;
        RunGuarded(platform.interfaces,
                   [kind = error] { throw RuntimeError(kind, QStringLiteral("It failed")); });
        EXPECT_EQ(platform.boxes.boxes,
                  std::vector{FakeMessageBoxes::Message(
                      QStringLiteral("Run-time error '%1':\r\n\r\nIt failed").arg(number))});
        EXPECT_EQ(platform.process.ended, 1);
    }
}

} // namespace
