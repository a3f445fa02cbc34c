// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Spool.h"

#include "server/AsNobody.h"
#include "server/ErrorOf.h"
#include "server/FileSizeLimit.h"
#include "server/Files.h"
#include "server/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using testing::EndsWith;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

TEST(Spool, send_writesOneWholeFileForItsOwnerOnly)
{
    const TemporaryFolder folder;
    const Spool spool(folder.File("a/spool"));
    spool.Send("someone@example.org", "Maghrib: 18:42");

    const std::vector<fs::path> files(fs::directory_iterator(folder.File("a/spool")),
                                      fs::directory_iterator());
    ASSERT_EQ(files.size(), 1U);
    EXPECT_THAT(files[0].string(), EndsWith(".txt"));
    EXPECT_EQ(fs::status(files[0]).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(folder.File("a/spool")).permissions(), fs::perms::owner_all);
    EXPECT_EQ(Read(files[0]), "To: someone@example.org\n\nMaghrib: 18:42\n");
}

TEST(Spool, start_removesOnlyUnfinishedFilesOfACrash)
{
    const TemporaryFolder folder;
    Spool(folder.File("spool")).Send("someone@example.org", "text");
    const std::string sent = fs::directory_iterator(folder.File("spool"))->path().filename().string();
    const std::string unfinished = sent.substr(0, sent.size() - std::string(".txt").size());
    for (const std::string& name : {unfinished, sent + ".taken", std::string("other")}) {
        Write(folder / "spool" / name, "To: ");
    }
    const Spool again(folder.File("spool"));

    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder.File("spool"))) {
        names.push_back(entry.path().filename().string());
    }
    EXPECT_THAT(names, UnorderedElementsAre(sent, sent + ".taken", "other"));
}

TEST(Spool, unusableFolder_isAnErrorWithItsPath)
{
    EXPECT_THROW(Spool("/proc/none/spool"), ChannelError);
    EXPECT_THROW(Spool("/proc"), ChannelError);

    const TemporaryFolder folder;
    const Spool spool(folder.File("spool"));
    fs::remove(folder.File("spool"));
    EXPECT_THAT(ErrorOf<ChannelError>([&] { return spool.Send("someone@example.org", "text"); }),
                StartsWith(folder.File("spool") + ": "));
}

TEST(Spool, send_writeThatFails_isAnErrorAndLeavesNothing)
{
    const TemporaryFolder folder;
    const Spool spool(folder.File("spool"));
    {
        const FileSizeLimit fullDisk(10);
        EXPECT_THROW(spool.Send("someone@example.org", "text"), ChannelError);
    }
    EXPECT_TRUE(fs::is_empty(folder.File("spool")));
}

TEST(Spool, send_folderThatCantBeSynced_handsTheMessageOverAndWarns)
{
    const TemporaryFolder folder;
    const Spool spool(folder.File("spool"));
    fs::permissions(folder / "", fs::perms(0755));
    // Files can be created in this folder, but the folder can't be opened.
    fs::permissions(folder / "spool", fs::perms(0333));
    {
        const AsNobody nobody;
        EXPECT_EQ(spool.Send("someone@example.org", "text"), folder.File("spool") + ": Permission denied");
    }
    fs::permissions(folder / "spool", fs::perms(0700));
    EXPECT_THAT(fs::directory_iterator(folder.File("spool"))->path().string(), EndsWith(".txt"));
}
