// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

namespace {

struct BadFile
{
    const char* name;
    const char* text;
};

class FrmAlertsFile : public DialogTest
{
};

class FrmAlertsBadFile : public DialogTest, public testing::WithParamInterface<BadFile>
{
protected:
    static void Spoil()
    {
        if (GetParam().text == nullptr) {
            ASSERT_TRUE(QFile::remove(QStringLiteral("settings.xml")));
        } else {
            WriteSettings(QString::fromUtf8(GetParam().text));
        }
    }
    static QByteArray Spoilt() { return {GetParam().text}; }
};

} // namespace

TEST_P(FrmAlertsBadFile, beforeOpening_showsTheDefaults)
{
    Spoil();
    Open();
    ASSERT_TRUE(IsOpen());
    EXPECT_TRUE(IsTicked("OptISNA"));
    EXPECT_TRUE(IsTicked("OptHanafi"));
    EXPECT_TRUE(IsTicked("Opt12Hour"));
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
    EXPECT_EQ(ReadSettings(), Spoilt());
    EXPECT_EQ(QFile::exists(QStringLiteral("settings.xml")), GetParam().text != nullptr);
    dialog->close();
    ExpectHandedOver();
}

TEST_P(FrmAlertsBadFile, userAnglesChosen_closesTheDialog)
{
    Open();
    Spoil();
    Click("OptSetByUser");
    ExpectHandedOver();
    EXPECT_EQ(ReadSettings(), Spoilt());
}

INSTANTIATE_TEST_SUITE_P(Files, FrmAlertsBadFile,
                         testing::Values(BadFile{"missing", nullptr}, BadFile{"empty", ""},
                                         BadFile{"damaged", "<root><alerts method="},
                                         BadFile{"noise", "not a document"}),
                         [](const auto& row) { return std::string(row.param.name); });

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

TEST_F(FrmAlertsFile, fileThatCantBeWritten_losesTheChangeWithoutAWord)
{
    Open();
    files.refuses = true;
    Click("OptMWL");
    Click("OptHanafi");
    EXPECT_TRUE(IsOpen());
    EXPECT_TRUE(IsTicked("OptMWL"));
    EXPECT_EQ(Stored(QStringLiteral("method")), QStringLiteral("ISNA"));
    Click("CmdClose");
    ExpectHandedOver();
}
