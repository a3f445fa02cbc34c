// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Base64.h"

#include <cstdint>

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kUrlAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";

std::string Encode(std::string_view bytes, std::string_view alphabet)
{
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    std::uint32_t bits = 0;
    unsigned count = 0;
    for (const char byte : bytes) {
        bits = (bits << 8) | static_cast<unsigned char>(byte);
        for (count += 8; count >= 6; count -= 6) {
            text += alphabet[(bits >> (count - 6)) & 63];
        }
    }
    if (count > 0) {
        text += alphabet[(bits << (6 - count)) & 63];
    }
    return text;
}

// The text comes without padding.
std::optional<std::string> Decode(std::string_view text, std::string_view alphabet)
{
    std::string bytes;
    bytes.reserve(text.size() * 3 / 4);
    std::uint32_t bits = 0;
    unsigned count = 0;
    for (const char character : text) {
        const std::size_t value = alphabet.find(character);
        if (value == std::string_view::npos) {
            return std::nullopt;
        }
        bits = (bits << 6) | static_cast<std::uint32_t>(value);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>((bits >> count) & 0xFF);
        }
    }
    // A lone last character holds no byte, and the bits that are left over are 0 in what Encode makes.
    if (count >= 6 || (bits & ((1U << count) - 1)) != 0) {
        return std::nullopt;
    }
    return bytes;
}

} // namespace

namespace beacond {

std::string EncodeBase64(std::string_view bytes)
{
    std::string text = Encode(bytes, kAlphabet);
    text.append((4 - text.size() % 4) % 4, '=');
    return text;
}

std::optional<std::string> DecodeBase64(std::string_view text)
{
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    // At most two: a third one is no character of the alphabet and is refused as such.
    for (int i = 0; i < 2 && text.ends_with('='); ++i) {
        text.remove_suffix(1);
    }
    return Decode(text, kAlphabet);
}

std::string EncodeBase64Url(std::string_view bytes)
{
    return Encode(bytes, kUrlAlphabet);
}

std::optional<std::string> DecodeBase64Url(std::string_view text)
{
    return Decode(text, kUrlAlphabet);
}

} // namespace beacond
