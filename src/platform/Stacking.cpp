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

// The windows of the screen from bottom to top.
std::vector<xcb_window_t> WindowsInOrder(xcb_connection_t* connection, xcb_atom_t property)
{
    constexpr std::uint32_t kMostWindows = 4096;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, root, property, XCB_ATOM_WINDOW, 0, kMostWindows),
        nullptr));
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
        m_orderProperty = Atom(connection, "_NET_CLIENT_LIST_STACKING");
        // Qt has already selected the PropertyNotify events of the root window.
        qGuiApp->installNativeEventFilter(this);
    }
}

Stacking::~Stacking() = default;

bool Stacking::IsBelow(const QWidget& window, const QWidget& other) const
{
    if (m_orderProperty == XCB_ATOM_NONE || !window.isVisible() || !other.isVisible()) {
        return false;
    }
    const std::vector<xcb_window_t> windows = WindowsInOrder(Connection(), m_orderProperty);
    const auto position = std::find(windows.begin(), windows.end(), window.winId());
    return std::find(position, windows.end(), other.winId()) != windows.end();
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
