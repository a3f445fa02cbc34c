// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtDesktop.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>

namespace {

// Waits for an open box, records its content and acts on it as a user does.
class Onlooker
{
public:
    explicit Onlooker(std::function<void(QMessageBox&)> act)
        : m_act(std::move(act))
    {
        m_timer.setInterval(5);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Look(); });
        m_timer.start();
    }

    bool seen = false;
    QString title;
    QString text;
    QStringList buttons;
    Qt::TextFormat format = Qt::AutoText;
    bool isModal = false;

private:
    void Look()
    {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr || !box->isVisible()) {
            return;
        }
        m_timer.stop();
        seen = true;
        title = box->windowTitle();
        text = box->text();
        format = box->textFormat();
        isModal = box->isModal();
        for (const QAbstractButton* const button : box->buttons()) {
            buttons << button->text().remove(u'&');
        }
        m_act(*box);
    }

    std::function<void(QMessageBox&)> m_act;
    QTimer m_timer;
};

MessageBoxes& Boxes()
{
    static QtMessageBoxes boxes;
    return boxes;
}

void Click(QMessageBox& box, QMessageBox::StandardButton button)
{
    QTest::mouseClick(box.button(button), Qt::LeftButton);
}

TEST(QtMessageBoxes, show_textTitleAndOneButton)
{
    Onlooker onlooker([](QMessageBox& box) { Click(box, QMessageBox::Ok); });
    Boxes().Show(QStringLiteral("An error has occured, The application will be terminated."),
                 QStringLiteral("Error - 5"));
    EXPECT_TRUE(onlooker.seen);
    EXPECT_EQ(onlooker.title, QStringLiteral("Error - 5"));
    EXPECT_EQ(onlooker.text, QStringLiteral("An error has occured, The application will be terminated."));
    EXPECT_EQ(onlooker.buttons, QStringList{QStringLiteral("OK")});
    EXPECT_TRUE(onlooker.isModal);
}

TEST(QtMessageBoxes, show_withoutTitle_isTitledAsTheProgram)
{
    Onlooker onlooker([](QMessageBox& box) { Click(box, QMessageBox::Ok); });
    Boxes().Show(QStringLiteral("text"));
    EXPECT_EQ(onlooker.title, QStringLiteral("Dusk Beacon"));
}

TEST(QtMessageBoxes, ask_yesAndNo_answerByTheButton)
{
    Onlooker yes([](QMessageBox& box) { Click(box, QMessageBox::Yes); });
    EXPECT_TRUE(Boxes().Ask(QStringLiteral("Sure?"), QStringLiteral("Title")));
    EXPECT_EQ(yes.buttons, (QStringList{QStringLiteral("Yes"), QStringLiteral("No")}));
    EXPECT_EQ(yes.title, QStringLiteral("Title"));
    Onlooker no([](QMessageBox& box) { Click(box, QMessageBox::No); });
    EXPECT_FALSE(Boxes().Ask(QStringLiteral("Sure?")));
    EXPECT_EQ(no.title, QStringLiteral("Dusk Beacon"));
}

TEST(QtMessageBoxes, ask_enterKey_givesTheDefaultAnswer)
{
    const auto pressEnter = [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); };
    const Onlooker yes(pressEnter);
    EXPECT_TRUE(Boxes().Ask(QStringLiteral("Display?")));
    EXPECT_TRUE(yes.seen);
    const Onlooker no(pressEnter);
    EXPECT_FALSE(
        Boxes().Ask(QStringLiteral("Clear?"), MessageBoxes::kDefaultTitle, MessageBoxes::DefaultAnswer::No));
    EXPECT_TRUE(no.seen);
}

TEST(QtMessageBoxes, escapeOrCloseButton_closesTheBoxAndMeansNo)
{
    const auto pressEscape = [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); };
    const auto close = [](QMessageBox& box) { box.close(); };
    for (const auto& act : std::initializer_list<std::function<void(QMessageBox&)>>{pressEscape, close}) {
        Onlooker shown(act);
        Boxes().Show(QStringLiteral("text"));
        EXPECT_TRUE(shown.seen);
        Onlooker asked(act);
        EXPECT_FALSE(Boxes().Ask(QStringLiteral("Sure?")));
        EXPECT_TRUE(asked.seen);
    }
}

TEST(QtMessageBoxes, show_markup_isTextAndNothingElse)
{
    const QString markup = QStringLiteral("<b>bold</b> <img src=\"file:///etc/passwd\"> & <br>");
    Onlooker onlooker([](QMessageBox& box) { Click(box, QMessageBox::Ok); });
    Boxes().Show(markup);
    EXPECT_EQ(onlooker.format, Qt::PlainText);
    EXPECT_EQ(onlooker.text, markup);
}

TEST(QtMessageBoxes, show_endlessText_isCutAt1024)
{
    Onlooker onlooker([](QMessageBox& box) { Click(box, QMessageBox::Ok); });
    Boxes().Show(QString(100'000, u'x'));
    EXPECT_EQ(onlooker.text, QString(1024, u'x'));
    Onlooker whole([](QMessageBox& box) { Click(box, QMessageBox::Ok); });
    Boxes().Show(QString(1024, u'y'));
    EXPECT_EQ(whole.text, QString(1024, u'y'));
}

TEST(QtMessageBoxes, show_windowBelowGoes_boxStays)
{
    // As a popup closes when its time is over.
    auto window = std::make_unique<QWidget>();
    window->show();
    QApplication::setActiveWindow(window.get());
    ASSERT_EQ(QApplication::activeWindow(), window.get());
    Onlooker onlooker([&window](QMessageBox& box) {
        EXPECT_EQ(box.windowHandle()->transientParent(), window->windowHandle()) << "in front of it";
        window.reset();
        QCoreApplication::processEvents();
        ASSERT_TRUE(box.isVisible());
        Click(box, QMessageBox::Ok);
    });
    Boxes().Show(QStringLiteral("text"));
    EXPECT_TRUE(onlooker.seen);
    EXPECT_EQ(window, nullptr);
}

TEST(QtMessageBoxes, programEndsUnderTheBox_noAnswerIsGiven)
{
    // The program is told to end, as by the menu of the tray icon.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const bool isQuestion : {false, true}) {
        EXPECT_EXIT(
            {
                QTimer::singleShot(0, qApp, [isQuestion] {
                    Onlooker onlooker([](QMessageBox&) { QCoreApplication::exit(0); });
                    if (isQuestion) {
                        static_cast<void>(Boxes().Ask(QStringLiteral("Sure?")));
                    } else {
                        Boxes().Show(QStringLiteral("text"));
                    }
                    std::_Exit(99);
                });
                QCoreApplication::exec();
                std::_Exit(98);
            },
            testing::ExitedWithCode(0), "");
    }
}

} // namespace
