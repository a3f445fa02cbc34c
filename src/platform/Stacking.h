// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <functional>

class QWidget;

/// The order of the windows on the screen, as the window manager publishes it (_NET_CLIENT_LIST_STACKING). On
/// a desktop other than X11 there is none.
class Stacking final : public QAbstractNativeEventFilter
{
public:
    /// @param changed is called at each change of the order; must not let an exception out
    explicit Stacking(std::function<void()> changed);
    ~Stacking() override;
    Stacking(const Stacking&) = delete;
    Stacking& operator=(const Stacking&) = delete;

    /// Whether @p window stands under @p other, both windows of the program. False while one of them is not
    /// on the screen.
    [[nodiscard]] bool IsUnder(const QWidget& window, const QWidget& other) const;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    std::function<void()> m_changed;
    /// The name of the property on the X server; 0 if there is none.
    std::uint32_t m_order = 0;
};
