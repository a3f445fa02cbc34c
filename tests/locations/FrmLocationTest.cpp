// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/FrmLocation.h"

#include "fakes/ErrorOf.h"
#include "locations/LocationsFixture.h"

#include <QFile>
#include <QLabel>

namespace {

const QString kListProblem = QStringLiteral("There was a problem retrieving list of locations.");
const QString kNotSet = QStringLiteral("Can not load setting for this area, location will not be changed.");
const QString kChicago = QStringLiteral("Chicago, Illinois");
const QString kMakkah = QStringLiteral("Makkah, Saudi Arabia");

class FrmLocationTest : public LocationsFixture
{
protected:
    static ListBox& List(const Form& form) { return Find<ListBox>(form, "LstLocations"); }
    static Box Sure(const QString& place)
    {
        return Question(QStringLiteral("Are you sure you want to remove: ") + place);
    }
    /// Removes Makkah.
    static void WriteOnePlace()
    {
        WriteSettings(SettingsText().remove(QRegularExpression(QStringLiteral("<Makkah [^>]*/>"))));
    }
    /// Another row than the selected one is clicked first.
    void SetRow(const Form& window, int row)
    {
        ClickRow(List(window), row);
        ClickOn(window, "CmdSet");
    }
    void DeleteAnsweringYes(const Form& window)
    {
        platform.boxes.answers = {true};
        ClickOn(window, "CmdDel");
    }
};

TEST_F(FrmLocationTest, window_hasItsTexts)
{
    const FrmLocation& window = OpenList();
    EXPECT_EQ(window.windowTitle(), u"Dusk Beacon: Location");
    EXPECT_EQ(Find<QLabel>(window, "Label7").text(), u"1. Select Loaction:");
    EXPECT_EQ(Find<QLabel>(window, "Label8").text(), u"2. Select an action to take:");
    EXPECT_EQ(Find<QPushButton>(window, "CmdSet").text(), u"Set Current");
    EXPECT_EQ(Find<QPushButton>(window, "CmdDel").text(), u"Delete");
    EXPECT_EQ(Find<LinkLabel>(window, "LblNewLocLink").text(), u"Get New Location");
}

TEST_F(FrmLocationTest, load_listsThePlacesInTheOrderOfTheFile_lastOfTheCurrentNameSelected)
{
    const struct
    {
        const char* from;
        const char* to;
        QStringList places;
        int selected;
    } rows[] = {
        {"", "", {kChicago, kMakkah}, 0},
        {"Current=\"Chicago\"", "Current=\"Nowhere\"", {kChicago, kMakkah}, -1},
        {"Current=\"Chicago\"", "Current=\"\"", {kChicago, kMakkah}, -1},
        {"Current=\"Chicago\"", "Current=\"chicago\"", {kChicago, kMakkah}, -1},
        // Of two places of one name the first is read.
        {"<Makkah ", "<Chicago ", {kChicago, kChicago}, 1},
        {"<Makkah ", "<!-- east --><Makkah ", {kChicago, QStringLiteral(", "), kMakkah}, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.to);
        WriteChanged(QLatin1String(row.from), QLatin1String(row.to));
        const ListBox& list = List(OpenList());
        EXPECT_EQ(Lines(list), row.places);
        EXPECT_EQ(list.ListIndex(), row.selected);
        forms.Unload(FrmLocation::kName);
    }
}

TEST_F(FrmLocationTest, load_twoThousandPlaces_showsThemAll)
{
    QString places;
    for (int i = 0; i < 2000; ++i) {
        places += QStringLiteral("<P%1 city=\"City %1\" state=\"State\"/>").arg(i);
    }
    WriteChanged(QStringLiteral("Current=\"Chicago\">"), QStringLiteral("Current=\"P1500\">") + places);
    const ListBox& list = List(OpenList());
    EXPECT_EQ(list.count(), 2002);
    EXPECT_EQ(list.ListIndex(), 1500);
    EXPECT_TRUE(list.viewport()->rect().contains(list.visualItemRect(list.item(1500)))) << "scrolled there";
}

TEST_F(FrmLocationTest, load_unreadableFile_saysSoAndUnloadsItself)
{
    for (const auto* text : {"", "<root><locations>", "no xml"}) {
        WriteSettings(QLatin1String(text));
        main->Enable(false);
        EXPECT_EQ(ErrorOf([this] { forms.Touch<FrmLocation>(); }), ErrorNumber::kFormUnloaded);
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

TEST_F(FrmLocationTest, close_repaintsEnablesAndNamesTheMainWindowInOrder_hiddenOrNot)
{
    for (const bool isHidden : {false, true}) {
        FrmLocation& window = OpenList();
        main->setVisible(!isHidden);
        window.close();
        EXPECT_EQ(main->calls.join(u'|'), u"PopLocation|PopPrayerFrame|Enable|TakeFocus while FrmLocation");
        ExpectBackInMain();
        ExpectBoxes({});
        EXPECT_EQ(platform.process.ended, 0);
    }
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

TEST_F(FrmLocationTest, setOrDoubleClick_writesTheSelectedKeyAndCloses)
{
    const std::pair<const char*, std::function<void(const Form&)>> rows[] = {
        {"button", [this](const Form& window) { SetRow(window, 1); }},
        {"double click on a line", [](const Form& window) { DoubleClick(List(window), 1); }},
        {"double click below the lines",
         [](const Form& window) {
             ListBox& list = List(window);
             ClickRow(list, 1);
             DoubleClick(list, list.viewport()->rect().bottomRight() - QPoint(10, 10));
         }},
    };
    for (const auto& [name, act] : rows) {
        SCOPED_TRACE(name);
        WriteSettings();
        act(OpenList());
        EXPECT_EQ(Current(), u"Makkah");
        EXPECT_EQ(main->Variables().Settings.CityName, u"Makkah");
        EXPECT_EQ(main->calls.first(), u"UpdateEverything");
        ExpectBackInMain();
        ExpectBoxes({});
    }
}

TEST_F(FrmLocationTest, set_placeThatCanNotBeLoaded_putsTheOldKeyBack)
{
    WriteChanged(QStringLiteral("latitude_final=\"21.42\""), QStringLiteral("latitude_final=\"north\""));
    QString whileAsked;
    platform.boxes.whileOpen = [&] { whileAsked = Current(); };
    SetRow(OpenList(), 1);
    EXPECT_EQ(whileAsked, u"Makkah") << "the trial is live";
    ExpectBoxes({Plain(kNotSet)});
    EXPECT_EQ(Current(), u"Chicago");
    EXPECT_EQ(main->Variables().Settings.CityName, u"Chicago");
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
    ExpectBoxes(std::vector<Box>(5, Plain(kNotSet)));
    EXPECT_EQ(forms.Loaded(FrmLocation::kName), nullptr) << "no message for ever once the program is left";
    EXPECT_EQ(Current(), u"Chicago");
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
    ExpectBoxes(std::vector<Box>(3, Plain(kNotSet)));
    EXPECT_EQ(Current(), u"Chicago");
    ExpectBackInMain();
}

TEST_F(FrmLocationTest, set_nothingSelected_triesTheEmptyKey)
{
    WriteCurrent(u"Nowhere");
    QStringList tried;
    platform.boxes.whileOpen = [&] {
        tried << Current();
        if (tried.size() == 2) {
            main->Unload();
        }
    };
    ClickOn(OpenList(), "CmdSet");
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

TEST_F(FrmLocationTest, set_fileThatCanNotBeWritten_losesTheChoiceQuietly)
{
    files.isLocked = true;
    SetRow(OpenList(), 1);
    EXPECT_EQ(Current(), u"Chicago");
    ExpectBoxes({});
    ExpectBackInMain();
}

TEST_F(FrmLocationTest, delete_asksFirst_thenTheListShowsWhatTheFileHolds)
{
    const Box last = Plain(QStringLiteral("Can not remove last location from list."));
    const struct
    {
        const char* name;
        std::function<void()> prepare;
        int row;
        bool answer;
        std::vector<Box> boxes;
        QStringList left;
        QString current;
    } rows[] = {
        {"no", [] {}, 0, false, {Sure(kChicago)}, {kChicago, kMakkah}, QStringLiteral("Chicago")},
        {"other place", [] {}, 1, true, {Sure(kMakkah)}, {kChicago}, QStringLiteral("Chicago")},
        {"place with children",
         [] {
             WriteChanged(QStringLiteral("latitude_final=\"21.42\" time_zone2=\"3\"/>"),
                          QStringLiteral("time_zone2=\"3\"><note/></Makkah>"));
         },
         1,
         true,
         {Sure(kMakkah)},
         {kChicago},
         QStringLiteral("Chicago")},
        {"last place",
         [] { WriteOnePlace(); },
         0,
         true,
         {Sure(kChicago), last},
         {kChicago},
         QStringLiteral("Chicago")},
        {"nothing selected",
         [] { WriteCurrent(u"Nowhere"); },
         -1,
         true,
         {Sure(QString())},
         {kChicago, kMakkah},
         QStringLiteral("Nowhere")},
        {"file that can't be written",
         [this] { files.isLocked = true; },
         1,
         true,
         {Sure(kMakkah)},
         {kChicago, kMakkah},
         QStringLiteral("Chicago")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        WriteSettings();
        row.prepare();
        const FrmLocation& window = OpenList();
        const QByteArray before = ReadSettings();
        if (row.row >= 0) {
            ClickRow(List(window), row.row);
        }
        platform.boxes.answers = {row.answer};
        ClickOn(window, "CmdDel");
        ExpectBoxes(row.boxes);
        EXPECT_EQ(Lines(List(window)), row.left);
        EXPECT_EQ(List(window).ListIndex(), row.row < 0 ? -1 : 0);
        EXPECT_EQ(Current(), row.current);
        EXPECT_EQ(ReadSettings() == before, row.row == 0 || files.isLocked);
        EXPECT_TRUE(main->calls.isEmpty()) << "nothing is calculated anew";
        platform.boxes.answers.clear();
        forms.Unload(FrmLocation::kName);
    }
}

TEST_F(FrmLocationTest, delete_currentPlace_theMainWindowKeepsIt)
{
    WriteCurrent(u"Makkah");
    main->UpdateEverything();
    FrmLocation& window = OpenList();
    DeleteAnsweringYes(window);
    EXPECT_EQ(Current(), u"Chicago");
    window.close();
    EXPECT_EQ(main->Variables().Settings.CityName, u"Makkah");
    EXPECT_FALSE(main->calls.contains(QStringLiteral("UpdateEverything")));
}

TEST_F(FrmLocationTest, delete_currentPlaceOfThree_theFirstOfTheFileBecomesCurrent)
{
    const auto write = [&](QStringView keys) {
        QString text = SettingsText();
        const auto start = text.indexOf(QStringLiteral("<Chicago"));
        QString places;
        for (const QChar key : keys) {
            places += QStringLiteral("<%1 city=\"%1\" state=\"s\"/>").arg(key);
        }
        text.replace(start, text.indexOf(QStringLiteral("</locations>")) - start, places);
        WriteSettings(text.replace(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"C\"")));
    };
    write(u"ABCD");
    const FrmLocation& window = OpenList();
    ASSERT_EQ(List(window).ListIndex(), 2);
    // Another program has changed their order.
    write(u"DACB");
    DeleteAnsweringYes(window);
    EXPECT_EQ(Current(), u"D") << "neither the last one nor a neighbour nor the list's first";
    EXPECT_EQ(Shown(List(window)), u"D, s|A, s|B, s");
    EXPECT_EQ(List(window).ListIndex(), 0);
}

TEST_F(FrmLocationTest, delete_damagedFile_saysSoAndStays)
{
    const FrmLocation& window = OpenList();
    WriteSettings(QStringLiteral("<root>"));
    DeleteAnsweringYes(window);
    ExpectBoxes({Sure(kChicago), Plain(QStringLiteral("Could not change default location."))});
    EXPECT_EQ(ReadSettings(), QByteArray("<root>"));
    EXPECT_NE(forms.Loaded(FrmLocation::kName), nullptr);
}

TEST_F(FrmLocationTest, delete_placesGoneMeanwhile_isTheListProblem)
{
    const FrmLocation& window = OpenList();
    WriteOnePlace();
    DeleteAnsweringYes(window);
    ExpectBoxes({Sure(kChicago), Plain(kListProblem)});
    EXPECT_EQ(Current(), u"Chicago") << "nothing was written";
    ExpectBackInMain();
}

} // namespace
