// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzTarget.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// Feeds each file of a folder to the target once: the corpus as an ordinary test, with any compiler.
int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::fputs("usage: replay FOLDER\n", stderr);
        return 2;
    }
    if (LLVMFuzzerInitialize != nullptr) {
        LLVMFuzzerInitialize(&argc, &argv);
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& path : files) {
        std::printf("%s\n", path.c_str());
        std::fflush(stdout);
        std::ifstream file(path, std::ios::binary);
        if (!file) {
            std::fputs("it can't be read\n", stderr);
            return 1;
        }
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("figure: corpus %s: %zu inputs\n",
                std::filesystem::path(argv[1]).lexically_normal().filename().c_str(), files.size());
    return files.empty() ? 1 : 0;
}
