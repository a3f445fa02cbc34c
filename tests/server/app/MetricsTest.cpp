// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Metrics.h"

#include "http/HttpFigures.h"
#include "protocol/MessageScripts.h"
#include "protocol/RequestLimits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using testing::HasSubstr;

TEST(Metrics, refusedRequests_areCountedByKindAndReason)
{
    const HttpFigures http;
    const MessageFigures messages;
    LimitFigures limits;
    limits.byInstallation[static_cast<std::size_t>(RequestKind::Search)] = 1;
    limits.byNetwork[static_cast<std::size_t>(RequestKind::Page)] = 2;
    limits.byLoad[static_cast<std::size_t>(RequestKind::Version)] = 3;

    const std::string text = MetricsText(http, messages, limits);
    EXPECT_THAT(text, HasSubstr("beacond_refused_by_installation_total{kind=\"search\"} 1\n"));
    EXPECT_THAT(text, HasSubstr("beacond_refused_by_network_total{kind=\"page\"} 2\n"));
    EXPECT_THAT(text, HasSubstr("beacond_refused_by_load_total{kind=\"version\"} 3\n"));
    EXPECT_THAT(text, HasSubstr("beacond_refused_by_load_total{kind=\"strip\"} 0\n"));
}
