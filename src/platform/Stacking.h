// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <functional>

class QWidget;

/// The order of the windows on the screen, as the window manager publishes it (_NET_CLIENT_LIST_STACKING).
/// Without X11 the order is not known.
class Stacking final : public QAbstractNativeEventFilter
{
public:
    /// @param changed is called at each change of the order, before Qt handles the event; must not let an
    /// exception out
    explicit Stacking(std::function<void()> changed);
    ~Stacking() override;
    Stacking(const Stacking&) = delete;
    Stacking& operator=(const Stacking&) = delete;

    /// Whether @p window is below @p other, both windows of the program. False if one of them is not visible,
    /// or if the order is not known.
    [[nodiscard]] bool IsBelow(const QWidget& window, const QWidget& other) const;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    std::function<void()> m_changed;
    /// The atom of the property; 0 without X11.
    std::uint32_t m_orderProperty = 0;
};
