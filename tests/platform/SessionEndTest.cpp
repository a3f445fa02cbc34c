// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SessionEnd.h"

#include "fakes/Desk.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

namespace {

/// Refuses to close, as a disabled window does.
class StubbornWindow final : public QWidget
{
protected:
    void closeEvent(QCloseEvent* event) override { event->ignore(); }
};

// Limits the main loop, so that a defect is a failure and no hang.
constexpr int kTooLong = 10000;
constexpr int kNotEnded = 99;

int RunUntilEnd()
{
    QTimer::singleShot(kTooLong, qApp, [] { QCoreApplication::exit(kNotEnded); });
    return QCoreApplication::exec();
}

class SessionSignalTest : public testing::TestWithParam<int>
{
protected:
    // Qt has threads, which a fork without exec would lose.
    static void SetUpTestSuite() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    // A test started in the background may inherit ignored signals.
    SessionSignalTest() { signal(GetParam(), SIG_DFL); }
};

TEST_P(SessionSignalTest, signal_endsTheMainLoopNormally)
{
    SessionEnd sessionEnd;
    int tidied = 0;
    StubbornWindow window;
    window.show();
    sessionEnd.EnterMainLoop([&] { ++tidied; });
    QTimer::singleShot(0, qApp, [] { raise(GetParam()); });
    EXPECT_EQ(RunUntilEnd(), 0);
    EXPECT_EQ(tidied, 1);
}

TEST_P(SessionSignalTest, signal_beforeTheMainLoop_endsAtOnce)
{
    EXPECT_EXIT(
        {
            const SessionEnd sessionEnd;
            raise(GetParam());
        },
        testing::ExitedWithCode(0), "");
}

TEST_P(SessionSignalTest, secondSignal_doesNotWaitForTheFirst)
{
    EXPECT_EXIT(
        {
            SessionEnd sessionEnd;
            sessionEnd.EnterMainLoop([] {});
            raise(GetParam());
            raise(GetParam());
        },
        testing::ExitedWithCode(0), "");
}

TEST_P(SessionSignalTest, signal_insideAWaitOfAHandler_endsWithoutAnAnswer)
{
    EXPECT_EXIT(
        {
            SessionEnd sessionEnd;
            sessionEnd.EnterMainLoop([] {});
            QTimer::singleShot(0, qApp, [] {
                raise(GetParam());
                QEventLoop box;
                QTimer::singleShot(kTooLong, &box, &QEventLoop::quit);
                box.exec();
                std::_Exit(kNotEnded);
            });
            QCoreApplication::exec();
            std::_Exit(kNotEnded);
        },
        testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(
    Each, SessionSignalTest, testing::Values(SIGTERM, SIGINT, SIGHUP), [](const auto& row) {
        return std::string(row.param == SIGTERM ? "TERM" : row.param == SIGINT ? "INT" : "HUP");
    });

TEST(SessionEnd, quitOfTheSession_asksNoWindow)
{
    SessionEnd sessionEnd;
    StubbornWindow window;
    window.show();
    int tidied = 0;
    sessionEnd.EnterMainLoop([&] { ++tidied; });
    QTimer::singleShot(0, qApp, [] {
        QEvent quit(QEvent::Quit);
        QCoreApplication::sendEvent(qApp, &quit);
    });
    EXPECT_EQ(RunUntilEnd(), 0);
    EXPECT_EQ(tidied, 1);
}

TEST(SessionEnd, hangUpOrInterruptIgnoredAtTheStart_staysIgnored)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const int number : {SIGINT, SIGHUP}) {
        EXPECT_EXIT(
            {
                signal(number, SIG_IGN);
                {
                    SessionEnd sessionEnd;
                    raise(number);
                    sessionEnd.EnterMainLoop([] {});
                    raise(number);
                }
                raise(number);
                std::_Exit(kNotEnded);
            },
            testing::ExitedWithCode(kNotEnded), "");
    }
}

TEST(SessionEnd, terminationIgnoredAtTheStart_endsTheProgram)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            signal(SIGTERM, SIG_IGN);
            const SessionEnd sessionEnd;
            raise(SIGTERM);
            std::_Exit(kNotEnded);
        },
        testing::ExitedWithCode(0), "");
}

TEST(SessionEnd, destroyed_restoresTheSignals)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            {
                const SessionEnd sessionEnd;
            }
            raise(SIGTERM);
        },
        testing::KilledBySignal(SIGTERM), "");
}

TEST(SessionEnd, noPipe_abortsWithAMessage)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            // Without a core file.
            const rlimit none{};
            setrlimit(RLIMIT_CORE, &none);
            setrlimit(RLIMIT_NOFILE, &none);
            const SessionEnd sessionEnd;
            std::_Exit(kNotEnded);
        },
        testing::KilledBySignal(SIGABRT), "No pipe for signals");
}

} // namespace
