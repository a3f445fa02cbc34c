// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class Browser;
class Clock;
class FileStore;
class Http;
class MediaPlayer;
class MessageBoxes;
class Process;
class RegionalSettings;
class Timers;
class TrayIcon;

/// The interfaces to everything that the operating system, the desktop and the network supply.
struct Platform
{
    Clock& clock;
    Timers& timers;
    FileStore& files;
    Http& http;
    MediaPlayer& player;
    TrayIcon& tray;
    MessageBoxes& boxes;
    Browser& browser;
    RegionalSettings& region;
    Process& process;
};
