#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""http_test.py FETCHER: HTTP, TLS and the proxy of Windows under Wine, against servers on the loopback. FETCHER is fetcher.exe of
the test programs. Needs wine and openssl; WINEPREFIX is used if it is set, and its proxy settings are changed and removed.

Wine's schannel accepts any certificate unless it gets a file of trusted ones, so that the system's own store is not tested."""
import os
import socket
import ssl
import struct
import subprocess
import sys
import tempfile
import threading
import time

WINE = os.environ.get("WINE", "wine")
ENVIRONMENT = dict(os.environ, WINEDEBUG="-all", WINEDLLOVERRIDES="mscoree,mshtml=")
REPLY = b"HTTP/1.1 200 OK\r\nContent-Length: 7\r\n\r\n<root/>"
PATIENCE = 60
MOMENT = 0.2  # seconds


class Server:
    """Answers each request with REPLY, and sends `more` a moment later; records the connections and the requests."""

    def __init__(self, context=None, more=b""):
        self._listener = socket.create_server(("127.0.0.1", 0))
        self._context = context
        self._more = more
        self.port = self._listener.getsockname()[1]
        self.connections = 0
        self.requests = []
        threading.Thread(target=self._accept, daemon=True).start()

    def _accept(self):
        while True:
            connection, _ = self._listener.accept()
            threading.Thread(target=self._serve, args=[connection], daemon=True).start()

    def _serve(self, connection):
        connection.settimeout(PATIENCE)
        try:
            if self._context is not None:
                connection = self._context.wrap_socket(connection, server_side=True)
            self.connections += 1
            request = b""
            while received := connection.recv(4096):
                request += received
                if request.endswith(b"\r\n\r\n"):
                    self.requests.append(request)
                    request = b""
                    connection.sendall(REPLY)
                    if self._more:
                        # Not read with the reply.
                        time.sleep(MOMENT)
                        connection.sendall(self._more)
        except OSError:
            pass


class Fetcher:
    def __init__(self, program, *arguments, environment=None):
        self._process = subprocess.Popen([WINE, program, *arguments], env={**ENVIRONMENT, **(environment or {})}, text=True, bufsize=1,
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        assert self._process.stdout.readline().strip() == "ready"

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._process.stdin.write("end\n")
        assert self._process.wait(PATIENCE) == 0

    def ask(self, line):
        """The reply as bytes; None for a failure."""
        self._process.stdin.write(line + "\n")
        kind, _, value = self._process.stdout.readline().strip().partition(" ")
        return {"reply": bytes.fromhex(value), "reached": b"reached"}.get(kind)


def check_urls(program):
    """A URL is sent unchanged but for white space and letters outside of ASCII."""
    server = Server()
    with Fetcher(program) as fetcher:
        for url, sent in (("/a?q=1&b=%7e%2F", b"/a?q=1&b=%7e%2F"), ("/a?q=<\"{|}\\^`[]>'", b"/a?q=<\"{|}\\^`[]>'"),
                          ("/a b\u00fc\u0645", b"/a%20b%C3%BC%D9%85"), ("/a?q=1#2", b"/a?q=1#2"), ("/../x//y/./", b"/../x//y/./")):
            assert fetcher.ask(f"fetch http://127.0.0.1:{server.port}{url}") == b"<root/>", url
            assert server.requests[-1].startswith(b"GET " + sent + b" HTTP/1.1\r\n"), server.requests[-1]
            assert b"\r\nUser-Agent: DuskBeacon/1.0.5\r\n" in server.requests[-1]
        assert fetcher.ask(f"reach http://127.0.0.1:{server.port}/") == b"reached"
        assert fetcher.ask("reach http://127.0.0.1:1/") is None
        assert fetcher.ask("fetch http://127.0.0.1:1/") is None
        assert fetcher.ask("fetch file:///etc/passwd") is None


def check_connections(program):
    """A connection is kept, unless bytes have come behind a reply; those are no reply to the next request."""
    server = Server()
    with Fetcher(program) as fetcher:
        for _ in range(3):
            assert fetcher.ask(f"fetch http://127.0.0.1:{server.port}/") == b"<root/>"
    assert server.connections == 1, server.connections
    server = Server(more=b"HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\n<evil>")
    with Fetcher(program) as fetcher:
        for _ in range(3):
            assert fetcher.ask(f"fetch http://127.0.0.1:{server.port}/") == b"<root/>"
            time.sleep(2 * MOMENT)
    assert server.connections == 3, server.connections


def make_certificate(folder, name):
    """A certificate of its own authority for localhost; the path of the certificate and of the key."""
    paths = f"{folder}/{name}.pem", f"{folder}/{name}.key"
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", f"/CN={name}", "-addext",
                    "subjectAltName=DNS:localhost", "-out", paths[0], "-keyout", paths[1]], check=True, stderr=subprocess.DEVNULL)
    return paths


def check_certificates(program, folder):
    certificate, key = make_certificate(folder, "trusted")
    other, _ = make_certificate(folder, "other")
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(certificate, key)
    server = Server(context)
    with Fetcher(program, "Z:" + certificate) as fetcher:
        for _ in range(2):
            assert fetcher.ask(f"fetch https://localhost:{server.port}/") == b"<root/>"
        assert server.connections == 1, "the connection is kept"
        assert fetcher.ask(f"fetch https://127.0.0.1:{server.port}/") is None, "another name"
    with Fetcher(program, "Z:" + other) as fetcher:
        assert fetcher.ask(f"fetch https://localhost:{server.port}/") is None, "another authority"
    assert len(server.requests) == 2, server.requests


def set_proxy(proxies, exceptions):
    """As the settings of the system store it: a header, flags, and texts with their lengths."""
    texts = b"".join(struct.pack("<I", len(text)) + text.encode() for text in (proxies, exceptions, ""))
    value = struct.pack("<III", 0x46, 0, 3) + texts
    subprocess.run([WINE, "reg", "add", CONNECTIONS, "/v", "DefaultConnectionSettings", "/t", "REG_BINARY", "/d", value.hex(), "/f"],
                   env=ENVIRONMENT, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


CONNECTIONS = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Internet Settings\Connections"


def check_proxy(program):
    """The proxy of the system serves all hosts but its exceptions and this computer."""
    proxy = Server()
    server = Server()
    set_proxy(f"http=127.0.0.1:{proxy.port};https=127.0.0.1:1", "*.direct.example;<local>")
    try:
        with Fetcher(program) as fetcher:
            assert fetcher.ask("fetch http://service.example/a?b") == b"<root/>"
            assert proxy.requests[-1].startswith(b"GET http://service.example/a?b HTTP/1.1\r\n"), proxy.requests
            assert fetcher.ask("fetch http://www.direct.example/") is None, "a name without an address"
            assert fetcher.ask(f"fetch http://127.0.0.1:{server.port}/") == b"<root/>"
        with Fetcher(program, environment={"http_proxy": f"http://127.0.0.1:{proxy.port}"}) as fetcher:
            assert fetcher.ask("fetch http://www.direct.example/") is None, "the environment names a proxy for all"
        assert len(proxy.requests) == 1, proxy.requests
    finally:
        subprocess.run([WINE, "reg", "delete", CONNECTIONS, "/v", "DefaultConnectionSettings", "/f"], env=ENVIRONMENT,
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def main():
    program = sys.argv[1]
    with tempfile.TemporaryDirectory(prefix="duskbeacon-http-") as folder:
        for check, arguments in ((check_urls, ()), (check_connections, ()), (check_certificates, (folder,)), (check_proxy, ())):
            check(program, *arguments)
            print(f"http_test: {check.__name__}: passed", flush=True)


main()
