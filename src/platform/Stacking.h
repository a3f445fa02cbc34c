// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <functional>
#include <vector>

class QWidget;

/// The order of the windows on the screen, as the window manager publishes it (_NET_CLIENT_LIST_STACKING).
/// Without X11 the order is not known.
/// It has no interface in Platform: a journey tests it with a window manager.
class Stacking final : public QAbstractNativeEventFilter
{
public:
    /// @param changed is called at each change of the order, before Qt handles the event; must not let an
    /// exception out
    explicit Stacking(std::function<void()> changed);
    ~Stacking() override;
    Stacking(const Stacking&) = delete;
    Stacking& operator=(const Stacking&) = delete;

    /// Reads the order; the one that was read before remains for WasRaised.
    void Read();
    /// Whether @p window is below @p other, both windows of the program. False if one of them is not visible,
    /// or if the order is not known.
    [[nodiscard]] bool IsBelow(const QWidget& window, const QWidget& other) const;
    /// Whether @p window has come over @p other because it was raised, and not because @p other was lowered:
    /// it is now above all windows but panels and windows kept on top, or above another window that was above
    /// it. A window that went below @p other as well was lowered and does not count.
    [[nodiscard]] bool WasRaised(const QWidget& window, const QWidget& other) const;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    std::function<void()> m_changed;
    /// The atom of the property; 0 without X11.
    std::uint32_t m_orderProperty = 0;
    std::uint32_t m_typeProperty = 0;
    std::uint32_t m_panelType = 0;
    std::uint32_t m_stateProperty = 0;
    std::uint32_t m_onTopState = 0;
    /// From bottom to top.
    std::vector<std::uint32_t> m_windows;
    std::vector<std::uint32_t> m_windowsBefore;
};
