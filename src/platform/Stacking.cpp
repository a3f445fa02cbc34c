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

struct Releaser
{
    void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, Releaser>;

xcb_connection_t* Connection()
{
    const auto* const desktop = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return desktop == nullptr ? nullptr : desktop->connection();
}

xcb_atom_t Atom(xcb_connection_t* connection, std::string_view name)
{
    const auto length = static_cast<std::uint16_t>(name.size());
    const ReplyPointer<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, length, name.data()), nullptr));
    return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
}

// The windows of the screen, the lowest first.
std::vector<xcb_window_t> WindowsInOrder(xcb_connection_t* connection, xcb_atom_t order)
{
    constexpr std::uint32_t kMostWindows = 4096;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, root, order, XCB_ATOM_WINDOW, 0, kMostWindows), nullptr));
    if (reply == nullptr || reply->type != XCB_ATOM_WINDOW) {
        return {};
    }
    const auto* const first = static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
    const auto bytes = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    return {first, first + bytes / sizeof(xcb_window_t)};
}

} // namespace

Stacking::Stacking(std::function<void()> changed)
    : m_changed(std::move(changed))
{
    if (xcb_connection_t* const connection = Connection(); connection != nullptr) {
        m_order = Atom(connection, "_NET_CLIENT_LIST_STACKING");
        // Qt itself asks the X server for the changes of properties of the root window.
        qGuiApp->installNativeEventFilter(this);
    }
}

Stacking::~Stacking() = default;

bool Stacking::IsUnder(const QWidget& window, const QWidget& other) const
{
    if (m_order == XCB_ATOM_NONE || !window.isVisible() || !other.isVisible()) {
        return false;
    }
    const std::vector<xcb_window_t> windows = WindowsInOrder(Connection(), m_order);
    const auto place = std::find(windows.begin(), windows.end(), window.winId());
    return std::find(place, windows.end(), other.winId()) != windows.end();
}

bool Stacking::nativeEventFilter(const QByteArray& /*eventType*/, void* message, qintptr* /*result*/)
{
    constexpr int kType = 0x7f;
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & kType) == XCB_PROPERTY_NOTIFY &&
        reinterpret_cast<const xcb_property_notify_event_t*>(event)->atom == m_order) {
        m_changed();
    }
    return false;
}
