// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "secrets/KeyFolder.h"

#include "server/ErrorOf.h"
#include "server/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <map>

using namespace beacond;

namespace {

namespace fs = std::filesystem;
using For = KeyFolderLock::For;
using Checks = std::map<std::string, std::string>;

Checks ChecksOf(const Keys& keys)
{
    return {{"identifier.key", keys.identifier.CheckHash()},
            {"address.key", keys.address.CheckHash()},
            {"index.key", keys.index.CheckHash()},
            {"lookup.key", keys.lookup.CheckHash()}};
}

} // namespace

TEST(KeyFolderLock, replacing_excludesEveryOtherProcess)
{
    const TemporaryFolder folder;
    const std::string keys = folder.File("keys");
    {
        const KeyFolderLock first(keys, For::Using);
        const KeyFolderLock second(keys, For::Using);
        EXPECT_EQ(ErrorOf<KeyError>([&] { const KeyFolderLock lock(keys, For::Replacing); }),
                  keys + ": the keys are in use; stop the service first");
    }
    const KeyFolderLock replacing(keys, For::Replacing);
    EXPECT_EQ(ErrorOf<KeyError>([&] { const KeyFolderLock lock(keys, For::Using); }),
              keys + ": the keys are being replaced; try again in a minute");
}

TEST(KeyFolder, useRecordedKeys_afterAnyStep_leavesTheKeysOfTheStore)
{
    const struct
    {
        const char* name;
        bool isStoreChanged;
        int renamed;
    } rows[] = {{"only the files are written", false, 0},
                {"the store is changed", true, 0},
                {"the first file is renamed", true, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TemporaryFolder folder;
        const fs::path keys = folder.File("keys");
        const Checks former = ChecksOf(Keys::FromFolder(keys));
        EXPECT_FALSE(HasNewKeys(keys));
        const Checks next = ChecksOf(WriteNewKeys(keys));
        EXPECT_TRUE(HasNewKeys(keys));
        EXPECT_EQ(ChecksOf(Keys::FromFolder(keys)), former);
        for (int i = 0; i < row.renamed; ++i) {
            const std::string name = kReplaceableKeys.at(static_cast<std::size_t>(i));
            fs::rename(keys / (name + ".new"), keys / name);
        }
        const Checks& recorded = row.isStoreChanged ? next : former;
        UseRecordedKeys(keys, [&recorded](const char* name) { return recorded.at(name); });

        EXPECT_EQ(ChecksOf(Keys::FromFolder(keys)), recorded);
        EXPECT_FALSE(HasNewKeys(keys));
        for (const char* const name : kReplaceableKeys) {
            EXPECT_NE(former.at(name), next.at(name));
        }
        EXPECT_EQ(former.at("identifier.key"), next.at("identifier.key"));
        EXPECT_EQ(former.at("lookup.key"), next.at("lookup.key"));
    }
}
