// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainControls.h"

#include "app/Appearance.h"
#include "engine/Prayers.h"
#include "forms/Bars.h"
#include "forms/Layout.h"
#include "forms/LinkLabel.h"

#include <QGroupBox>
#include <QLabel>
#include <QPainter>

namespace {

template <typename Control>
Control* Place(Control* control, const char* name, const QRect& place)
{
    control->setObjectName(QLatin1String(name));
    control->setGeometry(place);
    return control;
}

QGroupBox* Frame(QWidget& window, const char* name, const QString& caption, const QRect& place)
{
    auto* const frame = Place(new QGroupBox(caption, &window), name, place);
    // The pointer stays as it is over whatever has no say in it.
    frame->setAttribute(Qt::WA_NoMousePropagation);
    return frame;
}

QLabel* Text(QWidget& parent, const char* name, const QString& caption, const QRect& place)
{
    auto* const label = Place(new QLabel(caption, &parent), name, place);
    label->setTextFormat(Qt::PlainText);
    label->setAttribute(Qt::WA_NoMousePropagation);
    return label;
}

/// One of the program's pictures, at the pixels of the screen on which it is painted.
class PictureLabel final : public QLabel
{
public:
    PictureLabel(const QString& name, QWidget* parent)
        : QLabel(parent)
        , m_name(name)
    {
        MatchScreen();
    }

protected:
    // Drawn here: the base class greys a picture whose window takes no input.
    void paintEvent(QPaintEvent* /*event*/) override
    {
        MatchScreen();
        QPainter(this).drawPixmap(contentsRect().topLeft(), pixmap());
    }

private:
    void MatchScreen()
    {
        if (m_ratio != devicePixelRatioF()) {
            m_ratio = devicePixelRatioF();
            setPixmap(ShippedPicture(m_name, m_ratio));
        }
    }

    QString m_name;
    double m_ratio = 0.0;
};

LinkLabel* Link(QWidget& parent, const char* name, const QString& caption, const QRect& place)
{
    auto* const link = Place(new LinkLabel(&parent), name, place);
    link->setText(caption);
    return link;
}

} // namespace

MainControls::MainControls(QWidget& window)
{
    BuildSettingsBlock(window);
    BuildLeftColumn(window);
    BuildPrayerFrame(window);
}

void MainControls::BuildSettingsBlock(QWidget& window)
{
    Picture2 = Place(new PictureLabel(QStringLiteral("Picture2"), &window), "Picture2",
                     TwipsRect(120, 0, 1935, 1455));
    Picture2->setAttribute(Qt::WA_NoMousePropagation);
    Picture2->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    Picture2->setAccessibleName(QStringLiteral("Dusk Beacon home page"));

    Frame2 = Frame(window, "Frame2", QStringLiteral("Location and Setting Information"),
                   TwipsRect(2160, 0, 6735, 1335));
    LblLocation = Text(*Frame2, "LblLocation", QString(), TwipsRect(120, 270, 6495, 240));
    LblCaclMeth =
        Text(*Frame2, "LblCaclMeth", QStringLiteral("Calculation Method:"), TwipsRect(120, 525, 6495, 240));
    LblAsrMeth = Text(*Frame2, "LblAsrMeth", QStringLiteral("Asr Method:"), TwipsRect(120, 780, 3195, 240));
    LblDLSavings = Text(*Frame2, "LblDLSavings", QStringLiteral("Day Light Savings is:"),
                        TwipsRect(3420, 780, 3195, 240));
    LblTimeZ = Text(*Frame2, "LblTimeZ", QStringLiteral("Time Zone:"), TwipsRect(120, 1035, 3195, 240));
    LblAdvWarning =
        Text(*Frame2, "LblAdvWarning", QStringLiteral("Advanced Warning:"), TwipsRect(3420, 1035, 3195, 240));
    QFont bold = LblLocation->font();
    bold.setBold(true);
    LblLocation->setFont(bold);

    Frame6 =
        Frame(window, "Frame6", QStringLiteral("Sun && Moon position"), TwipsRect(3120, 1440, 4335, 2535));
    Label2 = Text(*Frame6, "Label2", QStringLiteral("Progression of the sun and moon in the sky"),
                  TwipsRect(120, 2235, 4095, 240));
    Label2->setAlignment(Qt::AlignCenter);
}

void MainControls::BuildLeftColumn(QWidget& window)
{
    Label3 =
        Text(window, "Label3", QStringLiteral("Time till next prayer:"), TwipsRect(120, 1560, 1440, 240));
    // The countdown stands close behind; the letters step together rather than shrink.
    QFont narrow = Label3->font();
    narrow.setStretch(QFont::SemiCondensed);
    Label3->setFont(narrow);
    LblCountDown = Text(window, "LblCountDown", QString(), TwipsRect(1560, 1560, 1485, 240));
    QFont bold = LblCountDown->font();
    bold.setBold(true);
    LblCountDown->setFont(bold);

    FrmOptions = Frame(window, "FrmOptions", QStringLiteral("Options"), TwipsRect(120, 1920, 1935, 1275));
    LblLocLink = Link(*FrmOptions, "LblLocLink", QStringLiteral("Locations"), TwipsRect(120, 270, 1695, 240));
    LblAlertsLink =
        Link(*FrmOptions, "LblAlertsLink", QStringLiteral("Alerts"), TwipsRect(120, 510, 1695, 240));
    LblHelp = Link(*FrmOptions, "LblHelp", QStringLiteral("Help"), TwipsRect(120, 750, 1695, 240));
    LblGetMoreLink = Link(*FrmOptions, "LblGetMoreLink", QStringLiteral("More Sound Files"),
                          TwipsRect(120, 990, 1695, 240));

    LblVolume = Text(window, "LblVolume", QStringLiteral("Volume Control:"), TwipsRect(120, 3240, 1695, 255));
    VolControl = Place(new LevelBar(&window), "VolControl", TwipsRect(120, 3480, 1815, 255));
    VolControl->setRange(0, 100);
    VolControl->setAttribute(Qt::WA_NoMousePropagation);
    VolControl->setAccessibleName(QStringLiteral("Volume"));
    LblStopLink = Link(window, "LblStopLink", QStringLiteral("Stop Playing"), TwipsRect(480, 3840, 975, 255));
    LblStopLink->setFont(narrow);
    LblStopLink->setEnabled(false);

    Frame3 = Frame(window, "Frame3", QStringLiteral("Qibla Direction"), TwipsRect(120, 4200, 1695, 2055));
}

void MainControls::BuildPrayerFrame(QWidget& window)
{
    PrayerFrame = Frame(window, "PrayerFrame", QStringLiteral("Date:"), TwipsRect(1920, 5040, 6990, 1215));
    Label1 = Text(*PrayerFrame, "Label1", QStringLiteral("Hajri Date: "), TwipsRect(480, 300, 1080, 240));
    LblHajri = Text(*PrayerFrame, "LblHajri", QString(), TwipsRect(1560, 300, 5280, 240));

    int left = 480;
    for (std::int16_t tab = kPrayers.front().tab; tab <= kPrayers.back().tab; ++tab) {
        const Prayer& prayer = *PrayerOfTab(tab);
        PrayerColumns.push_back(
            {&prayer,
             Link(*PrayerFrame, prayer.link.latin1(), prayer.caption + u':', TwipsRect(left, 600, 1050, 240)),
             Text(*PrayerFrame, prayer.time.latin1(), QString(), TwipsRect(left, 840, 1050, 255))});
        left += 1080;
    }
}
