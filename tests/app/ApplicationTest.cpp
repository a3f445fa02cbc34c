// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"

#include "alerts/FrmPopup.h"
#include "fakes/FakePlatform.h"
#include "forms/Forms.h"
#include "forms/LinkLabel.h"

#include <QAccessible>
#include <QApplication>
#include <QStyle>

#include <gtest/gtest.h>

namespace {

/// The application as main prepares it.
class ApplicationTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        QFont other(QStringLiteral("DejaVu Serif"));
        other.setPixelSize(17);
        QApplication::setFont(other);
        QApplication::setPalette(QPalette(Qt::black));
        SetUpApplication(*qApp);
    }
};

TEST_F(ApplicationTest, font_isOneFamilyForAllWindows)
{
    EXPECT_EQ(QApplication::font().family(), QStringLiteral("Liberation Sans"));
    EXPECT_EQ(QApplication::font().pixelSize(), 12);
    FakePlatform platform;
    Forms forms(platform.interfaces);
    const FrmPopup popup(forms);
    for (const QWidget* const widget : popup.findChildren<QWidget*>()) {
        EXPECT_EQ(widget->font().family(), QStringLiteral("Liberation Sans"))
            << qPrintable(widget->objectName());
        EXPECT_EQ(widget->font().pixelSize(), 12) << qPrintable(widget->objectName());
    }
}

TEST_F(ApplicationTest, coloursIconAndEnd_areTheProgramsOwn)
{
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), QColor(0xf5, 0xf2, 0xec));
    EXPECT_FALSE(QApplication::windowIcon().isNull());
    EXPECT_EQ(QGuiApplication::desktopFileName(), u"dusk-beacon");
    EXPECT_FALSE(QGuiApplication::quitOnLastWindowClosed()) << "a hidden window goes on";
}

TEST_F(ApplicationTest, screenReader_meetsThePopupAsAnAlertAndALinkAsALink)
{
    FakePlatform platform;
    Forms forms(platform.interfaces);
    FrmPopup popup(forms);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&popup)->role(), QAccessible::AlertMessage);
    LinkLabel link(nullptr);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&link)->role(), QAccessible::Link);
}

} // namespace
