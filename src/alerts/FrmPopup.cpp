// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "alerts/FrmPopup.h"

#include "forms/Forms.h"
#include "forms/Letters.h"
#include "platform/BesideBox.h"
#include "platform/Clock.h"
#include "platform/Platform.h"
#include "support/Conversions.h"
#include "ui_FrmPopup.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>

namespace {

// Intended: always in 12-hour form, without leading zeros, and with AM for the hour from 12:00 on, as in the
// prayer times.
QString ClockText(const QTime& time)
{
    const auto text = [&](int hour, QLatin1String half) {
        return QString::number(hour) + u':' + QString::number(time.minute()) + u':' +
               QString::number(time.second()) + half;
    };
    if (time.hour() > 12) {
        return text(time.hour() - 12, QLatin1String(" PM"));
    }
    return text(time.hour() == 0 ? 12 : time.hour(), QLatin1String(" AM"));
}

QAccessibleInterface* CreatePopupInterface(const QString& /*className*/, QObject* object)
{
    auto* const popup = qobject_cast<FrmPopup*>(object);
    return popup != nullptr ? new QAccessibleWidget(popup, QAccessible::AlertMessage) : nullptr;
}

} // namespace

FrmPopup::FrmPopup(Forms& forms)
    : Form(forms, kName,
           Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
               Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint)
    , m_ui(std::make_unique<Ui::FrmPopup>())
    , Timer1(GetPlatform().timers.CreateTimer())
{
    m_ui->setupUi(this);
    // The user may be typing in another window.
    setAttribute(Qt::WA_ShowWithoutActivating);
    // At normal width the widest time would be cut off.
    NarrowLetters(*m_ui->LblCurrTime);
    connect(m_ui->Command1, &QPushButton::clicked, this, [this] {
        Handle([this] {
            Timer1->SetEnabled(false);
            Unload();
        });
    });
    Timer1->SetHandler([this] { Handle([this] { OnTick(); }); });
}

FrmPopup::~FrmPopup() = default;

void FrmPopup::OnLoad()
{
    m_limit = 0;
    Timer1->SetInterval(1000);
    Timer1->SetEnabled(false);
}

void FrmPopup::ShowPopup(const QString& Message, std::int16_t SecLifeSpan)
{
    Siblings().Main().Enable(false);
    setEnabled(true);
    // Set before Show: a screen reader reads the name when the window appears.
    setAccessibleName(Message.simplified());
    MoveToCentre();
    Show();
    Variables().ActiveForm = Name();
    m_counter = 0;
    m_ui->Label1->setText(Message);
    m_limit = SecLifeSpan;
    Timer1->SetEnabled(true);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void FrmPopup::MoveToCentre()
{
    // A main window that is hidden in the notification area keeps its position.
    const Form* const main = Siblings().Loaded(MainForm::kName);
    const QScreen* screen =
        main != nullptr ? QGuiApplication::screenAt(main->frameGeometry().center()) : nullptr;
    if (screen == nullptr) {
        screen = main != nullptr ? main->screen() : QGuiApplication::primaryScreen();
    }
    if (screen == nullptr) {
        return;
    }
    const QRect area = screen->availableGeometry();
    QRect place(QPoint(), size());
    place.moveCenter(area.center());
    move(place.topLeft());
    const auto boxes = ShownWindows([](const QWidget& window) { return window.isModal(); });
    if (!boxes.empty()) {
        MoveClear(*this, area, boxes, area);
    }
}

bool FrmPopup::event(QEvent* event)
{
    // A message box must not block the popup, which closes after its time even if the box is still open.
    if (event->type() == QEvent::WindowBlocked) {
        UnblockWindow(*this);
    }
    return Form::event(event);
}

void FrmPopup::OnTick()
{
    m_counter = AddInteger16(m_counter, 1);
    if (m_counter >= m_limit) {
        Unload();
    }
    // Intended: also in the tick that unloads the window. Touch then creates and loads a new, hidden one,
    // which the next alert uses.
    Siblings().Touch<FrmPopup>().m_ui->LblCurrTime->setText(ClockText(GetPlatform().clock.Now().time()));
}

void FrmPopup::OnUnload()
{
    Timer1->SetEnabled(false);
    Siblings().Main().Enable(true);
    Variables().ActiveForm = MainForm::kName;
}

void InstallPopupAccessibility()
{
    QAccessible::installFactory(CreatePopupInterface);
}
