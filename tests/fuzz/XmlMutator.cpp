// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

// libFuzzer's own mutation, and the one that it asks for instead.
extern "C" {
std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                    unsigned int seed);
}

namespace {

using Span = std::pair<std::size_t, std::size_t>;

/// Where the values between double quotes begin and end.
std::vector<Span> Values(const std::string& text)
{
    std::vector<Span> values;
    std::size_t begin = text.find("=\"");
    while (begin != std::string::npos) {
        begin += 2;
        const std::size_t end = text.find('"', begin);
        if (end == std::string::npos) {
            break;
        }
        values.emplace_back(begin, end);
        begin = text.find("=\"", end);
    }
    return values;
}

std::string Mutated(std::string value)
{
    constexpr std::size_t kRoom = 64;
    const std::size_t size = value.size();
    value.resize(size + kRoom);
    value.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(value.data()), size, value.size()));
    // Erase characters that a value can't contain, so that the document still loads.
    std::erase_if(value, [](char c) { return c == '"' || c == '<' || (c >= '\0' && c < ' '); });
    return value;
}

} // namespace

// A byte changed anywhere mostly makes a document that does not load. Usually change a value instead.
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, unsigned int seed)
{
    std::minstd_rand random(seed);
    std::string text(reinterpret_cast<const char*>(data), size);
    const std::vector<Span> values = Values(text);
    if (values.empty() || random() % 3 == 0) {
        return LLVMFuzzerMutate(data, size, most);
    }
    const auto& [begin, end] = values[random() % values.size()];
    text.replace(begin, end - begin, Mutated(text.substr(begin, end - begin)));
    if (text.size() > most) {
        return LLVMFuzzerMutate(data, size, most);
    }
    std::copy(text.begin(), text.end(), data);
    return text.size();
}
