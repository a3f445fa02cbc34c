// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Forms.h"

#include "fakes/Desk.h"
#include "fakes/ErrorOf.h"
#include "fakes/FakePlatform.h"
#include "fakes/PaintCount.h"
#include "platform/ProcessorTime.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>

#include <gtest/gtest.h>

namespace {

/// A window whose load and unload a test supplies.
class ScriptedWindow final : public Form
{
public:
    ScriptedWindow(Forms& forms, const QString& name)
        : Form(forms, name, Qt::Window)
    {
    }
    std::function<void(ScriptedWindow&)> load;
    std::function<void(ScriptedWindow&)> unload;

protected:
    void OnLoad() override
    {
        if (load) {
            load(*this);
        }
    }
    void OnUnload() override
    {
        if (unload) {
            unload(*this);
        }
    }
};

const QString kOne = QStringLiteral("One");
const QString kTwo = QStringLiteral("Two");

class FormsTest : public testing::Test
{
protected:
    FormsTest()
    {
        for (const QString& name : {kOne, kTwo}) {
            forms.Register(name, [this, name] {
                auto window = std::make_unique<ScriptedWindow>(forms, name);
                window->load = load;
                window->unload = unload;
                latest = window.get();
                return window;
            });
        }
        forms.SetLastUnloadedHandler([this] { ++ended; });
    }
    ~FormsTest() override { Desk::Settle(); }

    static void Fail() { throw RuntimeError(ErrorNumber::kOverflow, QStringLiteral("Overflow")); }

    FakePlatform platform;
    Forms forms{platform.interfaces};
    std::function<void(ScriptedWindow&)> load;
    std::function<void(ScriptedWindow&)> unload;
    QPointer<Form> latest;
    int ended = 0;
};

TEST_F(FormsTest, touch_createsOnceAndLoads)
{
    int loads = 0;
    load = [&](ScriptedWindow& window) {
        ++loads;
        EXPECT_TRUE(window.IsLoaded());
    };
    EXPECT_EQ(forms.Loaded(kOne), nullptr);
    Form& one = forms.Touch(kOne);
    EXPECT_EQ(&forms.Touch(kOne), &one);
    EXPECT_EQ(forms.Loaded(kOne), &one);
    EXPECT_EQ(loads, 1);
    EXPECT_FALSE(one.isVisible());
}

TEST_F(FormsTest, windowThatUnloadsItselfWhileLoading_staysInMemoryUntilItsLoadIsOver)
{
    load = [this](ScriptedWindow& window) {
        window.Unload();
        Desk::Settle();
        EXPECT_FALSE(latest.isNull());
    };
    EXPECT_EQ(ErrorOf([this] { return &forms.Touch(kOne); }), 364);
    EXPECT_EQ(forms.Loaded(kOne), nullptr);
    Desk::Settle();
    EXPECT_TRUE(latest.isNull());
}

TEST_F(FormsTest, failedLoad_isLoadedAnewByTheNextTouch)
{
    load = [](ScriptedWindow& /*window*/) { Fail(); };
    EXPECT_THROW(forms.Touch(kOne), RuntimeError);
    EXPECT_EQ(forms.Loaded(kOne), nullptr);
    const Form* const failed = latest;
    load = nullptr;
    EXPECT_NE(&forms.Touch(kOne), failed);
    EXPECT_TRUE(latest->IsLoaded());
}

TEST_F(FormsTest, failedUnload_leavesTheWindowToBeUnloadedAgain)
{
    bool fails = true;
    unload = [&fails](ScriptedWindow& /*window*/) {
        if (std::exchange(fails, false)) {
            Fail();
        }
    };
    Form& one = forms.Touch(kOne);
    one.Show();
    EXPECT_THROW(one.Unload(), RuntimeError);
    EXPECT_EQ(forms.Loaded(kOne), &one);
    EXPECT_TRUE(one.isVisible());
    one.Unload();
    EXPECT_EQ(forms.Loaded(kOne), nullptr);
}

TEST_F(FormsTest, keepWhile_passesTheErrorOnAndLetsGo)
{
    Form& one = forms.Touch(kOne);
    EXPECT_THROW(one.KeepWhile(Fail), RuntimeError);
    EXPECT_FALSE(one.IsHandling());
}

TEST_F(FormsTest, unload_inAHandlerThatServesEvents_keepsTheWindowUntilItsEnd)
{
    Form& one = forms.Touch(kOne);
    one.Show();
    one.Handle([&] {
        one.Unload();
        Desk::Settle();
        EXPECT_FALSE(latest.isNull());
        EXPECT_FALSE(one.IsLoaded());
        EXPECT_FALSE(one.isVisible());
    });
    Desk::Settle();
    EXPECT_TRUE(latest.isNull());
}

TEST_F(FormsTest, unload_runsOnceAndANewTouchBuildsANewWindow)
{
    int unloads = 0;
    unload = [&](ScriptedWindow& window) {
        ++unloads;
        window.Unload();
    };
    forms.Touch(kOne);
    const Form* const first = latest;
    forms.Unload(kOne);
    forms.Unload(kOne);
    EXPECT_EQ(unloads, 1);
    EXPECT_NE(&forms.Touch(kOne), first);
}

TEST_F(FormsTest, lastUnloaded_isToldWhenNoWindowThatWasShownIsLeft)
{
    Form& one = forms.Touch(kOne);
    Form& two = forms.Touch(kTwo);
    one.Show();
    two.Show();
    one.hide();
    two.Unload();
    EXPECT_EQ(ended, 0) << "a hidden window keeps the process";
    one.Unload();
    EXPECT_EQ(ended, 1);
}

TEST_F(FormsTest, lastUnloaded_doesNotWaitForAWindowThatWasNeverShown)
{
    forms.Touch(kOne).Show();
    forms.Touch(kTwo);
    forms.Unload(kOne);
    EXPECT_EQ(ended, 1);
}

TEST_F(FormsTest, main_withoutOne_raises91)
{
    EXPECT_EQ(ErrorOf([this] { return &forms.Main(); }), 91);
}

TEST_F(FormsTest, setFocus_onlyWhereAWindowCanTakeIt)
{
    const struct
    {
        const char* name;
        void (*prepare)(Form& window);
        int error;
    } rows[] = {
        {"never shown", [](Form&) {}, ErrorNumber::kInvalidCall},
        {"shown", [](Form& window) { window.Show(); }, 0},
        {"minimised", [](Form& window) { window.showMinimized(); }, 0},
        {"hidden", [](Form& window) { window.hide(); }, ErrorNumber::kInvalidCall},
        {"shown again", [](Form& window) { window.Show(); }, 0},
        {"disabled", [](Form& window) { window.setEnabled(false); }, ErrorNumber::kInvalidCall},
    };
    Form& one = forms.Touch(kOne);
    for (const auto& [name, prepare, expected] : rows) {
        prepare(one);
        EXPECT_EQ(ErrorOf([&one] { one.SetFocus(); }), expected) << name;
    }
}

TEST_F(FormsTest, show_ofAMinimisedWindow_bringsItBackToTheFront)
{
    Form& one = forms.Touch(kOne);
    one.Show();
    forms.Touch(kTwo).Show();
    one.showMinimized();
    Desk::Settle();
    one.Show();
    Desk::Settle();
    EXPECT_FALSE(one.isMinimized());
    EXPECT_EQ(QApplication::activeWindow(), &one);
}

TEST_F(FormsTest, closeButton_unloadsAnEnabledWindowOnly)
{
    Form& one = forms.Touch(kOne);
    one.Show();
    one.setEnabled(false);
    one.close();
    EXPECT_TRUE(one.IsLoaded());
    EXPECT_TRUE(one.isVisible());
    one.setEnabled(true);
    one.close();
    EXPECT_EQ(forms.Loaded(kOne), nullptr);
    EXPECT_EQ(ended, 1);
}

TEST_F(FormsTest, handle_showsWhatAHandlerLetsThroughAndEnds)
{
    Form& one = forms.Touch(kOne);
    one.Handle([] { throw RuntimeError(ErrorNumber::kTypeMismatch, QStringLiteral("Type mismatch")); });
    EXPECT_EQ(platform.boxes.boxes, std::vector{FakeMessageBoxes::Message(
                                        QStringLiteral("Run-time error '13':\r\n\r\nType mismatch"))});
    EXPECT_EQ(platform.process.ended, 1);
    EXPECT_FALSE(one.IsHandling());
}

TEST_F(FormsTest, pointer_isAHandAndBackToDefault)
{
    Form& one = forms.Touch(kOne);
    one.SetHandPointer();
    EXPECT_EQ(one.cursor().shape(), Qt::PointingHandCursor);
    one.SetDefaultPointer();
    EXPECT_EQ(one.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(FormsTest, paintNow_returnsPainted)
{
    const PaintCount count(kOne);
    Form& one = forms.Touch(kOne);
    one.Show();
    one.PaintNow();
    EXPECT_GT(count.paints, 0);
}

TEST_F(FormsTest, paintNow_ofAWindowThatNoScreenShows_waitsAtRest)
{
    Form& one = forms.Touch(kOne);
    one.winId();
    ASSERT_FALSE(one.windowHandle()->isExposed());
    QElapsedTimer waited;
    waited.start();
    const double before = ProcessorMilliseconds();
    one.PaintNow();
    const double used = ProcessorMilliseconds() - before;
    EXPECT_GE(waited.elapsed(), 450);
    EXPECT_LT(used, 50.0) << "a loop without a pause would use a whole processor";
}

} // namespace
