# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""own_network.py COMMAND...: runs it in a network with a loopback only, where the service's port is free."""
import fcntl
import os
import socket
import struct
import subprocess
import sys

KIND = "DUSKBEACON_NETWORK"


def under_own_network():
    """Starts this script again in a network of its own. If the system refuses one, uses the common loopback."""
    if KIND not in os.environ:
        command = ["unshare", "--net"] + (["--map-root-user"] if os.geteuid() != 0 else [])
        os.environ[KIND] = "own" if _succeeds(command) else "common"
        if os.environ[KIND] == "own":
            os.execvp(command[0], [*command, sys.executable, *sys.argv])
    if os.environ[KIND] == "own":
        with socket.socket() as door:
            interface_up = struct.pack("16sh", b"lo", 0x41)  # IFF_UP and IFF_RUNNING
            fcntl.ioctl(door, 0x8914, interface_up)  # SIOCSIFFLAGS


def _succeeds(command):
    try:
        return subprocess.run([*command, "true"], stderr=subprocess.DEVNULL).returncode == 0
    except FileNotFoundError:
        return False


if __name__ == "__main__":
    under_own_network()
    os.execvp(sys.argv[1], sys.argv[1:])
