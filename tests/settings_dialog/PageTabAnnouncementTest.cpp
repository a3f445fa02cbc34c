// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

#include <QAccessible>

namespace {

/// The labels of the pages in a session with a screen reader.
class PageTabAnnouncementTest : public DialogTest
{
protected:
    static void SetUpTestSuite() { InstallLinkAccessibility(); }
    PageTabAnnouncementTest()
        : m_before(QAccessible::installUpdateHandler(&PageTabAnnouncementTest::Hear))
    {
    }
    ~PageTabAnnouncementTest() override { QAccessible::installUpdateHandler(m_before); }

    static QStringList& Heard()
    {
        static QStringList heard;
        return heard;
    }

private:
    // The two events for which Qt sends the state "selected" to AT-SPI.
    static void Hear(QAccessibleEvent* event)
    {
        if (event->type() == QAccessible::Selection || event->type() == QAccessible::SelectionRemove) {
            const bool isSelected = event->accessibleInterface()->state().selected;
            Heard() << event->object()->objectName() +
                           (isSelected ? QStringLiteral(" selected") : QStringLiteral(" not selected"));
        }
    }

    QAccessible::UpdateHandler m_before;
};

} // namespace

TEST_F(PageTabAnnouncementTest, changeOfPage_announcesTheLabelsThatChange)
{
    ASSERT_TRUE(QTest::qWaitFor(&QAccessible::isActive, 20'000)) << "nobody listens";
    Open();
    Heard().clear();
    Click("LblFajr");
    Click("LblFajr");
    EXPECT_EQ(Heard().join(u'|'), u"LblGeneral not selected|LblFajr selected");
}
