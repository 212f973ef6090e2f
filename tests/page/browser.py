"""A headless Chromium that reaches nothing but this machine, and a server that counts visits."""

import http.server
import json
import os
import threading

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service


def start_browser():
    options = Options()
    options.binary_location = "/usr/bin/chromium"
    for argument in ["--headless=new", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
                     "--disable-background-networking", "--disable-component-update",
                     "--disable-sync", "--hide-scrollbars", "--window-size=1440,1000",
                     "--host-resolver-rules=MAP * ~NOTFOUND , EXCLUDE 127.0.0.1"]:
        options.add_argument(argument)
    if os.geteuid() == 0:
        # Its sandbox refuses to work for root, as whom containers run.
        options.add_argument("--no-sandbox")
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


def prefer(browser, scheme=None, media=""):
    """Sets what the system is said to prefer, "light" or "dark", and the medium."""
    features = [] if scheme is None else [{"name": "prefers-color-scheme", "value": scheme}]
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"media": media, "features": features})


def requested_addresses(browser):
    """Every address that was asked for since the last call."""
    messages = [json.loads(entry["message"])["message"] for entry in browser.get_log("performance")]
    return [message["params"]["request"]["url"] for message in messages
            if message["method"] == "Network.requestWillBeSent"]


class CountingServer:
    """Answers on this machine with a picture and remembers what it was asked for."""

    def __enter__(self):
        visits = self.visits = []

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                visits.append(self.path)
                self.send_response(200)
                self.send_header("Content-Type", "image/svg+xml")
                self.end_headers()
                self.wfile.write(b'<svg xmlns="http://www.w3.org/2000/svg" width="1" height="1"/>')

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.address = f"http://127.0.0.1:{self.server.server_address[1]}"
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.server.shutdown()
        self.server.server_close()
