// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"
#include "forms/Forms.h"
#include "support/RuntimeError.h"

#include <QCoreApplication>
#include <QPointer>

#include <gtest/gtest.h>

namespace {

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
    Forms forms{platform.doors};
    QPointer<ScriptedForm> form;
    std::function<void()> onLoad;
};

TEST_F(FormLifetimeTest, unloadInsideLoad_livesUntilLoadHasEnded_thenIsError364)
{
    bool wasAlive = false;
    onLoad = [&] {
        form->Unload();
        QCoreApplication::processEvents();
        wasAlive = !form.isNull();
    };
    try {
        forms.Touch(kName);
        FAIL() << "the window is gone";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), ErrorNumber::kFormUnloaded);
    }
    EXPECT_TRUE(wasAlive);
    QCoreApplication::processEvents();
    EXPECT_TRUE(form.isNull());
}

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
    class PaintCount final : public QObject
    {
    public:
        bool eventFilter(QObject* /*watched*/, QEvent* event) override
        {
            count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
        int count = 0;
    };
    PaintCount paints;
    forms.Touch(kName).installEventFilter(&paints);
    form->Show();
    form->PaintNow();
    EXPECT_GT(paints.count, 0);
}

} // namespace
