#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""house_test.py TREE: what the shape of the program rests on and no compiler checks."""
import pathlib
import re
import sys

TREE = pathlib.Path(sys.argv[1])
BASE = {"forms", "engine", "store", "controls", "platform", "support"}
MAY_INCLUDE = {
    "support": set(), "calculation": set(), "platform": {"support"}, "controls": {"platform", "support"},
    "engine": {"platform", "support"}, "store": {"platform", "support"}, "forms": BASE,
    "alerts": BASE, "service": BASE, "instruments": BASE, "locations": BASE | {"service"},
    "settings_dialog": BASE | {"service"},
    "app": BASE | {"alerts", "service", "instruments", "locations", "settings_dialog"},
}
CLOCK = re.compile(r"currentDateTime|QDate::currentDate|QTime::currentTime|system_clock|gettimeofday|clock_gettime|\btime\((0|NULL|nullptr)\)")
OUTSIDE = re.compile(r"\b(fopen|getenv|qgetenv|system|fork|execv|execl)\s*\(")


def sources(folder):
    return sorted(path for path in (TREE / folder).rglob("*") if path.suffix in (".cpp", ".h"))


def faults():
    for path in sources("src"):
        folder = path.relative_to(TREE / "src").parts[0]
        for number, line in enumerate(path.read_text().splitlines(), 1):
            where = f"{path.relative_to(TREE)}:{number}"
            included = re.match(r'#include "([a-z_]+)/', line)
            if included and included[1] != folder and included[1] not in MAY_INCLUDE[folder]:
                yield f"{where}: {folder} must not know {included[1]}"
            if folder != "platform" and CLOCK.search(line):
                yield f"{where}: only the clock of platform/ reads the time"
            if folder not in ("platform", "engine") and OUTSIDE.search(line):
                yield f"{where}: only platform/ calls the operating system"
            if folder == "calculation" and re.match(r"#include <Q", line):
                yield f"{where}: the calculation knows no Qt"
    for folder in ("src", "tests", "bench", "data"):
        for path in sources(folder):
            text = path.read_text().splitlines()
            if len(text) > 500:
                yield f"{path.relative_to(TREE)}: {len(text)} lines; 500 is the most"
            if "SPDX-FileCopyrightText" not in text[0] or "SPDX-License-Identifier" not in text[1]:
                yield f"{path.relative_to(TREE)}: the two lines of the licence are missing"


found = list(faults())
checked = sum(len(sources(folder)) for folder in ("src", "tests", "bench", "data"))
print("\n".join(found) if found else f"{checked} files keep the house")
sys.exit(1 if found or checked < 100 else 0)
