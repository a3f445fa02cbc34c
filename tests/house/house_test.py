#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""house_test.py TREE: what the shape of the program rests on and no compiler checks."""
import pathlib
import re
import sys
from xml.etree import ElementTree

TREE = pathlib.Path(sys.argv[1])
LAYERS = ("strip", "support", "platform", "engine", "store", "forms", "service", "alerts", "locations", "settings_dialog", "instruments", "app")
# The loader of the module is known to the folder that is written on it, and to what constructs it.
MAY_LOAD_THE_MODULE = ("src/engine/", "src/app/Application.cpp")
CLOCK = re.compile(r"currentDateTime|QDate::currentDate|QTime::currentTime|SecsSinceEpoch|(?:system|steady|high_resolution)_clock|QElapsedTimer|gettimeofday|clock_gettime|\btime\((0|NULL|nullptr)\)")
OUTSIDE = re.compile(r"\b(fopen|getenv|qgetenv|system|fork|execv|execl)\s*\(")
LICENCE = {"# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors", "# SPDX-License-Identifier: GPL-3.0-or-later"}
FAILURES = TREE / "docs/failure-tests.md"
ATTACKS = TREE / "docs/service-abuse.md"
FAILURES_FOR_USERS = TREE / "docs/failures.md"
# Functions that show a message box: those of the platform, and those that pass their `message` on to them.
RELAYS = ("Say", "SayAndUnload", "FailAndUnload")
SPEAKS = re.compile(r"\b(?:boxes\.(?:Show|Ask)|%s)\(" % "|".join(RELAYS))
FATAL = re.compile(r"\bEndWithFatalBox\([^;]*?(\d+)\);")
LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')
FILLED_IN = "*"
# The title of a box that is given none.
UNTITLED = '"Dusk Beacon"'


def sources(folder):
    return sorted(path for path in (TREE / folder).rglob("*") if path.suffix in (".cpp", ".h"))


def faults():
    for path in sources("src"):
        folder = path.relative_to(TREE / "src").parts[0]
        for number, line in enumerate(path.read_text().splitlines(), 1):
            where = f"{path.relative_to(TREE)}:{number}"
            if line.startswith('#include "engine/CalculationLibrary.h"') and not str(path.relative_to(TREE)).startswith(MAY_LOAD_THE_MODULE):
                yield f"{where}: only the scheduler asks the module"
            if folder != "platform" and CLOCK.search(line):
                yield f"{where}: only the clock of platform/ reads the time"
            if re.match(r"#(?:el)?if.*(?:_WIN32|__MINGW|Q_OS_|__linux__)", line):
                yield f"{where}: CMake chooses the files of each system"
            if folder not in ("platform", "engine") and OUTSIDE.search(line):
                yield f"{where}: only platform/ calls the operating system"
    for folder in (*LAYERS, "calculation"):
        listing = (TREE / "src" / folder / "CMakeLists.txt").read_text()
        for link in " ".join(re.findall(r"LINKS\s([^)]*)", listing)).split():
            room = link.removeprefix("duskbeacon_")
            if folder in ("calculation", "strip") and link.startswith(("Qt", "duskbeacon_")):
                yield f"src/{folder}: links {link}; it knows neither Qt nor the program"
            elif link.startswith("duskbeacon_") and LAYERS.index(room) >= LAYERS.index(folder):
                yield f"src/{folder}: links {room}, which does not lie below it"
    for path in sorted((TREE / "src").rglob("*.ui")):
        for label in ElementTree.parse(path).iterfind(".//widget[@class='QLabel']"):
            if label.findtext("property[@name='textFormat']/enum") != "Qt::PlainText":
                yield f"{path.relative_to(TREE)}: {label.get('name')} takes markup; set its textFormat to PlainText"
        for palette in ElementTree.parse(path).iterfind(".//palette"):
            roles = [sorted(role.get("role") for role in palette.iterfind(f"{group}/colorrole")) for group in ("active", "inactive", "disabled")]
            if roles[0] != roles[1] or roles[0] != roles[2]:
                yield f"{path.relative_to(TREE)}: a palette must name its roles in all three groups; otherwise the colour changes with the state of the window"
    for field, name in re.findall(r'\.(link|time|tabLabel) = "(\w+)"', (TREE / "src/engine/Prayers.h").read_text()):
        window = TREE / "src" / ("settings_dialog/FrmAlerts.ui" if field == "tabLabel" else "app/FrmMain.ui")
        kind = "QLabel" if field == "time" else "LinkLabel"
        if ElementTree.parse(window).find(f".//widget[@class='{kind}'][@name='{name}']") is None:
            yield f"src/engine/Prayers.h: {window.name} has no {kind} named {name}"
    for folder in ("src", "server", "tests", "bench", "data", "scripts", "cmake"):
        for path in sorted((TREE / folder).rglob("*")):
            if (path.name == "CMakeLists.txt" or path.suffix in (".cmake", ".py", ".sh")) and not LICENCE <= {*path.read_text().splitlines()[:3]}:
                yield f"{path.relative_to(TREE)}: the two lines of the licence are missing or damaged"
    for path in sources("server"):
        if re.search(r"#include <Q|#include \"(?:platform|forms)/", path.read_text()):
            yield f"{path.relative_to(TREE)}: the service knows neither Qt nor the desktop program"
    for folder in ("src", "server", "tests", "bench", "data"):
        for path in sources(folder):
            text = path.read_text().splitlines()
            most = 400 if folder == "src" else 500
            if len(text) > most:
                yield f"{path.relative_to(TREE)}: {len(text)} lines; {most} is the most"
            if "SPDX-FileCopyrightText" not in text[0] or not any("SPDX-License-Identifier" in line for line in text[1:3]):
                yield f"{path.relative_to(TREE)}: the two lines of the licence are missing"


def arguments(text, start):
    """The arguments of a call, split at the commas of its own level."""
    depth, parts, inside = 1, [""], False
    while depth:
        here = text[start]
        inside ^= here == '"' and text[start - 1] != "\\"
        if not inside:
            depth += {"(": 1, "{": 1, ")": -1, "}": -1}.get(here, 0)
            if here == "," and depth == 1:
                parts.append("")
                start += 1
                continue
        parts[-1] += here if depth else ""
        start += 1
    return parts


def spoken(argument, text):
    """What an expression says, as the page writes it: <br> for a line break, one mark for each part that is filled in."""
    constant = re.fullmatch(r"\s*(k\w+)\s*", argument)
    if constant:
        defined = re.search(rf"\b{constant[1]}\s*=([^;]*);", text)
        argument = defined[1] if defined else ""
    literals = LITERAL.findall(argument)
    numbers = iter(range(len(literals)))
    plain = " ".join(LITERAL.sub(lambda _: f"@{next(numbers)}@", argument).split())
    for choice in plain.split(" ? ")[-1].split(" : "):
        said = ""
        for part in choice.split(" + "):
            held = re.findall(r"@(\d+)@", part.split(".arg(")[0])
            said += re.sub(r"%\d", FILLED_IN, "".join(literals[int(number)] for number in held)) if held else FILLED_IN
        if said != FILLED_IN:
            yield said.replace("\\r\\n", "<br>").replace('\\"', '"')


def boxes():
    """Where and with what words and title the program speaks; no words where it can't be read off."""
    for path in sources("src"):
        text = path.read_text()
        for call in SPEAKS.finditer(text):
            parts = arguments(text, call.end())
            if "QString& message" in parts[0]:
                continue
            before = re.findall(r"^\S.*?(\w+)\([^()]*\)(?: const)?(?: noexcept)?\n\{", text[:call.start()], re.MULTILINE)
            if parts[0].strip() == "message" and before[-1] in RELAYS:
                continue
            where = f"{path.relative_to(TREE)}:{text.count(chr(10), 0, call.start()) + 1}"
            yield where, [said for part in parts for said in spoken(part, text)]
        for call in FATAL.finditer(text):
            yield f"{path.relative_to(TREE)}:{text.count(chr(10), 0, call.start()) + 1}", [f"Error - {call[1]}"]
    launcher = TREE / "packaging/dusk-beacon.in"
    for said in re.findall(r'\bfail "([^"]*)"', launcher.read_text()):
        yield launcher.name, [re.sub(r"\$\w+", FILLED_IN, said)]


def on_one_line(text):
    return " ".join(text.replace("<br>", " ").split())


def written_tests():
    return {f"{suite}.{name}" for path in sources("tests") for suite, name in
            re.findall(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", path.read_text(), re.MULTILINE)}


def attacks_page():
    """Each row of the table of attacks names its tests, and each of them exists."""
    tests = written_tests()
    for number, line in enumerate(ATTACKS.read_text().splitlines(), 1):
        if line.startswith("| ") and not line.startswith("| Attack |"):
            named = re.findall(r"`(\w+\.\w+)`", line.split(" | ")[-1])
            if not named:
                yield f"{ATTACKS.relative_to(TREE)}:{number}: a row names its tests"
            yield from (f"{ATTACKS.relative_to(TREE)}:{number}: there is no {name} under tests/" for name in named if name not in tests)


def failures_page():
    """The table of failures lists every box of the program, and each test, journey and script that it names exists. The page
    for users quotes every box too."""
    tests = written_tests()
    told, rows = {}, []
    for number, line in enumerate(FAILURES.read_text().splitlines(), 1):
        where = f"{FAILURES.relative_to(TREE)}:{number}"
        cells = [cell.strip() for cell in line.strip("|").split(" | ")] if line.startswith("| ") else []
        named = {*re.findall(r"`([A-Z]\w*\.[a-z]\w*)`", line)}
        if cells and cells[-1] != "Tests":
            held = re.findall(r"`([^`]+)`", cells[-1])
            named.update(held)
            if not held:
                yield f"{where}: a row names its tests"
        for name in sorted(named):
            if name not in tests and not ("/" in name and (TREE / "tests" / name).is_file()):
                yield f"{where}: there is no {name} under tests/"
        if len(cells) == 5:
            rows.extend((where, cell) for cell in cells[:2] if cell != UNTITLED)
            told.update((re.sub(r"\*[^*]+\*", FILLED_IN, cell.strip('"')), where) for cell in cells[:2])
    said, page_for_users = set(), on_one_line(re.sub(r"\*[^*\n]+\*", FILLED_IN, FAILURES_FOR_USERS.read_text()))
    for where, texts in boxes():
        said.update(texts)
        if not texts:
            yield f"{where}: the words of this box can't be read off here; write them here, or name their routine in RELAYS"
        yield from (f"{where}: {FAILURES.name} has no \"{text}\"" for text in texts if text not in told)
        yield from (f"{where}: {FAILURES_FOR_USERS.name} has no \"{on_one_line(text)}\"" for text in texts
                    if f'"{on_one_line(text)}"' not in page_for_users)
    for where, text in rows:
        if text.startswith('"') and re.sub(r"\*[^*]+\*", FILLED_IN, text.strip('"')) not in said:
            yield f"{where}: nothing in the program says {text}"


found = [*faults(), *failures_page(), *attacks_page()]
checked = sum(len(sources(folder)) for folder in ("src", "tests", "bench", "data"))
print("\n".join(found) if found else f"{checked} files keep the house")
sys.exit(1 if found or checked < 100 else 0)
