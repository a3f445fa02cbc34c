// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CurlHttp.h"
#include "platform/QtClock.h"
#include "platform/QtDesktop.h"
#include "platform/QtPlatform.h"
#include "platform/QtTrayIcon.h"
#include "platform/SoundPlayer.h"
#include "platform/SystemFileStore.h"

struct QtPlatform::Implementations
{
    QtClock clock;
    QtTimers timers{clock};
    SystemFileStore files;
    CurlHttp http;
    SoundPlayer player;
    QtTrayIcon tray;
    QtMessageBoxes boxes;
    QtBrowser browser;
    QtRegionalSettings region;
    QtProcess process;
    Platform platform{clock, timers, files, http, player, tray, boxes, browser, region, process};
};

QtPlatform::QtPlatform()
    : m_implementations(std::make_unique<Implementations>())
{
}

QtPlatform::~QtPlatform() = default;

const Platform& QtPlatform::GetPlatform() const
{
    return m_implementations->platform;
}
