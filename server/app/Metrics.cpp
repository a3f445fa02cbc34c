// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Metrics.h"

#include "http/HttpFigures.h"
#include "messages/SenderFigures.h"
#include "protocol/MessageScripts.h"
#include "protocol/RequestLimits.h"

#include <prometheus/metric_family.h>
#include <prometheus/text_serializer.h>

#include <atomic>
#include <cstdint>
#include <vector>

namespace beacond {

namespace {

using prometheus::ClientMetric;
using prometheus::MetricFamily;
using prometheus::MetricType;

struct Labelled
{
    std::string value;
    const std::atomic<std::uint64_t>& count;
};

// A family of counters that differ in one label; an empty name means no label.
MetricFamily Family(const char* name, const char* help, MetricType type, const char* label,
                    const std::vector<Labelled>& counts)
{
    MetricFamily family;
    family.name = name;
    family.help = help;
    family.type = type;
    for (const Labelled& entry : counts) {
        ClientMetric metric;
        if (*label != '\0') {
            metric.label.push_back({label, entry.value});
        }
        const auto count = static_cast<double>(entry.count.load(std::memory_order_relaxed));
        metric.counter.value = count;
        metric.gauge.value = count;
        family.metric.push_back(metric);
    }
    return family;
}

MetricFamily FamilyOfKinds(const char* name, const char* help, const LimitFigures::Counts& counts)
{
    std::vector<Labelled> labelled;
    for (std::size_t kind = 0; kind < counts.size(); ++kind) {
        labelled.push_back({std::string(kRequestKindNames[kind]), counts[kind]});
    }
    return Family(name, help, MetricType::Counter, "kind", labelled);
}

} // namespace

std::string MetricsText(const HttpFigures& http, const MessageFigures& messages, const LimitFigures& limits)
{
    constexpr auto kCounter = MetricType::Counter;
    const std::vector<MetricFamily> families = {
        Family(kOpenConnectionsMetric, "Open connections.", MetricType::Gauge, "",
               {{"", http.connectionsOpen}}),
        Family("beacond_connections_accepted_total", "Connections accepted.", kCounter, "",
               {{"", http.connectionsAccepted}}),
        Family("beacond_connections_refused_total", "Connections refused, by the limit that they exceeded.",
               kCounter, "limit", {{"total", http.refusedByTotal}, {"address", http.refusedByAddress}}),
        Family("beacond_accept_errors_total", "Failures to accept a connection.", kCounter, "",
               {{"", http.acceptErrors}}),
        Family("beacond_replies_total", "Replies, by the first digit of their status.", kCounter, "status",
               {{"1xx", http.replies[1]},
                {"2xx", http.replies[2]},
                {"3xx", http.replies[3]},
                {"4xx", http.replies[4]},
                {"5xx", http.replies[5]}}),
        Family("beacond_requests_refused_total", "Requests malformed or too large.", kCounter, "",
               {{"", http.requestsRefused}}),
        Family("beacond_handler_failures_total", "Requests whose answer failed unexpectedly.", kCounter, "",
               {{"", http.handlerFailures}}),
        Family("beacond_worker_failures_total", "Failures of a thread outside an answer.", kCounter, "",
               {{"", http.workerFailures}}),
        Family("beacond_unlisted_proxy_requests_total",
               "Requests forwarded by a local address that is not in http.proxies.", kCounter, "",
               {{"", http.unlistedProxies}}),
        Family("beacond_unreadable_forwards_total",
               "Requests of an address in http.proxies without a readable X-Forwarded-For.", kCounter, "",
               {{"", http.unreadableForwards}}),
        FamilyOfKinds("beacond_refused_by_installation_total",
                      "Requests refused since their installation exceeded its rate limit.",
                      limits.byInstallation),
        FamilyOfKinds("beacond_refused_by_network_total",
                      "Requests refused since their network exceeded its rate limit.", limits.byNetwork),
        FamilyOfKinds("beacond_refused_by_load_total", "Requests refused since the service is overloaded.",
                      limits.byLoad),
        Family("beacond_timeouts_total", "Connections ended by a time limit.", kCounter, "phase",
               {{"header", http.headerTimeouts},
                {"body", http.bodyTimeouts},
                {"idle", http.idleTimeouts},
                {"write", http.writeTimeouts}}),
        Family("beacond_texts_total", "Texts that prayer calls asked for.", kCounter, "outcome",
               {{"queued", messages.textsQueued}, {"missed", messages.textsMissed}}),
        Family("beacond_codes_total", "Personal codes that were tried.", kCounter, "outcome",
               {{"confirmed", messages.codesConfirmed},
                {"wrong", messages.codesWrong},
                {"expired", messages.codesExpired},
                {"limited", messages.codesLimited}}),
    };
    return prometheus::TextSerializer().Serialize(families);
}

std::string SendingMetricsText(const SenderFigures& sender, const std::vector<ChannelMetrics>& channels)
{
    constexpr auto kCounter = MetricType::Counter;
    constexpr auto kGauge = MetricType::Gauge;
    std::vector<Labelled> accepted;
    std::vector<Labelled> failed;
    std::vector<Labelled> refused;
    std::vector<Labelled> inARow;
    for (const auto& [name, figures] : channels) {
        accepted.push_back({name, figures.accepted});
        failed.push_back({name, figures.failed});
        refused.push_back({name, figures.refused});
        inARow.push_back({name, figures.failuresInARow});
    }
    const std::vector<MetricFamily> families = {
        Family("beacond_outbox_texts", "Texts in the outbox.", kGauge, "state",
               {{"waiting", sender.waiting}, {"leased", sender.leased}}),
        Family("beacond_outbox_uncertain_texts", "Texts in the outbox that the provider may already have.",
               kGauge, "", {{"", sender.uncertainNow}}),
        Family("beacond_outbox_oldest_seconds", "Age of the oldest text in the outbox.", kGauge, "",
               {{"", sender.oldestSeconds}}),
        Family("beacond_texts_ended_total", "Texts that have left the outbox.", kCounter, "outcome",
               {{"sent", sender.sent},
                {"refused", sender.refused},
                {"given_up", sender.givenUp},
                {"capped", sender.capped}}),
        Family("beacond_text_attempts_repeated_total", "Attempts after the first one of a text.", kCounter,
               "", {{"", sender.retried}}),
        Family("beacond_text_attempts_uncertain_total",
               "Attempts after which the provider may have the text: the receipt is missing.", kCounter, "",
               {{"", sender.uncertain}}),
        Family("beacond_texts_doubled_total",
               "Attempts for a text that the provider may already have: at most these arrive twice.",
               kCounter, "", {{"", sender.doubled}}),
        Family("beacond_spend_today", "Charged to this day (UTC), in the unit of messages.spend_per_day.",
               kGauge, "", {{"", sender.spentToday}}),
        Family("beacond_spend_reached", "1 while messages.spend_per_day holds texts back.", kGauge, "",
               {{"", sender.isSpendReached}}),
        Family("beacond_channel_accepted_total", "Texts that the provider has confirmed.", kCounter,
               "channel", accepted),
        Family("beacond_channel_failures_total", "Attempts without a confirmation.", kCounter, "channel",
               failed),
        Family("beacond_channel_refused_total", "Texts that the provider has refused for good.", kCounter,
               "channel", refused),
        Family("beacond_channel_failures_in_a_row",
               "Attempts without a confirmation since the last one with it.", kGauge, "channel", inARow),
    };
    return prometheus::TextSerializer().Serialize(families);
}

} // namespace beacond
