// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Appearance.h"
#include "app/FirstTouchFixture.h"
#include "fakes/Contrast.h"
#include "fakes/PaintCount.h"
#include "forms/LinkLabel.h"
#include "instruments/VBCompas.h"
#include "instruments/VBSunAndMoon.h"

#include <QApplication>
#include <QIcon>
#include <QScreen>
#include <QTest>

namespace {

constexpr double kReadable = 4.5;

class MainWindowFace : public FirstTouchFixture
{
protected:
    static void SetUpTestSuite() { SetAppearance(); }

    QString SkyText() { return Find<VBSunAndMoon>("VBSunAndMoon1").accessibleName(); }
    QString CompassText() { return Find<VBCompas>("VBCompas1").accessibleName(); }
    int SkyRequests() const
    {
        return static_cast<int>(calculation.calls.filter(QStringLiteral("SunElev")).size());
    }
    void Tick(int times)
    {
        platform.clock.SetTime(9, 31, 15);
        for (int i = 0; i < times; ++i) {
            platform.timers.Ticker()->Fire();
        }
    }
};

TEST_F(MainWindowFace, updateEverything_turnsTheCompassToTheQibla)
{
    EXPECT_EQ(Text("LblAngle"), u"Angle: 58.4");
    calculation.qibla = 900;
    Window().UpdateEverything();
    EXPECT_EQ(CompassText(), u"Angle: East");
}

TEST_F(MainWindowFace, updateEverything_composesTheSkyOfTheMinute)
{
    EXPECT_EQ(SkyText(), u"Sky: day, sun 45 degrees, moon -10 degrees");
    EXPECT_EQ(SkyRequests(), 1);
    EXPECT_TRUE(calculation.calls.contains(QStringLiteral("SunElev 570")));
    EXPECT_TRUE(calculation.calls.contains(QStringLiteral("MoonElevation 570")));
    calculation.sun = -20;
    // The day begins with Shuruq at 6:30, not with Fajr at 5:00.
    const std::pair<QTime, const char16_t*> rows[] = {
        {QTime(18, 43), u"night"}, {QTime(6, 29), u"night"}, {QTime(6, 30), u"day"}};
    for (const auto& [time, name] : rows) {
        platform.clock.SetTime(time.hour(), time.minute(), 0);
        Window().UpdateEverything();
        EXPECT_EQ(SkyText(), QStringLiteral("Sky: %1, sun -2 degrees, moon -10 degrees").arg(name));
    }
}

TEST_F(MainWindowFace, updateEverything_withoutAPlaceLeavesTheInstruments)
{
    Window();
    WriteWithoutAPlace();
    calculation.qibla = 900;
    EXPECT_EQ(Window().UpdateEverything(), 0);
    EXPECT_EQ(CompassText(), u"Angle: 58.4");
    EXPECT_EQ(SkyRequests(), 1);
}

TEST_F(MainWindowFace, threeHundredTicks_refreshTheSkyOnce)
{
    Window();
    for (const int requests : {1, 2}) {
        ASSERT_EQ(SkyRequests(), requests);
        Tick(299);
        EXPECT_EQ(SkyRequests(), requests);
        Tick(1);
        EXPECT_EQ(SkyRequests(), requests + 1);
    }
    EXPECT_TRUE(calculation.calls.contains(QStringLiteral("SunElev 571")));
}

TEST_F(MainWindowFace, betweenUpdates_nothingIsDrawn)
{
    Window().Show();
    PaintCount sky(QStringLiteral("VBSunAndMoon1"));
    PaintCount compass(QStringLiteral("VBCompas1"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return sky.paints > 0 && compass.paints > 0; }));
    // Once the countdown is painted, all pending paints are done.
    PaintCount countdown(QStringLiteral("LblCountDown"));
    Find<QLabel>("LblCountDown").update();
    ASSERT_TRUE(QTest::qWaitFor([&] { return countdown.paints > 0; }));

    sky.paints = 0;
    compass.paints = 0;
    countdown.paints = 0;
    Tick(299);
    Find<QLabel>("LblCountDown").update();
    ASSERT_TRUE(QTest::qWaitFor([&] { return countdown.paints > 0; }));
    EXPECT_EQ(sky.paints, 0);
    EXPECT_EQ(compass.paints, 0);
    Tick(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return sky.paints > 0; }));
    EXPECT_EQ(compass.paints, 0);
}

// At a first start the list of places opens over the window before the desktop has placed the window.
TEST_F(MainWindowFace, placeOnTheScreen_isTheMiddle_knownBeforeTheWindowIsShown)
{
    const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
    const QPoint distance = Window().frameGeometry().center() - middle;
    EXPECT_FALSE(Window().isVisible());
    EXPECT_LE(distance.manhattanLength(), 2);
}

TEST_F(MainWindowFace, shippedPicture_hasThePixelsOfTheScreen_andFillsItsPlace)
{
    EXPECT_EQ(Find<QLabel>("Picture2").pixmap(Qt::ReturnByValue).deviceIndependentSize(), QSizeF(129, 89));
    for (const double ratio : {1.0, 1.5, 2.0, 3.0, 4.0}) {
        const QPixmap banner = ShippedPicture(QStringLiteral("Picture2"), ratio);
        EXPECT_EQ(banner.size(), (QSizeF(129, 89) * ratio).toSize()) << ratio;
        EXPECT_EQ(banner.deviceIndependentSize().toSize(), QSize(129, 89)) << ratio;
    }
    EXPECT_TRUE(ShippedPicture(QStringLiteral("NoSuchPicture"), 1.0).isNull());
}

TEST_F(MainWindowFace, windowIcon_hasSmallAndLargePictures)
{
    const QList<QSize> sizes = QApplication::windowIcon().availableSizes();
    for (const int size : {16, 22, 24, 32, 48, 64, 128}) {
        EXPECT_TRUE(sizes.contains(QSize(size, size))) << size;
    }
    EXPECT_FALSE(QApplication::windowIcon().pixmap(16, 16).isNull());
}

TEST_F(MainWindowFace, scale_isTheOneThatThisRunIsFor)
{
    const QByteArray scale = qgetenv("QT_SCALE_FACTOR");
    EXPECT_EQ(Window().devicePixelRatioF(), scale.isEmpty() ? 1.0 : scale.toDouble());
}

TEST_F(MainWindowFace, longestTexts_fitTheirLabels)
{
    const std::pair<const char*, const char*> longest[] = {
        {"LblCountDown", "-21:45 AM"},
        {"LblAngle", "Angle: 358.8"},
        {"LblCaclMeth", "Calculation Method: University Of Islamic Sciences, Karachi"},
        {"LblCaclMeth", "Calculation Method: Egyptian General Authority of Survey"},
        {"LblAsrMeth", "Asr Method: hanafi"},
        {"LblAdvWarning", "Advanced Warning: On, 120 Minutes"},
        {"LblTimeZ", "Time Zone: -12"},
        {"LblHajri", "30 Muharram ul Haram, 1448"},
        {"LblMaghribTime", "12:58 PM"},
    };
    for (const auto& [name, text] : longest) {
        const auto* const label = &Find<QLabel>(name);
        EXPECT_LE(label->fontMetrics().horizontalAdvance(QLatin1String(text)), label->width()) << name;
    }
}

TEST_F(MainWindowFace, texts_areReadableOnTheirGround)
{
    for (const QLabel* const label : Window().findChildren<QLabel*>()) {
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            const QPalette colours = label->palette();
            EXPECT_GE(Contrast(colours.color(group, label->foregroundRole()),
                               colours.color(group, QPalette::Window)),
                      kReadable)
                << qPrintable(label->objectName()) << ' ' << group;
        }
    }
}

TEST_F(MainWindowFace, colours_areReadableInAllControls)
{
    const QPalette colours = QApplication::palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const auto contrast = [&](QPalette::ColorRole text, QPalette::ColorRole ground) {
            return Contrast(colours.color(group, text), colours.color(group, ground));
        };
        EXPECT_GE(contrast(QPalette::WindowText, QPalette::Window), kReadable) << group;
        EXPECT_GE(contrast(QPalette::Link, QPalette::Window), kReadable) << group << " link";
        EXPECT_GE(contrast(QPalette::PlaceholderText, QPalette::Window), kReadable)
            << group << " greyed link";
        EXPECT_GE(contrast(QPalette::Text, QPalette::Base), kReadable) << group;
        EXPECT_GE(contrast(QPalette::ButtonText, QPalette::Button), kReadable) << group;
        EXPECT_GE(contrast(QPalette::HighlightedText, QPalette::Highlight), kReadable) << group;
        EXPECT_GE(contrast(QPalette::ToolTipText, QPalette::ToolTipBase), kReadable) << group;
    }
}

TEST_F(MainWindowFace, links_areBlue)
{
    for (const auto* const link : Window().findChildren<LinkLabel*>()) {
        if (link->isEnabled()) {
            const QColor colour = link->palette().color(link->foregroundRole());
            EXPECT_GT(colour.blue(), 2 * colour.green()) << link->objectName().toStdString();
            EXPECT_GT(colour.blue(), 2 * colour.red()) << link->objectName().toStdString();
        }
    }
}

// An alert or a dialog in front of the window disables it; its contents must not turn grey.
TEST_F(MainWindowFace, windowThatTakesNoInput_looksAsBefore)
{
    Window().show();
    const QImage before = Window().grab().toImage();
    Window().Enable(false);
    EXPECT_FALSE(Window().isEnabled());
    EXPECT_TRUE(Window().grab().toImage() == before);
    Window().hide();
    Window().show();
    EXPECT_TRUE(Window().grab().toImage() == before)
        << "the list of the first start disables it before it is shown";
    Window().Enable(true);
    EXPECT_TRUE(Window().grab().toImage() == before);
}

TEST_F(MainWindowFace, stopLink_windowDisabled_isBlueOnlyWhileEnabled)
{
    auto* const link = &Find<LinkLabel>("LblStopLink");
    const auto colour = [&] { return link->palette().color(link->foregroundRole()); };
    const QColor greyed = colour();
    EXPECT_LT(greyed.blue() - greyed.red(), 20);
    Window().Enable(false);
    EXPECT_EQ(colour(), greyed);
    link->setEnabled(true);
    EXPECT_GT(colour().blue(), 2 * colour().red());
    link->setEnabled(false);
    EXPECT_EQ(colour(), greyed);
}

// The frame's line is interrupted at the caption.
TEST_F(MainWindowFace, frame_drawsItsLineThroughTheMiddleOfTheCaption)
{
    QGroupBox frame(QStringLiteral("A && B"));
    frame.resize(120, 60);
    const QImage picture = frame.grab().toImage();
    const QRgb line = QApplication::palette().color(QPalette::Mid).rgb();
    const int row = frame.fontMetrics().height() / 2;
    EXPECT_EQ(picture.pixel(100, row), line);
    EXPECT_EQ(picture.pixel(60, 59), line);
    const int width = frame.fontMetrics().horizontalAdvance(QStringLiteral("A & B"));
    for (int x = 6; x < 8 + width + 2; ++x) {
        EXPECT_NE(picture.pixel(x, row), line) << x;
    }
    EXPECT_EQ(picture.pixel(8 + width + 8, row), line) << "one ampersand is shown, not two";
}

} // namespace
