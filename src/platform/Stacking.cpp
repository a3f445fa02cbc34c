// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Stacking.h"

#include <QGuiApplication>
#include <QWidget>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace {

struct FreeReply
{
    void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeReply>;

xcb_connection_t* Connection()
{
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

xcb_atom_t Atom(xcb_connection_t* connection, std::string_view name)
{
    const auto length = static_cast<std::uint16_t>(name.size());
    const ReplyPointer<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, length, name.data()), nullptr));
    return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
}

xcb_window_t Root(xcb_connection_t* connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

// The windows or atoms in a property of a window; empty if it has another type.
std::vector<std::uint32_t> ReadProperty(xcb_connection_t* connection, xcb_window_t window,
                                        xcb_atom_t property, xcb_atom_t type)
{
    constexpr std::uint32_t kMostValues = 4096;
    const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, window, property, type, 0, kMostValues), nullptr));
    if (reply == nullptr || reply->type != type) {
        return {};
    }
    const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    const auto bytes = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    return {first, first + bytes / sizeof(std::uint32_t)};
}

// The windows above @p window; empty if it is not in the order.
std::vector<xcb_window_t> WindowsAbove(const std::vector<xcb_window_t>& order, xcb_window_t window)
{
    const auto position = std::find(order.begin(), order.end(), window);
    return position == order.end() ? std::vector<xcb_window_t>()
                                   : std::vector<xcb_window_t>(position + 1, order.end());
}

bool Contains(const std::vector<std::uint32_t>& values, std::uint32_t value)
{
    return std::find(values.begin(), values.end(), value) != values.end();
}

// Whether both windows are in the order, and @p upper is above @p lower.
bool IsAbove(const std::vector<xcb_window_t>& order, xcb_window_t upper, xcb_window_t lower)
{
    return Contains(WindowsAbove(order, lower), upper);
}

} // namespace

Stacking::Stacking(std::function<void()> changed)
    : m_changed(std::move(changed))
{
    if (xcb_connection_t* const connection = Connection(); connection != nullptr) {
        m_orderProperty = Atom(connection, "_NET_CLIENT_LIST_STACKING");
        m_typeProperty = Atom(connection, "_NET_WM_WINDOW_TYPE");
        m_panelType = Atom(connection, "_NET_WM_WINDOW_TYPE_DOCK");
        m_stateProperty = Atom(connection, "_NET_WM_STATE");
        m_onTopState = Atom(connection, "_NET_WM_STATE_ABOVE");
        // Qt has already selected the PropertyNotify events of the root window.
        qGuiApp->installNativeEventFilter(this);
    }
}

Stacking::~Stacking() = default;

void Stacking::Read()
{
    if (m_orderProperty != XCB_ATOM_NONE) {
        xcb_connection_t* const connection = Connection();
        m_windowsBefore = std::exchange(
            m_windows, ReadProperty(connection, Root(connection), m_orderProperty, XCB_ATOM_WINDOW));
    }
}

bool Stacking::IsBelow(const QWidget& window, const QWidget& other) const
{
    return window.isVisible() && other.isVisible() &&
           IsAbove(m_windows, static_cast<xcb_window_t>(other.winId()),
                   static_cast<xcb_window_t>(window.winId()));
}

bool Stacking::WasRaised(const QWidget& window, const QWidget& other) const
{
    const auto id = static_cast<xcb_window_t>(window.winId());
    const std::vector<xcb_window_t> above = WindowsAbove(m_windows, id);
    const auto staysOnTop = [this](xcb_window_t upper) {
        const auto has = [upper](xcb_atom_t property, xcb_atom_t value) {
            return Contains(ReadProperty(Connection(), upper, property, XCB_ATOM_ATOM), value);
        };
        return has(m_typeProperty, m_panelType) || has(m_stateProperty, m_onTopState);
    };
    if (std::all_of(above.begin(), above.end(), staysOnTop)) {
        return true;
    }
    const auto wentBelow = [this](xcb_window_t passed, const QWidget& reference) {
        const auto referenceId = static_cast<xcb_window_t>(reference.winId());
        return IsAbove(m_windowsBefore, passed, referenceId) && IsAbove(m_windows, referenceId, passed);
    };
    return std::any_of(m_windowsBefore.begin(), m_windowsBefore.end(), [&](xcb_window_t passed) {
        return passed != other.winId() && wentBelow(passed, window) && !wentBelow(passed, other);
    });
}

bool Stacking::nativeEventFilter(const QByteArray& /*eventType*/, void* message, qintptr* /*result*/)
{
    constexpr int kTypeMask = 0x7f; // without the flag of events from other clients
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & kTypeMask) == XCB_PROPERTY_NOTIFY &&
        reinterpret_cast<const xcb_property_notify_event_t*>(event)->atom == m_orderProperty) {
        m_changed();
    }
    return false;
}
