// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CurlHttp.h"

#include <QCoreApplication>
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

void Obey(Http& http, const std::string& line)
{
    const std::string command = line.substr(0, line.find(' '));
    const QString url = QString::fromStdString(line.substr(std::min(command.size() + 1, line.size())));
    if (command == "fetch") {
        const Http::Reply reply = http.Fetch(url, HttpLimits());
        Say(reply ? "reply " + reply->toHex().toStdString() : "failed");
    } else if (command == "reach") {
        Say(http.Reach(url) ? "reached" : "failed");
    } else if (command == "end") {
        QCoreApplication::exit(0);
    }
}

} // namespace

// Sends requests without windows: fetcher [CERTIFICATES]. It obeys "fetch URL", "reach URL" and "end", a line
// each on the standard input, and tells each reply in hexadecimal digits.
int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    CurlHttp http(QCoreApplication::arguments().value(1).toUtf8());
    QObject receiver;
    std::thread([&] {
        std::string line;
        while (std::getline(std::cin, line)) {
            if (!line.empty() && line.back() == '\r') {
                line.pop_back();
            }
            QMetaObject::invokeMethod(&receiver, [&http, line] { Obey(http, line); });
        }
        QMetaObject::invokeMethod(&receiver, [] { QCoreApplication::exit(1); });
    }).detach();
    Say("ready");
    return QCoreApplication::exec();
}
