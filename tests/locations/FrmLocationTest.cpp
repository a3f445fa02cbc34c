// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/FrmLocation.h"

#include "locations/LocationsFixture.h"

#include <QFile>
#include <QLabel>

namespace {

const QString kListProblem = QStringLiteral("There was a problem retrieving list of locations.");
const QString kNotSet = QStringLiteral("Can not load setting for this area, location will not be changed.");

class FrmLocationTest : public LocationsFixture
{
protected:
    static ListBox& List(const Form& form) { return Find<ListBox>(form, "LstLocations"); }

    static void WriteChanged(const QString& from, const QString& to)
    {
        QString text = SettingsText();
        ASSERT_TRUE(text.contains(from));
        WriteSettings(text.replace(from, to));
    }
    /// One place less: Makkah goes.
    static void WriteOnePlace()
    {
        const QString text = SettingsText();
        const auto start = text.indexOf(QStringLiteral("<Makkah"));
        WriteSettings(text.left(start) + text.mid(text.indexOf(QStringLiteral("/>"), start) + 2));
    }
};

TEST_F(FrmLocationTest, window_hasItsTexts)
{
    const FrmLocation& window = OpenList();
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Dusk Beacon: Location"));
    EXPECT_EQ(Find<QLabel>(window, "Label7").text(), QStringLiteral("1. Select Loaction:"));
    EXPECT_EQ(Find<QLabel>(window, "Label8").text(), QStringLiteral("2. Select an action to take:"));
    EXPECT_EQ(Find<QPushButton>(window, "CmdSet").text(), QStringLiteral("Set Current"));
    EXPECT_EQ(Find<QPushButton>(window, "CmdDel").text(), QStringLiteral("Delete"));
    EXPECT_EQ(Find<LinkLabel>(window, "LblNewLocLink").text(), QStringLiteral("Get New Location"));
}

TEST_F(FrmLocationTest, load_listsThePlacesInTheOrderOfTheFile_currentSelected)
{
    const ListBox& list = List(OpenList());
    EXPECT_EQ(Lines(list),
              (QStringList{QStringLiteral("Chicago, Illinois"), QStringLiteral("Makkah, Saudi Arabia")}));
    EXPECT_EQ(list.ListIndex(), 0);
}

TEST_F(FrmLocationTest, load_currentThatNamesNoPlace_selectsNothing)
{
    for (const auto* current : {"Nowhere", "", "chicago"}) {
        WriteChanged(QStringLiteral("Current=\"Chicago\""),
                     QStringLiteral("Current=\"%1\"").arg(QLatin1String(current)));
        EXPECT_EQ(List(OpenList()).ListIndex(), -1) << current;
        forms.Unload(FrmLocation::kName);
    }
}

TEST_F(FrmLocationTest, load_twoPlacesOfOneName_readAsTheFirst_lastRowSelected)
{
    WriteChanged(QStringLiteral("<Makkah "), QStringLiteral("<Chicago "));
    const ListBox& list = List(OpenList());
    EXPECT_EQ(Lines(list),
              (QStringList{QStringLiteral("Chicago, Illinois"), QStringLiteral("Chicago, Illinois")}));
    EXPECT_EQ(list.ListIndex(), 1);
}

TEST_F(FrmLocationTest, load_commentAmongThePlaces_isARowWithoutText)
{
    WriteChanged(QStringLiteral("<Makkah "), QStringLiteral("<!-- east --><Makkah "));
    EXPECT_EQ(Lines(List(OpenList())), (QStringList{QStringLiteral("Chicago, Illinois"), QStringLiteral(", "),
                                                    QStringLiteral("Makkah, Saudi Arabia")}));
}

TEST_F(FrmLocationTest, load_twoThousandPlaces_showsThemAll)
{
    QString places;
    for (int i = 0; i < 2000; ++i) {
        places += QStringLiteral("<P%1 city=\"City %1\" state=\"State\"/>").arg(i);
    }
    WriteChanged(QStringLiteral("<Makkah "), places + QStringLiteral("<Makkah "));
    WriteSettings(QString::fromUtf8(ReadSettings())
                      .replace(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"P1500\"")));
    const ListBox& list = List(OpenList());
    EXPECT_EQ(list.count(), 2002);
    EXPECT_EQ(list.ListIndex(), 1501);
    EXPECT_TRUE(list.viewport()->rect().contains(list.visualItemRect(list.item(1501)))) << "scrolled there";
}

TEST_F(FrmLocationTest, load_unreadableFile_saysSoAndUnloadsItself)
{
    for (const auto* text : {"", "<root><locations>", "no xml"}) {
        WriteSettings(QLatin1String(text));
        main->Enable(false);
        try {
            forms.Touch<FrmLocation>();
            FAIL() << "must unload itself";
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.Number(), ErrorNumber::kFormUnloaded);
        }
        ExpectBoxes({Plain(kListProblem)});
        ExpectBackInMain();
    }
}

TEST_F(FrmLocationTest, load_failureBeyondTheList_hasItsOwnMessage)
{
    QFile::remove(kSettingsFile);
    main->paintsFail = 2;
    EXPECT_THROW(forms.Touch<FrmLocation>(), RuntimeError);
    ExpectBoxes({Plain(kListProblem), Plain(kListProblem),
                 Plain(QStringLiteral("There was a problem encountered while loading this form."))});
    ExpectBackInMain();
}

TEST_F(FrmLocationTest, close_repaintsEnablesAndNamesTheMainWindowInOrder)
{
    FrmLocation& window = OpenList();
    window.close();
    EXPECT_EQ(main->calls,
              (QStringList{QStringLiteral("PopLocation"), QStringLiteral("PopPrayerFrame"),
                           QStringLiteral("Enable"), QStringLiteral("TakeFocus while FrmLocation")}));
    ExpectBackInMain();
    ExpectBoxes({});
}

TEST_F(FrmLocationTest, close_overAHiddenMainWindow_isNoError)
{
    FrmLocation& window = OpenList();
    main->hide();
    window.close();
    ExpectBackInMain();
    ExpectBoxes({});
    EXPECT_EQ(platform.process.ended, 0);
}

TEST_F(FrmLocationTest, close_whileDisabled_isRefused)
{
    FrmLocation& window = OpenList();
    window.setEnabled(false);
    window.close();
    EXPECT_NE(forms.Loaded(FrmLocation::kName), nullptr);
}

TEST_F(FrmLocationTest, close_afterTheMainWindowIsGone_leavesItGone)
{
    FrmLocation& window = OpenList();
    forms.Unload(QStringLiteral("FrmMain"));
    window.close();
    EXPECT_EQ(forms.Loaded(QStringLiteral("FrmMain")), nullptr);
    EXPECT_EQ(forms.Loaded(FrmLocation::kName), nullptr);
    ExpectBoxes({});
}

TEST_F(FrmLocationTest, pointer_isAHandOverTheLinkOnly)
{
    FrmLocation& window = OpenList();
    MoveOver(Find<QWidget>(window, "LblNewLocLink"), QPoint(5, 5));
    EXPECT_EQ(window.cursor().shape(), Qt::PointingHandCursor);
    MoveOver(window, QPoint(3, 3));
    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(FrmLocationTest, set_writesTheSelectedKeyAndCloses)
{
    FrmLocation& window = OpenList();
    ClickRow(List(window), 1);
    ClickOn(window, "CmdSet");
    EXPECT_EQ(Current(), QStringLiteral("Makkah"));
    EXPECT_EQ(main->Variables().Settings.CityName, QStringLiteral("Makkah"));
    EXPECT_EQ(main->calls.first(), QStringLiteral("UpdateEverything"));
    ExpectBackInMain();
    ExpectBoxes({});
}

TEST_F(FrmLocationTest, set_placeThatCanNotBeLoaded_putsTheOldKeyBack)
{
    WriteChanged(QStringLiteral("latitude_final=\"21.42\""), QStringLiteral("latitude_final=\"north\""));
    FrmLocation& window = OpenList();
    ClickRow(List(window), 1);
    QString whileAsked;
    platform.boxes.whileOpen = [&] { whileAsked = Current(); };
    ClickOn(window, "CmdSet");
    EXPECT_EQ(whileAsked, QStringLiteral("Makkah")) << "the trial is live";
    ExpectBoxes({Plain(kNotSet)});
    EXPECT_EQ(Current(), QStringLiteral("Chicago"));
    EXPECT_EQ(main->Variables().Settings.CityName, QStringLiteral("Chicago"));
    ExpectBackInMain();
}

TEST_F(FrmLocationTest, set_oldKeyFailsToo_asksUntilTheMainWindowGoes)
{
    WriteChanged(QStringLiteral("useDLS=\"false\""), QStringLiteral("useDLS=\"maybe\""));
    FrmLocation& window = OpenList();
    platform.boxes.whileOpen = [this] {
        if (platform.boxes.boxes.size() == 5) {
            main->Unload();
        }
    };
    ClickOn(window, "CmdSet");
    ExpectBoxes({Plain(kNotSet), Plain(kNotSet), Plain(kNotSet), Plain(kNotSet), Plain(kNotSet)});
    EXPECT_EQ(forms.Loaded(FrmLocation::kName), nullptr) << "no message for ever once the program is left";
    EXPECT_EQ(Current(), QStringLiteral("Chicago"));
}

TEST_F(FrmLocationTest, set_damagedFile_isLeftAsItIs_andAsksUntilItIsWhole)
{
    FrmLocation& window = OpenList();
    WriteSettings(QStringLiteral("<root><locations Current=\"Chicago\""));
    const QByteArray damaged = ReadSettings();
    platform.boxes.whileOpen = [&] {
        EXPECT_EQ(ReadSettings(), damaged);
        if (platform.boxes.boxes.size() == 3) {
            WriteSettings();
        }
    };
    ClickOn(window, "CmdSet");
    ExpectBoxes({Plain(kNotSet), Plain(kNotSet), Plain(kNotSet)});
    EXPECT_EQ(Current(), QStringLiteral("Chicago"));
    ExpectBackInMain();
}

TEST_F(FrmLocationTest, set_nothingSelected_triesTheEmptyKey)
{
    WriteChanged(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"Nowhere\""));
    FrmLocation& window = OpenList();
    QStringList tried;
    platform.boxes.whileOpen = [&] {
        tried << Current();
        if (tried.size() == 2) {
            main->Unload();
        }
    };
    ClickOn(window, "CmdSet");
    EXPECT_EQ(tried, (QStringList{QString(), QStringLiteral("Nowhere")}));
}

TEST_F(FrmLocationTest, set_failureBeyondTheTrial_isTheListProblem)
{
    FrmLocation& window = OpenList();
    main->paintsFail = 1;
    ClickOn(window, "CmdSet");
    ExpectBoxes({Plain(kListProblem)});
    ExpectBackInMain();
}

TEST_F(FrmLocationTest, doubleClick_onALine_setsIt)
{
    FrmLocation& window = OpenList();
    ListBox& list = List(window);
    DoubleClick(list, list.visualItemRect(list.item(1)).center());
    EXPECT_EQ(Current(), QStringLiteral("Makkah"));
    ExpectBackInMain();
}

TEST_F(FrmLocationTest, doubleClick_belowTheLines_setsTheSelectedOne)
{
    FrmLocation& window = OpenList();
    ListBox& list = List(window);
    ClickRow(list, 1);
    DoubleClick(list, list.viewport()->rect().bottomRight() - QPoint(10, 10));
    EXPECT_EQ(Current(), QStringLiteral("Makkah"));
    ExpectBackInMain();
}

TEST_F(FrmLocationTest, delete_no_changesNothing)
{
    FrmLocation& window = OpenList();
    const QByteArray before = ReadSettings();
    ClickOn(window, "CmdDel");
    ExpectBoxes({Question(QStringLiteral("Are you sure you want to remove: Chicago, Illinois"))});
    EXPECT_EQ(ReadSettings(), before);
    EXPECT_EQ(List(window).count(), 2);
}

TEST_F(FrmLocationTest, delete_otherPlace_keepsTheCurrentOne)
{
    FrmLocation& window = OpenList();
    ClickRow(List(window), 1);
    platform.boxes.answers = {true};
    ClickOn(window, "CmdDel");
    ExpectBoxes({Question(QStringLiteral("Are you sure you want to remove: Makkah, Saudi Arabia"))});
    EXPECT_EQ(Lines(List(window)), QStringList{QStringLiteral("Chicago, Illinois")});
    EXPECT_EQ(List(window).ListIndex(), 0);
    EXPECT_EQ(Current(), QStringLiteral("Chicago"));
    EXPECT_TRUE(main->calls.isEmpty()) << "nothing is calculated anew";
}

TEST_F(FrmLocationTest, delete_currentPlace_makesTheFirstOneCurrent_theMainWindowKeepsTheOld)
{
    WriteChanged(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"Makkah\""));
    main->UpdateEverything();
    FrmLocation& window = OpenList();
    platform.boxes.answers = {true};
    ClickOn(window, "CmdDel");
    EXPECT_EQ(Current(), QStringLiteral("Chicago"));
    EXPECT_EQ(List(window).ListIndex(), 0);
    window.close();
    EXPECT_EQ(main->Variables().Settings.CityName, QStringLiteral("Makkah"));
    EXPECT_FALSE(main->calls.contains(QStringLiteral("UpdateEverything")));
}

TEST_F(FrmLocationTest, delete_currentPlaceOfThree_theFirstOfTheFileBecomesCurrent)
{
    const QString place = QStringLiteral("<%1 city=\"%1\" state=\"s\"/>");
    const auto write = [&](const QStringList& keys) {
        QString text = SettingsText();
        const auto start = text.indexOf(QStringLiteral("<Chicago"));
        QString places;
        for (const QString& key : keys) {
            places += place.arg(key);
        }
        text.replace(start, text.indexOf(QStringLiteral("</locations>")) - start, places);
        WriteSettings(text.replace(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"C\"")));
    };
    write({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C"), QStringLiteral("D")});
    FrmLocation& window = OpenList();
    ASSERT_EQ(List(window).ListIndex(), 2);
    // Somebody else has put them into another order since.
    write({QStringLiteral("D"), QStringLiteral("A"), QStringLiteral("C"), QStringLiteral("B")});
    platform.boxes.answers = {true};
    ClickOn(window, "CmdDel");
    EXPECT_EQ(Current(), QStringLiteral("D")) << "neither the last one nor a neighbour nor the list's first";
    EXPECT_EQ(Lines(List(window)),
              (QStringList{QStringLiteral("D, s"), QStringLiteral("A, s"), QStringLiteral("B, s")}));
    EXPECT_EQ(List(window).ListIndex(), 0);
}

TEST_F(FrmLocationTest, delete_placeWithChildren_goesAsWell)
{
    WriteChanged(QStringLiteral("latitude_final=\"21.42\" time_zone2=\"3\"/>"),
                 QStringLiteral("time_zone2=\"3\"><note/></Makkah>"));
    FrmLocation& window = OpenList();
    ClickRow(List(window), 1);
    platform.boxes.answers = {true};
    ClickOn(window, "CmdDel");
    EXPECT_EQ(List(window).count(), 1);
}

TEST_F(FrmLocationTest, delete_lastPlace_isRefusedAfterTheQuestion)
{
    WriteOnePlace();
    FrmLocation& window = OpenList();
    const QByteArray before = ReadSettings();
    platform.boxes.answers = {true};
    ClickOn(window, "CmdDel");
    ExpectBoxes({Question(QStringLiteral("Are you sure you want to remove: Chicago, Illinois")),
                 Plain(QStringLiteral("Can not remove last location from list."))});
    EXPECT_EQ(ReadSettings(), before);
}

TEST_F(FrmLocationTest, delete_nothingSelected_asksAboutNothingAndDeletesNothing)
{
    WriteChanged(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"Nowhere\""));
    FrmLocation& window = OpenList();
    platform.boxes.answers = {true};
    ClickOn(window, "CmdDel");
    ExpectBoxes({Question(QStringLiteral("Are you sure you want to remove: "))});
    EXPECT_EQ(List(window).count(), 2);
    EXPECT_EQ(Current(), QStringLiteral("Nowhere"));
}

TEST_F(FrmLocationTest, delete_damagedFile_saysSoAndStays)
{
    FrmLocation& window = OpenList();
    WriteSettings(QStringLiteral("<root>"));
    platform.boxes.answers = {true};
    ClickOn(window, "CmdDel");
    ExpectBoxes({Question(QStringLiteral("Are you sure you want to remove: Chicago, Illinois")),
                 Plain(QStringLiteral("Could not change default location."))});
    EXPECT_EQ(ReadSettings(), QByteArray("<root>"));
    EXPECT_NE(forms.Loaded(FrmLocation::kName), nullptr);
}

TEST_F(FrmLocationTest, delete_placesGoneMeanwhile_isTheListProblem)
{
    FrmLocation& window = OpenList();
    WriteOnePlace();
    platform.boxes.answers = {true};
    ClickOn(window, "CmdDel");
    ExpectBoxes({Question(QStringLiteral("Are you sure you want to remove: Chicago, Illinois")),
                 Plain(kListProblem)});
    EXPECT_EQ(Current(), QStringLiteral("Chicago")) << "nothing was written";
    ExpectBackInMain();
}

TEST_F(FrmLocationTest, delete_fileThatCanNotBeWritten_keepsThePlaceQuietly)
{
    files.isLocked = true;
    FrmLocation& window = OpenList();
    ClickRow(List(window), 1);
    platform.boxes.answers = {true};
    ClickOn(window, "CmdDel");
    EXPECT_EQ(List(window).count(), 2);
    EXPECT_EQ(platform.boxes.boxes.size(), 1U) << "the question only";
}

TEST_F(FrmLocationTest, set_fileThatCanNotBeWritten_losesTheChoiceQuietly)
{
    files.isLocked = true;
    FrmLocation& window = OpenList();
    ClickRow(List(window), 1);
    ClickOn(window, "CmdSet");
    EXPECT_EQ(Current(), QStringLiteral("Chicago"));
    ExpectBoxes({});
    ExpectBackInMain();
}

} // namespace
