"""Records that are out to break the page: texts that are markup, and very many events."""

from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import WebDriverWait

import sample_records as records
from browser import CountingServer, requested_addresses
from page_case import FOLDER, PageTest, make_page

# What one screen may need, whatever the record holds.
MOST_ROWS = 60
MOST_MARKS = 5 * 120
MOST_ELEMENTS = 3500


class Markup(PageTest):
    """Device texts that are markup are shown as texts and reach nothing."""

    @classmethod
    def make(cls):
        cls.server = CountingServer()
        cls.server.__enter__()
        cls.addClassCleanup(cls.server.__exit__)
        return make_page("evil", records.evil(cls.server.address),
                         records.sample_log().replace("Register", records.EVIL_NAMES[0]))

    def test_it_is_shown_as_text_everywhere(self):
        own = self.run_script("return document.querySelectorAll('script').length")
        self.assertEqual(own, 2)
        for _ in records.evil(""):
            self.press("j")
        self.run_script("fillPaper()")
        caption, rows = self.table("HIDList")
        shown = [row[1] for row in rows]
        for name in records.EVIL_NAMES:
            visible = name
            for mark in "\u2028\u2029\u202e":
                visible = visible.replace(mark, f"\u27e8U+{ord(mark):04X}\u27e9")
            self.assertIn(visible, shown)
        self.assertIn(records.EVIL_NAMES[0], self.text("#log-list"))
        self.assertIn(records.EVIL_NAMES[1], self.text("#detail"))
        self.assertEqual(self.find_all("img, svg, iframe, object, [onerror], [onload]"), [])
        self.assertIsNone(self.run_script("return window.taken || null"))

    def test_it_can_be_searched_for(self):
        self.find("#search").send_keys('<img src=x onerror="window')
        self.assertTrue(self.status().startswith("3 of 5 events"), self.status())
        self.find("#search").clear()
        self.find("#search").send_keys('"\\\\server\\printer"')
        self.assertTrue(self.status().startswith("1 of 5 events"), self.status())

    def test_nothing_but_the_page_is_asked_for(self):
        requested_addresses(self.browser)
        self.browser.get(self.address)
        self.press("j", "j", "e", "d", "?")
        self.assertEqual(requested_addresses(self.browser), [self.address])
        self.assertEqual(self.server.visits, [])

    def test_the_browser_itself_forbids_the_page_to_load_anything(self):
        load = """
            const done = arguments[arguments.length - 1];
            const picture = new Image();
            picture.onload = () => done('loaded');
            picture.onerror = () => done('refused');
            picture.src = arguments[0];"""
        picture = self.server.address + "/picture"
        self.assertEqual(self.browser.execute_async_script(load, picture), "refused")
        self.assertEqual(self.server.visits, [])
        refusals = [entry["message"] for entry in self.browser.get_log("browser")]
        self.assertIn("Content Security Policy", refusals[0])
        # The same page without the policy: the server would have noticed.
        page = (FOLDER / "evil.html").read_text(encoding="utf-8")
        self.assertEqual(page.count("Content-Security-Policy"), 1)
        open_page = FOLDER / "evil_without_policy.html"
        open_page.write_text(page.replace("Content-Security-Policy", "Nothing"), encoding="utf-8")
        self.browser.get(open_page.as_uri())
        self.assertEqual(self.browser.execute_async_script(load, picture), "loaded")
        self.assertEqual(self.server.visits, ["/picture"])
        self.server.visits.clear()


class ManyEvents(PageTest):
    """However many events there are, only what is in sight exists."""

    COUNT = 10000

    @classmethod
    def make(cls):
        return make_page("many", records.many(cls.COUNT))

    def assert_small(self):
        rows = len(self.find_all("#event-list [role=option]"))
        self.assertTrue(0 < rows <= MOST_ROWS, rows)
        self.assertLessEqual(len(self.find_all("#lanes button")), MOST_MARKS)
        self.assertLessEqual(self.run_script("return document.getElementsByTagName('*').length"),
                             MOST_ELEMENTS)

    def test_few_elements_exist_at_any_place_of_the_list(self):
        self.assertIn("10,000 of 10,000 events", self.status())
        self.assert_small()
        self.press("e")
        self.press(Keys.END)
        self.assertIn("number 10000 of 10000", self.text("#detail .event-heading"))
        self.assert_small()
        box = self.find("#event-list")
        for part in [0.25, 0.5, 0.75]:
            self.run_script("arguments[0].scrollTop = arguments[0].scrollHeight * arguments[1]",
                            box, part)
            WebDriverWait(self.browser, 120).until(lambda _: self.run_script(
                "const row = document.querySelector('#event-list [role=option]');"
                "return Math.abs(row.dataset.index / 10000 - arguments[0]) < 0.01", part))
            self.assert_small()

    def test_the_filter_finds_one_among_them(self):
        self.find("#search").send_keys("needle")
        self.assertTrue(self.status().startswith("1 of 10,000 events"))
        self.assertEqual(len(self.rows()), 1)
        self.assertIn("needle", self.text("#detail"))
        self.assertEqual(len(self.find_all("#lanes button")), 1)
        self.find("#search").send_keys(Keys.BACKSPACE * 6, "Gerät")
        self.assertTrue(self.status().startswith("4,000 of 10,000 events"), self.status())
        self.assert_small()

    def test_of_many_device_lists_a_part_is_shown_and_the_rest_on_demand(self):
        rows = "#lists .scroll:first-child tbody tr"
        self.assertEqual(self.text("#list-title")[:17], "List 2000 in full")
        self.assertEqual(len(self.find_all(rows)), 50)
        self.find("#lists button.link").click()
        self.assertEqual(self.text("#list-title")[:17], "List 1951 in full")
        self.assertEqual(len(self.find_all(rows)), 50)
        self.find("#number").send_keys("1234", Keys.TAB)
        self.assertEqual(len(self.rows()), 2)
        self.press("f")
        self.find("#detail button.link").click()
        self.assertEqual(self.text("#list-title")[:17], "List 1234 in full")
        self.assert_small()
