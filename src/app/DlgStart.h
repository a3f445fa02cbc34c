// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"
#include "platform/Clock.h"

#include <memory>

class QLabel;

/// The splash window.
class DlgStart final : public Form
{
    Q_OBJECT

public:
    static constexpr QLatin1String kName{"DlgStart"};

    explicit DlgStart(Forms& forms);

private:
    void Tick();

    QLabel* m_label2 = nullptr;
    std::unique_ptr<Timer> m_timer1;
    int DotCount = 0;
};
