# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The hands of a journey: mouse and keys on the controls that screen.py reads, pictures, the settings file, and the
service that the program talks to.

Needs openbox, xdotool and ImageMagick's import beside what screen.py needs.
"""
import os
import subprocess
import sys
import threading
import urllib.parse
import urllib.request
import xml.etree.ElementTree

import screen
from screen import Atspi, GLib

SERVICE_PORT = 8750  # of the program's default base address
BOX, OPTION, LINK, BUTTON = "check box", "radio button", "link", "button"
BAR, FIELD = "slider", "text"


class Desktop(screen.Display):
    """A display with a window manager."""

    def __enter__(self):
        super().__enter__()
        self._manager = subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL)
        screen.wait_for("the window manager", lambda: subprocess.run(
            ["wmctrl", "-m"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0)
        return self

    def __exit__(self, *arguments):
        self._manager.terminate()
        self._manager.wait()
        super().__exit__(*arguments)


class Program(screen.Program):
    """Keeps a picture of what there was when a journey failed."""

    def __exit__(self, kind, *rest):
        if kind is not None:
            picture("failure_" + os.path.basename(sys.argv[0]).partition(".")[0])
        super().__exit__(kind, *rest)


class Window:
    """The controls of one window of the program, by role and name."""

    def __init__(self, program, title):
        self._program = program
        self.title = title

    def wait(self):
        screen.wait_for(self.title, self.is_open)
        return self

    def is_open(self):
        window = self._program.window(self.title)
        try:
            return window is not None and window.get_state_set().contains(Atspi.StateType.SHOWING)
        except GLib.Error:
            return False

    def has(self, text):
        return text in self._program.texts(self.title)

    def control(self, role, name):
        def look():
            try:
                for node in screen._nodes(self._program.window(self.title)):
                    if ((node.get_name() or "").replace("&", "") == name and role in node.get_role_name()
                            and node.get_state_set().contains(Atspi.StateType.SHOWING)):
                        return node
            except (GLib.Error, AttributeError):  # A window that is just coming or going.
                return None
            return None
        return screen.wait_for(f"{role} {name} in {self.title}", look)

    def is_on(self, role, name):
        return self._state(role, name, Atspi.StateType.CHECKED)

    def is_live(self, role, name):
        return self._state(role, name, Atspi.StateType.ENABLED)

    def _state(self, role, name, state):
        return self.control(role, name).get_state_set().contains(state)

    def text(self, name):
        node = self.control(FIELD, name)
        return Atspi.Text.get_text(node, 0, Atspi.Text.get_character_count(node))

    def click(self, role, name, at=(0.5, 0.5)):
        """With the mouse, at a place given as parts of the control's width and height."""
        place = self.control(role, name).get_extents(Atspi.CoordType.SCREEN)
        mouse("mousemove", int(place.x + place.width * at[0]), int(place.y + place.height * at[1]), "click", 1)

    def tick(self, name, on=True):
        if self.is_on(BOX, name) != on:
            self.click(BOX, name, (0.08, 0.5))
        screen.wait_for(f"{name} to be {on}", lambda: self.is_on(BOX, name) == on)

    def choose(self, name):
        self.click(OPTION, name, (0.05, 0.5))
        screen.wait_for(f"{name} to be chosen", lambda: self.is_on(OPTION, name))

    def enter(self, name, keys, text):
        """Puts the cursor into the field, presses keys and types."""
        self.click(FIELD, name)
        screen.wait_for(f"{name} to have the focus", lambda: self._state(FIELD, name, Atspi.StateType.FOCUSED))
        mouse("key", *keys)
        if text:
            mouse("type", text)

    def close(self):
        subprocess.run(["wmctrl", "-F", "-c", self.title], check=True)


def mouse(*arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True)


def picture(name, window=None):
    """Keeps a picture of the screen, or of the part where the window is."""
    folder = os.environ.get("JOURNEY_PICTURES")
    if not folder:
        return
    os.makedirs(folder, exist_ok=True)
    part = []
    if window is not None:
        place = window._program.window(window.title).get_extents(Atspi.CoordType.SCREEN)
        part = ["-crop", f"{place.width}x{place.height}+{place.x}+{place.y}", "+repage"]
    subprocess.run(["import", "-window", "root", *part, os.path.join(folder, name + ".png")], check=True)


def title_in_front():
    """The title of the window that has the keyboard."""
    found = subprocess.run(["xdotool", "getactivewindow", "getwindowname"], stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL, text=True)
    return found.stdout.strip()


def is_titled(title):
    """Whether the window manager shows a window of that title."""
    return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{title}$"],
                          stdout=subprocess.DEVNULL).returncode == 0


class Settings:
    """What the file says now; the program replaces it whole, so that it can be read at any time."""

    def __init__(self, program):
        self._path = program.settings

    def read(self):
        with open(self._path, "rb") as file:
            return file.read()

    def alerts(self, name):
        return xml.etree.ElementTree.fromstring(self.read()).find("alerts").get(name)

    def prayer(self, element):
        return dict(xml.etree.ElementTree.fromstring(self.read()).find("alerts").find(element).attrib)

    def wait(self, name, value):
        screen.wait_for(f"{name}={value}, not {self.alerts(name)}", lambda: self.alerts(name) == value)

    def wait_prayer(self, element, **expected):
        screen.wait_for(f"{element} {expected}, not {self.prayer(element)}", lambda: expected.items()
                        <= self.prayer(element).items())


class Service:
    """The stand-in for the service, which is also the network that the program finds."""

    def __init__(self, **replies):
        self._replies = replies
        self._lock = threading.Lock()
        self._requests = []

    def __enter__(self):
        script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "stand_in_service.py")
        replies = [word for name, value in self._replies.items() for word in ("--set", f"{name}={value}")]
        self._process = subprocess.Popen([sys.executable, script, "--port", str(SERVICE_PORT), *replies],
                                         stdout=subprocess.PIPE, text=True)
        assert self._process.stdout.readline().strip() == str(SERVICE_PORT), "the service's port is taken"
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        return self

    def __exit__(self, *_):
        self._process.terminate()
        self._process.wait()
        self._reader.join()

    def _read(self):
        for line in self._process.stdout:
            with self._lock:
                self._requests.append(line.strip())

    def reply(self, **replies):
        query = urllib.parse.urlencode([("set", f"{name}={value}") for name, value in replies.items()])
        direct = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        direct.open(f"http://127.0.0.1:{SERVICE_PORT}/control?{query}", timeout=screen.PATIENCE).close()

    def requests(self, script, pid=None):
        """Those of one installation if one is named; another test's program may come to the usual port as well."""
        of_installation = "" if pid is None else f"prod_string={pid}"
        with self._lock:
            return [request for request in self._requests if f"/{script}?" in request and of_installation in request]

    @staticmethod
    def environment():
        return {"http_proxy": f"http://127.0.0.1:{SERVICE_PORT}", "https_proxy": f"http://127.0.0.1:{SERVICE_PORT}",
                "no_proxy": "localhost,127.0.0.1"}
