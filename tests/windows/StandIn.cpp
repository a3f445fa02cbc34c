// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Takes the place of the installed program in the tests of the installer. Owns a hidden window. Ends when the
// session does, or, if its command line has the word "stay", answers that the session may end and goes on.
#include <windows.h>

#include <cwchar>

namespace {

bool stays = false;

LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM word, LPARAM number)
{
    if (message == WM_ENDSESSION && word != 0 && !stays) {
        ExitProcess(0);
    }
    return DefWindowProcW(window, message, word, number);
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, PWSTR commandLine, int /*show*/)
{
    stays = std::wcsstr(commandLine, L"stay") != nullptr;
    WNDCLASSW kind = {};
    kind.lpfnWndProc = Answer;
    kind.hInstance = instance;
    kind.lpszClassName = L"StandIn";
    RegisterClassW(&kind);
    CreateWindowW(L"StandIn", L"Stand-in", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr, instance,
                  nullptr);
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}
