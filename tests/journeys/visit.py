# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the journeys to the service share: a network of their own, faults of the service, message boxes, lists."""
import fcntl
import os
import socket
import struct
import subprocess
import sys
import urllib.parse
import urllib.request
import xml.etree.ElementTree

import hands
import screen
from screen import Atspi, GLib

MAIN = "Dusk Beacon v1.0.5"
LIST = "Dusk Beacon: Location"
SEARCH = "Dusk Beacon: New Location"


def under_own_network():
    """Starts this script again where only a loopback is, so that nothing else answers at the service's port. Where the
    system gives none, the common loopback has to do."""
    if os.environ.get("DUSKBEACON_JOURNEY") != "1" and os.environ.get("DUSKBEACON_NETWORK") != "1":
        command = ["unshare", "--net"] + (["--map-root-user"] if os.geteuid() != 0 else [])
        try:
            if subprocess.run([*command, "true"], stderr=subprocess.DEVNULL).returncode == 0:
                os.environ["DUSKBEACON_NETWORK"] = "1"
                os.execvp(command[0], [*command, sys.executable, *sys.argv])
        except FileNotFoundError:
            pass
    if os.environ.get("DUSKBEACON_NETWORK") == "1":
        with socket.socket() as door:
            interface_up = struct.pack("16sh", b"lo", 0x41)  # IFF_UP and IFF_RUNNING
            fcntl.ioctl(door, 0x8914, interface_up)  # SIOCSIFFLAGS


class Service(hands.Service):
    def fault(self, how, *scripts):
        """Makes these scripts misbehave in that way from now on; "ok" makes them well again."""
        query = urllib.parse.urlencode([("fault", f"{script}={how}") for script in scripts])
        direct = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        direct.open(f"http://127.0.0.1:{hands.SERVICE_PORT}/control?{query}", timeout=screen.PATIENCE).close()

    def asked(self):
        """All requests to the service in the order of their arrival; the probes of the network aren't among them."""
        return [line for line in self._lines() if line.startswith("/cgi-bin/dbeacon/")]

    def probes(self):
        return sum(line.startswith("http://") for line in self._lines())

    def refusals(self):
        """How often somebody saw the certificate of the service's other door and turned away."""
        return self._lines().count("refused certificate")

    def check_asked(self, expected):
        """These requests and no other, in this order."""
        screen.wait_for(f"{expected}, not {self._lines()}", lambda: len(self.asked()) >= len(expected))
        assert self.asked() == expected, f"{self.asked()}, not {expected}"

    def forget(self):
        with self._lock:
            self._requests.clear()

    def _lines(self):
        with self._lock:
            return list(self._requests)


class Window(hands.Window):
    def lines(self, name="Locations"):
        """The lines of the window's list of that name."""
        try:
            for node in screen._nodes(self._program.window(self.title)):
                if node.get_role_name() == "list" and node.get_name() == name:
                    return [node.get_child_at_index(i).get_name() for i in range(node.get_child_count())]
        except (GLib.Error, AttributeError):  # A window that is just coming or going.
            pass
        return []

    def results(self):
        return self.lines("City Search Results")

    def pick(self, name):
        self.click("list item", name)
        screen.wait_for(f"{name} to be selected", lambda: name in self.selected())

    def selected(self):
        """The selected lines of all lists of the window, a combo box's among them."""
        try:
            return [node.get_name() for node in screen._nodes(self._program.window(self.title))
                    if node.get_role_name() == "list item" and node.get_state_set().contains(Atspi.StateType.SELECTED)]
        except (GLib.Error, AttributeError):
            return []

    def click_described(self, role, description):
        """With the mouse on the control of that description, where names don't tell controls apart."""
        for node in screen._nodes(self._program.window(self.title)):
            if node.get_role_name() == role and node.get_description() == description:
                _click(node)
                return
        raise AssertionError(f"no {role} to {description} in {self.title}")

    def double_click(self, role, name):
        _click(self.control(role, name), "--repeat", 2)

    def is_idle(self):
        """Whether both links of the search window are live and its progress is hidden."""
        try:
            nodes = list(screen._nodes(self._program.window(self.title)))
            links = [node for node in nodes if node.get_role_name() == "link"]
            return all(node.get_state_set().contains(Atspi.StateType.ENABLED) for node in links) and not any(
                node.get_role_name() == "progress bar" and node.get_state_set().contains(Atspi.StateType.SHOWING)
                for node in nodes)
        except (GLib.Error, AttributeError):
            return False

    def progress(self):
        return Atspi.Value.get_current_value(self.control("progress bar", "Search Progress"))

    def open_combo(self):
        _click(self._combo())

    def chosen(self):
        """What the closed combo box of the window stands on: that is what it is called by."""
        try:
            node = self._combo()
            is_open = node is None or node.get_state_set().contains(Atspi.StateType.EXPANDED)
            return None if is_open else node.get_name()
        except (GLib.Error, AttributeError):
            return None

    def _combo(self):
        for node in screen._nodes(self._program.window(self.title)):
            if node.get_role_name() == "combo box":
                return node
        return None

    def wait_gone(self):
        screen.wait_for(f"{self.title} to be gone", lambda: not self.is_open())

    def is_usable(self):
        """Whether the window itself takes mouse and keys."""
        try:
            return self._program.window(self.title).get_state_set().contains(Atspi.StateType.ENABLED)
        except (GLib.Error, AttributeError):
            return False


def _click(node, *options):
    place = node.get_extents(Atspi.CoordType.SCREEN)
    hands.mouse("mousemove", place.x + place.width // 2, place.y + place.height // 2, "click", *options, 1)


def is_waiting(program):
    """Whether the window is shown that asks to wait."""
    try:
        application = program.application()
        windows = [application.get_child_at_index(i) for i in range(application.get_child_count())]
        return any("Please Wait..." in screen._names(window) and window.get_state_set().contains(Atspi.StateType.SHOWING)
                   for window in windows if window is not None)
    except (GLib.Error, AttributeError):
        return False


def box(program):
    """The text of the message box that is shown, and what its buttons say; None without one."""
    try:
        application = program.application()
        for i in range(application.get_child_count() if application else 0):
            window = application.get_child_at_index(i)
            if window is None or not window.get_state_set().contains(Atspi.StateType.SHOWING):
                continue
            if "alert" in window.get_role_name() or "dialog" in window.get_role_name():
                nodes = list(screen._nodes(window))[1:]
                text = [node.get_name() for node in nodes if node.get_role_name() == "label" and node.get_name()]
                buttons = {node.get_name().replace("&", ""): node for node in nodes
                           if node.get_role_name() == "push button"}
                return "\n".join(text), buttons
    except (GLib.Error, AttributeError):
        pass
    return None


def answer(program, text, button="OK", others=()):
    """Waits for the box with that text and those buttons alone, and presses one of them with the mouse."""
    shown = screen.wait_for(f"the box {text!r}", lambda: box(program))
    assert shown[0].replace("\r\n", "\n") == text, f"{shown[0]!r}, not {text!r}"
    assert set(shown[1]) == {button, *others}, f"{text!r} has the buttons {sorted(shown[1])}"

    def is_gone():
        return program.process.poll() is not None or (box(program) or ("",))[0] != shown[0]

    def press():
        if not is_gone():
            _click(shown[1][button])
        return screen.settles(is_gone)
    screen.wait_for(f"the box {text!r} to go", press)


def places(path):
    """The keys of the stored places in their order, and the current one. Fails unless the file is whole."""
    locations = xml.etree.ElementTree.parse(path).getroot().find("locations")
    return [place.tag for place in locations], locations.get("Current")


def app(path):
    """The attributes of the program's own element, and what its version element says."""
    element = xml.etree.ElementTree.parse(path).getroot().find("app")
    return dict(element.attrib), dict(element.find("version").attrib)
