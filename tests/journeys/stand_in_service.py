#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""A stand-in for the remote service, on the loopback only.

Speaks the whole protocol with a small table of cities, and keeps its connections. Prints the port it listens on, then one
line per request, so that a test can wait for what was asked, and "connection" before the first one on each connection. `--set NAME=VALUE` changes a reply, `--fault SCRIPT=HOW` makes one script misbehave; both
can be changed while it runs by a request for /control?set=NAME=VALUE or /control?fault=SCRIPT=HOW. It ends by itself
after --seconds. As a proxy (http_proxy=http://127.0.0.1:PORT) it answers for every other host, so that the program finds a
network; the fault probe=refuse takes the network away. What the protocol doesn't know gets 404 and no document.

HOW is one of: ok, refuse (closes at once), hang (until the script is to behave otherwise, then the reply), drip (a byte a
second, until the same, then the end in the middle of it), slow (a byte a second, until the same, then the rest), flood
(far beyond every limit), error (500 with the reply), html, truncated, cut (closes before the length it named), empty, gzip (a
bomb), loop (redirects to itself), entities (an expansion bomb), certificate (redirects to a TLS port with a
self-signed certificate, and prints "refused certificate" when the client refuses it), utf16, windows1252.
"""
import argparse
import base64
import functools
import gzip
import os
import ssl
import subprocess
import tempfile
import threading
import time
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, unquote, urlsplit
from xml.sax.saxutils import quoteattr

# (atlas_id, element name, city, state, zip, latitude, longitude, zone): facts from GeoNames, rounded to a hundredth.
CITIES = [
    ("US-60601", "Chicago", "Chicago", "Illinois", "60601", 41.85, -87.65, -6),
    ("US-48126", "Dearborn", "Dearborn", "Michigan", "48126", 42.32, -83.18, -5),
    ("FR-75000", "Paris", "Paris", "France", "", 48.85, 2.35, 1),
    ("FR-64000", "Pau", "Pau", "France", "", 43.30, -0.37, 1),
    ("NO-9008", "Tromso", "Troms\u00f8", "Norway", "", 69.65, 18.96, 1),
    ("ID-10110", "Jakarta", "Jakarta", "Indonesia", "", -6.21, 106.85, 7),
]
STATES = sorted({city[3] for city in CITIES})


SERVICE = "/cgi-bin/dbeacon/"


def address(script):
    return f"{SERVICE}{'ma/' if script == 'confirmSignup.pl' else ''}{script}"


def element(name, **attributes):
    return "<%s %s/>" % (name, " ".join("%s=%s" % (key, quoteattr(str(value))) for key, value in attributes.items()))


def root(children="", **attributes):
    opening = " ".join(["<root"] + ["%s=%s" % (key, quoteattr(str(value))) for key, value in attributes.items()])
    return '<?xml version="1.0" encoding="UTF-8"?>\n%s>%s</root>\n' % (opening, children)


class Service:
    def __init__(self):
        self.settings = {
            "prod_string": "P-1001", "ad": "<b>An advertisement</b>", "wait_time": "10", "version_name": "1",
            "version_sequence": "5", "download_url": "http://127.0.0.1/download", "max_matches": "3",
            "result": "1", "message": "Your device is registered.",
            # Put in place of that of every city, if not empty.
            "latitude_final": "",
        }
        self.faults = {}
        self.lock = threading.Lock()

    def change(self, query):
        with self.lock:
            for pair in query.get("set", []):
                name, _, value = pair.partition("=")
                self.settings[name] = value
            for pair in query.get("fault", []):
                script, _, how = pair.partition("=")
                self.faults[script] = how

    def matching(self, query):
        state = STATES[int(query.get("state_id", ["1"])[0]) - 1]
        start = query.get("city_string", [""])[0].lower()
        return [city for city in CITIES if city[3] == state and city[2].lower().startswith(start)]

    def reply(self, script, query):
        s = self.settings
        cities = lambda found: "".join(element("c%d" % i, city=c[2], atlas_id=c[0]) for i, c in enumerate(found))
        if script == "requestProdID.pl":
            return root(prod_string=s["prod_string"])
        if script == "getAd.pl":
            return root(ad_url=base64.b64encode(s["ad"].encode("cp1252")).decode(), wait_time=s["wait_time"])
        if script == "version.pl":
            return root(version_name=s["version_name"], version_sequence=s["version_sequence"],
                        download_url=s["download_url"])
        if script == "getStates.pl":
            return root("".join(element("s%d" % (i + 1), state=name, state_id=i + 1) for i, name in enumerate(STATES)))
        if script == "getUsCanCity.pl":
            return root(cities([c for c in CITIES if c[4] and c[4] == query.get("zipcode", [""])[0]]))
        if script == "getNumMatchingCities.pl":
            return root(num_matches=len(self.matching(query)), max_matches=s["max_matches"])
        if script == "getMatchingCities.pl":
            return root(cities(self.matching(query)))
        if script == "getCityInfo.pl":
            for aid, name, city, state, _, lat, lng, zone in CITIES:
                if aid == query.get("aid", [""])[0]:
                    return root(element(name, atlas_id=aid, city=city, state=state, longitude="%s" % lng,
                                        longitude_final="%.2f" % lng, latitude="%s" % lat,
                                        latitude_final=s["latitude_final"] or "%.2f" % lat,
                                        time_zone2=zone))
            return root()
        if script == "confirmSignup.pl":
            return root(result=s["result"], message=s["message"])
        if script in ("startup.pl", "prayerCall.pl"):
            return root()
        return None


@functools.cache
def packed_bomb():
    return gzip.compress(b" " * 50_000_000)


class SecureServer(ThreadingHTTPServer):
    """Replies as the plain port does, over TLS with a self-signed certificate."""
    daemon_threads = True

    def __init__(self):
        self.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        with tempfile.TemporaryDirectory(prefix="stand-in-") as folder:
            key, certificate = os.path.join(folder, "key.pem"), os.path.join(folder, "certificate.pem")
            subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                            "-subj", "/CN=127.0.0.1", "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", key,
                            "-out", certificate], check=True, stderr=subprocess.DEVNULL)
            self.context.load_cert_chain(certificate, key)
        super().__init__(("127.0.0.1", 0), Handler)
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def finish_request(self, request, client_address):
        try:
            request = self.context.wrap_socket(request, server_side=True)
        except (ssl.SSLError, OSError):
            print("refused certificate", flush=True)
            return
        super().finish_request(request, client_address)

    @classmethod
    @functools.cache
    def port(cls):
        return cls().server_address[1]


class Handler(BaseHTTPRequestHandler):
    service = Service()
    protocol_version = "HTTP/1.1"

    disable_nagle_algorithm = True  # a reply on a kept connection would wait for the client's acknowledgement
    is_first = True  # on this connection

    def log_message(self, *_):
        pass

    def send(self, body, status=200, headers=()):
        self.send_response(status)
        for name, value in headers:
            self.send_header(name, value)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def send_endless(self):
        """The head of a reply that ends with the connection."""
        self.close_connection = True
        self.send_response(200)
        self.end_headers()

    def do_CONNECT(self):
        """Acts as a proxy, too, and as all hosts beyond it: the probe of the network ends here."""
        print("CONNECT " + self.path, flush=True)
        if self.service.faults.get("probe", "ok") != "ok":
            self.send_error(502)
            self.close_connection = True
            return
        self.send_response(200)
        self.end_headers()
        self.close_connection = False

    def do_GET(self):
        parts = urlsplit(self.path)
        query = parse_qs(parts.query, keep_blank_values=True)
        if parts.path == "/control":
            self.service.change(query)
            self.send(b"ok")
            return
        if self.is_first and parts.path.startswith(SERVICE) and not self.path.startswith("http"):
            print("connection", flush=True)
            self.is_first = False
        print(unquote(self.path), flush=True)
        if self.path.startswith("http") and self.service.faults.get("probe", "ok") != "ok":
            self.close_connection = True
            return
        script = parts.path.rsplit("/", 1)[-1]
        try:
            body = self.service.reply(script, query) if parts.path == address(script) else None
            if body is None and self.path.startswith("http"):
                body = root()
            if body is None:
                self.send(b"no such script", status=404)
                return
            how = self.service.faults.get(script, "ok")
            is_inside = isinstance(self.connection, ssl.SSLSocket)
            self.misbehave(script, "ok" if is_inside and how == "certificate" else how, body)
        except (BrokenPipeError, ConnectionResetError):
            self.close_connection = True

    def wait_until_changed(self, script, how, seconds=300):
        """Waits until the behaviour of the script is changed. False if the time is over first."""
        deadline = time.monotonic() + seconds
        while time.monotonic() < deadline:
            if self.service.faults.get(script) != how:
                return True
            time.sleep(0.05)
        return False

    def misbehave(self, script, how, body):
        data = body.encode("utf-8")
        if how == "refuse":
            self.close_connection = True
            self.connection.close()
        elif how == "hang":
            self.wait_until_changed(script, how)
            self.send(data)
        elif how == "drip":
            self.send_endless()
            for byte in data * 100:
                self.wfile.write(bytes([byte]))
                self.wfile.flush()
                if self.wait_until_changed(script, how, 1):
                    break
        elif how == "slow":
            self.send_endless()
            for sent in range(len(data)):
                self.wfile.write(data[sent:sent + 1])
                self.wfile.flush()
                if self.wait_until_changed(script, how, 1):
                    self.wfile.write(data[sent + 1:])
                    break
        elif how == "flood":
            self.send_endless()
            for _ in range(1000):
                self.wfile.write(b"<x/>" * 16384)
        elif how == "error":
            self.send(data, status=500)
        elif how == "html":
            self.send(b"<!DOCTYPE html><html><body><p>Welcome<br>to the hotel</body></html>")
        elif how == "truncated":
            self.send(data[: len(data) // 2])
        elif how == "cut":
            # A document that is whole by itself.
            self.close_connection = True
            self.send_response(200)
            self.send_header("Content-Length", str(len(data) + 1))
            self.end_headers()
            self.wfile.write(data)
        elif how == "certificate":
            self.send(b"", status=302, headers=[("Location", f"https://127.0.0.1:{SecureServer.port()}{self.path}")])
        elif how == "empty":
            self.send(b"")
        elif how == "gzip":
            self.send(packed_bomb(), headers=[("Content-Encoding", "gzip")])
        elif how == "loop":
            self.send(b"", status=302, headers=[("Location", self.path)])
        elif how == "entities":
            bomb = "".join('<!ENTITY e%d "%s">' % (i, ("&e%d;" % (i - 1)) * 10 if i else "x") for i in range(10))
            self.send(("<!DOCTYPE root [%s]><root a=\"&e9;\"/>" % bomb).encode())
        elif how == "utf16":
            self.send(body.replace("UTF-8", "UTF-16").encode("utf-16"))
        elif how == "windows1252":
            self.send(body.replace("UTF-8", "windows-1252").encode("cp1252"))
        else:
            self.send(data)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--port", type=int, default=0)
    parser.add_argument("--seconds", type=float, default=600)
    parser.add_argument("--set", action="append", default=[])
    parser.add_argument("--fault", action="append", default=[])
    arguments = parser.parse_args()
    Handler.service.change({"set": arguments.set, "fault": arguments.fault})
    server = ThreadingHTTPServer(("127.0.0.1", arguments.port), Handler)
    server.daemon_threads = True
    print(server.server_address[1], flush=True)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    time.sleep(arguments.seconds)
    os._exit(0)


if __name__ == "__main__":
    main()
