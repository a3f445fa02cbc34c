// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

/// Runs without root's rights: root may write everywhere.
class AsNobody final
{
public:
    static constexpr uid_t kAccount = 65'534;

    AsNobody() { EXPECT_EQ(::geteuid() == 0 ? ::seteuid(kAccount) : 0, 0); }
    ~AsNobody() { EXPECT_EQ(::seteuid(m_before), 0); }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;

private:
    uid_t m_before = ::geteuid();
};
