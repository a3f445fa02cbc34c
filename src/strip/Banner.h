// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A page that is safe to lay out in the strip.
struct Banner
{
    /// Well-formed; pictures are named "image:0", "image:1" and so on.
    std::string html;
    /// The addresses of the pictures: http, https or data.
    std::vector<std::string> images;
};

/// Keeps the elements that banners use (text styles, colours, tables, lists, links, pictures) and removes all
/// others: scripts, frames, forms, addresses with other schemes, sizes too large for the strip. Returns
/// nothing for a page that would take longer than about 50 milliseconds to lay out. The time is linear in the
/// length of the page.
/// @param page UTF-8
[[nodiscard]] std::optional<Banner> CleanBanner(std::string_view page);
