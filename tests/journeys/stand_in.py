# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The stand-in for the service as a journey uses it: its replies, its requests and its faults."""
import os
import subprocess
import sys
import threading
import urllib.parse
import urllib.request

import screen

PORT = 8750  # of the program's default base address
AD = "<b>An advertisement</b>"  # until a reply is set
START = "/cgi-bin/dbeacon/"
# Faults that make a reply unreadable, and variants that can be read.
UNREADABLE = ["refuse", "flood", "html", "truncated", "cut", "empty", "gzip", "loop", "entities", "certificate"]
READABLE = ["error", "utf16", "windows1252"]


class Service:
    """The stand-in for the service, which is also the network that the program finds. Port 0 means any free port."""

    def __init__(self, port=PORT, **replies):
        self.port = port
        self._replies = replies
        self._lock = threading.Lock()
        self._requests = []

    def __enter__(self):
        script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "stand_in_service.py")
        replies = [word for name, value in self._replies.items() for word in ("--set", f"{name}={value}")]
        self._process = subprocess.Popen([sys.executable, script, "--port", str(self.port), *replies],
                                         stdout=subprocess.PIPE, text=True)
        port = self._process.stdout.readline().strip()
        assert port and self.port in (0, int(port)), "the service's port is taken"
        self.port = int(port)
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        return self

    def __exit__(self, *_):
        self._process.terminate()
        self._process.wait()
        self._reader.join()

    @staticmethod
    def environment():
        return {"http_proxy": f"http://127.0.0.1:{PORT}", "https_proxy": f"http://127.0.0.1:{PORT}",
                "no_proxy": "localhost,127.0.0.1"}

    def reply(self, **replies):
        self._control("set", [f"{name}={value}" for name, value in replies.items()])

    def fault(self, how, *scripts):
        """Makes these scripts misbehave in that way from now on; "ok" makes them normal again."""
        self._control("fault", [f"{script}={how}" for script in scripts])

    def requests(self, script, pid=None):
        """Those of one installation if one is named; another test's program may come to the usual port as well."""
        of_installation = "" if pid is None else f"prod_string={pid}"
        return [request for request in self._lines() if f"/{script}?" in request and of_installation in request]

    def asked(self):
        """All requests to the service in the order of their arrival; the probes of the network aren't among them."""
        return [line for line in self._lines() if line.startswith(START)]

    def connections(self):
        """Number of connections of those requests."""
        return self._lines().count("connection")

    def probes(self, address="http://"):
        """Number of requests for that address; without one, for any other host through the proxy."""
        return sum(line.startswith(address) for line in self._lines())

    def check_refusals(self, expected):
        """Number of clients that refused the certificate of the service's TLS port. The service reports it later than
        the program does."""
        def refusals():
            return self._lines().count("refused certificate")
        screen.wait_for(f"{expected} refusals, not {refusals()}", lambda: refusals() >= expected)
        assert refusals() == expected, refusals()

    def check_asked(self, expected):
        """These requests and no other, in this order."""
        screen.wait_for(f"{expected}, not {self._lines()}", lambda: len(self.asked()) >= len(expected))
        assert self.asked() == expected, f"{self.asked()}, not {expected}"

    def forget(self):
        with self._lock:
            self._requests.clear()

    def _control(self, what, pairs):
        query = urllib.parse.urlencode([(what, pair) for pair in pairs])
        direct = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        direct.open(f"http://127.0.0.1:{self.port}/control?{query}", timeout=screen.PATIENCE).close()

    def _read(self):
        for line in self._process.stdout:
            with self._lock:
                self._requests.append(line.strip())

    def _lines(self):
        with self._lock:
            return list(self._requests)


def prayer_call(pid, pno, time, kind="Quite", ma=0):
    """The request of an alert; it contains `aid` twice."""
    return (f"{START}prayerCall.pl?prod_string={pid}&aid=US-1&pno={pno}&alert_type={kind}&ma={ma}"
            f"&dist_string=dbeacon&time={time}&aid=US-1")
