# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""A provider of text messages, played on the loopback: takes messages by HTTP, and posts those of its phones to the service."""
import contextlib
import hashlib
import hmac
import http.server
import json
import threading
import urllib.parse
import urllib.request

import screen

TOKEN, SECRET = "a token of the provider", "a secret of the provider"
HEADER = "X-Signature"


class Provider:
    def __init__(self):
        self._lock = threading.Lock()
        self._texts = []
        self._posted = 0
        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), self._handler())
        self.port = self._server.server_address[1]

    def texts(self, number):
        """The messages that have arrived for that number, oldest first."""
        with self._lock:
            return [text for to, text in self._texts if to == number]

    def wait_texts(self, number, count):
        screen.wait_for(f"{count} texts to {number}", lambda: len(self.texts(number)) >= count)
        return self.texts(number)

    def post(self, address, number, text):
        """A text message of a phone to the operator's number, as the provider posts it to that address."""
        self._posted += 1
        form = urllib.parse.urlencode({"From": number, "Body": text, "MessageId": f"incoming-{self._posted}"}).encode()
        proof = hmac.new(SECRET.encode(), form, hashlib.sha256).hexdigest()
        request = urllib.request.Request(address, form, {HEADER: proof})
        direct = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        with direct.open(request, timeout=screen.PATIENCE) as reply:
            return reply.status

    def _handler(self):
        provider = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_POST(self):  # the name that http.server expects
                message = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
                is_known = self.headers["Authorization"] == "Bearer " + TOKEN
                if is_known:
                    with provider._lock:
                        provider._texts.append((message["to"], message["text"]))
                reply = b'{"status": "queued"}' if is_known else b"{}"
                self.send_response(201 if is_known else 401)
                self.send_header("Content-Length", str(len(reply)))
                self.end_headers()
                self.wfile.write(reply)

            def log_message(self, *_):
                pass
        return Handler


@contextlib.contextmanager
def running():
    provider = Provider()
    thread = threading.Thread(target=provider._server.serve_forever, daemon=True)
    thread.start()
    try:
        yield provider
    finally:
        provider._server.shutdown()
        thread.join()
        provider._server.server_close()
