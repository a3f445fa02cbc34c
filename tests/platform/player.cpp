// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SoundPlayer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMetaObject>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>
#include <thread>

namespace {

void Say(const std::string& line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

void Obey(SoundPlayer& player, const std::string& line)
{
    const std::string command = line.substr(0, line.find(' '));
    const QString value = QString::fromStdString(line.substr(std::min(command.size() + 1, line.size())));
    if (command == "play") {
        QElapsedTimer timer;
        timer.start();
        player.SetUrl(value);
        Say("returned " + std::to_string(timer.elapsed()));
    } else if (command == "volume") {
        player.SetVolume(value.toInt());
        Say("volume " + std::to_string(player.Volume()));
    } else if (command == "stop") {
        player.Stop();
    } else if (command == "end") {
        QCoreApplication::exit(0);
    }
}

} // namespace

// A player without windows. It obeys "play PATH", "volume NUMBER", "stop" and "end", a line each on the
// standard input, and tells the volume, the milliseconds in which a sound was set, and each stop.
int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    QObject receiver;
    SoundPlayer player;
    player.SetPlayStateHandler([](int state) { Say("state " + std::to_string(state)); });
    std::thread([&] {
        std::string line;
        while (std::getline(std::cin, line)) {
            if (!line.empty() && line.back() == '\r') {
                line.pop_back();
            }
            QMetaObject::invokeMethod(&receiver, [&player, line] { Obey(player, line); });
        }
        QMetaObject::invokeMethod(&receiver, [] { QCoreApplication::exit(1); });
    }).detach();
    Say("volume " + std::to_string(player.Volume()));
    Say("ready");
    return QCoreApplication::exec();
}
