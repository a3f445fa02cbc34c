# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""A StatusNotifier watcher and host on the session bus that obeys the commands of a script.

Reads requests from PATH.request and writes the answers to PATH.answer; PATH.ready tells that it is there.
"""
import os
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

WATCHER = "org.kde.StatusNotifierWatcher"
PROPERTIES = "org.freedesktop.DBus.Properties"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
INTROSPECTION = f"""<node><interface name="{WATCHER}">
<method name="RegisterStatusNotifierItem"><arg direction="in" type="s" name="service"/></method>
<method name="RegisterStatusNotifierHost"><arg direction="in" type="s" name="service"/></method>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<property name="RegisteredStatusNotifierItems" type="as" access="read"/>
<property name="ProtocolVersion" type="i" access="read"/>
</interface></node>"""


class Watcher(dbus.service.Object):
    def __init__(self, bus, path):
        super().__init__(bus, "/StatusNotifierWatcher")
        self.bus = bus
        self.path = path
        self.items = []
        self.has_host = True

    @dbus.service.method("org.freedesktop.DBus.Introspectable", out_signature="s")
    def Introspect(self):
        return INTROSPECTION

    @dbus.service.method(WATCHER, in_signature="s", sender_keyword="sender")
    def RegisterStatusNotifierItem(self, service, sender):
        self.items.append(sender)

    @dbus.service.method(PROPERTIES, in_signature="ss", out_signature="v")
    def Get(self, _interface, name):
        return self.GetAll(_interface)[name]

    @dbus.service.method(PROPERTIES, in_signature="s", out_signature="a{sv}")
    def GetAll(self, _interface):
        return {
            "IsStatusNotifierHostRegistered": dbus.Boolean(self.has_host),
            "RegisteredStatusNotifierItems": dbus.Array(self.items, signature="s"),
            "ProtocolVersion": dbus.Int32(0),
        }

    def forget_the_gone(self):
        self.items = [item for item in self.items if self.bus.name_has_owner(item)]

    def item(self):
        return self.bus.get_object(self.items[-1], "/StatusNotifierItem", introspect=False)

    def item_property(self, name):
        return self.item().Get(ITEM, name, dbus_interface=PROPERTIES)

    def icon(self):
        """The size of the smallest picture, and whether there is anything in it."""
        width, height, pixels = min(self.item_property("IconPixmap"), default=(0, 0, b""))
        return f"{width}x{height} {'painted' if any(pixels) else 'blank'}"

    def menu(self):
        return self.bus.get_object(self.items[-1], self.item_property("Menu"), introspect=False)

    def entries(self):
        _revision, (_id, _properties, children) = self.menu().GetLayout(
            0, -1, dbus.Array([], signature="s"), dbus_interface=MENU)
        return [(str(child[1]["label"]), int(child[0])) for child in children]

    def answer(self, request):
        words = request.split()
        if words[0] == "items":
            self.forget_the_gone()
            return str(len(self.items))
        if words[0] == "tip":
            return str(self.item_property("ToolTip")[2])
        if words[0] == "menu":
            return " ".join(label for label, _id in self.entries())
        if words[0] == "icon":
            return self.icon()
        if words[0] == "activate":
            self.item().Activate(0, 0, dbus_interface=ITEM)
        elif words[0] == "click":
            self.menu().Event(dict(self.entries())[words[1]], "clicked", dbus.String("", variant_level=1),
                              dbus.UInt32(0), dbus_interface=MENU)
        elif words[0] == "context":
            self.item().ContextMenu(300, 300, dbus_interface=ITEM)
        elif words[0] in ("leave", "return"):
            self.has_host = words[0] == "return"
        return "done"

    def look(self):
        request_path = self.path + ".request"
        if os.path.exists(request_path):
            with open(request_path, encoding="utf-8") as file:
                request = file.read()
            os.remove(request_path)
            try:
                answer = self.answer(request)
            except dbus.DBusException as error:
                answer = f"error {error}"
            with open(self.path + ".part-answer", "w", encoding="utf-8") as file:
                file.write(answer)
            os.rename(self.path + ".part-answer", self.path + ".answer")
        return True


def main():
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    name = dbus.service.BusName(WATCHER, bus)
    watcher = Watcher(bus, sys.argv[1])
    GLib.timeout_add(20, watcher.look)
    with open(sys.argv[1] + ".ready", "w", encoding="utf-8"):
        pass
    GLib.MainLoop().run()
    return name


main()
