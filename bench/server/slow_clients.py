# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Clients that hold a connection and send little."""
import select
import socket
import threading
import time

FORM = (b"POST /signup HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/x-www-form-urlencoded\r\n"
        b"Content-Length: 10000\r\n\r\n")
# For each kind: the first bytes, and whether the client sends single bytes afterwards.
KINDS = [(b"", False), (b"GET / HTTP/1.1\r\nHost: localhost\r\nX-Slow: ", True), (FORM, True)]
SECONDS_OF_A_BYTE = 0.5


class SlowClients:
    """Connects `count` clients for the duration of its block: a third sends nothing, a third sends a header byte by byte, and a
    third sends a form byte by byte. A dropped client connects again."""

    def __init__(self, address, count):
        self._address = address
        self._ends = select.epoll()
        self._clients = {}
        self._is_over = threading.Event()
        self._thread = threading.Thread(target=self._run)
        self.dropped = 0
        for number in range(count):
            self._connect(number % len(KINDS))

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._is_over.set()
        self._thread.join()
        for client, _ in self._clients.values():
            client.close()
        self._ends.close()

    def _connect(self, kind):
        client = socket.create_connection(self._address)
        client.setblocking(False)
        client.send(KINDS[kind][0])
        self._clients[client.fileno()] = client, kind
        self._ends.register(client, select.EPOLLRDHUP)

    def _run(self):
        next_byte = time.monotonic()
        while not self._is_over.is_set():
            for descriptor, _ in self._ends.poll(0.05):
                client, kind = self._clients.pop(descriptor)
                client.close()
                self.dropped += 1
                self._connect(kind)
            if time.monotonic() >= next_byte:
                next_byte += SECONDS_OF_A_BYTE
                self._send_bytes()

    def _send_bytes(self):
        for client, kind in self._clients.values():
            if KINDS[kind][1]:
                try:
                    client.send(b"a")
                except OSError:
                    pass  # dropped: seen at the next poll
