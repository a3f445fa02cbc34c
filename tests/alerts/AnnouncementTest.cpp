// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AlertsFixture.h"

#include <QAccessible>
#include <QTest>

namespace {

/// The popup in a session with a screen reader; only there the toolkit sends announcements.
class AnnouncementTest : public AlertsFixture
{
protected:
    AnnouncementTest()
        : m_before(QAccessible::installUpdateHandler(&AnnouncementTest::Hear))
    {
        Heard().clear();
    }
    ~AnnouncementTest() override { QAccessible::installUpdateHandler(m_before); }

    static QStringList& Heard()
    {
        static QStringList heard;
        return heard;
    }

private:
    // Name, text and visibility of each alert.
    static void Hear(QAccessibleEvent* event)
    {
        if (event->type() != QAccessible::Alert) {
            return;
        }
        const auto* const popup = qobject_cast<FrmPopup*>(event->object());
        ASSERT_NE(popup, nullptr);
        Heard() << popup->accessibleName() << popup->findChild<QLabel*>(QStringLiteral("Label1"))->text()
                << (popup->isVisible() ? QStringLiteral("up") : QStringLiteral("hidden"));
    }

    QAccessible::UpdateHandler m_before;
};

TEST_F(AnnouncementTest, showPopup_tellsOfTheAlertOnceItsTextStands)
{
    ASSERT_TRUE(QTest::qWaitFor(&QAccessible::isActive, 20'000)) << "nobody listens";
    auto& popup = forms.Touch<FrmPopup>();
    EXPECT_EQ(Heard(), QStringList()) << "loaded is not shown";
    for (const auto* const prayer : {"Maghrib: 18:42", "Isha: 20:15"}) {
        popup.ShowPopup(QStringLiteral("Prayer Time:\r\n") + QLatin1String(prayer), 600);
        ASSERT_TRUE(PassSeconds(2));
        EXPECT_EQ(Heard(), (QStringList{QStringLiteral("Prayer Time: ") + QLatin1String(prayer),
                                        QStringLiteral("Prayer Time:\r\n") + QLatin1String(prayer),
                                        QStringLiteral("up")}));
        Heard().clear();
    }
}

} // namespace
