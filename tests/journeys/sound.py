# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""A sound server of a journey's own, with one sink that leads nowhere, and a recording of what it plays. Needs pulseaudio
and its parec."""
import array
import math
import os
import subprocess
import tempfile
import threading
import wave

import screen

RATE = 8000
WINDOW = RATE // 4  # the latest quarter of a second is examined


class Server:
    def __enter__(self):
        self._folder = tempfile.TemporaryDirectory(prefix="duskbeacon-sound-")
        self._newest = b""
        environment = dict(os.environ, HOME=self._folder.name, XDG_RUNTIME_DIR=self._folder.name)
        environment.pop("PULSE_SERVER", None)
        self._server = subprocess.Popen(
            ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
             "-L", "module-native-protocol-unix auth-anonymous=1", "-L", "module-null-sink sink_name=nul"],
            env=environment, stderr=subprocess.DEVNULL)
        self._recorder = None
        screen.wait_for("the sound server", self._record)
        return self

    def __exit__(self, *_):
        for process in (self._recorder, self._server):
            process.kill()
            process.wait()
        self._reader.join()
        self._folder.cleanup()

    def environment(self):
        """The environment of a program that is to be recorded."""
        return {"PULSE_SERVER": f"unix:{self._folder.name}/pulse/native"}

    def _record(self):
        # Refused until the server listens.
        if self._recorder is None or self._recorder.poll() is not None:
            self._recorder = subprocess.Popen(
                ["parec", "--device=nul.monitor", "--format=s16le", f"--rate={RATE}", "--channels=1", "--latency-msec=20",
                 "--raw"], env=dict(os.environ, **self.environment()), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
            self._reader = threading.Thread(target=self._read, args=[self._recorder], daemon=True)
            self._reader.start()
        return len(self._newest) == 2 * WINDOW

    def _read(self, recorder):
        while samples := recorder.stdout.read(400):
            self._newest = (self._newest + samples)[-2 * WINDOW:]

    def amplitude(self, hertz):
        """Of this tone, in steps of a sample."""
        samples = array.array("h", self._newest)
        angles = [2 * math.pi * hertz * i / RATE for i in range(len(samples))]
        sine = sum(sample * math.sin(angle) for sample, angle in zip(samples, angles))
        cosine = sum(sample * math.cos(angle) for sample, angle in zip(samples, angles))
        return 2 * math.hypot(sine, cosine) / len(samples)

    def hears(self, hertz):
        """Whether the sound is this tone only."""
        samples = array.array("h", self._newest)
        power = sum(sample * sample for sample in samples) / len(samples)
        amplitude = self.amplitude(hertz)
        return amplitude > 300 and amplitude * amplitude / 2 > 0.9 * power

    def is_silent(self):
        return not any(array.array("h", self._newest))


def write_tone(path, hertz, seconds):
    with wave.open(path, "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(array.array("h", [round(12000 * math.sin(2 * math.pi * hertz * i / RATE))
                                           for i in range(RATE * seconds)]).tobytes())
