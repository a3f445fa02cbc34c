#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""nginx_test.py SITE PROGRAM BENCH: tests the shipped site of nginx in front of the real service. Skipped without nginx."""
import lzma
import os
import shutil
import socket
import ssl
import subprocess
import sys
import tempfile
import unittest
from xml.etree import ElementTree

SITE, PROGRAM = (os.path.abspath(path) for path in sys.argv[1:3])
sys.path.insert(0, sys.argv[3])
from servers import HOST, Server, free_port  # noqa: E402

SCRIPTS = "/cgi-bin/dbeacon/"
AROUND = """
daemon off;
{user}
worker_processes 1;
pid {folder}/nginx.pid;
events {{}}
http {{
  server {{ listen {host}:{plain}; return 200; }}
  include {folder}/site.conf;
}}
"""
TABLES = {"places.tsv.xz": "1\tMakkah\t\t\t21.42664\t39.82563\tP\tPPL\tSA\t\t14\t\t\t\t1323624\t\t\tAsia/Riyadh\t\n",
          "divisions.tsv.xz": "", "postal.tsv.xz": "", "regions.tsv": "SA\tSA\tSaudi Arabia\n", "overlay.tsv": "",
          "shipped.tsv": ""}
CONFIGURATION = '[http]\nlisten = "{host}:{port}"\n[metrics]\nlisten = "{host}:0"\n[places]\nfile = "places.bin"\n'


def exchange(port, target, encrypted=True):
    """Status and body of the reply to a target as it stands."""
    with socket.create_connection((HOST, port), timeout=20) as plain:
        context = ssl._create_unverified_context()  # pylint: disable=protected-access
        with context.wrap_socket(plain) if encrypted else plain as connection:
            connection.sendall(f"GET {target} HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n".encode())
            head, _, body = b"".join(iter(lambda: connection.recv(65536), b"")).partition(b"\r\n\r\n")
    return int(head.split()[1]), body


class NginxSite(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        for name, text in TABLES.items():
            data = text.encode()
            with open(self.path(name), "wb") as file:
                file.write(lzma.compress(data) if name.endswith(".xz") else data)
        subprocess.run([PROGRAM, "import", "--tables", ".", "--out", "places.bin"], cwd=self.folder, check=True,
                       capture_output=True)
        subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-subj",
                        "/CN=localhost", "-days", "2", "-keyout", "key.pem", "-out", "certificate.pem"], cwd=self.folder,
                       check=True, capture_output=True)
        self.port, self.tls, plain = free_port(), free_port(), free_port()
        self.write("service.toml", CONFIGURATION.format(host=HOST, port=self.port))
        with open(SITE, encoding="utf-8") as file:
            site = file.read()
        for shipped, here in (("listen 443 ", f"listen {HOST}:{self.tls} "), ("127.0.0.1:8750;", f"{HOST}:{self.port};"),
                              ("/etc/ssl/certs/service.example.org.pem", self.path("certificate.pem")),
                              ("/etc/ssl/private/service.example.org.key", self.path("key.pem")),
                              ("/var/log/nginx/dusk-beacon.log", self.path("access.log"))):
            self.assertEqual(site.count(shipped), 1, shipped)
            site = site.replace(shipped, here)
        self.write("site.conf", site)
        self.write("nginx.conf", AROUND.format(folder=self.folder, host=HOST, plain=plain,
                                               user="user root;" if os.geteuid() == 0 else ""))
        self.service = Server(self.folder, "service", [PROGRAM, "--config", "service.toml", "serve"], self.port, "/readyz")
        self.addCleanup(self.service.__exit__)
        nginx = Server(self.folder, "nginx", ["nginx", "-p", self.folder, "-e", "stderr", "-c", self.path("nginx.conf")], plain,
                       "/")
        self.addCleanup(nginx.__exit__)

    def path(self, name):
        return os.path.join(self.folder, name)

    def read(self, name):
        with open(self.path(name), encoding="utf-8") as file:
            return file.read()

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)

    def test_targetsOfTheProgram_arriveAsTheyStand(self):
        for dist in ("a#b", "%23", "a+b", "%zz", '"<>\\^{|}[]', "%41", "x" * 7000):
            with self.subTest(dist[:20]):
                target = f"{SCRIPTS}getNumMatchingCities.pl?dist_string={dist}&state_id=SA&city_string=mak"
                self.assertEqual(exchange(self.tls, target), (200, b'<root num_matches="1" max_matches="200"/>'))
                odd = f"{SCRIPTS}getNumMatchingCities.pl?state_id=SA&city_string=mak{dist}"
                self.assertEqual(exchange(self.tls, odd), exchange(self.port, odd, encrypted=False))

    def test_logs_holdNeitherQueryNorAddress(self):
        self.assertEqual(exchange(self.tls, SCRIPTS + "startup.pl?prod_string=secret"), (200, b"<root/>"))
        self.service.__exit__()
        exchange(self.tls, SCRIPTS + "startup.pl?prod_string=secret")
        self.assertIn("is not in http.proxies", self.read("service.log"), "the forwarded address arrives")
        for log in ("access.log", "nginx.log", "service.log"):
            text = self.read(log)
            self.assertNotIn("secret", text, log)
            self.assertNotIn(HOST, text, log)

    def test_errorPages_areNoXml(self):
        self.service.__exit__()
        for target in (SCRIPTS + "startup.pl", SCRIPTS + "startup.pl?" + "x" * 9000):
            status, body = exchange(self.tls, target)
            self.assertGreaterEqual(status, 400)
            with self.assertRaises(ElementTree.ParseError):
                ElementTree.fromstring(body)


if __name__ == "__main__":
    if shutil.which("nginx", path=os.environ["PATH"] + ":/usr/sbin") is None:
        sys.exit(77)
    os.environ["PATH"] += ":/usr/sbin"
    unittest.main(argv=sys.argv[:1])
