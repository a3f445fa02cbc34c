// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

#include <QAccessible>

#include <set>

namespace {

/// The settings dialog in a session with a screen reader; only there the toolkit sends announcements.
class AngleAnnouncementTest : public DialogTest
{
protected:
    AngleAnnouncementTest()
        : m_before(QAccessible::installUpdateHandler(&AngleAnnouncementTest::Hear))
    {
    }
    ~AngleAnnouncementTest() override { QAccessible::installUpdateHandler(m_before); }

    // The text of the boxes as their announced changes make it.
    static QString& Heard()
    {
        static QString heard;
        return heard;
    }
    // The objects that announced a text or a caret.
    static std::set<QObject*>& Speakers()
    {
        static std::set<QObject*> speakers;
        return speakers;
    }

private:
    static void Hear(QAccessibleEvent* event)
    {
        if (event->type() == QAccessible::TextInserted) {
            const auto* const inserted = static_cast<QAccessibleTextInsertEvent*>(event);
            Heard().insert(inserted->changePosition(), inserted->textInserted());
        } else if (event->type() == QAccessible::TextRemoved) {
            const auto* const removed = static_cast<QAccessibleTextRemoveEvent*>(event);
            Heard().remove(removed->changePosition(), removed->textRemoved().size());
        } else if (event->type() == QAccessible::TextUpdated) {
            const auto* const updated = static_cast<QAccessibleTextUpdateEvent*>(event);
            Heard().replace(updated->changePosition(), updated->textRemoved().size(),
                            updated->textInserted());
        } else if (event->type() != QAccessible::TextCaretMoved &&
                   event->type() != QAccessible::TextSelectionChanged) {
            return;
        }
        Speakers().insert(event->object());
    }

    QAccessible::UpdateHandler m_before;
};

} // namespace

TEST_F(AngleAnnouncementTest, typing_announcesWhatTheBoxShows_andNothingElse)
{
    ASSERT_TRUE(QTest::qWaitFor(&QAccessible::isActive, 20'000)) << "nobody listens";
    for (const char* const keys : {"Ctrl+A - 1 6 . 5 x Backspace", "Ctrl+A x Ctrl+A 9 9",
                                   "End Left . Del 9 9", "Ctrl+A - x 9 9 Left Left Backspace"}) {
        platform.region.locale = QLocale(QStringLiteral("de_DE"));
        WriteUserDefined("-18", "-15");
        Open();
        Heard() = TextOf("TxtSetFarjAngle");
        Speakers().clear();
        for (const QString& key : QString::fromLatin1(keys).split(u' ')) {
            Press("TxtSetFarjAngle", key);
            EXPECT_EQ(Heard(), TextOf("TxtSetFarjAngle")) << keys << " at " << key.toStdString();
        }
        EXPECT_EQ(Speakers(), std::set<QObject*>{&Box("TxtSetFarjAngle")}) << keys;
        dialog->Unload();
    }
}
