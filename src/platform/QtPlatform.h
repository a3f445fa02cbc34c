// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Platform.h"

#include <memory>

/// The production implementation of each interface, chosen for the system by the build.
class QtPlatform final
{
public:
    QtPlatform();
    ~QtPlatform();
    QtPlatform(const QtPlatform&) = delete;
    QtPlatform& operator=(const QtPlatform&) = delete;

    [[nodiscard]] const Platform& GetPlatform() const;

private:
    struct Implementations;

    std::unique_ptr<Implementations> m_implementations;
};
