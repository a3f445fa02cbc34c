// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Guard.h"

#include "platform/MessageBoxes.h"
#include "platform/Platform.h"
#include "platform/Process.h"
#include "support/RuntimeError.h"

namespace {

void EndWithUntrappedError(const Platform& platform, const QString& number, const QString& description)
{
    platform.boxes.Show(QStringLiteral("Run-time error '%1':\r\n\r\n%2").arg(number, description));
    platform.process.End();
}

} // namespace

void RunGuarded(const Platform& platform, const std::function<void()>& handler) noexcept
{
    try {
        handler();
    } catch (const RuntimeError& error) {
        EndWithUntrappedError(platform, QString::number(error.Number()), error.Description());
    } catch (const std::exception& error) {
        EndWithUntrappedError(platform, QStringLiteral("51"), QString::fromUtf8(error.what()));
    }
}

void EndWithFatalBox(const Platform& platform, int number)
{
    platform.boxes.Show(QStringLiteral("An error has occured, The application will be terminated."),
                        QStringLiteral("Error - %1").arg(number));
    platform.process.End();
}
