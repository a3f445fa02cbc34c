#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""installer_journey.py BUILD: the installer of the built folder as a user meets it, silently and by its pages: the first
installation, over itself, over a running program, over one that does not end, into another folder, by a user without
rights, and the removal."""
import hashlib
import os
import shutil
import subprocess
import sys

import wine
from wine import wait_for

UNINSTALL_KEY = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\DuskBeacon"
RUN_KEY = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Run"
# "The call to prayer, two times".
OTHER_FOLDER = "C:\\My programs\\\u0646\u062f\u0627\u0621 \u0627\u0644\u0635\u0644\u0627\u0629 2"
VERSION_KEY = r"HKLM\Software\Microsoft\Windows NT\CurrentVersion"
TOO_OLD, STILL_RUNNING, NOT_WRITTEN, PORTABLE_COPY = 2, 3, 4, 5


def content(path):
    with open(path, "rb") as file:
        return file.read()


class Installation:
    def __init__(self, windows, installer, stand_in, shipped):
        self.windows = windows
        self.stand_in = stand_in
        shutil.copy(installer, windows.path("C:\\installer.exe"))
        self.shipped = shipped
        self.folder = windows.local_data() + "\\Programs\\Dusk Beacon"
        self.settings = windows.path(windows.local_data() + "\\dusk-beacon\\settings.xml")
        self.link = windows.path(windows.user_folder() +
                                 "\\AppData\\Roaming\\Microsoft\\Windows\\Start Menu\\Programs\\Dusk Beacon.lnk")

    def install(self, *options, code=0):
        found = self.windows.run_line("C:\\", " ".join(("installer.exe /S", *options)))
        assert found == code, f"the installer ended with {found}, not {code}"

    def path(self, name):
        return self.windows.path(self.folder + "\\" + name)

    def digests(self):
        return {name: hashlib.sha256(content(self.path(name))).hexdigest() for name in ("DuskBeacon.exe", "DuskBeacon.DBN")}

    def check(self, autostart=False):
        """The installation is complete."""
        for name in ("DuskBeacon.exe", "DuskBeacon.DBN", "uninstall.exe"):
            assert os.path.isfile(self.path(name)), name
        assert not os.path.exists(self.path("settings.xml")), "it would be a portable copy"
        entry = self.windows.registry(UNINSTALL_KEY)
        assert entry["DisplayName"] == "Dusk Beacon" and entry["Publisher"] == "Dusk Beacon contributors", entry
        assert entry["DisplayVersion"].count(".") == 2 and entry["EstimatedSize"] > 0, entry
        assert entry["InstallLocation"] == self.folder, entry
        assert entry["QuietUninstallString"] == f'"{self.folder}\\uninstall.exe" /S', entry
        assert os.path.isfile(self.link), "nothing in the start menu"
        self.check_autostart(autostart)

    def check_autostart(self, expected):
        found = self.windows.registry(RUN_KEY).get("DuskBeacon")
        assert found == (f'"{self.folder}\\DuskBeacon.exe"' if expected else None), found

    def check_gone(self):
        wait_for("the program to be removed", lambda: not os.path.exists(self.path("uninstall.exe")))
        wait_for("the entry to be removed", lambda: not self.windows.registry(UNINSTALL_KEY))
        assert not os.path.exists(self.path("DuskBeacon.exe")) and not os.path.exists(self.link)
        self.check_autostart(False)

    def uninstall(self, *options, code=0):
        # With _? the uninstaller is not copied to a temporary folder first, so that its exit code can be read.
        found = self.windows.run_line(self.folder, " ".join(("uninstall.exe /S", *options, "_?=" + self.folder)))
        assert found == code, f"the uninstaller ended with {found}, not {code}"

    def start(self, *arguments):
        """Starts the installed program and gives it the time to make its windows, which need not be visible."""
        process = self.windows.start(self.folder + "\\DuskBeacon.exe", *arguments)
        wait_for("the program to be loaded", lambda: b"DuskBeacon.exe" in content(f"/proc/{process.pid}/maps"))
        settle(2)
        return process

    def change_settings(self):
        """As the user does by choosing a place."""
        text = content(self.shipped).replace(b'FirstRun="true"', b'FirstRun="false"').replace(
            b'Current="Makkah"', b'Current="Jakarta"')
        with open(self.settings, "wb") as file:
            file.write(text)
        return text


def too_old(installed):
    installed.windows.set_version("win7")
    installed.install(code=TOO_OLD)
    installed.windows.set_version("win10")
    # Version 1809.
    installed.windows.run("reg", "add", VERSION_KEY, "/v", "CurrentBuildNumber", "/d", "17763", "/f")
    installed.install(code=TOO_OLD)
    assert not os.path.exists(installed.path("DuskBeacon.exe")) and not os.path.exists(installed.settings)
    installed.windows.set_version("win10")


def into_a_portable_copy(installed):
    folder = installed.windows.path("C:\\Portable")
    os.mkdir(folder)
    shutil.copy(installed.shipped, folder)
    installed.install("/D=C:\\Portable", code=PORTABLE_COPY)
    assert os.listdir(folder) == ["settings.xml"], os.listdir(folder)


def first(installed):
    # A portable copy may start with Windows: not the choice of this copy.
    value = "C:\\Portable\\DuskBeacon.exe"
    installed.windows.run("reg", "add", RUN_KEY, "/v", "DuskBeacon", "/d", value, "/f")
    installed.install()
    assert installed.windows.registry(RUN_KEY).get("DuskBeacon") == value
    installed.uninstall()
    assert installed.windows.registry(RUN_KEY).get("DuskBeacon") == value
    installed.windows.run("reg", "delete", RUN_KEY, "/v", "DuskBeacon", "/f")
    installed.install()
    installed.check()
    assert content(installed.settings) == content(installed.shipped)


def over_itself(installed):
    text = installed.change_settings()
    digests = installed.digests()
    installed.install("/AUTOSTART")
    installed.check(autostart=True)
    with open(installed.path("DuskBeacon.DBN"), "ab") as file:
        file.write(b"of an older version")
    plugins = [installed.path(name) for name in ("platforms\\qolder.dll", "imageformats\\qolder.dll")]
    for plugin in plugins:
        with open(plugin, "wb") as file:
            file.write(b"of an older version")
    installed.install()
    installed.check(autostart=True)
    assert installed.digests() == digests
    assert not any(map(os.path.exists, plugins)), "Qt would load it"
    assert content(installed.settings) == text, "an upgrade touched the user's settings"
    assert os.listdir(os.path.dirname(installed.settings)) == ["settings.xml"]
    os.remove(installed.settings)
    installed.install()
    assert content(installed.settings) == content(installed.shipped)


def over_a_running_program(installed):
    text = installed.change_settings()
    processes = [installed.start(), installed.start()]
    installed.install()
    for process in processes:
        assert process.wait(timeout=5) == 0, process.returncode
    installed.check(autostart=True)
    assert content(installed.settings) == text


def over_a_program_that_stays(installed):
    shutil.copy(installed.stand_in, installed.path("DuskBeacon.exe"))
    with open(installed.path("DuskBeacon.DBN"), "ab") as file:
        file.write(b"of an older version")
    digests = installed.digests()
    process = installed.start("stay")
    installed.install(code=STILL_RUNNING)
    assert not wine.has_ended(process) and installed.digests() == digests
    installed.uninstall(code=STILL_RUNNING)
    assert not wine.has_ended(process) and installed.digests() == digests
    installed.check(autostart=True)
    asks_about_a_program_that_stays(installed, process)
    installed.check(autostart=True)
    assert installed.digests() != digests


def asks_about_a_program_that_stays(installed, process):
    """By the pages: the question can be answered again after the user has ended the program."""
    before = os.path.getmtime(installed.path("uninstall.exe"))
    setup = installed.windows.start("C:\\installer.exe")
    for page in ("folder", "components"):
        wait_for("a page", lambda: wine.windows_titled("^Dusk Beacon Setup"))
        settle()
        wine.picture(f"installer_{page}")
        wine.xdotool("key", "Return")
    # The box has the title of the installer's window, and no other window is that small.
    wait_for("the question", lambda: len(wine.windows_titled("^Dusk Beacon Setup")) > 1)
    settle()
    wine.picture("installer_question")
    process.kill()
    process.wait()
    wine.xdotool("key", "Return")
    wait_for("the end of the installation", lambda: os.path.getmtime(installed.path("uninstall.exe")) > before)
    settle(3)
    wine.picture("installer_finish")
    # The last page starts the program unless the user unticks it.
    wine.xdotool("key", "Return")
    assert setup.wait(timeout=wine.PATIENCE) == 0


def settle(seconds=1):
    """A page of Wine tells by nothing that it has been drawn."""
    subprocess.run(["sleep", str(seconds)], check=True)


def a_file_that_cannot_be_written(installed):
    # Ends the program that the last page has started.
    installed.install()
    os.remove(installed.path("DuskBeacon.DBN"))
    os.mkdir(installed.path("DuskBeacon.DBN"))
    installed.install(code=NOT_WRITTEN)
    os.rmdir(installed.path("DuskBeacon.DBN"))


def into_another_folder(installed):
    # Complete again after the step before.
    installed.install()
    text = installed.change_settings()
    before = installed.path("")
    # The disk is full: the installed copy stays.
    taken = os.path.join(installed.windows.path(OTHER_FOLDER), "DuskBeacon.DBN")
    os.makedirs(taken)
    installed.install("/D=" + OTHER_FOLDER, code=NOT_WRITTEN)
    installed.check(autostart=True)
    os.rmdir(taken)
    # Its uninstaller fails: it stays the one that is registered.
    uninstaller = content(installed.path("uninstall.exe"))
    with open(installed.path("uninstall.exe"), "wb") as file:
        file.write(b"damaged")
    installed.install("/D=" + OTHER_FOLDER, code=NOT_WRITTEN)
    installed.check(autostart=True)
    with open(installed.path("uninstall.exe"), "wb") as file:
        file.write(uninstaller)
    # The same folder under another name is no other copy.
    os.symlink(before.rstrip("/"), installed.windows.path("C:\\Link"))
    installed.install("/D=C:\\Link")
    installed.install("/D=" + installed.folder)
    installed.check(autostart=True)
    installed.folder = OTHER_FOLDER
    installed.install("/D=" + OTHER_FOLDER)
    installed.check(autostart=True)
    assert not os.path.exists(before), os.listdir(before)
    process = installed.start()
    installed.install()
    assert process.wait(timeout=5) == 0
    installed.check(autostart=True)
    assert content(installed.settings) == text


def removal(installed):
    text = content(installed.settings)
    with open(installed.path("notes of the user.txt"), "w") as file:
        file.write("kept")
    process = installed.start()
    installed.uninstall()
    assert process.wait(timeout=5) == 0
    os.remove(installed.path("uninstall.exe"))
    installed.check_gone()
    assert os.listdir(installed.path("")) == ["notes of the user.txt"]
    assert content(installed.settings) == text, "the removal touched the user's settings"
    # The folder of the removed copy is forgotten.
    installed.install("/D=" + OTHER_FOLDER)
    assert content(installed.settings) == text
    # As the list of installed programs does it.
    installed.windows.run(installed.folder + "\\uninstall.exe", "/S", "/REMOVESETTINGS")
    installed.check_gone()
    wait_for("the settings to be removed", lambda: not os.path.exists(os.path.dirname(installed.settings)))


def journey(installer, stand_in, shipped):
    with wine.Windows() as windows:
        installed = Installation(windows, installer, stand_in, shipped)
        for step in (too_old, into_a_portable_copy, first, over_itself, over_a_running_program,
                     over_a_program_that_stays, a_file_that_cannot_be_written, into_another_folder, removal):
            print(step.__name__.replace("_", " "), flush=True)
            step(installed)


def plain_user(installer, stand_in, shipped):
    with wine.Windows(plain=True) as windows:
        windows.set_version("win10")
        installed = Installation(windows, installer, stand_in, shipped)
        installed.install()
        installed.check()
        process = installed.start()
        assert os.stat(f"/proc/{process.pid}").st_uid != 0
        installed.install("/AUTOSTART")
        assert process.wait(timeout=5) == 0
        installed.check(autostart=True)
        installed.uninstall("/REMOVESETTINGS")
        assert not os.path.exists(installed.settings)


def main():
    build = os.path.abspath(sys.argv[1])
    installer = wine.packaged(build, "setup.exe")
    stand_in = os.path.join(build, "StandIn.exe")
    shipped = os.path.join(wine.TREE, "data", "settings.xml")
    with wine.Desktop():
        journey(installer, stand_in, shipped)
        print("plain user", flush=True)
        plain_user(installer, stand_in, shipped)
    print("all as it should be")


if __name__ == "__main__":
    main()
