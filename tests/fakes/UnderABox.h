// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/Desk.h"
#include "platform/QtDesktop.h"

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

/// Shows a real message box, runs @p act while it is open, and answers it.
inline void UnderABox(const std::function<void(QMessageBox&)>& act,
                      const QString& text = QStringLiteral("A box."))
{
    const QWidget* const below = QApplication::activeModalWidget();
    bool isAnswered = false;
    QTimer::singleShot(0, qApp, [&] {
        ASSERT_TRUE(QTest::qWaitFor([&] {
            const QWidget* const modal = QApplication::activeModalWidget();
            return modal != below && modal != nullptr && modal->windowHandle()->isExposed();
        }));
        auto& box = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
        Desk::Settle();
        act(box);
        ASSERT_TRUE(box.isVisible()) << "the box goes on waiting for its answer";
        Desk::Click(*box.button(QMessageBox::Ok));
        // On Windows an event loop that was ended while events were served inside it looks at that with the
        // next event only.
        QTimer::singleShot(0, qApp, [] {});
        isAnswered = true;
    });
    QtMessageBoxes().Show(text, MessageBoxes::kDefaultTitle);
    EXPECT_TRUE(isAnswered);
}
