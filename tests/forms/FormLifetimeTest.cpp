// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"
#include "fakes/PaintCount.h"
#include "forms/Forms.h"
#include "platform/ProcessorTime.h"
#include "support/RuntimeError.h"

#include <QElapsedTimer>
#include <QPointer>

#include <gtest/gtest.h>

#include <chrono>

namespace {

using namespace std::chrono_literals;

const QString kName = QStringLiteral("Window");

class ScriptedForm final : public Form
{
public:
    explicit ScriptedForm(Forms& forms)
        : Form(forms, kName, Qt::Window)
    {
    }
    std::function<void()> onLoad;
    std::function<void()> onUnload;

protected:
    void OnLoad() override
    {
        if (onLoad) {
            onLoad();
        }
    }
    void OnUnload() override
    {
        if (onUnload) {
            onUnload();
        }
    }
};

class FormLifetimeTest : public testing::Test
{
protected:
    FormLifetimeTest()
    {
        forms.Register(kName, [this] {
            auto made = std::make_unique<ScriptedForm>(forms);
            form = made.get();
            made->onLoad = onLoad;
            return made;
        });
    }
    static void Fail() { throw RuntimeError(ErrorNumber::kOverflow, QStringLiteral("Overflow")); }

    FakePlatform platform;
    Forms forms{platform.interfaces};
    QPointer<ScriptedForm> form;
    std::function<void()> onLoad;
};

TEST_F(FormLifetimeTest, failedLoad_isLoadedAnewByTheNextTouch)
{
    onLoad = Fail;
    EXPECT_THROW(forms.Touch(kName), RuntimeError);
    EXPECT_EQ(forms.Loaded(kName), nullptr);
    const Form* const failed = form;
    onLoad = nullptr;
    EXPECT_NE(&forms.Touch(kName), failed);
    EXPECT_TRUE(form->IsLoaded());
}

TEST_F(FormLifetimeTest, failedUnload_leavesTheWindowToBeUnloadedAgain)
{
    forms.Touch(kName).Show();
    form->onUnload = Fail;
    EXPECT_THROW(form->Unload(), RuntimeError);
    EXPECT_EQ(forms.Loaded(kName), form);
    EXPECT_TRUE(form->isVisible());
    form->onUnload = nullptr;
    form->Unload();
    EXPECT_EQ(forms.Loaded(kName), nullptr);
}

TEST_F(FormLifetimeTest, keepWhile_passesTheErrorOnAndLetsGo)
{
    forms.Touch(kName);
    EXPECT_THROW(form->KeepWhile(Fail), RuntimeError);
    EXPECT_FALSE(form->IsHandling());
}

TEST_F(FormLifetimeTest, paintNow_returnsPainted)
{
    const PaintCount count(kName);
    forms.Touch(kName);
    form->Show();
    form->PaintNow();
    EXPECT_GT(count.paints, 0);
}

TEST_F(FormLifetimeTest, paintNow_ofAWindowThatNoScreenShows_waitsAtRest)
{
    forms.Touch(kName).winId();
    ASSERT_FALSE(form->windowHandle()->isExposed());
    QElapsedTimer waited;
    waited.start();
    const double before = ProcessorMilliseconds();
    form->PaintNow();
    const double used = ProcessorMilliseconds() - before;
    EXPECT_GE(std::chrono::milliseconds(waited.elapsed()), 450ms);
    EXPECT_LT(used, 50.0) << "it would take all of a processor if it looked without a pause";
}

} // namespace
