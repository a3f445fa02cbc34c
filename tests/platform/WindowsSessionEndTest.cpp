// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace {

constexpr int kTooLong = 20'000;   // milliseconds
constexpr DWORD kPatience = 5'000; // of the session for each window, in milliseconds

// A program with a session end, in a state: see session.cpp.
class WindowsSessionEndTest : public testing::TestWithParam<const char*>
{
protected:
    void SetUp() override
    {
        // With windows of the system, unlike the tests.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(DUSKBEACON_SESSION), {QLatin1String(GetParam())});
        ASSERT_TRUE(program.waitForReadyRead(kTooLong));
        window = reinterpret_cast<HWND>(program.readAllStandardOutput().trimmed().toULongLong());
        if (window == nullptr) {
            program.kill();
            program.waitForFinished(kTooLong);
            GTEST_SKIP() << "Wine has no windows without a display";
        }
    }
    // The answer of the window to a message of the session; -1 without an answer.
    [[nodiscard]] LRESULT Send(UINT message, WPARAM argument, LPARAM reason = 0)
    {
        DWORD_PTR answer = 0;
        return ::SendMessageTimeoutW(window, message, argument, reason, SMTO_NORMAL, kPatience, &answer) == 0
                   ? -1
                   : static_cast<LRESULT>(answer);
    }

    QProcess program;
    HWND window = nullptr;
};

TEST_P(WindowsSessionEndTest, endOfTheSession_isNeverRefused_andEndsTheProgramNormally)
{
    EXPECT_EQ(Send(WM_QUERYENDSESSION, 0), TRUE);
    QElapsedTimer time;
    time.start();
    static_cast<void>(Send(WM_ENDSESSION, TRUE));
    ASSERT_TRUE(program.waitForFinished(kTooLong));
    EXPECT_LT(time.elapsed(), 1000);
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.readAllStandardOutput().trimmed(), "") << "the shell ends too and would not answer";
}

TEST_P(WindowsSessionEndTest, endForAnInstaller_removesTheIcon)
{
    EXPECT_EQ(Send(WM_QUERYENDSESSION, 0, ENDSESSION_CLOSEAPP), TRUE);
    static_cast<void>(Send(WM_ENDSESSION, TRUE, ENDSESSION_CLOSEAPP));
    ASSERT_TRUE(program.waitForFinished(kTooLong));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.readAllStandardOutput().trimmed(), "tidied");
}

// Qt's own window for the tray icon of a process.
HWND TrayWindow(qint64 process)
{
    for (HWND next = nullptr; (next = ::FindWindowExW(nullptr, next, nullptr, nullptr)) != nullptr;) {
        DWORD owner = 0;
        ::GetWindowThreadProcessId(next, &owner);
        wchar_t name[256] = L"";
        ::GetClassNameW(next, name, 256);
        if (owner == process && std::wstring(name).find(L"TrayIcon") != std::wstring::npos) {
            return next;
        }
    }
    return nullptr;
}

TEST_P(WindowsSessionEndTest, closedTrayWindow_endsTheProgram)
{
    const HWND tray = TrayWindow(program.processId());
    ASSERT_NE(tray, nullptr);
    ASSERT_TRUE(::PostMessageW(tray, WM_CLOSE, 0, 0));
    EXPECT_TRUE(program.waitForFinished(kTooLong / 4));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.readAllStandardOutput().trimmed(), "tidied");
    program.kill();
    program.waitForFinished(kTooLong);
}

TEST_P(WindowsSessionEndTest, sessionThatStays_changesNothing)
{
    EXPECT_EQ(Send(WM_QUERYENDSESSION, 0), TRUE);
    EXPECT_EQ(Send(WM_ENDSESSION, FALSE), 0);
    EXPECT_FALSE(program.waitForFinished(300));
    program.kill();
    program.waitForFinished(kTooLong);
}

INSTANTIATE_TEST_SUITE_P(Each, WindowsSessionEndTest, testing::Values("shown", "hidden", "disabled", "box"),
                         [](const auto& row) { return std::string(row.param); });

} // namespace
