// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "secrets/InstallationIdentifier.h"

#include "secrets/Keys.h"

#include <sodium.h>

namespace beacond {

namespace {

constexpr char kKeyVersion = 1;
constexpr std::size_t kRandomBytes = 13;
constexpr std::size_t kSignedBytes = 1 + 2 + kRandomBytes;
constexpr std::size_t kHashBytes = 8;
constexpr std::size_t kBytes = kSignedBytes + kHashBytes;
constexpr int kBase64 = sodium_base64_VARIANT_URLSAFE_NO_PADDING;

std::string HashOf(const Key& key, std::string_view signedBytes)
{
    return key.Hash("installation id", signedBytes).substr(0, kHashBytes);
}

} // namespace

std::string MakeInstallationIdentifier(const Key& key, std::int32_t day)
{
    std::string bytes = {kKeyVersion, static_cast<char>(day & 0xFF), static_cast<char>((day >> 8) & 0xFF)};
    bytes += RandomBytes(kRandomBytes);
    bytes += HashOf(key, bytes);
    // The length includes the NUL after the text.
    std::string text(sodium_base64_ENCODED_LEN(kBytes, kBase64), '\0');
    sodium_bin2base64(text.data(), text.size(), reinterpret_cast<const unsigned char*>(bytes.data()),
                      bytes.size(), kBase64);
    text.pop_back();
    return text;
}

std::optional<std::int32_t> DayOfInstallationIdentifier(const Key& key, std::string_view identifier)
{
    std::string bytes(kBytes, '\0');
    std::size_t length = 0;
    const char* end = nullptr;
    if (sodium_base642bin(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size(), identifier.data(),
                          identifier.size(), nullptr, &length, &end, kBase64) != 0 ||
        length != kBytes || end != identifier.data() + identifier.size() || bytes[0] != kKeyVersion) {
        return std::nullopt;
    }
    const std::string hash = HashOf(key, std::string_view(bytes).substr(0, kSignedBytes));
    if (sodium_memcmp(hash.data(), bytes.data() + kSignedBytes, kHashBytes) != 0) {
        return std::nullopt;
    }
    return static_cast<unsigned char>(bytes[1]) | (static_cast<unsigned char>(bytes[2]) << 8);
}

} // namespace beacond
