// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AlertsFixture.h"
#include "fakes/UnderABox.h"

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
        AlertsFixture::ShowPopup(seconds);
        Desk::Settle();
    }
    /// "OK" closes the popup.
    void ClickOk() const
    {
        Desk::Click(Ok());
        EXPECT_EQ(Popup(), nullptr);
    }
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

TEST_F(PopupBesideABoxTest, popupThatComesUnderTheBox_takesItsOkOrItsTime_mainStaysBlocked)
{
    for (const bool isTimeUp : {false, true}) {
        UnderABox([&](QMessageBox&) {
            ShowPopup(2);
            if (isTimeUp) {
                ASSERT_TRUE(PassSeconds(2));
                EXPECT_FALSE(PopupIsUp());
            } else {
                ClickOk();
            }
            EXPECT_TRUE(main->isEnabled());
            ExpectMainIsBlocked();
        });
    }
    ExpectMainIsUsable();
}

TEST_F(PopupBesideABoxTest, popupThatWasThere_takesItsOk_mainStaysBlocked)
{
    ShowPopup();
    UnderABox([this](QMessageBox&) {
        ClickOk();
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
                    ExpectMainIsBlocked();
                }
            });
            Desk::Settle();
            if (!isClosedUnderBoth) {
                EXPECT_EQ(QApplication::activeModalWidget()->windowHandle(),
                          Popup()->windowHandle()->transientParent())
                    << "the window system lets it have the keyboard";
                ClickOk();
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
    });
}

TEST_F(PopupBesideABoxTest, popupAndBox_doNotCoverEachOther)
{
    const QRect screen = main->screen()->availableGeometry();
    for (const QPoint& corner : {screen.center() - main->rect().center(), screen.topLeft(),
                                 screen.bottomRight() - main->rect().bottomRight()}) {
        for (const bool isPopupFirst : {false, true}) {
            SCOPED_TRACE(isPopupFirst);
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
                    EXPECT_FALSE(Popup()->frameGeometry().intersects(box.frameGeometry()));
                    EXPECT_TRUE(screen.contains(Popup()->frameGeometry()));
                    EXPECT_TRUE(screen.contains(box.frameGeometry()));
                },
                QStringLiteral("Would you like to Download\r\nthe new version of DuskBeacon?"));
            ClickOk();
        }
    }
}

} // namespace
