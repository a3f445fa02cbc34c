// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SoundPlayer.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gst/gst.h>
#include <gtest/gtest.h>

namespace {

// A separate test program: GStreamer looks for its plugins once in a process.
TEST(GStreamerPlayerWithoutPlugins, setUrl_isSilent_andOnlyStopIsReported)
{
    const QTemporaryDir folder;
    const QByteArray nowhere = folder.filePath(QStringLiteral("plugins")).toUtf8();
    for (const char* const where :
         {"GST_PLUGIN_PATH_1_0", "GST_PLUGIN_PATH", "GST_PLUGIN_SYSTEM_PATH_1_0", "GST_PLUGIN_SYSTEM_PATH"}) {
        qputenv(where, nowhere);
    }
    qputenv("GST_REGISTRY_1_0", folder.filePath(QStringLiteral("registry")).toUtf8());
    qputenv("XDG_STATE_HOME", folder.path().toUtf8());
    QFile file(folder.filePath(QStringLiteral("sound.wav")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("RIFF");
    file.close();

    int stopped = 0;
    SoundPlayer player;
    player.SetPlayStateHandler([&](int /*state*/) { ++stopped; });
    player.SetUrl(file.fileName());
    ASSERT_TRUE(QTest::qWaitFor([] { return gst_is_initialized() != FALSE; }));
    EXPECT_EQ(gst_element_factory_find("playbin"), nullptr) << "the plugins are still found";
    EXPECT_FALSE(QTest::qWaitFor([&] { return stopped > 0; }, 250));
    player.SetVolume(40);
    player.Stop();
    EXPECT_TRUE(QTest::qWaitFor([&] { return stopped == 1; }));
}

} // namespace
