# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The message boxes of the program, read and answered."""
import hands
import screen
from screen import Atspi, GLib


def is_title(name):
    """Whether a message box may be titled so; the popup, an alert as well for a screen reader, is named by its text."""
    return name == "Dusk Beacon" or name.startswith("Error - ")


def box(program):
    """The text and the button captions of the message box that is shown; None without one."""
    try:
        application = program.application()
        for i in range(application.get_child_count() if application else 0):
            window = application.get_child_at_index(i)
            if window is None or not window.get_state_set().contains(Atspi.StateType.SHOWING):
                continue
            if ("alert" in window.get_role_name() or "dialog" in window.get_role_name()) and is_title(window.get_name()):
                nodes = list(screen.nodes(window))[1:]
                text = [node.get_name() for node in nodes if node.get_role_name() == "label" and node.get_name()]
                buttons = {node.get_name().replace("&", ""): node for node in nodes
                           if node.get_role_name() == "push button"}
                return "\n".join(text), buttons
    except (GLib.Error, AttributeError):
        pass
    return None


def answer(program, text, button="OK", others=()):
    """Waits for the box with that text and those buttons alone, and presses one of them with the mouse."""
    shown = screen.wait_for(f"the box {text!r}", lambda: box(program))
    assert shown[0].replace("\r\n", "\n") == text, f"{shown[0]!r}, not {text!r}"
    assert set(shown[1]) == {button, *others}, f"{text!r} has the buttons {sorted(shown[1])}"

    def is_gone():
        return program.process.poll() is not None or (box(program) or ("",))[0] != shown[0]

    def press():
        if not is_gone():
            hands.click(shown[1][button])
        return screen.settles(is_gone)
    screen.wait_for(f"the box {text!r} to go", press)
