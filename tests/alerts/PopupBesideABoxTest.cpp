// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AlertsFixture.h"
#include "fakes/UnderABox.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPushButton>

namespace {

/// A popup and real message boxes over a main window with one button.
class PopupBesideABoxTest : public AlertsFixture
{
protected:
    PopupBesideABoxTest()
    {
        button->setGeometry(10, 10, 80, 30);
        QObject::connect(button, &QPushButton::clicked, button, [this] { ++clicks; });
        main->show();
        Desk::Settle();
    }
    ~PopupBesideABoxTest() override { Desk::Settle(); }

    void ShowPopup(std::int16_t seconds = 600)
    {
        forms.Touch<FrmPopup>().ShowPopup(QStringLiteral("Prayer Time:\r\nMaghrib: 18:42"), seconds);
        Desk::Settle();
    }
    void ClickOk() const { Desk::Click(*Popup()->findChild<QPushButton*>(QStringLiteral("Command1"))); }
    void ExpectMainIsBlocked()
    {
        Desk::Click(*button);
        QTest::keyClick(main->windowHandle(), Qt::Key_Space);
        Desk::Settle();
        EXPECT_EQ(clicks, 0);
    }
    void ExpectMainIsUsable()
    {
        Desk::Click(*button);
        EXPECT_EQ(clicks, 1);
    }

    QPushButton* button = new QPushButton(main);
    int clicks = 0;
};

TEST_F(PopupBesideABoxTest, popupThatComesUnderTheBox_takesItsOk_mainStaysBlocked)
{
    UnderABox([this](QMessageBox&) {
        ShowPopup();
        ClickOk();
        EXPECT_EQ(Popup(), nullptr);
        EXPECT_TRUE(main->isEnabled());
        ExpectMainIsBlocked();
    });
    ExpectMainIsUsable();
}

TEST_F(PopupBesideABoxTest, popupThatWasThere_takesItsOk_mainStaysBlocked)
{
    ShowPopup();
    UnderABox([this](QMessageBox&) {
        ClickOk();
        EXPECT_EQ(Popup(), nullptr);
        ExpectMainIsBlocked();
    });
    ExpectMainIsUsable();
}

TEST_F(PopupBesideABoxTest, popupWhoseTimeIsUp_goes_mainStaysBlocked)
{
    UnderABox([this](QMessageBox&) {
        ShowPopup(2);
        ASSERT_TRUE(PassSeconds(2));
        EXPECT_FALSE(PopupIsUp());
        ExpectMainIsBlocked();
    });
    ExpectMainIsUsable();
}

TEST_F(PopupBesideABoxTest, boxIsAnsweredFirst_popupStaysUsable)
{
    UnderABox([this](QMessageBox&) { ShowPopup(); });
    Desk::Settle();
    ASSERT_TRUE(PopupIsUp());
    EXPECT_FALSE(main->isEnabled());
    ClickOk();
    EXPECT_EQ(Popup(), nullptr);
    ExpectMainIsUsable();
}

TEST_F(PopupBesideABoxTest, boxOverABox_popupIsUsableUnderBothAndUnderTheFirstAgain)
{
    for (const bool isClosedUnderBoth : {true, false}) {
        UnderABox([&](QMessageBox&) {
            ShowPopup();
            UnderABox([&](QMessageBox&) {
                if (isClosedUnderBoth) {
                    ClickOk();
                    EXPECT_EQ(Popup(), nullptr);
                    ExpectMainIsBlocked();
                }
            });
            Desk::Settle();
            if (!isClosedUnderBoth) {
                EXPECT_EQ(QApplication::activeModalWidget()->windowHandle(),
                          Popup()->windowHandle()->transientParent())
                    << "the window system lets it have the keyboard";
                ClickOk();
                EXPECT_EQ(Popup(), nullptr);
            }
            ExpectMainIsBlocked();
        });
    }
}

TEST_F(PopupBesideABoxTest, mainWindowGoesUnderTheBox_popupAndBoxStayUsable)
{
    // As by "E&xit" in the tray's menu.
    UnderABox([this](const QMessageBox& box) {
        ShowPopup();
        forms.Unload(QStringLiteral("FrmMain"));
        Desk::Settle();
        EXPECT_TRUE(box.isVisible());
        ClickOk();
        EXPECT_EQ(Popup(), nullptr);
    });
}

TEST_F(PopupBesideABoxTest, otherWindowShownUnderTheBox_isBlocked)
{
    QLineEdit late;
    UnderABox([&](QMessageBox&) {
        ShowPopup();
        late.show();
        Desk::Settle();
        QTest::keyClick(late.windowHandle(), Qt::Key_A);
        Desk::Settle();
        EXPECT_EQ(late.text(), QString());
    });
}

TEST_F(PopupBesideABoxTest, boxThatComesWhileThePopupHasTheKeyboard_isInFrontOfNoPopup)
{
    ShowPopup();
    QApplication::setActiveWindow(Popup());
    ASSERT_EQ(QApplication::activeWindow(), Popup());
    UnderABox([this](const QMessageBox& box) {
        EXPECT_NE(box.windowHandle()->transientParent(), Popup()->windowHandle());
        ClickOk();
        EXPECT_EQ(Popup(), nullptr);
    });
}

/// Where the buttons of a window are on the screen.
[[nodiscard]] QRegion ButtonsOf(const QWidget& window)
{
    QRegion region;
    for (const auto* const each : window.findChildren<QAbstractButton*>()) {
        region += QRect(each->mapToGlobal(QPoint()), each->size());
    }
    return region;
}

class PopupPlaceTest : public PopupBesideABoxTest, public testing::WithParamInterface<bool>
{
protected:
    static void ExpectApart(const QWidget& popup, const QWidget& box)
    {
        EXPECT_FALSE(popup.frameGeometry().intersects(box.frameGeometry()));
        EXPECT_FALSE(ButtonsOf(box).isEmpty());
        const QRect screen = popup.screen()->availableGeometry();
        EXPECT_TRUE(screen.contains(popup.frameGeometry()));
        EXPECT_TRUE(screen.contains(box.frameGeometry()));
    }
};

TEST_P(PopupPlaceTest, popupAndBox_doNotCoverEachOther)
{
    const bool isPopupFirst = GetParam();
    const QRect screen = main->screen()->availableGeometry();
    for (const QPoint& corner : {screen.center() - main->rect().center(), screen.topLeft(),
                                 screen.bottomRight() - main->rect().bottomRight()}) {
        main->move(corner);
        Desk::Settle();
        if (isPopupFirst) {
            ShowPopup();
        }
        UnderABox(
            [&](const QMessageBox& box) {
                if (!isPopupFirst) {
                    ShowPopup();
                }
                ExpectApart(*Popup(), box);
            },
            QStringLiteral("Would you like to Download\r\nthe new version of DuskBeacon?"));
        ClickOk();
    }
}

INSTANTIATE_TEST_SUITE_P(Order, PopupPlaceTest, testing::Bool(),
                         [](const auto& row) { return std::string(row.param ? "popupFirst" : "boxFirst"); });

} // namespace
