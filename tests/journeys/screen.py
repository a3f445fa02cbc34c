# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The environment of a journey: a display, the program in a folder of its own at an instant of its own, and a reader of what its
windows say, which looks through the accessibility interface as a screen reader does.

Needs Xvfb, dbus-run-session, at-spi2-core, gir1.2-atspi-2.0, python3-gi and libfaketime.
"""
import atexit
import glob
import os
import shutil
import subprocess
import sys
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 60.0
# Only the wall clock is faked; the timers run on real time.
REAL_TIMERS = {"FAKETIME_DONT_FAKE_MONOTONIC": "1", "DONT_FAKE_MONOTONIC": "1"}


def under_own_session():
    """Starts this script again inside a message bus of its own; a journey never meets the user's desktop."""
    if os.environ.get("DUSKBEACON_JOURNEY") != "1":
        environment = dict(os.environ, DUSKBEACON_JOURNEY="1", GTK_A11Y="none")
        environment.pop("DBUS_SESSION_BUS_ADDRESS", None)
        # The socket of the accessibility bus has a fixed name there: a second journey would replace it.
        environment["XDG_RUNTIME_DIR"] = tempfile.mkdtemp(prefix="duskbeacon-session-")
        os.execvpe("dbus-run-session", ["dbus-run-session", "--", sys.executable, *sys.argv], environment)
    atexit.register(shutil.rmtree, os.environ["XDG_RUNTIME_DIR"], ignore_errors=True)


def wait_for(what, condition):
    """Waits until the condition returns a true value, and returns it."""
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        # Process the events of the accessibility bus: otherwise the tree is never updated.
        while GLib.MainContext.default().iteration(False):
            pass
        found = condition()
        if found:
            return found
        time.sleep(0.05)
    raise AssertionError(f"waited in vain for {what}")


def settles(condition, seconds=2.0):
    """Whether the condition becomes true within a short time; for steps that may have to be repeated."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if condition():
            return True
        time.sleep(0.05)
    return False


class Display:
    def __enter__(self):
        read, write = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x960x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            os.environ["DISPLAY"] = ":" + pipe.readline().strip()
        # An application that has gone must not hold up the search for the one that has come.
        Atspi.set_timeout(500, 500)
        # The registry must be running before the program looks for it.
        Atspi.get_desktop(0)
        return self

    def __exit__(self, *_):
        self._server.terminate()
        self._server.wait()


class Program:
    """The program with its files in a new folder, or in one that the caller keeps from start to start. `settings` is the text
    of settings.xml; with None no file is written."""

    def __init__(self, source, settings, instant=None, environment=None, prepare=None, module=True, launcher=(), folder=None):
        self._is_kept = folder is not None
        self.folder = folder or tempfile.mkdtemp(prefix="duskbeacon-journey-")
        os.chmod(self.folder, 0o755)
        shutil.copy(os.path.join(source, "DuskBeacon"), self.folder)
        if module:
            shutil.copy(os.path.join(source, "DuskBeacon.DBN"), self.folder)
        self.settings = os.path.join(self.folder, "settings.xml")
        if settings is not None:
            with open(self.settings, "wb") as file:
                file.write(settings if isinstance(settings, bytes) else settings.encode())
        if prepare:
            prepare(self)
        self.environment = dict(os.environ, XDG_STATE_HOME="", TZ="UTC", LC_ALL="C.UTF-8", QT_QPA_PLATFORM="xcb",
                                 QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", HOME=self.folder, XDG_DATA_HOME=self.folder,
                                 # There is no such proxy: the program finds no network.
                                 http_proxy="http://127.0.0.1:9", https_proxy="http://127.0.0.1:9",
                                 no_proxy="localhost,127.0.0.1")
        if instant:
            library = glob.glob("/usr/lib/*/faketime/libfaketime.so.1")
            self.environment.update(REAL_TIMERS, LD_PRELOAD=library[0], FAKETIME="@" + instant, FAKETIME_DONT_RESET="1")
        self.environment.update(environment or {})
        self._command = [*launcher, os.path.join(self.folder, "DuskBeacon")]

    def __enter__(self):
        self.process = subprocess.Popen(self._command, env=self.environment, cwd="/", stderr=subprocess.DEVNULL)
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        if not self._is_kept:
            shutil.rmtree(self.folder, ignore_errors=True)

    def application(self):
        if self.process.poll() is not None:
            raise AssertionError(f"the program has ended with {self.process.returncode}")
        # Process pending events: they report started and ended programs.
        context = GLib.MainContext.default()
        while context.pending():
            context.iteration(False)
        desktop = Atspi.get_desktop(0)
        desktop.set_cache_mask(Atspi.Cache.NONE)
        for i in range(desktop.get_child_count()):
            try:
                child = desktop.get_child_at_index(i)
                if child is not None and child.get_process_id() == self.process.pid:
                    # Disable the cache: no event loop runs here to refresh it.
                    child.set_cache_mask(Atspi.Cache.NONE)
                    return child
            except GLib.Error:  # An application that is just coming or going.
                continue
        return None

    def window(self, title):
        """The shown window of that title, or None."""
        try:
            application = self.application()
            found = [application.get_child_at_index(i) for i in range(application.get_child_count() if application else 0)]
            titled = [child for child in found if child is not None and child.get_name() == title]
            # A closed one stays in the tree until its last handler has ended, beside the one that was opened since.
            shown = [child for child in titled if child.get_state_set().contains(Atspi.StateType.SHOWING)]
            return next(iter(shown + titled), None)
        except GLib.Error:
            return None

    def texts(self, title):
        """All names under the window of that title, in the order of the controls."""
        window = self.window(title)
        try:
            return list(names(window)) if window else []
        except GLib.Error:
            return []

    def press(self, title, button):
        """Presses a button of that window as assistive technology does."""
        for node in nodes(self.window(title)):
            if (node.get_name() or "").replace("&", "") == button and node.get_action_iface():
                node.do_action(0)
                return
        raise AssertionError(f"no button {button} in {title}")


def nodes(node):
    yield node
    for i in range(node.get_child_count()):
        child = node.get_child_at_index(i)
        if child is not None:
            yield from nodes(child)


def names(node):
    for child in nodes(node):
        yield child.get_name() or ""
