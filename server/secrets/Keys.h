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

/// Failure to read, make or use a key file; the text names the file and the reason.
class KeyError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// 256 secret bits in a file of its own, readable by its owner alone. In memory they lie in pages that are
/// neither swapped out, where the system allows it, nor dumped; copies share them, and the last one wipes
/// them.
class Key final
{
public:
    static constexpr std::size_t kBytes = 32;

    /// Reads the file; makes it with random bits if there is none. Throws KeyError.
    static Key FromFile(const std::filesystem::path& file);
    /// Throws KeyError if there is none, or if it is no regular file of this account or the administrator.
    [[nodiscard]] static Key FromExistingFile(const std::filesystem::path& file);
    explicit Key(const std::array<unsigned char, kBytes>& bytes);

    /// Keyed BLAKE2b, 32 bytes. Uses of one key are kept apart by @p purpose, of at most 16 bytes.
    [[nodiscard]] std::string Hash(std::string_view purpose, std::string_view text) const;
    /// Identifies the key without revealing it.
    [[nodiscard]] std::string CheckHash() const { return Hash("check", ""); }
    /// Encrypted and authenticated with a random nonce in front (XChaCha20-Poly1305).
    [[nodiscard]] std::string Seal(std::string_view text) const;
    /// Throws KeyError if @p sealed was not sealed with this key.
    [[nodiscard]] std::string Unseal(std::string_view sealed) const;

private:
    std::shared_ptr<const unsigned char> m_bytes;
};

/// The keys of the service. Each lies in a file of its own and in no backup.
struct Keys
{
    static constexpr std::array kFileNames = {"identifier.key", "address.key", "index.key"};

    /// Reads or makes the three files in @p folder, which is made if it is missing. Throws KeyError.
    static Keys FromFolder(const std::filesystem::path& folder);

    Key identifier; ///< signs the identifiers of installations
    Key address;    ///< seals the addresses of devices
    Key index;      ///< hashes addresses, codes and identifiers, so that they are found without being stored
};

/// @p count random bytes that cannot be guessed.
[[nodiscard]] std::string RandomBytes(std::size_t count);
/// An even choice from 0 to @p limit - 1.
[[nodiscard]] std::uint32_t RandomBelow(std::uint32_t limit);

} // namespace beacond
