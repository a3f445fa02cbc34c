// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "secrets/Keys.h"

#include "server/AsNobody.h"
#include "server/ErrorOf.h"
#include "server/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <fstream>

using namespace beacond;

namespace {

namespace fs = std::filesystem;

/// Kilobytes of this process that are never swapped out.
int LockedMemory()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    int kilobytes = 0;
    while (status >> word && word != "VmLck:") {
    }
    status >> kilobytes;
    return kilobytes;
}

} // namespace

TEST(Keys, fromFolder_createsTheKeysOnceForTheirOwnerOnly)
{
    const TemporaryFolder folder;
    const std::string keys = folder.File("keys");
    const std::string sealed = Keys::FromFolder(keys).address.Seal("someone@example.org");

    EXPECT_EQ(Keys::FromFolder(keys).address.Unseal(sealed), "someone@example.org");
    for (const char* const name : {"identifier.key", "address.key", "index.key", "lookup.key"}) {
        EXPECT_EQ(fs::file_size(fs::path(keys) / name), Key::kBytes) << name;
        EXPECT_EQ(fs::status(fs::path(keys) / name).permissions(),
                  fs::perms::owner_read | fs::perms::owner_write);
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(keys), fs::directory_iterator()), 4);
}

TEST(Keys, fromFolder_ofAnEarlierVersion_looksUpWithItsIndexKey)
{
    const TemporaryFolder folder;
    const fs::path keys = folder.File("keys");
    const std::string hash = Keys::FromFolder(keys).index.Hash("installation", "pc");
    fs::remove(keys / "lookup.key");

    EXPECT_EQ(Keys::FromFolder(keys).lookup.Hash("installation", "pc"), hash);
    EXPECT_EQ(Keys::FromExistingFolder(keys).lookup.Hash("installation", "pc"), hash);
}

TEST(Keys, fromExistingFolder_missingKey_isRefusedAndNotMade)
{
    const TemporaryFolder folder;
    const fs::path keys = folder.File("keys");
    (void)Keys::FromFolder(keys);
    fs::remove(keys / "index.key");

    EXPECT_EQ(ErrorOf<KeyError>([&] { return Keys::FromExistingFolder(keys); }),
              (keys / "index.key").string() + ": No such file or directory");
    EXPECT_FALSE(fs::exists(keys / "index.key"));
}

TEST(Keys, fromFile_anotherLength_isRefusedAndKept)
{
    const TemporaryFolder folder;
    for (const std::size_t length : {0U, 31U, 33U}) {
        const std::string file = folder.File("key" + std::to_string(length));
        std::ofstream(file) << std::string(length, 'k');
        fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);

        EXPECT_EQ(ErrorOf<KeyError>([&] { return Key::FromFile(file); }), file + ": not a key of 32 bytes");
        EXPECT_EQ(fs::file_size(file), length);
    }
}

TEST(Key, unseal_anyByteChanged_isRefused)
{
    const TemporaryFolder folder;
    const Key key = Key::FromFile(folder.File("key"));
    const std::string sealed = key.Seal("text");
    for (std::size_t i = 0; i < sealed.size(); ++i) {
        std::string changed = sealed;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        EXPECT_THROW((void)key.Unseal(changed), KeyError) << i;
    }
    EXPECT_THROW((void)key.Unseal(""), KeyError);
    EXPECT_THROW((void)Key::FromFile(folder.File("another")).Unseal(sealed), KeyError);
}

TEST(Key, seal_sameTextTwice_differs)
{
    const TemporaryFolder folder;
    const Key key = Key::FromFile(folder.File("key"));
    EXPECT_NE(key.Seal("text"), key.Seal("text"));
}

TEST(Key, hash_dependsOnKeyPurposeAndText)
{
    const TemporaryFolder folder;
    const Key key = Key::FromFile(folder.File("key"));
    const std::string hash = key.Hash("code", "1234");

    EXPECT_EQ(hash.size(), 32U);
    EXPECT_EQ(key.Hash("code", "1234"), hash);
    EXPECT_NE(key.Hash("address", "1234"), hash);
    EXPECT_NE(key.Hash("code", "1235"), hash);
    EXPECT_NE(Key::FromFile(folder.File("another")).Hash("code", "1234"), hash);
}

TEST(Key, fromFile_notARegularFile_isRefused)
{
    const TemporaryFolder folder;
    (void)Key::FromFile(folder.File("key"));
    fs::create_symlink(folder.File("key"), folder.File("link"));
    ASSERT_EQ(::mkfifo(folder.File("pipe").c_str(), 0600), 0);

    for (const char* const name : {"link", "pipe"}) {
        const std::string file = folder.File(name);
        EXPECT_EQ(ErrorOf<KeyError>([&] { return Key::FromExistingFile(file); }),
                  file + ": not a regular file");
    }
}

TEST(Key, fromFile_ofAnotherAccount_isRefused)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the administrator gives files away";
    }
    const TemporaryFolder folder;
    const std::string file = folder.File("key");
    (void)Key::FromFile(file);
    ASSERT_EQ(::chown(file.c_str(), AsNobody::kAccount, 0), 0);

    EXPECT_EQ(ErrorOf<KeyError>([&] { return Key::FromExistingFile(file); }), file + ": of another account");
    ASSERT_EQ(::chown(folder.File("").c_str(), AsNobody::kAccount, 0), 0);
    const AsNobody nobody;
    EXPECT_EQ(ErrorOf<KeyError>([&] { return Key::FromExistingFile(file); }), "");
}

TEST(Key, inMemory_isNotSwappedOut)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the address sanitizer lets nothing be locked";
#endif
    rlimit limit = {};
    ASSERT_EQ(::getrlimit(RLIMIT_MEMLOCK, &limit), 0);
    if (limit.rlim_cur < 64 * 1024) {
        GTEST_SKIP() << "the system lets this process lock no memory";
    }
    const TemporaryFolder folder;
    const int before = LockedMemory();
    const Key key = Key::FromFile(folder.File("key"));
    EXPECT_GT(LockedMemory(), before);
}
