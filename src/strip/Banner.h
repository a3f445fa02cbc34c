// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A page in the form in which the strip may lay it out.
struct Banner
{
    /// Well-formed; pictures are named "image:0", "image:1" and so on.
    std::string html;
    /// The addresses of the pictures: http, https or data.
    std::vector<std::string> images;
};

/// Keeps the elements that banners are made of (text styles, colours, tables, lists, links, pictures) and
/// leaves out all else: scripts, frames, forms, addresses of other kinds, sizes that no strip has. Answers
/// nothing for a page that would take longer than about 50 milliseconds to lay out; the time of the answer is
/// linear in the page.
/// @param page UTF-8
[[nodiscard]] std::optional<Banner> CleanBanner(std::string_view page);
