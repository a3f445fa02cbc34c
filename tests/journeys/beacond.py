# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The real service as a journey uses it: started in a folder of its own with the real places, filled through its commands, and
asked as a browser asks it."""
import contextlib
import glob
import json
import os
import re
import subprocess
import tempfile
import urllib.parse
import urllib.request

import screen

ADDRESS = "http://127.0.0.1:8750"  # of the program's default base address
CONFIGURATION = '[messages]\nchannels = ["spool"]\n'


class Service:
    def __init__(self, program, folder):
        self._program = program
        self._folder = folder
        self._log = os.path.join(folder, "log")

    def start(self):
        # Ends with this script, also if the script is killed.
        with open(self._log, "wb") as log:
            return subprocess.Popen(["setpriv", "--pdeathsig", "TERM", *self._command("serve")], cwd=self._folder, stderr=log)

    def run(self, *arguments, text=""):
        """Runs a command of the service, with that text to read, and answers its output."""
        done = subprocess.run(self._command(*arguments), cwd=self._folder, input=text, stdout=subprocess.PIPE, check=True,
                              text=True)
        return done.stdout

    def log(self):
        with open(self._log, encoding="utf-8") as file:
            return [json.loads(line) for line in file.read().rpartition("\n")[0].splitlines()]

    def is_ready(self):
        return any(entry.get("message") == "ready on port 8750" for entry in self.log())

    def requests(self, script):
        """How often it was asked for that script."""
        return sum(entry.get("request") == script for entry in self.log())

    def complaints(self):
        """The entries of its log that tell of a failure."""
        return [entry for entry in self.log() if entry["level"] != "info" or entry.get("status", 200) != 200]

    def sign_up(self, address):
        """Sends the form of the home page, and answers the ID and the code of the message that comes."""
        self.get("/signup", urllib.parse.urlencode({"address": address}).encode())
        return self.message_to(address)

    def message_to(self, address):
        """The ID and the code of the message to that address in the spool."""
        for path in glob.glob(os.path.join(self._folder, "state", "spool", "*.txt")):
            with open(path, encoding="utf-8") as file:
                message = file.read()
            if message.startswith(f"To: {address}\n"):
                return re.search(r"device ID: (\S+)\nYour personal code: (.+)\n", message).groups()
        raise AssertionError(f"no message to {address}")

    def texts(self):
        """The texts at prayer times in the spool, each in one line."""
        messages = []
        for path in glob.glob(os.path.join(self._folder, "state", "spool", "*.txt")):
            with open(path, encoding="utf-8") as file:
                messages.append(file.read().partition("\n\n")[2].rstrip("\n"))
        return [message for message in messages if "\n" not in message]

    def _command(self, *arguments):
        return [self._program, "--config", "service.toml", *arguments]

    @staticmethod
    def get(path, form=None):
        direct = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        with direct.open(ADDRESS + path, form, timeout=screen.PATIENCE) as reply:
            return reply.read().decode()


@contextlib.contextmanager
def running(programs, configuration=CONFIGURATION, secrets=()):
    """The service of the folder of programs, or the one that DUSKBEACON_SERVICE_PROGRAM names, with the places of the tree.
    The secrets are names and contents of files beside the configuration."""
    with tempfile.TemporaryDirectory(prefix="duskbeacon-service-") as folder:
        for name, text in (("service.toml", configuration), *secrets):
            with open(os.open(os.path.join(folder, name), os.O_WRONLY | os.O_CREAT, 0o600), "w", encoding="utf-8") as file:
                file.write(text)
        program = os.environ.get("DUSKBEACON_SERVICE_PROGRAM", os.path.join(programs, "dusk-beacond"))
        service = Service(program, folder)
        service.run("import")
        with service.start() as process:
            try:
                screen.wait_for("the service", lambda: service.is_ready() or process.poll() is not None)
                assert process.poll() is None, service.log()
                yield service
            finally:
                process.terminate()
        assert process.returncode == 0, f"the service ended with {process.returncode}"
