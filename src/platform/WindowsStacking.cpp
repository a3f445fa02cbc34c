// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Stacking.h"

#include <utility>

// The order is not needed: on Windows a window that is raised also becomes the active one, and an active main
// window passes the focus to its dialog, which raises that.

Stacking::Stacking(std::function<void()> changed)
    : m_changed(std::move(changed))
{
}

Stacking::~Stacking() = default;

void Stacking::Read() {}

bool Stacking::IsBelow(const QWidget& /*window*/, const QWidget& /*other*/) const
{
    return false;
}

bool Stacking::WasRaised(const QWidget& /*window*/, const QWidget& /*other*/) const
{
    return false;
}

bool Stacking::nativeEventFilter(const QByteArray& /*eventType*/, void* /*message*/, qintptr* /*result*/)
{
    return false;
}
