# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The servers that ./figures measures, each in a folder and at free ports of the loopback: the service and nginx."""
import http.client
import os
import re
import socket
import subprocess
import time

HOST = "127.0.0.1"
PATIENCE = 20  # seconds

# All calls come from one address, which is a configured proxy, so that no limit of connections applies. The limits of requests
# and of load are off: they would hide the cost.
SERVICE = """
[http]
listen = "{host}:{port}"
proxies = ["127.0.0.1"]
threads = {threads}
[limits]
network_per_minute = 0
installation_per_minute = 0
overload_milliseconds = 0
[metrics]
listen = "{host}:{metrics}"
[places]
file = "{folder}/{places}"
[messages]
channels = {channels}
{more}[log]
level = "{level}"
"""

NGINX = """
daemon off;
{user}
worker_processes 1;
error_log stderr crit;
pid {folder}/nginx.pid;
events {{ worker_connections 4096; }}
http {{
  log_format short '{{"time":"$time_iso8601","request":"$uri","status":$status,"seconds":$request_time}}';
  access_log {log};
  keepalive_requests 100000000;
  open_file_cache max=10;
  default_type "text/xml; charset=utf-8";
  upstream service {{ server {host}:{service}; keepalive 32; }}
  server {{ listen {host}:{port} backlog=65535; root {folder}/files; }}
  server {{
    listen {host}:{tls} ssl backlog=65535;
    ssl_certificate {folder}/certificate.pem;
    ssl_certificate_key {folder}/key.pem;
    location / {{
      proxy_pass http://service;
      proxy_http_version 1.1;
      proxy_set_header Connection "";
      proxy_set_header X-Forwarded-For $remote_addr;
    }}
  }}
}}
"""


def free_port():
    with socket.socket() as listener:
        listener.bind((HOST, 0))
        return listener.getsockname()[1]


def get(port, target, headers=None, body=None):
    """The body of the reply, whose status must be 200."""
    connection = http.client.HTTPConnection(HOST, port, timeout=PATIENCE)
    connection.request("POST" if body else "GET", target, body, headers or {})
    reply = connection.getresponse()
    content = reply.read()
    connection.close()
    if reply.status != 200:
        raise RuntimeError(f"{target}: status {reply.status}")
    return content


class Server:
    """A process that ends with its with-block."""

    def __init__(self, folder, name, command, port, path):
        with open(os.path.join(folder, name + ".log"), "wb") as log:
            self.process = subprocess.Popen(command, cwd=folder, stderr=log)
        self.port = port
        begin = time.monotonic()
        while not self._answers(path):
            if self.process.poll() is not None or time.monotonic() > begin + PATIENCE:
                self.process.kill()
                raise RuntimeError(f"{name} does not start")
            time.sleep(0.001)

    def _answers(self, path):
        try:
            get(self.port, path)
            return True
        except (OSError, RuntimeError):
            return False

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(PATIENCE)

    def processes(self):
        return [self.process.pid]


class Service(Server):
    def __init__(self, program, folder, threads=0, level="warning", places="places.bin", channels=("spool",), more=""):
        begin = time.monotonic()
        name = f"service-{threads}-{level}"
        port, self._metrics = free_port(), free_port()
        configuration = SERVICE.format(host=HOST, port=port, metrics=self._metrics, folder=folder, threads=threads,
                                       level=level, places=places, channels=list(channels), more=more)
        with open(os.path.join(folder, name + ".toml"), "w", encoding="utf-8") as file:
            file.write(configuration)
        super().__init__(folder, name, [program, "--config", name + ".toml", "serve"], port, "/readyz")
        self.seconds_to_ready = time.monotonic() - begin

    def metric(self, name):
        """A counter, such as 'beacond_texts_total{outcome="queued"}'."""
        text = get(self._metrics, "/metrics").decode()
        return float(re.search(f"^{re.escape(name)} (.+)$", text, re.MULTILINE)[1])

    def private_bytes(self):
        """The private memory, including the places file if no other process has mapped it."""
        with open(f"/proc/{self.process.pid}/smaps_rollup", encoding="ascii") as file:
            return 1024 * sum(int(kilobytes) for kilobytes in re.findall(r"^Private_\w+: +(\d+) kB$", file.read(), re.MULTILINE))


class OkServer(Server):
    """Only the HTTP library of the service."""

    def __init__(self, program, folder):
        port = free_port()
        super().__init__(folder, "ok_server", [program, f"{HOST}:{port}", "1"], port, "/")


class Nginx(Server):
    """Serves the files of a folder, and forwards to the service at that port, by TLS with a P-256 key."""

    def __init__(self, folder, service, log):
        name = "nginx-log" if log else "nginx"
        port, self.tls_port = free_port(), free_port()
        if not os.path.exists(os.path.join(folder, "key.pem")):
            subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                            "-subj", "/CN=localhost", "-days", "2", "-keyout", "key.pem", "-out", "certificate.pem"],
                           cwd=folder, check=True, capture_output=True)
        configuration = NGINX.format(host=HOST, port=port, tls=self.tls_port, folder=folder, service=service,
                                     user="user root;" if os.geteuid() == 0 else "",
                                     log=f"{folder}/{name}-access.log short" if log else "off")
        path = os.path.join(folder, name + ".conf")
        with open(path, "w", encoding="utf-8") as file:
            file.write(configuration)
        super().__init__(folder, name, ["nginx", "-p", folder, "-e", "stderr", "-c", path], port, "/ready")

    def processes(self):
        return subprocess.run(["pgrep", "-P", str(self.process.pid)], check=True, capture_output=True, text=True).stdout.split()
