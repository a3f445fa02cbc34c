// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Forms.h"

#include "fakes/Desk.h"
#include "fakes/FakePlatform.h"
#include "fakes/PlainWindow.h"

#include <QApplication>
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

TEST_F(FormsTest, touch_ofAWindowThatUnloadsItselfWhileLoading_raises364)
{
    load = [](ScriptedWindow& window) { window.Unload(); };
    try {
        forms.Touch(kOne);
        FAIL() << "must raise";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), 364);
    }
    EXPECT_EQ(forms.Loaded(kOne), nullptr);
    Desk::Settle();
    EXPECT_TRUE(latest.isNull()) << "nothing is left of it";
}

TEST_F(FormsTest, windowThatUnloadsItselfWhileLoading_staysInMemoryUntilItsLoadIsOver)
{
    load = [this](ScriptedWindow& window) {
        window.Unload();
        Desk::Settle();
        EXPECT_FALSE(latest.isNull());
        window.setWindowTitle(QStringLiteral("still there"));
    };
    EXPECT_THROW(forms.Touch(kOne), RuntimeError);
    Desk::Settle();
    EXPECT_TRUE(latest.isNull());
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
    try {
        static_cast<void>(forms.Main());
        FAIL() << "must raise";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), 91);
    }
}

TEST_F(FormsTest, setFocus_onlyWhereAWindowCanTakeIt)
{
    const struct
    {
        const char* name;
        void (*prepare)(Form& window);
        bool canTake;
    } rows[] = {
        {"shown", [](Form& window) { window.Show(); }, true},
        {"minimised", [](Form& window) { window.showMinimized(); }, true},
        {"never shown", [](Form&) {}, false},
        {"hidden",
         [](Form& window) {
             window.Show();
             window.hide();
         },
         false},
        {"disabled",
         [](Form& window) {
             window.Show();
             window.setEnabled(false);
         },
         false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Form& one = forms.Touch(kOne);
        row.prepare(one);
        if (row.canTake) {
            EXPECT_NO_THROW(one.SetFocus());
        } else {
            try {
                one.SetFocus();
                ADD_FAILURE() << "must raise";
            } catch (const RuntimeError& error) {
                EXPECT_EQ(error.Number(), 5);
            }
        }
        one.setEnabled(true);
        one.Unload();
        Desk::Settle();
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
    EXPECT_EQ(platform.boxes.boxes,
              (std::vector{FakeMessageBoxes::Box{QStringLiteral("Run-time error '13':\r\n\r\nType mismatch"),
                                                 QStringLiteral("Dusk Beacon"), QStringLiteral("OK")}}));
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

} // namespace
