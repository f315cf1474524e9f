"""A headless Chromium without a network, which tells what a page did."""

import json
import pathlib
import tempfile
import time

from selenium import webdriver
from selenium.webdriver.chrome.service import Service

SWITCHES = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
            "--disable-background-networking", "--disable-component-update", "--disable-sync",
            "--hide-scrollbars"]


class Browser:
    def __init__(self, width=1280, height=900):
        self.profile = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        for switch in SWITCHES + [f"--user-data-dir={self.profile.name}"]:
            options.add_argument(switch)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.driver.set_script_timeout(60)
        self.driver.set_network_conditions(offline=True, latency=0, throughput=0)
        self.resize(width, height)

    def close(self):
        self.driver.quit()
        self.profile.cleanup()

    def resize(self, width, height, dark=False):
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": width < 600})
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}]})

    def open(self, page, seconds=60):
        """Opens a report and returns the seconds from navigation until it shows all that it holds."""
        self.take_events()
        self.driver.get(pathlib.Path(page).resolve().as_uri())
        end = time.monotonic() + seconds
        while self.script("return document.documentElement.dataset.state") != "ready":
            if time.monotonic() > end:
                raise AssertionError(f"{page} is not ready; console: {self.take_events()}")
            time.sleep(0.02)
        return self.script("return Number(document.documentElement.dataset.ready) / 1000")

    def script(self, text, *arguments):
        return self.driver.execute_script(text, *arguments)

    def take_events(self):
        """Console messages and addresses asked for since the last call, the page itself left out."""
        events = [entry["message"] for entry in self.driver.get_log("browser")]
        for entry in self.driver.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            if message["method"] != "Network.requestWillBeSent":
                continue
            parameters = message["params"]
            address = parameters["request"]["url"]
            if address != parameters["documentURL"] and not address.startswith(("data:", "chrome:")):
                events.append(address)
        return events
