// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>

class DialogContext;

/// The labels along the top of the settings dialog that switch its pages; they stay on all of them.
class TabRow final
{
public:
    /// @param select is given the number of the page that was asked for
    TabRow(DialogContext& context, const std::function<void(std::int16_t)>& select);
};
