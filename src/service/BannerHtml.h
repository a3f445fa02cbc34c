// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// A page in the form in which the strip may lay it out.
struct Banner
{
    /// Well-formed; pictures are named "image:0", "image:1" and so on.
    QString html;
    /// The addresses of the pictures: http, https or data.
    QStringList images;
};

/// Takes over what banners are made of (text styles, colours, tables, lists, links, pictures) and leaves out
/// all else: scripts, frames, forms, addresses of other kinds, sizes that no strip has. Answers nothing for a
/// page that would take longer than about 50 milliseconds to lay out; the time of the answer grows with the
/// length of the page alone.
[[nodiscard]] std::optional<Banner> CleanBanner(const QString& page);
