// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SavedDocument.h"
#include "platform/SystemFileStore.h"

#include <chrono>
#include <cstdio>

// Saves numbered documents to the file of its argument until it is killed. Prints the duration of the first
// save in microseconds.
int main(int argc, char* argv[])
{
    if (argc != 2) {
        return 2;
    }
    SystemFileStore files;
    const QString path = QString::fromLocal8Bit(argv[1]);
    const auto start = std::chrono::steady_clock::now();
    for (int number = 1;; ++number) {
        if (!files.Replace(path, SavedDocument(number))) {
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
