#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""player_test.py PLAYER: the player of Windows under Wine, with a sound server that records what it plays. PLAYER is
player.exe of the test programs. Needs wine, pulseaudio, parec and gstreamer with its MP3 encoder; WINEPREFIX is used if it is
set."""
import os
import subprocess
import sys
import tempfile
import threading
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "journeys"))
import screen  # noqa: E402
import sound  # noqa: E402

TONE = 440
OTHER_TONE = 1000
LONGEST_CALL = 20  # milliseconds
MOMENT = 0.5  # seconds, much longer than it takes to find that a path can't be played


class Player:
    """The program, and what it has said."""

    def __init__(self, program, environment):
        # LOCALAPPDATA holds the volume file.
        self._process = subprocess.Popen(
            [os.environ.get("WINE", "wine"), program], env=environment, text=True, bufsize=1,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.said = []
        threading.Thread(target=self._listen, daemon=True).start()
        self.wait_for("ready")

    def _listen(self):
        for line in self._process.stdout:
            self.said.append(line.strip())

    def tell(self, line):
        self.said.clear()
        self._process.stdin.write(line + "\n")

    def wait_for(self, line):
        screen.wait_for(f"'{line}' of the player, which said {self.said}", lambda: line in self.said)

    def play(self, path):
        self.tell("play " + path)
        screen.wait_for("the return of the call", lambda: any(line.startswith("returned") for line in self.said))
        took = int(self.said[0].split()[1])
        assert took < LONGEST_CALL, f"{path!r} took {took} ms"

    def stops(self):
        return self.said.count("state 1")

    def end(self):
        """Its exit code; fails after five seconds."""
        self.tell("end")
        return self._process.wait(5)


def write_mp3(path, hertz, seconds):
    subprocess.run(["gst-launch-1.0", "-q", "audiotestsrc", f"freq={hertz}", "volume=0.4", f"num-buffers={seconds * 20}",
                    "samplesperbuffer=2205", "!", "audio/x-raw,rate=44100,channels=1", "!", "audioconvert", "!", "lamemp3enc",
                    "!", "filesink", f"location={path}"], check=True)


def on_windows(path):
    return "Z:" + path.replace("/", "\\")


def check_formats(server, player, folder):
    """Each format sounds and reports its end, by a path of either kind of separators, with letters of any script."""
    write_mp3(f"{folder}/tone.mp3", TONE, 2)
    sound.write_tone(f"{folder}/tone.wav", TONE, 2)
    sound.write_tone(f"{folder}/أذان ü #1 100%.wav", TONE, 2)
    for path in (on_windows(f"{folder}/tone.wav"), on_windows(f"{folder}/tone.mp3"), f"Z:{folder}/tone.wav",
                 on_windows(f"{folder}/أذان ü #1 100%.wav")):
        player.play(path)
        screen.wait_for(f"the sound of {path}", lambda: server.hears(TONE))
        assert player.stops() == 0, "still playing"
        player.wait_for("state 1")
        screen.wait_for("silence", server.is_silent)
        assert player.stops() == 1, player.said


def check_bad_paths(server, player, folder):
    """They make no sound and no report; the stop after them is the only one, and the next sound plays."""
    for name, content in (("empty.mp3", b""), ("text.mp3", b"Call to prayer\n" * 500), ("noise.wav", os.urandom(20000))):
        with open(f"{folder}/{name}", "wb") as file:
            file.write(content)
    for path in ("", "Z:\\no.mp3", "Q:\\no drive.mp3", on_windows(folder), on_windows(f"{folder}/empty.mp3"),
                 on_windows(f"{folder}/text.mp3"), on_windows(f"{folder}/noise.wav"), "NUL", "CON", "COM1:", "\\\\.\\pipe\\none",
                 "http://127.0.0.1:1/azan.mp3", "a" * 5000):
        player.play(path)
        time.sleep(MOMENT)
        assert player.stops() == 0, f"{path!r}: {player.said}"
        player.tell("stop")
        player.wait_for("state 1")
        player.play(on_windows(f"{folder}/tone.wav"))
        screen.wait_for(f"the sound after {path!r}", lambda: server.hears(TONE))
        player.wait_for("state 1")


def check_replacing(server, player, folder):
    """A second sound replaces the first, whose end is not reported."""
    sound.write_tone(f"{folder}/long.wav", TONE, 60)
    sound.write_tone(f"{folder}/other.wav", OTHER_TONE, 2)
    player.play(on_windows(f"{folder}/long.wav"))
    screen.wait_for("the first sound", lambda: server.hears(TONE))
    player.play(on_windows(f"{folder}/other.wav"))
    screen.wait_for("the second sound alone", lambda: server.hears(OTHER_TONE))
    player.wait_for("state 1")
    time.sleep(MOMENT)
    assert player.stops() == 1, player.said


def check_volume(server, player, folder):
    """The amplitude follows the volume in proportion, while a sound plays and from its start."""
    loud = 12000
    player.play(on_windows(f"{folder}/long.wav"))
    for volume in (100, 50, 10, 1, 0, 80):
        player.tell(f"volume {volume}")
        player.wait_for(f"volume {volume}")
        wanted = loud * volume / 100
        screen.wait_for(f"the amplitude {wanted} at volume {volume}",
                        lambda: abs(server.amplitude(TONE) - wanted) <= 0.02 * wanted + 8)
    player.play(on_windows(f"{folder}/long.wav"))
    screen.wait_for("the volume of the next sound", lambda: abs(server.amplitude(TONE) - 0.8 * loud) < 300)
    player.tell("stop")
    player.wait_for("state 1")
    screen.wait_for("silence", server.is_silent)


def main():
    program = sys.argv[1]
    with tempfile.TemporaryDirectory(prefix="duskbeacon-player-") as folder, sound.Server() as server:
        environment = dict(os.environ, **server.environment(), XDG_RUNTIME_DIR=folder, WINEDEBUG="-all",
                           WINEDLLOVERRIDES="mscoree,mshtml=")
        player = Player(program, environment)
        player.tell("volume 100")
        player.wait_for("volume 100")
        for check in (check_formats, check_bad_paths, check_replacing, check_volume):
            check(server, player, folder)
            print(f"player_test: {check.__name__}: passed", flush=True)
        player.play(on_windows(f"{folder}/long.wav"))
        screen.wait_for("the sound", lambda: server.hears(TONE))
        assert player.end() == 0, "it ends while a sound plays"
        again = Player(program, environment)
        assert "volume 80" in again.said, again.said
        assert again.end() == 0
        print("player_test: end: passed")


main()
