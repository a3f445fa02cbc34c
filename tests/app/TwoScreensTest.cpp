// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "alerts/FrmPopup.h"
#include "app/Appearance.h"
#include "app/FirstTouchFixture.h"
#include "fakes/Desk.h"
#include "instruments/VBSunAndMoon.h"

#include <QGuiApplication>
#include <QScreen>

namespace {

// Read when the application object is made, before which this runs.
const bool kHasTwoScreens = qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" TWO_SCREENS);

/// The main window on a desk of two screens, of which the right one has twice the pixels.
class TwoScreens : public FirstTouchFixture
{
protected:
    static void SetUpTestSuite() { SetAppearance(); }

    void SetUp() override
    {
        ASSERT_TRUE(kHasTwoScreens);
        ASSERT_EQ(QGuiApplication::screens().size(), 2);
        ASSERT_EQ(Left().devicePixelRatio(), 1.0);
        ASSERT_EQ(Right().devicePixelRatio(), 2.0);
        forms.Register(FrmPopup::kName, [this] { return std::make_unique<FrmPopup>(forms); });
        main = &Window();
        main->Show();
        MoveTo(Left());
    }
    ~TwoScreens() override { Desk::Settle(); }

    static QScreen& Left() { return *QGuiApplication::screens().at(0); }
    static QScreen& Right() { return *QGuiApplication::screens().at(1); }
    void MoveTo(const QScreen& screen)
    {
        main->move(screen.availableGeometry().topLeft() + QPoint(20, 30));
        Desk::Settle();
        ASSERT_EQ(main->screen(), &screen);
    }
    QImage Sky() { return Find<VBSunAndMoon>("VBSunAndMoon1").grab().toImage(); }
    QPixmap Banner() { return Find<QLabel>("Picture2").pixmap(Qt::ReturnByValue); }

    FrmMain* main = nullptr;
};

TEST_F(TwoScreens, popup_comesUpInTheMiddleOfTheOneWithTheMainWindow)
{
    for (const QScreen* const screen : {&Left(), &Right()}) {
        for (const bool isHidden : {false, true}) {
            main->setVisible(true);
            MoveTo(*screen);
            main->setVisible(!isHidden);
            forms.Touch<FrmPopup>().ShowPopup(QStringLiteral("Prayer Time:\r\nMaghrib: 18:42"), 600);
            Desk::Settle();
            const Form* const popup = forms.Loaded(FrmPopup::kName);
            const QPoint distance = popup->frameGeometry().center() - screen->availableGeometry().center();
            EXPECT_LE(distance.manhattanLength(), 40) << qPrintable(screen->name()) << isHidden;
            forms.Unload(FrmPopup::kName);
        }
    }
}

TEST_F(TwoScreens, skyOfTheNextUpdate_hasThePixelsOfTheScreen)
{
    const QImage left = Sky();
    ASSERT_EQ(left.devicePixelRatio(), 1.0);
    MoveTo(Right());
    const QImage resized = Sky();
    ASSERT_EQ(resized.devicePixelRatio(), 2.0);
    main->UpdateEverything();
    const QImage sharp = Sky();
    EXPECT_EQ(sharp.size(), resized.size());
    EXPECT_NE(sharp, resized) << "the small pictures, enlarged";
    MoveTo(Left());
    main->UpdateEverything();
    EXPECT_EQ(Sky(), left);
}

TEST_F(TwoScreens, banner_hasThePixelsOfTheScreen)
{
    EXPECT_EQ(Banner().size(), QSize(129, 89));
    MoveTo(Right());
    EXPECT_EQ(main->grab().devicePixelRatio(), 2.0);
    EXPECT_EQ(Banner().toImage(), ShippedPicture(QStringLiteral("Picture2"), 2.0).toImage());
    EXPECT_EQ(Banner().deviceIndependentSize(), QSizeF(129, 89));
    MoveTo(Left());
    EXPECT_EQ(main->grab().devicePixelRatio(), 1.0);
    EXPECT_EQ(Banner().size(), QSize(129, 89));
}

} // namespace
