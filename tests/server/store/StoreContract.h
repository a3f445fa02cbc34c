// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "server/TemporaryFolder.h"
#include "store/SqliteStore.h"

#include <gtest/gtest.h>

inline constexpr std::int64_t kHour = 3600;

/// The contract of a Store.
class StoreContract : public testing::Test
{
protected:
    static beacond::Signup SignupOf(const std::string& address, const std::string& code)
    {
        return {"mail",  "sealed " + address, "index " + address, code, 1800, "form", "texts at prayer times",
                "domain"};
    }
    /// Returns the number of the device; 0 for a refusal.
    std::int64_t SignUp(const std::string& address, const std::string& code)
    {
        return store.SignUp(SignupOf(address, code), {}).device;
    }
    /// Signs up the address and confirms its code. Returns the number of the device.
    std::int64_t Register(const std::string& address, const std::string& code,
                          const std::string& installation)
    {
        const std::int64_t device = SignUp(address, code);
        EXPECT_EQ(store.Confirm(code, installation), beacond::Confirmation::Confirmed);
        return device;
    }

    TemporaryFolder folder;
    /// The system's clock is set, while no time passes.
    void StepClock(std::int64_t seconds)
    {
        now += seconds;
        steps += seconds;
    }

    std::int64_t now = 1'800'000'000;
    std::int64_t steps = 0; ///< of the system's clock, in all
    beacond::SqliteStore store{folder.File("store.db"), [this] { return now; },
                               [this] { return now - steps; }};
};
