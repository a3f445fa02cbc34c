// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

/// While it lives no thread can start in this process: there is no memory for its stack.
class NoThreads final
{
public:
    NoThreads()
    {
        ::pthread_getattr_default_np(&m_before);
        pthread_attr_t attributes{};
        ::pthread_attr_init(&attributes);
        EXPECT_EQ(::pthread_attr_setstacksize(&attributes, std::size_t{1} << 47U), 0);
        EXPECT_EQ(::pthread_setattr_default_np(&attributes), 0);
        ::pthread_attr_destroy(&attributes);
    }
    ~NoThreads()
    {
        EXPECT_EQ(::pthread_setattr_default_np(&m_before), 0);
        ::pthread_attr_destroy(&m_before);
    }
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;

private:
    pthread_attr_t m_before{};
};
