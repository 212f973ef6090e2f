"""A page that the built host made, in a real browser."""

import pathlib
import subprocess
import sys
import unittest

from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By

import sample_records as records
from browser import prefer, start_browser

SOURCE = pathlib.Path(sys.argv[1]).resolve()
BUILD = pathlib.Path(sys.argv[2]).resolve()
FOLDER = BUILD / "page"


def make_page(name, events, log=None):
    FOLDER.mkdir(exist_ok=True)
    records.write(FOLDER / f"{name}.ndjson", events)
    command = [SOURCE / "tools/wine/run_in_wine", BUILD / "wine-prefix",
               BUILD / "bin/tallyport_host.exe", "--page", f"{name}.html",
               "--from", f"{name}.ndjson"]
    if log is not None:
        (FOLDER / f"{name}.txt").write_text(log, encoding="utf-8")
        command += ["--from-log", f"{name}.txt"]
    subprocess.run(command, cwd=FOLDER, check=True, stdout=subprocess.DEVNULL, timeout=300)
    return (FOLDER / f"{name}.html").as_uri()


class PageTest(unittest.TestCase):
    """A fresh page for each test; no test may leave an error in the browser's log."""

    @classmethod
    def setUpClass(cls):
        cls.browser = start_browser()
        cls.addClassCleanup(cls.browser.quit)
        cls.address = cls.make()

    @classmethod
    def make(cls):
        return make_page("sample", records.sample(), records.sample_log())

    def setUp(self):
        prefer(self.browser, "light")
        self.browser.get(self.address)

    def tearDown(self):
        self.assertEqual([entry["message"] for entry in self.browser.get_log("browser")], [])

    def find(self, selector):
        return self.browser.find_element(By.CSS_SELECTOR, selector)

    def find_all(self, selector):
        return self.browser.find_elements(By.CSS_SELECTOR, selector)

    def text(self, selector):
        """The text of an element, also when it is out of sight."""
        return self.browser.execute_script(
            "return document.querySelector(arguments[0]).textContent", selector)

    def run_script(self, script, *arguments):
        return self.browser.execute_script(script, *arguments)

    def press(self, *keys):
        ActionChains(self.browser).send_keys(*keys).perform()

    def focused(self):
        return self.browser.switch_to.active_element.get_attribute("id")

    def status(self):
        return self.text("#status")

    def rows(self):
        """Kind and summary of the events whose rows exist."""
        return self.run_script(
            "return [...document.querySelectorAll('#event-list [role=option]')].map((row) =>"
            "[row.querySelector('b').textContent, row.querySelector('.second bdi').textContent])")

    def table(self, caption_start):
        """The cells of the first table of the device lists with such a caption."""
        return self.run_script("""
            const caption = [...document.querySelectorAll('#lists caption')].find((one) =>
                one.textContent.startsWith(arguments[0]));
            return [caption.textContent, [...caption.parentElement.querySelectorAll('tbody tr')]
                .map((row) => [...row.cells].map((cell) => cell.textContent))];""", caption_start)
