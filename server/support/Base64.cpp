// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Base64.h"

#include <cstdint>

namespace beacond {

std::string EncodeBase64(std::string_view bytes)
{
    constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    std::uint32_t bits = 0;
    unsigned count = 0;
    for (const char byte : bytes) {
        bits = (bits << 8) | static_cast<unsigned char>(byte);
        for (count += 8; count >= 6; count -= 6) {
            text += kAlphabet[(bits >> (count - 6)) & 63];
        }
    }
    if (count > 0) {
        text += kAlphabet[(bits << (6 - count)) & 63];
    }
    text.append((4 - text.size() % 4) % 4, '=');
    return text;
}

} // namespace beacond
