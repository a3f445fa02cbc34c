# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""A Windows of a journey's own: a display with a window manager, and a folder in which Wine keeps its files and its registry.

Needs wine64, Xvfb, openbox, xdotool, wmctrl and ImageMagick's import; setpriv if the journey runs as root.
"""
import glob
import os
import pwd
import re
import shutil
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree

PATIENCE = 60.0
MAIN = "Dusk Beacon v1.0.5"
TREE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SERVER = next(iter(glob.glob("/usr/lib/wine/wineserver")), "wineserver")
PLAIN_USER = "nobody"


def wait_for(what, condition, seconds=PATIENCE):
    """Waits until the condition returns a true value, and returns it."""
    deadline = time.monotonic() + seconds
    while True:
        found = condition()
        if found:
            return found
        if time.monotonic() > deadline:
            raise AssertionError(f"waited in vain for {what}")
        time.sleep(0.1)


def packaged(build, name):
    """The file of scripts/windows/package whose name ends so."""
    found, = glob.glob(os.path.join(build, "package", "*-" + name))
    return found


def has_ended(process):
    return process.poll() is not None


class Desktop:
    """A display with a window manager, for programs of every user."""

    def __enter__(self):
        read, write = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x960x24", "-nolisten", "tcp", "-noreset", "-ac"],
            pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            os.environ["DISPLAY"] = ":" + pipe.readline().strip()
        self._manager = subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL)
        wait_for("the window manager", lambda: subprocess.run(
            ["wmctrl", "-m"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0)
        return self

    def __exit__(self, *_):
        for process in (self._manager, self._server):
            process.terminate()
            process.wait()


class Windows:
    """One installation of Windows with one user. With `plain` the processes belong to a user of this system without rights."""

    def __init__(self, plain=False, environment=None):
        self._as_user = []
        if plain and os.geteuid() == 0:
            user = pwd.getpwnam(PLAIN_USER)
            self._as_user = ["setpriv", f"--reuid={user.pw_uid}", f"--regid={user.pw_gid}", "--clear-groups",
                             "--bounding-set=-all", "--inh-caps=-all"]
        self.folder = tempfile.mkdtemp(prefix="duskbeacon-wine-")
        if self._as_user:
            os.chown(self.folder, user.pw_uid, user.pw_gid)
        self.environment = {name: value for name, value in os.environ.items()
                            if name in ("PATH", "DISPLAY", "TERM")}
        self.environment.update(HOME=self.folder, WINEPREFIX=os.path.join(self.folder, "wine"), WINEDEBUG="-all",
                                LC_ALL="C.UTF-8", TZ="UTC",
                                # Without these Wine offers to download them.
                                WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d",
                                # No request of a journey leaves the computer.
                                http_proxy="http://127.0.0.1:9", https_proxy="http://127.0.0.1:9",
                                no_proxy="localhost,127.0.0.1")
        self.environment.update(environment or {})

    def __enter__(self):
        self.run("wineboot", "-i")
        return self

    def __exit__(self, kind, *_):
        if kind is not None:
            picture("failure_" + os.path.basename(sys.argv[0]).partition(".")[0])
        self._command("-k", program=SERVER)
        self._command("-w", program=SERVER)
        shutil.rmtree(self.folder, ignore_errors=True)

    def _command(self, *arguments, program="wine", folder=None):
        return subprocess.run([*self._as_user, program, *arguments], env=self.environment, cwd=folder or self.folder,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=4 * PATIENCE)

    def run(self, *command):
        """Runs a program and answers its exit code."""
        return self._command(*command).returncode

    def run_line(self, folder, line):
        """Runs a command line in a folder of Windows, for options with spaces, which must not be quoted; answers the exit code."""
        return self._command("cmd", "/c", line, folder=self.path(folder)).returncode

    def output(self, *command):
        return self._command(*command).stdout.decode("utf-8", "replace")

    def start(self, *command):
        """Starts a program and answers the process, whose exit code is the program's."""
        return subprocess.Popen([*self._as_user, "wine", *command], env=self.environment, cwd=self.folder,
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def set_version(self, version):
        self.run("winecfg", "-v", version)

    def path(self, windows_path):
        """Where this system has that file of drive C."""
        return os.path.join(self.folder, "wine", "drive_c", *windows_path.removeprefix("C:\\").split("\\"))

    def user_folder(self):
        """The user's folder of Windows."""
        names = [name for name in os.listdir(self.path("C:\\users")) if name != "Public"]
        assert len(names) == 1, names
        return "C:\\users\\" + names[0]

    def local_data(self):
        return self.user_folder() + "\\AppData\\Local"

    def registry(self, key):
        """The values of a key by their names, texts and numbers; nothing if there is no such key."""
        # An export: what reg shows on its output has lost all letters but those of one code page.
        exported = self.path("C:\\exported.reg")
        if self.run("reg", "export", key, "C:\\exported.reg", "/y") != 0:
            return {}
        with open(exported, encoding="utf-16") as file:
            lines = file.read().splitlines()
        os.remove(exported)
        values = {}
        for name, text, number in re.findall(r'^"(.*?)"=(?:"(.*)"|dword:(\w+))$', "\n".join(lines), re.MULTILINE):
            values[name] = int(number, 16) if number else re.sub(r"\\(.)", r"\1", text)
        return values


class Copy:
    """A copy of the program in a folder, with its settings."""

    def __init__(self, windows, folder, settings_folder):
        self.windows = windows
        self.folder = folder
        self._settings = windows.path(settings_folder + "\\settings.xml")
        self.process = None

    def read(self):
        """The settings; the program replaces the file as a whole, so that it can be read at any time."""
        with open(self._settings, encoding="utf-8") as file:
            return file.read()

    def write(self, settings):
        with open(self._settings, "w", encoding="utf-8") as file:
            file.write(settings)

    def attributes(self, element):
        return dict(xml.etree.ElementTree.fromstring(self.read()).find(f".//{element}").attrib)

    def places(self):
        return [place.tag for place in xml.etree.ElementTree.fromstring(self.read()).find("locations")]

    def start(self):
        self.process = self.windows.start(self.folder + "\\DuskBeacon.exe")
        return wait_for("the main window", lambda: self._is_running() and window(MAIN), 2 * PATIENCE)

    def _is_running(self):
        assert self.process.poll() is None, f"the program has ended with {self.process.returncode}"
        return True

    def wait_end(self, code=0):
        found = self.process.wait(timeout=PATIENCE)
        assert found == code, f"the program ended with {found}"

    def end_session(self):
        """As a sign-out does it: Wine sends the messages of the session's end to every window."""
        self.windows.run("wineboot", "--end-session")
        self.wait_end()


class Installed(Copy):
    """The one that the installer makes for the user of this Windows."""

    def __init__(self, windows, build, change):
        """@param change makes the settings of the journey from those that the installer has put there"""
        super().__init__(windows, windows.local_data() + "\\Programs\\Dusk Beacon", windows.local_data() + "\\dusk-beacon")
        shutil.copy(packaged(build, "setup.exe"), windows.path("C:\\installer.exe"))
        windows.set_version("win10")
        self.install()
        self.write(change(self.read()))

    def install(self):
        assert self.windows.run("C:\\installer.exe", "/S") == 0


class Portable(Copy):
    """The one of the zip: its settings are beside it."""

    def __init__(self, windows, folder):
        super().__init__(windows, folder, folder)


def window(title):
    """The X window on the screen of that title, or None."""
    return next(iter(windows_titled(f"^{re.escape(title)}$")), None)


def wait_window(title):
    """Waits for the window and gives it the keyboard: under Wine a window that opens with another one may stay without."""
    wait_for(title, lambda: window(title))

    def is_in_front():
        if title_in_front() == title:
            return True
        subprocess.run(["wmctrl", "-F", "-a", title], check=False)
        return False
    wait_for(f"{title} to be in front", is_in_front)


def wait_gone(title):
    wait_for(f"{title} to be gone", lambda: not window(title))


def title_in_front():
    found = subprocess.run(["xdotool", "getactivewindow", "getwindowname"], stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL, text=True)
    return found.stdout.strip()


def click(title, x, y):
    """With the mouse, at a place of the window."""
    xdotool("mousemove", "--window", wait_for(title, lambda: window(title)), x, y, "click", 1)


def close(title):
    subprocess.run(["wmctrl", "-F", "-c", title], check=True)
    wait_gone(title)


def windows_titled(title):
    """The X windows on the screen whose title matches."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", title], stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL, text=True)
    return found.stdout.split()


def xdotool(*arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True)


def picture(name):
    """Keeps a picture of the screen."""
    folder = os.environ.get("JOURNEY_PICTURES")
    if folder:
        os.makedirs(folder, exist_ok=True)
        subprocess.run(["import", "-window", "root", os.path.join(folder, f"windows_{name}.png")], check=False)
