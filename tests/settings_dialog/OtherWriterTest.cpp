// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

namespace {

/// A control that writes, and the attribute, its element and the value that it leaves.
struct Writer
{
    const char* control;
    std::int16_t tab;
    const char* attribute;
    const char* element;
    const char* value;
};

void PrintTo(const Writer& row, std::ostream* stream)
{
    *stream << row.control;
}

class OtherWriterTest : public DialogTest, public testing::WithParamInterface<Writer>
{
protected:
    void Change() const
    {
        const Writer& row = GetParam();
        const QByteArray control = row.control;
        if (control == "VScroll1") {
            ClickArrow(row.control, false);
        } else if (control.startsWith("Txt")) {
            Paste(row.control, QString::fromUtf8(row.value));
        } else {
            Click(row.control);
        }
    }
};

} // namespace

TEST_P(OtherWriterTest, change_keepsWhatSomebodyElseHasWrittenMeanwhile)
{
    WriteChanged(QStringLiteral("useAdvWarn=\"false\""), QStringLiteral("useAdvWarn=\"true\""));
    Open(GetParam().tab);
    WriteSettings(QString::fromUtf8(ReadSettings())
                      .replace(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"Makkah\"")));
    platform.boxes.answers = {true};
    Change();
    EXPECT_EQ(Saves(), 1U);
    EXPECT_TRUE(ReadSettings().contains("Current=\"Makkah\""));
    EXPECT_EQ(Stored(QString::fromUtf8(GetParam().attribute), GetParam().element),
              QString::fromUtf8(GetParam().value));
}

INSTANTIATE_TEST_SUITE_P(Controls, OtherWriterTest,
                         testing::Values(Writer{"OptMWL", 1, "method", "", "Muslim World League"},
                                         Writer{"OptHanafi", 1, "asrMethode", "", "hanafi"},
                                         Writer{"Opt12Hour", 1, "hourmode", "", "12"},
                                         Writer{"ChkDLS", 1, "useDLS", "", "true"},
                                         Writer{"ChkAdvWarn", 1, "useAdvWarn", "", "false"},
                                         Writer{"VScroll1", 1, "advWarn", "", "9"},
                                         Writer{"ChkMobilEnable", 2, "mobileEnabled", "", "true"},
                                         Writer{"TxtMDID", 2, "mobileDID", "", "D1"},
                                         Writer{"TxtPC", 2, "mobilePC", "", "P1"},
                                         Writer{"LblReset", 2, "mobileConfirm", "", "0"},
                                         Writer{"ChkAlertMain", 3, "enabled", "fajr", "false"},
                                         Writer{"ChkSilAlert", 3, "popup", "fajr", "false"},
                                         Writer{"ChkAudioAlert", 3, "play", "fajr", "true"},
                                         Writer{"TxtPath", 3, "audioFile", "fajr", "a.mp3"}),
                         [](const auto& row) { return std::string(row.param.control); });
