// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RoadMetrics.h"

#include "messages/Roads.h"

#include <string_view>

namespace beacond {

namespace {

void AppendHead(std::string& text, std::string_view name, std::string_view help)
{
    (text += "# HELP ").append(name) += ' ';
    (text += help) += "\n# TYPE ";
    text.append(name) += " counter\n";
}

void AppendCount(std::string& text, std::string_view name, std::string_view outcome,
                 const std::atomic<std::uint64_t>& count)
{
    text.append(name).append("{outcome=\"").append(outcome).append("\"} ");
    text += std::to_string(count.load(std::memory_order_relaxed)) + '\n';
}

void AppendFigure(std::string& text, std::string_view name, std::string_view help, std::string_view type,
                  std::uint64_t figure)
{
    (text += "# HELP ").append(name) += ' ';
    (text += help) += "\n# TYPE ";
    text.append(name).append(" ").append(type) += '\n';
    text.append(name) += ' ' + std::to_string(figure) + '\n';
}

} // namespace

std::string RoadMetricsText(const Signups::Figures& signups, const RoadFigures& roads,
                            const Hooks::Counts& hooks, std::uint64_t answersWaiting)
{
    std::string text;
    constexpr std::string_view kSignups = "beacond_signups_total";
    AppendHead(text, kSignups, "Sign-ups and texts of persons, by the form and by all roads.");
    for (std::size_t i = 0; i < signups.size(); ++i) {
        AppendCount(text, kSignups, Signups::kOutcomeNames[i], signups[i]);
    }
    constexpr std::string_view kFiles = "beacond_incoming_files_total";
    AppendHead(text, kFiles, "Mails and text messages in the watched folders.");
    AppendCount(text, kFiles, "handled", roads.handled);
    AppendCount(text, kFiles, "without_sender", roads.withoutSender);
    AppendCount(text, kFiles, "automatic", roads.automatic);
    AppendCount(text, kFiles, "not_authenticated", roads.notAuthenticated);
    AppendCount(text, kFiles, "without_wish", roads.withoutWish);
    AppendCount(text, kFiles, "delayed", roads.delayed);
    AppendCount(text, kFiles, "abandoned", roads.abandoned);
    constexpr std::string_view kHooks = "beacond_hook_posts_total";
    AppendHead(text, kHooks, "Text messages posted by providers.");
    for (std::size_t i = 0; i < hooks.size(); ++i) {
        AppendCount(text, kHooks, Hooks::kResultNames[i], hooks[i]);
    }
    AppendFigure(text, "beacond_incoming_files_set_aside_total", "Files that were not for the service.",
                 "counter", roads.setAside);
    AppendFigure(text, "beacond_incoming_files_waiting", "Files in the watched folders.", "gauge",
                 roads.waiting);
    AppendFigure(text, "beacond_signup_messages_waiting", "Answers to sign-ups that wait for a channel.",
                 "gauge", answersWaiting);
    return text;
}

} // namespace beacond
