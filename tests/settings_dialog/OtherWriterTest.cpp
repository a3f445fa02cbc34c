// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

using OtherWriterTest = DialogTest;

TEST_F(OtherWriterTest, change_fileChangedMeanwhile_keepsTheOtherChange)
{
    // A control that writes, and the attribute, its element and the value that it leaves.
    const struct
    {
        const char* control;
        std::int16_t tab;
        const char* attribute;
        const char* element;
        const char* value;
    } rows[] = {
        {"OptMWL", 1, "method", "", "Muslim World League"},
        {"OptHanafi", 1, "asrMethode", "", "hanafi"},
        {"Opt12Hour", 1, "hourmode", "", "12"},
        {"ChkDLS", 1, "useDLS", "", "true"},
        {"ChkAdvWarn", 1, "useAdvWarn", "", "false"},
        {"VScroll1", 1, "advWarn", "", "9"},
        {"ChkMobilEnable", 2, "mobileEnabled", "", "true"},
        {"TxtMDID", 2, "mobileDID", "", "D1"},
        {"TxtPC", 2, "mobilePC", "", "P1"},
        {"LblReset", 2, "mobileConfirm", "", "0"},
        {"ChkAlertMain", 3, "enabled", "fajr", "false"},
        {"ChkSilAlert", 3, "popup", "fajr", "false"},
        {"ChkAudioAlert", 3, "play", "fajr", "true"},
        {"TxtPath", 3, "audioFile", "fajr", "a.mp3"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.control);
        WriteChanged("useAdvWarn=\"false\"", "useAdvWarn=\"true\"");
        Open(row.tab);
        WriteSettings(
            QString::fromUtf8(ReadSettings())
                .replace(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"Makkah\"")));
        platform.boxes.answers = {true};
        if (qstrcmp(row.control, "VScroll1") == 0) {
            ClickArrow(row.control, false);
        } else if (qstrncmp(row.control, "Txt", 3) == 0) {
            Paste(row.control, QString::fromUtf8(row.value));
        } else {
            Click(row.control);
        }
        EXPECT_EQ(Saves(), 1U);
        EXPECT_TRUE(ReadSettings().contains("Current=\"Makkah\""));
        EXPECT_EQ(Stored(row.attribute, row.element), QString::fromUtf8(row.value));
        dialog->Unload();
    }
}
