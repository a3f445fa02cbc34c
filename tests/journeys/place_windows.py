# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The windows of the places: the list, the search, and the one that asks to wait."""
import xml.etree.ElementTree

import hands
import main_window
import screen
from screen import Atspi, GLib

LIST = "Dusk Beacon: Location"
SEARCH = "Dusk Beacon: New Location"
# The links of the two searches are called alike.
BY_ZIP_CODE, BY_COUNTRY = "Search by zip code", "Search by country and city name"


class Window(hands.Window):
    def lines(self, name="Locations"):
        """The lines of the window's list of that name."""
        try:
            for node in screen.nodes(self.program.window(self.title)):
                if node.get_role_name() == "list" and node.get_name() == name:
                    return [node.get_child_at_index(i).get_name() for i in range(node.get_child_count())]
        except (GLib.Error, AttributeError):  # A window that is just coming or going.
            pass
        return []

    def results(self):
        return self.lines("City Search Results")

    def pick(self, name):
        self.click("list item", name)
        screen.wait_for(f"{name} to be selected", lambda: name in self.selected())

    def selected(self):
        """The selected lines of all lists of the window, a combo box's among them."""
        try:
            return [node.get_name() for node in screen.nodes(self.program.window(self.title))
                    if node.get_role_name() == "list item" and node.get_state_set().contains(Atspi.StateType.SELECTED)]
        except (GLib.Error, AttributeError):
            return []

    def is_idle(self):
        """Whether both links of the search window are enabled and its progress is hidden."""
        try:
            nodes = list(screen.nodes(self.program.window(self.title)))
            links = [node for node in nodes if node.get_role_name() == "link"]
            return all(node.get_state_set().contains(Atspi.StateType.ENABLED) for node in links) and not any(
                node.get_role_name() == "progress bar" and node.get_state_set().contains(Atspi.StateType.SHOWING)
                for node in nodes)
        except (GLib.Error, AttributeError):
            return False

    def progress(self):
        return Atspi.Value.get_current_value(self.control("progress bar", "Search Progress"))

    def open_combo(self):
        hands.click(self._combo())

    def chosen(self):
        """The current line of the window's closed combo box, which is its accessible name."""
        try:
            node = self._combo()
            is_open = node is None or node.get_state_set().contains(Atspi.StateType.EXPANDED)
            return None if is_open else node.get_name()
        except (GLib.Error, AttributeError):
            return None

    def _combo(self):
        for node in screen.nodes(self.program.window(self.title)):
            if node.get_role_name() == "combo box":
                return node
        return None


def is_waiting(program):
    """Whether the window is shown that asks the user to wait."""
    try:
        application = program.application()
        windows = [application.get_child_at_index(i) for i in range(application.get_child_count())]
        return any("Please Wait..." in screen.names(window) and window.get_state_set().contains(Atspi.StateType.SHOWING)
                   for window in windows if window is not None)
    except (GLib.Error, AttributeError):
        return False


def stored(path):
    """The keys of the stored places in their order, and the current one. Fails unless the file is whole."""
    locations = xml.etree.ElementTree.parse(path).getroot().find("locations")
    return [place.tag for place in locations], locations.get("Current")


def open_list(program):
    main_window.Main(program)
    hands.Window(program, main_window.TITLE).wait().click(hands.LINK, "Locations")
    places = Window(program, LIST).wait()
    assert not hands.Window(program, main_window.TITLE).is_usable()
    return places


def choose_country(search, name):
    search.open_combo()
    search.click("list item", name)
    screen.wait_for(f"{name} to be chosen", lambda: search.chosen() == name)
