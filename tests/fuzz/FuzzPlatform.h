// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/FakePlatform.h"
#include "fuzz/MemoryFiles.h"

/// Fakes behind every door, the files in memory: a folder on the disk would cost more than all else that an
/// input does.
class FuzzPlatform final
{
public:
    FuzzPlatform() = default;
    FuzzPlatform(const FuzzPlatform&) = delete;
    FuzzPlatform& operator=(const FuzzPlatform&) = delete;

    FakeClock clock;
    FakeTimers timers;
    MemoryFiles files;
    FakeHttp http;
    FakePlayer player;
    FakeTray tray;
    FakeMessageBoxes boxes;
    FakeBrowser browser;
    FakeRegion region;
    FakeProcess process;
    Platform doors{clock, timers, files, http, player, tray, boxes, browser, region, process};
    DomDocuments documents{files, http};
};
