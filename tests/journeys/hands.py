# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The hands of a journey: mouse and keys on the controls that screen.py reads, pictures, and the settings file.

Needs openbox, xdotool and ImageMagick's import beside what screen.py needs.
"""
import os
import subprocess
import sys
import xml.etree.ElementTree

import screen
from screen import Atspi, GLib

BOX, OPTION, LINK, TAB, BUTTON = "check box", "radio button", "link", "page tab", "button"
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
    """Keeps a picture of the screen when a journey fails."""

    def __exit__(self, kind, *rest):
        if kind is not None:
            picture("failure_" + os.path.basename(sys.argv[0]).partition(".")[0])
        super().__exit__(kind, *rest)


class Window:
    """The controls of one window of the program, by role and name."""

    def __init__(self, program, title):
        self.program = program
        self.title = title

    def wait(self):
        screen.wait_for(self.title, self.is_open)
        return self

    def is_open(self):
        window = self.program.window(self.title)
        try:
            return window is not None and window.get_state_set().contains(Atspi.StateType.SHOWING)
        except GLib.Error:
            return False

    def wait_gone(self):
        screen.wait_for(f"{self.title} to be gone", lambda: not self.is_open())

    def is_usable(self):
        """Whether the window itself is enabled."""
        try:
            return self.program.window(self.title).get_state_set().contains(Atspi.StateType.ENABLED)
        except (GLib.Error, AttributeError):
            return False

    def has(self, text):
        return text in self.program.texts(self.title)

    def control(self, role, name):
        def look():
            try:
                for node in screen.nodes(self.program.window(self.title)):
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
        click(self.control(role, name), at)

    def click_described(self, role, description):
        """With the mouse on the control of that description, where names don't tell controls apart."""
        for node in screen.nodes(self.program.window(self.title)):
            if node.get_role_name() == role and node.get_description() == description:
                click(node)
                return
        raise AssertionError(f"no {role} to {description} in {self.title}")

    def double_click(self, role, name):
        click(self.control(role, name), times=2)

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
        xdotool("key", *keys)
        if text:
            xdotool("type", text)

    def close(self):
        subprocess.run(["wmctrl", "-F", "-c", self.title], check=True)


def click(node, at=(0.5, 0.5), times=1):
    place = node.get_extents(Atspi.CoordType.SCREEN)
    xdotool("mousemove", int(place.x + place.width * at[0]), int(place.y + place.height * at[1]), "click", "--repeat", times, 1)


def frames_over(node):
    """The windows under the pointer in the middle and the corners of a control: only one if the control is uncovered."""
    place = node.get_extents(Atspi.CoordType.SCREEN)
    right, bottom = place.x + place.width - 2, place.y + place.height - 2
    spots = [(place.x + place.width // 2, place.y + place.height // 2), (place.x + 1, place.y + 1), (right, place.y + 1),
             (place.x + 1, bottom), (right, bottom)]
    looks = [word for x, y in spots for word in ("mousemove", str(x), str(y), "getmouselocation")]
    found = subprocess.run(["xdotool", *looks], stdout=subprocess.PIPE, check=True, text=True).stdout
    return {line.rpartition(":")[2] for line in found.splitlines()}


def xdotool(*arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True)


def picture(name, window=None):
    """Keeps a picture of the screen, or of the part where the window is."""
    folder = os.environ.get("JOURNEY_PICTURES")
    if not folder:
        return
    os.makedirs(folder, exist_ok=True)
    part = []
    if window is not None:
        place = window.program.window(window.title).get_extents(Atspi.CoordType.SCREEN)
        part = ["-crop", f"{place.width}x{place.height}+{place.x}+{place.y}", "+repage"]
    subprocess.run(["import", "-window", "root", *part, os.path.join(folder, name + ".png")], check=True)


def raise_window(title):
    """Has the window manager bring that window to the front, and waits until it has had the focus, if only briefly."""
    with subprocess.Popen(["timeout", str(screen.PATIENCE), "xprop", "-root", "-spy", "_NET_ACTIVE_WINDOW"],
                          stdout=subprocess.PIPE, text=True) as watch:
        watch.stdout.readline()
        subprocess.run(["wmctrl", "-F", "-a", title], check=True)
        # On a busy machine another window may get the keyboard before the title is read: check only for a change.
        has_changed = bool(watch.stdout.readline())
        watch.terminate()
    assert has_changed, f"{title} never had the keyboard"


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
    """The content of the file; the program replaces the file as a whole, so it can be read at any time."""

    def __init__(self, program):
        self._path = program.settings

    def read(self):
        with open(self._path, "rb") as file:
            return file.read()

    def attributes(self, element):
        """The text of the only element of that name."""
        return dict(xml.etree.ElementTree.fromstring(self.read()).find(f".//{element}").attrib)

    def alerts(self, name):
        return self.attributes("alerts").get(name)

    def wait(self, name, value):
        screen.wait_for(f"{name}={value}, not {self.alerts(name)}", lambda: self.alerts(name) == value)

    def wait_prayer(self, element, **expected):
        screen.wait_for(f"{element} {expected}, not {self.attributes(element)}",
                        lambda: expected.items() <= self.attributes(element).items())
