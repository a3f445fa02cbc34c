// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtTrayIcon.h"

#include "fakes/UnderABox.h"

#include <QIcon>
#include <QMenu>

#include <gtest/gtest.h>

/// Has the class name of Qt's window of an embedded icon, whose mouse events the tray icon filters.
class QSystemTrayIconSys : public QWidget
{
    Q_OBJECT

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        ++presses;
        event->accept();
    }

public:
    int presses = 0;
};

namespace {

class QtTrayIconTest : public testing::Test
{
protected:
    QtTrayIconTest()
    {
        menu.addAction(QStringLiteral("&Open"));
        embedded.resize(22, 22);
        embedded.show();
        Desk::Settle();
    }
    [[nodiscard]] static QIcon Icon()
    {
        QPixmap picture(22, 22);
        picture.fill(Qt::darkBlue);
        return picture;
    }

    QMenu menu;
    QSystemTrayIconSys embedded;
    QtTrayIcon tray;
};

TEST_F(QtTrayIconTest, withoutANotificationArea_additionAndRemovalAreHarmless)
{
    tray.Remove();
    tray.Add(Icon(), QStringLiteral("tip"), menu);
    EXPECT_FALSE(tray.IsShown());
    tray.Remove();
    tray.Remove();
    EXPECT_FALSE(tray.IsShown());
    Desk::Settle();
}

TEST_F(QtTrayIconTest, rightButton_opensTheMenuWhenItComesUp)
{
    tray.Add(Icon(), QStringLiteral("tip"), menu);
    QTest::mousePress(embedded.windowHandle(), Qt::RightButton, Qt::NoModifier, QPoint(5, 5));
    EXPECT_FALSE(menu.isVisible());
    EXPECT_EQ(embedded.presses, 0) << "Qt would open the menu on the press";
    QTest::mouseRelease(embedded.windowHandle(), Qt::RightButton, Qt::NoModifier, QPoint(5, 5));
    EXPECT_TRUE(menu.isVisible());
    menu.hide();
}

TEST_F(QtTrayIconTest, rightButton_releasedElsewhere_opensNothing)
{
    tray.Add(Icon(), QStringLiteral("tip"), menu);
    QTest::mousePress(embedded.windowHandle(), Qt::RightButton, Qt::NoModifier, QPoint(5, 5));
    QTest::mouseRelease(embedded.windowHandle(), Qt::RightButton, Qt::NoModifier, QPoint(500, 500));
    EXPECT_FALSE(menu.isVisible());
}

TEST_F(QtTrayIconTest, otherButtonsAndDoubleClicks_openNothing)
{
    tray.Add(Icon(), QStringLiteral("tip"), menu);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton}) {
        QTest::mouseClick(embedded.windowHandle(), button, Qt::NoModifier, QPoint(5, 5));
        QTest::mouseDClick(embedded.windowHandle(), button, Qt::NoModifier, QPoint(5, 5));
    }
    Desk::Settle();
    EXPECT_FALSE(menu.isVisible());
}

TEST_F(QtTrayIconTest, rightButton_underABox_opensTheMenu)
{
    tray.Add(Icon(), QStringLiteral("tip"), menu);
    int chosen = 0;
    QObject::connect(menu.actions().constFirst(), &QAction::triggered, &menu, [&] { ++chosen; });
    UnderABox([&](QMessageBox&) {
        QTest::mouseClick(embedded.windowHandle(), Qt::RightButton, Qt::NoModifier, QPoint(5, 5));
        ASSERT_TRUE(menu.isVisible());
        Desk::Settle();
        QTest::mouseClick(menu.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          menu.actionGeometry(menu.actions().constFirst()).center());
        EXPECT_EQ(chosen, 1);
        EXPECT_FALSE(menu.isVisible());
    });
}

TEST_F(QtTrayIconTest, remove_mouseEventsPassThrough)
{
    tray.Add(Icon(), QStringLiteral("tip"), menu);
    tray.Remove();
    QTest::mouseClick(embedded.windowHandle(), Qt::RightButton, Qt::NoModifier, QPoint(5, 5));
    EXPECT_FALSE(menu.isVisible());
    EXPECT_EQ(embedded.presses, 1);
}

} // namespace

#include "QtTrayIconTest.moc"
