// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace beacond {

/// A key file could not be read, created or used; the text names the file and the reason.
class KeyError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// 256 secret bits in a separate file, readable only by its owner. In memory the bits are in pages that are
/// excluded from core dumps and, where the system allows it, from swapping; copies share the pages, and the
/// last copy wipes them.
class Key final
{
public:
    static constexpr std::size_t kBytes = 32;

    /// Reads the file; creates it with random bits if it is missing. Throws KeyError.
    static Key FromFile(const std::filesystem::path& file);
    /// Throws KeyError if the file is missing, or is not a regular file of this account or of root.
    [[nodiscard]] static Key FromExistingFile(const std::filesystem::path& file);
    explicit Key(const std::array<unsigned char, kBytes>& bytes);

    /// Keyed BLAKE2b, 32 bytes. @p purpose, at most 16 bytes, separates the uses of one key.
    [[nodiscard]] std::string Hash(std::string_view purpose, std::string_view text) const;
    /// Identifies the key without revealing it.
    [[nodiscard]] std::string CheckHash() const { return Hash("check", ""); }
    /// Encrypts and authenticates with XChaCha20-Poly1305; the random nonce precedes the result.
    [[nodiscard]] std::string Seal(std::string_view text) const;
    /// Throws KeyError if @p sealed was not sealed with this key.
    [[nodiscard]] std::string Unseal(std::string_view sealed) const;

private:
    std::shared_ptr<const unsigned char> m_bytes;
};

/// The keys of the service, each in a separate file that belongs in no backup of the store.
struct Keys
{
    static constexpr std::array kFileNames = {"identifier.key", "address.key", "index.key", "lookup.key"};

    /// Reads or creates the four files in @p folder, which is created if it is missing. Throws KeyError.
    static Keys FromFolder(const std::filesystem::path& folder);
    /// The same, but throws KeyError if one of the first three is missing.
    [[nodiscard]] static Keys FromExistingFolder(const std::filesystem::path& folder);

    Key identifier; ///< signs the identifiers of installations
    Key address;    ///< seals the addresses of devices
    Key index;      ///< hashes addresses: the store finds them without containing them
    /// Hashes codes, identifiers and blocked addresses. It can't be replaced, since the store has nothing
    /// from which to hash them again. In a folder of an earlier version it is the same key as index.
    Key lookup;
};

/// @p count random bytes that cannot be guessed.
[[nodiscard]] std::string RandomBytes(std::size_t count);
/// A uniformly distributed number from 0 to @p limit - 1.
[[nodiscard]] std::uint32_t RandomBelow(std::uint32_t limit);

} // namespace beacond
