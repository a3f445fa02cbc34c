// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/CurlHttp.h"
#include "platform/GStreamerPlayer.h"
#include "platform/Platform.h"
#include "platform/PosixFileStore.h"
#include "platform/QtClock.h"
#include "platform/QtDesktop.h"
#include "platform/QtTrayIcon.h"

/// The production implementation of each interface.
class QtPlatform final
{
public:
    [[nodiscard]] const Platform& GetPlatform() const { return m_platform; }

private:
    QtClock m_clock;
    QtTimers m_timers{m_clock};
    PosixFileStore m_files;
    CurlHttp m_http;
    GStreamerPlayer m_player;
    QtTrayIcon m_tray;
    QtMessageBoxes m_boxes;
    QtBrowser m_browser;
    QtRegionalSettings m_region;
    QtProcess m_process;
    Platform m_platform{m_clock, m_timers, m_files,   m_http,   m_player,
                        m_tray,  m_boxes,  m_browser, m_region, m_process};
};
