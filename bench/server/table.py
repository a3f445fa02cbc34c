# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The values that ./figures has measured, and their aims."""
import statistics


class Table:
    def __init__(self):
        self._values = {}
        self._rows = []
        self._is_reached = True

    def add(self, name, value):
        """Adds the value of one round."""
        self._values.setdefault(name, []).append(value)

    def median(self, name):
        return statistics.median(self._values[name])

    def is_always(self, name, value):
        return all(each == value for each in self._values[name])

    def text(self, name, unit):
        values = self._values[name]
        return " ".join(filter(None, [f"{self.median(name):.4g}", unit, f"[{min(values):.4g}, {max(values):.4g}]"]))

    def row(self, figure, text, aim="", is_reached=None):
        """Adds a row. Without an aim it is for comparison only."""
        self._rows.append((figure, text, aim, {True: "reached", False: "NOT reached", None: ""}[is_reached]))
        self._is_reached = self._is_reached and is_reached is not False

    def ratio_row(self, figure, name, other, most):
        ratio = self.median(name) / self.median(other)
        self.row(figure, f"{ratio:.2f}: {self.text(name, 'us')} to {self.text(other, 'us')}", f"<= {most}", ratio <= most)

    def limit_row(self, figure, name, unit, most, is_whole=True):
        self.row(figure, self.text(name, unit), f"<= {most:.4g} {unit}", is_whole and self.median(name) <= most)

    def print(self):
        """Prints the table. Returns whether every aim is reached."""
        widths = [max(len(row[column]) for row in self._rows) for column in range(3)]
        for figure, text, aim, result in self._rows:
            print(f"{figure:{widths[0]}}  {text:{widths[1]}}  {aim:{widths[2]}}  {result}".rstrip())
        return self._is_reached
