# SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Chromium as a visitor of the service's pages uses it, and the rules that each page keeps.

Needs chromium, chromium-driver and python3-selenium.
"""
import base64
import json
import os
import re
import sys

from selenium import webdriver
from selenium.common.exceptions import WebDriverException
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By

PHONE, DESK = 360, 1280
HEIGHT = 800
SMALLEST_FONT, LONGEST_LINE = 14, 80  # pixels, and widths of the letter "0"
LOWEST_CONTRAST = 4.5  # WCAG 2.2, 1.4.3
DRIVER = "/usr/bin/chromedriver"

# The texts of the page, each with its colours, its font size and the number of "0" that fit beside each other.
TEXTS = """
const background = element => {
  for (; element; element = element.parentElement) {
    const colour = getComputedStyle(element).backgroundColor;
    if (colour !== 'rgba(0, 0, 0, 0)') return colour;
  }
  return 'rgb(255, 255, 255)';
};
const measure = document.createElement('canvas').getContext('2d');
return [...document.body.querySelectorAll('*')].filter(element =>
    element.matches('input') || [...element.childNodes].some(node => node.nodeType === 3 && node.data.trim()))
  .map(element => {
    const style = getComputedStyle(element);
    measure.font = style.font;
    return {text: element.value || element.textContent.trim().slice(0, 40), colour: style.color,
            background: background(element), size: parseFloat(style.fontSize),
            line: element.clientWidth / measure.measureText('0').width};
  });
"""


class Browser:
    """A browser with or without scripts, which finds no host but the loopback."""

    def __init__(self, scripts):
        self._scripts = scripts

    def __enter__(self):
        options = webdriver.ChromeOptions()
        for argument in ("--headless=new", "--disable-gpu", "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1"):
            options.add_argument(argument)
        if os.geteuid() == 0:
            options.add_argument("--no-sandbox")  # Chromium has none for root
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        if not self._scripts:
            options.add_experimental_option("prefs", {"profile.managed_default_content_settings.javascript": 2})
        self._driver = webdriver.Chrome(service=Service(DRIVER), options=options)
        self._driver.get("data:text/html,<title>off</title><script>document.title = 'on'</script>")
        assert self._driver.title == ("on" if self._scripts else "off")
        self._news()
        return self

    def __exit__(self, kind, *_):
        if kind is not None:
            self.picture("failure_" + os.path.basename(sys.argv[0]).partition(".")[0])
        self._driver.quit()

    def open(self, address):
        self._driver.get(address)

    def address(self):
        return self._driver.current_url

    def heading(self):
        try:
            return self._driver.execute_script("return document.querySelector('h1')?.textContent")
        except WebDriverException:  # a page that is just coming or going
            return None

    def text(self):
        return self._driver.find_element(By.TAG_NAME, "body").text

    def link(self, text):
        return self._driver.find_element(By.LINK_TEXT, text)

    def control(self, name):
        """The field or button of that accessible name."""
        controls = self._driver.find_elements(By.CSS_SELECTOR, "input, button")
        named = [control for control in controls if control.accessible_name == name]
        assert len(named) == 1, f"{name}: {[control.accessible_name for control in controls]}"
        return named[0]

    def complaint(self, control):
        """The reason why the browser itself does not send that field; empty if it does."""
        return control.get_property("validationMessage")

    def check(self, status=200):
        """Checks what has happened since the last check, and the page that is shown, at the widths of a phone and of a
        screen, in light and in dark colours."""
        requests, statuses, console = self._news()
        assert requests == [self.address()], requests
        assert statuses == [status], statuses
        # The browser itself notes a page that came with the status of a failure.
        expected = [] if status == 200 else [f"{self.address()} - Failed to load resource: the server responded with a status of {status} ()"]
        assert [re.sub(r"\([^()]*\)$", "()", entry) for entry in console] == expected, console
        assert self._driver.title.startswith("Dusk Beacon")
        assert self._driver.find_element(By.TAG_NAME, "html").get_attribute("lang") == "en"
        assert len(self._driver.find_elements(By.TAG_NAME, "h1")) == 1
        for scheme in ("light", "dark"):
            for width in (PHONE, DESK):
                self._look(width, scheme)
                self._check_texts(f"{self.address()}, {width} pixels, {scheme}")
        self._look(DESK, "light")

    def picture(self, name):
        """Keeps pictures of the whole page at both widths, and in dark colours at that of a phone."""
        folder = os.environ.get("JOURNEY_PICTURES")
        if not folder:
            return
        os.makedirs(folder, exist_ok=True)
        for kind, width, scheme in (("phone", PHONE, "light"), ("dark", PHONE, "dark"), ("desk", DESK, "light")):
            self._look(width, scheme)
            taken = self._driver.execute_cdp_cmd("Page.captureScreenshot", {"captureBeyondViewport": True})
            with open(os.path.join(folder, f"{name}_{kind}.png"), "wb") as file:
                file.write(base64.b64decode(taken["data"]))

    def _news(self):
        """The addresses asked for, the statuses of the pages and the lines of the console since the last call."""
        events = [json.loads(entry["message"])["message"] for entry in self._driver.get_log("performance")]
        requests = [event["params"]["request"]["url"] for event in events if event["method"] == "Network.requestWillBeSent"]
        statuses = [event["params"]["response"]["status"] for event in events if event["method"] == "Network.responseReceived"]
        return requests, statuses, [entry["message"] for entry in self._driver.get_log("browser")]

    def _look(self, width, scheme):
        self._driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": HEIGHT, "deviceScaleFactor": 1, "mobile": width == PHONE})
        self._driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": scheme}]})

    def _check_texts(self, where):
        width = self._driver.execute_script("return [document.documentElement.scrollWidth, document.documentElement.clientWidth]")
        assert width[0] <= width[1], f"{where}: {width[0]} pixels wide"
        for text in self._driver.execute_script(TEXTS):
            assert text["size"] >= SMALLEST_FONT, f"{where}: {text}"
            assert text["line"] <= LONGEST_LINE, f"{where}: {text}"
            assert contrast(text["colour"], text["background"]) >= LOWEST_CONTRAST, f"{where}: {text}"


def contrast(one, other):
    """The contrast ratio of two colours by WCAG 2.2."""
    lighter, darker = sorted((luminance(one), luminance(other)), reverse=True)
    return (lighter + 0.05) / (darker + 0.05)


def luminance(colour):
    """The relative luminance of an opaque colour by WCAG 2.2."""
    parts = [int(part) / 255 for part in re.fullmatch(r"rgb\((\d+), (\d+), (\d+)\)", colour).groups()]
    red, green, blue = (part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4 for part in parts)
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue
