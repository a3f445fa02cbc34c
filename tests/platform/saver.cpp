// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PosixFileStore.h"

#include <QString>

#include <chrono>
#include <cstdio>

namespace {

constexpr int kPlaces = 80;

// A document of realistic size that differs for each number.
QByteArray Document(int number)
{
    const QByteArray text = QByteArray::number(number);
    QByteArray document = "<root number=\"" + text + "\">\n";
    for (int i = 0; i < kPlaces; ++i) {
        document += "  <place city=\"" + text + "\" latitude_final=\"41.85\" longitude_final=\"-87.65\"/>\n";
    }
    return document + "</root>\n";
}

} // namespace

// Saves numbered documents to the file of its argument until it is killed. Prints the duration of the first
// save in microseconds.
int main(int argc, char* argv[])
{
    if (argc != 2) {
        return 2;
    }
    PosixFileStore files;
    const QString path = QString::fromLocal8Bit(argv[1]);
    const auto start = std::chrono::steady_clock::now();
    for (int number = 1;; ++number) {
        if (!files.Replace(path, Document(number))) {
            return 1;
        }
        if (number == 1) {
            const auto taken = std::chrono::steady_clock::now() - start;
            const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(taken).count();
            std::printf("%lld\n", static_cast<long long>(microseconds));
            std::fflush(stdout);
        }
    }
}
