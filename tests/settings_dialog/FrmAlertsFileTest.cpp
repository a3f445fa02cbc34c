// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

namespace {

/// A settings.xml that is missing, empty or no document.
class FrmAlertsBadFile : public DialogTest, public testing::WithParamInterface<const char*>
{
protected:
    static void Spoil()
    {
        WriteSettings(QLatin1String(GetParam()));
        if (IsMissing()) {
            ASSERT_TRUE(QFile::remove(QStringLiteral("settings.xml")));
        }
    }
    static bool IsMissing() { return qstrcmp(GetParam(), "missing") == 0; }
    static void ExpectSpoilt()
    {
        EXPECT_EQ(ReadSettings(), IsMissing() ? QByteArray() : QByteArray(GetParam()));
        EXPECT_EQ(QFile::exists(QStringLiteral("settings.xml")), !IsMissing());
    }
};

using FrmAlertsFile = DialogTest;

} // namespace

TEST_P(FrmAlertsBadFile, beforeOpening_showsTheDefaults)
{
    Spoil();
    Open();
    ASSERT_TRUE(IsOpen());
    for (const char* const name : {"OptISNA", "OptHanafi", "Opt12Hour"}) {
        EXPECT_TRUE(IsTicked(name)) << name;
    }
    EXPECT_FALSE(IsTicked("ChkDLS"));
    EXPECT_FALSE(IsTicked("ChkAdvWarn"));
    for (std::int16_t tab = 2; tab <= 8; ++tab) {
        dialog->SelectTab(tab);
    }
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(Saves(), 0U);
}

TEST_P(FrmAlertsBadFile, whileOpen_changesAreLostAndTheFileStaysAsItIs)
{
    Open();
    Spoil();
    Click("OptMWL");
    Click("ChkDLS");
    Click("ChkAdvWarn");
    ClickArrow("VScroll1", false);
    dialog->SelectTab(3);
    EXPECT_TRUE(IsOpen());
    Click("ChkAlertMain");
    dialog->SelectTab(2);
    Paste("TxtPC", QStringLiteral("55"));
    EXPECT_TRUE(IsOpen());
    ExpectSpoilt();
    dialog->close();
    ExpectHandedOver();
}

TEST_P(FrmAlertsBadFile, userAnglesChosen_closesTheDialog)
{
    Open();
    Spoil();
    Click("OptSetByUser");
    ExpectHandedOver();
    ExpectSpoilt();
}

INSTANTIATE_TEST_SUITE_P(Files, FrmAlertsBadFile,
                         testing::Values("missing", "", "<root><alerts method=", "not a document"));

TEST_F(FrmAlertsFile, fileWithoutAlerts_takesNoChange)
{
    WriteSettings(QStringLiteral("<root><app/></root>"));
    Open();
    Click("OptMWL");
    EXPECT_TRUE(IsOpen());
    EXPECT_FALSE(ReadSettings().contains("alerts"));
    dialog->SelectTab(3);
    Click("ChkAlertMain");
    EXPECT_TRUE(IsOpen());
    EXPECT_FALSE(ReadSettings().contains("fajr"));
}

TEST_F(FrmAlertsFile, fileThatCantBeWritten_losesTheChange_showsNoMessage)
{
    Open();
    files.refuses = true;
    Click("OptMWL");
    Click("OptHanafi");
    EXPECT_TRUE(IsOpen());
    EXPECT_TRUE(IsTicked("OptMWL"));
    EXPECT_EQ(Stored("method"), u"ISNA");
    Click("CmdClose");
    ExpectHandedOver();
}
