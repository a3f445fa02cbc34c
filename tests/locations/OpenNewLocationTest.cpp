// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/PaintCount.h"
#include "locations/LocationsFixture.h"

#include <QLabel>

namespace {

const FakeMessageBoxes::Box kError7 = FakeMessageBoxes::Fatal(7);

// Replaces the search window in tests of a failing opening.
class FailingForm final : public Form
{
public:
    FailingForm(Forms& forms, int& failures)
        : Form(forms, QStringLiteral("FrmNewLoc"), Qt::Window)
        , m_failures(failures)
    {
    }

protected:
    void OnLoad() override
    {
        if (m_failures > 0) {
            --m_failures;
            throw RuntimeError(ErrorNumber::kOverflow, QStringLiteral("Overflow"));
        }
    }

private:
    int& m_failures;
};

using OpenNewLocationTest = LocationsFixture;

TEST_F(OpenNewLocationTest, click_opensTheSearch_overTheDisabledList)
{
    const FrmLocation& list = OpenList();
    ClickOn(list, "LblNewLocLink");
    ASSERT_NE(Search(), nullptr);
    EXPECT_TRUE(Search()->isVisible() && Search()->isEnabled());
    EXPECT_FALSE(list.isEnabled());
    EXPECT_FALSE(main->isEnabled());
    const auto& link = Find<LinkLabel>(list, "LblNewLocLink");
    EXPECT_FALSE(link.testAttribute(Qt::WA_ForceDisabled)) << "enabled itself, though its window is not";
    EXPECT_FALSE(link.isEnabled());
    EXPECT_EQ(link.foregroundRole(), QPalette::Link) << "blue again";
    EXPECT_EQ(forms.Loaded(FrmWait::kName), nullptr);
    EXPECT_EQ(main->Variables().ActiveForm, u"FrmNewLoc");
    ExpectBoxes({});
}

TEST_F(OpenNewLocationTest, click_showsTheWaitWindowWhileTheRequestRuns)
{
    FrmLocation& list = OpenList();
    const SlowDesktop desktop;
    const PaintCount count(FrmWait::kName);
    bool hasLooked = false;
    platform.http.whileWaiting = [&] {
        hasLooked = true;
        EXPECT_GE(count.paints, 1) << "painted before the request";
        const Form* const wait = forms.Loaded(FrmWait::kName);
        ASSERT_NE(wait, nullptr);
        EXPECT_TRUE(wait->isVisible());
        EXPECT_EQ(Find<QLabel>(*wait, "Label1").text(), QStringLiteral("Please Wait..."));
        EXPECT_FALSE(list.isEnabled());
        EXPECT_FALSE(Find<QWidget>(list, "LblNewLocLink").isEnabled());
        EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmWait"));
        EXPECT_LT((wait->frameGeometry().center() - list.frameGeometry().center()).manhattanLength(), 8)
            << "over the window in front";
    };
    ClickOn(list, "LblNewLocLink");
    EXPECT_TRUE(hasLooked);
}

TEST_F(OpenNewLocationTest, otherFailure_saysErrorSevenAndTriesTheStepAgain)
{
    int failures = 2;
    forms.Register(FrmNewLoc::kName, [&] { return std::make_unique<FailingForm>(forms, failures); });
    ClickOn(OpenList(), "LblNewLocLink");
    ExpectBoxes({kError7, kError7});
    EXPECT_EQ(platform.process.ended, 0) << "in spite of the words";
    ASSERT_NE(Search(), nullptr);
    EXPECT_TRUE(Search()->isVisible());
    EXPECT_EQ(forms.Loaded(FrmWait::kName), nullptr);
    EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmNewLoc"));
    forms.Unload(FrmNewLoc::kName);
}

TEST_F(OpenNewLocationTest, listGoneWhileFailing_endsTheTries)
{
    int failures = 1000;
    forms.Register(FrmNewLoc::kName, [&] { return std::make_unique<FailingForm>(forms, failures); });
    FrmLocation& list = OpenList();
    platform.boxes.whileOpen = [&] { list.Unload(); };
    ClickOn(list, "LblNewLocLink");
    ExpectBoxes({kError7});
    ExpectBackInMain();
}

TEST_F(OpenNewLocationTest, windowGoneDuringTheRequest_leavesTheOneBelowInCharge)
{
    FrmLocation& list = OpenList();
    platform.http.whileWaiting = [&] { list.Unload(); };
    ClickOn(list, "LblNewLocLink");
    ExpectBackInMain();
    platform.http.whileWaiting = [&] { forms.Unload(FrmNewLoc::kName); };
    ClickOn(OpenList(), "LblNewLocLink");
    ExpectBackInList();
    platform.http.whileWaiting = [&] { forms.Unload(FrmWait::kName); };
    ClickOn(*List(), "LblNewLocLink");
    EXPECT_EQ(main->Variables().ActiveForm, u"FrmNewLoc");
    EXPECT_TRUE(Search()->isVisible()) << "whether the wait window is there or not";
    ExpectBoxes({});
}

TEST_F(OpenNewLocationTest, mainWindowGoneDuringTheRequest_searchStillOpensAndCloses)
{
    platform.http.whileWaiting = [&] { main->Unload(); };
    ClickOn(OpenList(), "LblNewLocLink");
    ClickOn(*Search(), "CmdCancel");
    ExpectBackInList();
    List()->close();
    EXPECT_EQ(List(), nullptr);
    ExpectBoxes({});
}

} // namespace
