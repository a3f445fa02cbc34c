#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""with_service_test.py SCRIPT PROGRAM JOURNEYS: scripts/with_service with the real service and commands that stand for the
desktop program."""
import lzma
import os
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

SCRIPT, SERVICE = sys.argv[1:3]
sys.path.insert(0, sys.argv[3])
import own_network  # noqa: E402

PLACE = "1\tMakkah\t\t\t21.42664\t39.82563\tP\tPPL\tSA\t\t14\t\t\t\t1323624\t\t\tAsia/Riyadh\t\n"
TABLES = {"places.tsv.xz": PLACE, "divisions.tsv.xz": "", "postal.tsv.xz": "", "regions.tsv": "SA\tSA\tSaudi Arabia\n",
          "overlay.tsv": "", "shipped.tsv": ""}
OUT_OF_REACH = " is out of reach: the program will treat this computer as offline and send no requests.\n"
BASE = "http://127.0.0.1:8750"
ASK = f"curl -s --noproxy '*' {BASE}/healthz"


def is_open(port=8750):
    with socket.socket() as door:
        return door.connect_ex(("127.0.0.1", port)) == 0


def wait_for(what, condition):
    end = time.monotonic() + 20
    while not condition():
        assert time.monotonic() < end, f"no {what}"
        time.sleep(0.02)


def children(process):
    with open(f"/proc/{process}/task/{process}/children", encoding="ascii") as file:
        return [int(child) for child in file.read().split()]


def is_running(process):
    """Whether it runs, and is not merely not yet waited for."""
    try:
        with open(f"/proc/{process}/stat", encoding="ascii") as file:
            return file.read().rpartition(")")[2].split()[0] != "Z"
    except FileNotFoundError:
        return False


class WithService(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.build = folder.name
        for name in ("bin", "service/state", "share/dusk-beacon/places"):
            os.makedirs(self.path(name))
        # A copy, which takes the tables beside itself.
        shutil.copy(SERVICE, self.path("bin/dusk-beacond"))
        for name, text in TABLES.items():
            self.write_table(name, text)
        subprocess.run([self.path("bin/dusk-beacond"), "import", "--out", self.path("service/state/places.bin")], check=True,
                       stdout=subprocess.DEVNULL)
        self.probe("http://127.0.0.1:8750/healthz")

    def path(self, name):
        return os.path.join(self.build, name)

    def write_table(self, name, text):
        data = text.encode()
        with open(self.path("share/dusk-beacon/places/" + name), "wb") as file:
            file.write(lzma.compress(data) if name.endswith(".xz") else data)

    def age_places(self):
        """Every table is newer than the places file."""
        os.utime(self.path("service/state/places.bin"), (0, 0))

    def settings(self, attributes):
        with open(self.path("bin/settings.xml"), "w", encoding="utf-8") as file:
            file.write(f'<root>\n    <app {attributes}\n        dist="dbeacon"/>\n</root>\n')

    def probe(self, address):
        with open(self.path("CMakeCache.txt"), "w", encoding="ascii") as file:
            file.write(f"DUSKBEACON_PROBE_URL:STRING={address}\n")

    def start(self, command, **variables):
        """In a session of its own, as in a terminal."""
        return subprocess.Popen([SCRIPT, self.build, "sh", "-c", command], start_new_session=True, text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, env={**os.environ, **variables})

    def run_with(self, command, **variables):
        process = self.start(command, **variables)
        output, errors = process.communicate(timeout=60)
        return process.returncode, output, errors

    def test_service_runsAsLongAsTheCommand(self):
        self.assertEqual(self.run_with(f"{ASK}; exit 3"), (3, "ok\n", ""))
        self.assertFalse(is_open())

    def test_commandThatCrashes_endsTheService(self):
        self.assertEqual(self.run_with("kill -SEGV $$")[0], 128 + signal.SIGSEGV)
        self.assertFalse(is_open())

    def test_signalOfTheTerminal_endsBoth(self):
        for number, to_all in ((signal.SIGINT, True), (signal.SIGHUP, True), (signal.SIGTERM, False)):
            with self.subTest(number), self.start("exec sleep 60") as process:
                wait_for("service and command", lambda: is_open() and len(children(process.pid)) == 2)
                started = children(process.pid)
                (os.killpg if to_all else os.kill)(process.pid, number)
                self.assertEqual(process.wait(20), 128 + number)
                self.assertFalse(any(is_running(child) for child in started))
                self.assertFalse(is_open())

    def test_serviceThatAnswersAlready_isUsedAndLeftAlone(self):
        with subprocess.Popen([SERVICE, "serve"], cwd=self.path("service"), stderr=subprocess.DEVNULL) as service:
            self.addCleanup(service.kill)
            wait_for("service", is_open)
            status, output, errors = self.run_with(ASK)
            self.assertEqual(status, 0)
            self.assertEqual(output, "A Dusk Beacon service answers at http://127.0.0.1:8750: it is used.\nok\n")
            self.assertEqual(errors, "")
            self.assertIsNone(service.poll())
            self.assertTrue(is_open())
            service.terminate()
            self.assertEqual(service.wait(20), 0)

    def test_anythingElseAtThePort_isSaid(self):
        said = "Something else answers at http://127.0.0.1:8750: the program will find no service there.\n"
        self.probe("file:///dev/null")
        with tempfile.TemporaryDirectory() as empty, \
                subprocess.Popen([sys.executable, "-m", "http.server", "-b", "127.0.0.1", "8750"], cwd=empty,
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as pages:
            self.addCleanup(pages.kill)
            wait_for("pages", is_open)
            self.assertEqual(self.run_with("echo started"), (0, "started\n", said))
            pages.terminate()
        with socket.create_server(("127.0.0.1", 8750)):
            self.assertEqual(self.run_with("echo started"), (0, "started\n", said), "it accepts and is silent")

    def test_serviceThatCantStart_isSaidWithItsLog(self):
        with open(self.path("service/state/places.bin"), "wb") as file:
            file.write(b"damaged")
        status, output, errors = self.run_with("echo started")
        self.assertEqual((status, output), (0, "started\n"))
        self.assertTrue(errors.startswith(f"The service did not start; its log is {self.path('service/log')}:\n"), errors)
        self.assertIn("places file state/places.bin: too short to be one\n", errors)

    def test_probeOutOfReach_isSaid(self):
        self.probe("http://127.0.0.1:9/")
        self.assertEqual(self.run_with("true"), (
            0, "", "http://127.0.0.1:9/" + OUT_OF_REACH))

    def test_settingsBesideTheProgram_nameTheProbe(self):
        self.settings('probe="http://127.0.0.1:9/?a=b&amp;c"')
        self.assertEqual(self.run_with("true"), (0, "", "http://127.0.0.1:9/?a=b&c" + OUT_OF_REACH))

    def test_settingsThatNameAnotherService_startNoneHere(self):
        self.probe("file:///dev/null")
        self.settings('FirstRun="true" service="https://times.example.org/"')
        self.assertEqual(self.run_with("echo started"), (
            0, f"{self.path('bin/settings.xml')} names the service https://times.example.org/: none is started here.\nstarted\n",
            ""))
        self.settings('service="http://localhost:8750/"')
        self.assertEqual(self.run_with(ASK), (0, "ok\n", ""))

    def test_proxyOfTheEnvironment_isNotAskedForTheService(self):
        self.probe("file:///dev/null")
        self.assertEqual(self.run_with("echo started", http_proxy="http://127.0.0.1:9/"), (0, "started\n", ""))

    def test_tableNewerThanThePlaces_isImported(self):
        self.write_table("places.tsv.xz", PLACE.replace("Makkah", "Madinah"))
        self.age_places()
        search = f"{BASE}/cgi-bin/dbeacon/getNumMatchingCities.pl?state_id=SA&city_string=mad"
        output = self.run_with(f"curl -s --noproxy '*' '{search}'")[1]
        self.assertIn('<root num_matches="1"', output)

    def test_importThatFails_isSaidAndThePlacesBeforeGoOn(self):
        os.remove(self.path("share/dusk-beacon/places/regions.tsv"))
        self.age_places()
        status, output, errors = self.run_with(ASK)
        self.assertEqual((status, output), (0, "ok\n"))
        said = "The places could not be imported; the service goes on with those before, if any.\n"
        self.assertTrue(errors.endswith(said), errors)

    def test_serviceThatNeverAnswers_isEnded(self):
        stub = self.path("bin/dusk-beacond")
        with open(stub, "w", encoding="ascii") as file:
            file.write('#!/bin/sh\n[ "$1" = serve ] || exit 0\ntrap "" TERM\necho $$ >pid\nexec sleep 60\n')
        status, output, errors = self.run_with("echo started")
        self.assertEqual((status, output), (0, "started\n"))
        self.assertTrue(errors.startswith("The service did not start;"), errors)
        with open(self.path("service/pid"), encoding="ascii") as file:
            self.assertFalse(is_running(int(file.read())))

    def test_serviceWithoutAConfiguration_readsThePlacesAgain(self):
        def log():
            with open(self.path("service/log"), encoding="utf-8") as file:
                return file.read()
        with self.start("exec sleep 60") as process:
            wait_for("service and command", lambda: is_open() and len(children(process.pid)) == 2)
            wait_for("readiness", lambda: "ready on port" in log())
            os.kill(children(process.pid)[0], signal.SIGHUP)
            wait_for("places", lambda: '"message":"the places were read again"' in log())
            process.terminate()


if __name__ == "__main__":
    own_network.under_own_network()
    unittest.main(argv=sys.argv[:1])
