#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""record_test.py PROGRAM VERSION: the version record and the manifest of the built program, as Windows reads them."""
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

ICON, GROUP_ICON, VERSION, MANIFEST = 3, 14, 16, 24
SETTINGS = "{http://schemas.microsoft.com/SMI/%s/WindowsSettings}%s"


def resources(program):
    """The first resource of each kind: pairs of kind and bytes."""
    headers = subprocess.run(["x86_64-w64-mingw32-objdump", "-h", program], check=True, stdout=subprocess.PIPE, text=True).stdout
    address = int(re.search(r"\.rsrc +\w+ +(\w+)", headers)[1], 16)
    base = int(re.search(r"ImageBase\s+(\w+)", subprocess.run(
        ["x86_64-w64-mingw32-objdump", "-p", program], check=True, stdout=subprocess.PIPE, text=True).stdout)[1], 16)
    with tempfile.NamedTemporaryFile() as file:
        subprocess.run(["x86_64-w64-mingw32-objcopy", "-O", "binary", "--only-section=.rsrc", program, file.name], check=True)
        section = file.read()

    def number(at, size=4):
        return int.from_bytes(section[at:at + size], "little")

    def entries(at):
        """Pairs of an identifier and a place; the highest bit of the place tells a folder."""
        count = number(at + 12, 2) + number(at + 14, 2)
        return [(number(entry), number(entry + 4)) for entry in range(at + 16, at + 16 + 8 * count, 8)]
    found = {}
    for kind, place in entries(0):
        while place & 0x80000000:
            place = entries(place & 0x7FFFFFFF)[0][1]
        start = number(place) - (address - base)
        found[kind] = section[start:start + number(place + 4)]
    return found


def texts(record):
    """The texts of a version record by their names."""
    words = record.decode("utf-16-le", "replace")
    return dict(re.findall(r"([A-Za-z]{6,})\0+([^\0]+)\0", words))


def main():
    program, version = sys.argv[1:]
    found = resources(program)
    assert ICON in found and GROUP_ICON in found, "no icon"
    record = texts(found[VERSION])
    assert record["FileDescription"] == "Dusk beacon v1.0", record
    assert record["ProductName"] == "Dusk beacon v1.0", record
    assert record["FileVersion"] == record["ProductVersion"] == version, record
    manifest = xml.etree.ElementTree.fromstring(found[MANIFEST])

    def setting(year, name):
        return manifest.find(".//" + SETTINGS % (year, name)).text
    assert setting(2016, "dpiAwareness") == "PerMonitorV2"
    assert setting(2016, "longPathAware") == "true"
    assert setting(2019, "activeCodePage") == "UTF-8"
    level = manifest.find(".//{urn:schemas-microsoft-com:asm.v3}requestedExecutionLevel")
    assert level.attrib == {"level": "asInvoker", "uiAccess": "false"}, level.attrib
    print("record_test: passed")


main()
