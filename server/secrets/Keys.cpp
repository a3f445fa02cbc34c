// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "secrets/Keys.h"

#include "support/DurableFile.h"

#include <fcntl.h>
#include <sodium.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace beacond {

namespace {

const unsigned char* Bytes(std::string_view text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

unsigned char* Bytes(std::string& text)
{
    return reinterpret_cast<unsigned char*>(text.data());
}

void RequireSodium()
{
    if (sodium_init() < 0) {
        throw KeyError("libsodium can't be initialised");
    }
}

[[noreturn]] void Fail(const std::filesystem::path& file)
{
    throw KeyError(file.string() + ": " + std::strerror(errno));
}

class Descriptor final
{
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0) {
            ::close(m_number);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int Number() const { return m_number; }

private:
    int m_number;
};

// Written under another name, then linked to its final one: a crash leaves no partial key, and of two
// services that start at once one creates the key and both read it.
void MakeKeyFile(const std::filesystem::path& file)
{
    std::array<unsigned char, Key::kBytes> bytes{};
    randombytes_buf(bytes.data(), bytes.size());
    std::string name = file.string() + ".XXXXXX";
    const Descriptor temporary(::mkostemp(name.data(), O_CLOEXEC));
    if (temporary.Number() < 0) {
        Fail(file);
    }
    const std::string_view content(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const bool isWritten = WriteAll(temporary.Number(), content) && ::fsync(temporary.Number()) == 0;
    sodium_memzero(bytes.data(), bytes.size());
    const bool isLinked = isWritten && (::link(name.c_str(), file.c_str()) == 0 || errno == EEXIST);
    const int reason = errno;
    ::unlink(name.c_str());
    if (!isLinked) {
        errno = reason;
        Fail(file);
    }
    if (!SyncFolder(file.parent_path())) {
        Fail(file);
    }
}

// An earlier version hashed with the index key all that the lookup key hashes.
void MakeLookupKey(const std::filesystem::path& lookup, const std::filesystem::path& index)
{
    if (std::filesystem::exists(lookup)) {
        return;
    }
    if (!std::filesystem::exists(index)) {
        MakeKeyFile(lookup);
    } else if ((::link(index.c_str(), lookup.c_str()) != 0 && errno != EEXIST) ||
               !SyncFolder(lookup.parent_path())) {
        Fail(lookup);
    }
}

} // namespace

Key::Key(const std::array<unsigned char, kBytes>& bytes)
{
    RequireSodium();
    const std::shared_ptr<unsigned char> pages(static_cast<unsigned char*>(sodium_malloc(kBytes)),
                                               &sodium_free);
    if (!pages) {
        throw KeyError("no memory for a key");
    }
    std::memcpy(pages.get(), bytes.data(), kBytes);
    m_bytes = pages;
}

Key Key::FromFile(const std::filesystem::path& file)
{
    if (!std::filesystem::exists(file)) {
        MakeKeyFile(file);
    }
    return FromExistingFile(file);
}

Key Key::FromExistingFile(const std::filesystem::path& file)
{
    RequireSodium();
    // Without O_NONBLOCK, opening a FIFO would wait for a writer.
    const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status = {};
    const bool isOpen = descriptor.Number() >= 0 && ::fstat(descriptor.Number(), &status) == 0;
    if (!isOpen && errno != ELOOP) {
        Fail(file);
    }
    if (!isOpen || !S_ISREG(status.st_mode)) {
        throw KeyError(file.string() + ": not a regular file");
    }
    if (status.st_uid != ::geteuid() && status.st_uid != 0) {
        throw KeyError(file.string() + ": of another account");
    }
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        throw KeyError(file.string() + ": readable by others than its owner; run chmod 600 on it");
    }
    // One byte more than a key, so that a longer file is detected.
    std::array<unsigned char, kBytes + 1> read{};
    const ssize_t count = ::read(descriptor.Number(), read.data(), read.size());
    if (count != static_cast<ssize_t>(kBytes)) {
        throw KeyError(file.string() + ": not a key of 32 bytes");
    }
    std::array<unsigned char, kBytes> bytes{};
    std::memcpy(bytes.data(), read.data(), kBytes);
    Key key(bytes);
    sodium_memzero(read.data(), read.size());
    sodium_memzero(bytes.data(), bytes.size());
    return key;
}

std::string Key::Hash(std::string_view purpose, std::string_view text) const
{
    std::array<unsigned char, crypto_generichash_blake2b_PERSONALBYTES> personal{};
    std::memcpy(personal.data(), purpose.data(), std::min(purpose.size(), personal.size()));
    std::string hash(crypto_generichash_BYTES, '\0');
    crypto_generichash_blake2b_salt_personal(Bytes(hash), hash.size(), Bytes(text), text.size(),
                                             m_bytes.get(), kBytes, nullptr, personal.data());
    return hash;
}

std::string Key::Seal(std::string_view text) const
{
    std::string sealed = RandomBytes(crypto_aead_xchacha20poly1305_ietf_NPUBBYTES);
    const std::size_t head = sealed.size();
    sealed.resize(head + text.size() + crypto_aead_xchacha20poly1305_ietf_ABYTES);
    crypto_aead_xchacha20poly1305_ietf_encrypt(Bytes(sealed) + head, nullptr, Bytes(text), text.size(),
                                               nullptr, 0, nullptr, Bytes(sealed), m_bytes.get());
    return sealed;
}

std::string Key::Unseal(std::string_view sealed) const
{
    constexpr std::size_t kHead = crypto_aead_xchacha20poly1305_ietf_NPUBBYTES;
    constexpr std::size_t kTag = crypto_aead_xchacha20poly1305_ietf_ABYTES;
    if (sealed.size() < kHead + kTag) {
        throw KeyError("a sealed text is too short");
    }
    std::string text(sealed.size() - kHead - kTag, '\0');
    if (crypto_aead_xchacha20poly1305_ietf_decrypt(Bytes(text), nullptr, nullptr, Bytes(sealed) + kHead,
                                                   sealed.size() - kHead, nullptr, 0, Bytes(sealed),
                                                   m_bytes.get()) != 0) {
        throw KeyError("a sealed text was sealed with another key, or is damaged");
    }
    return text;
}

Keys Keys::FromFolder(const std::filesystem::path& folder)
{
    if (const std::error_code error = MakePrivateFolder(folder)) {
        throw KeyError(folder.string() + ": " + error.message());
    }
    const auto& [identifier, address, index, lookup] = kFileNames;
    // First of all: it must be new in a new folder only.
    MakeLookupKey(folder / lookup, folder / index);
    return {Key::FromFile(folder / identifier), Key::FromFile(folder / address),
            Key::FromFile(folder / index), Key::FromExistingFile(folder / lookup)};
}

Keys Keys::FromExistingFolder(const std::filesystem::path& folder)
{
    const auto& [identifier, address, index, lookup] = kFileNames;
    for (const char* const name : {identifier, address, index}) {
        (void)Key::FromExistingFile(folder / name);
    }
    return FromFolder(folder);
}

std::string RandomBytes(std::size_t count)
{
    RequireSodium();
    std::string bytes(count, '\0');
    randombytes_buf(bytes.data(), bytes.size());
    return bytes;
}

std::uint32_t RandomBelow(std::uint32_t limit)
{
    RequireSodium();
    return randombytes_uniform(limit);
}

} // namespace beacond
