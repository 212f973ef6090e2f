"""What people do with the page: filter it, walk through it, choose its colours."""

from selenium.webdriver.common.keys import Keys

from browser import prefer
from page_case import FOLDER, PageTest


class Filter(PageTest):
    def test_a_kind_is_hidden_and_shown_by_its_button(self):
        button = self.find("#kinds .devices")
        button.click()
        self.assertEqual(button.get_attribute("aria-pressed"), "false")
        self.assertTrue(self.status().startswith("7 of 12 events"))
        self.assertNotIn("Device list", [kind for kind, _ in self.rows()])
        self.assertEqual(self.find_all("#lanes button.devices"), [])
        button.click()
        self.assertTrue(self.status().startswith("12 of 12 events"))

    def test_all_words_of_a_search_must_occur(self):
        self.find("#search").send_keys("büro 64")
        self.assertEqual(self.rows(), [])
        self.find("#search").clear()
        self.find("#search").send_keys("BÜRO tastora")
        self.assertEqual(self.rows(), [["Device list", "List 1, part 1 of 2: HID, Display"],
                                       ["Device list", "List 2, part 1 of 2: HID, Display"]])

    def test_only_events_with_a_list_or_of_a_list_are_shown(self):
        self.find("#key option[value=DisplayList]").click()
        self.assertEqual(len(self.rows()), 2)
        self.find("#number").send_keys("2")
        self.assertEqual(self.rows(), [["Device list", "List 2, part 1 of 2: HID, Display"]])
        self.find("#key option[value='']").click()
        self.assertEqual(len(self.rows()), 2)
        self.find("#reset").click()
        self.assertEqual(len(self.rows()), 12)
        self.assertEqual(self.find("#number").get_attribute("value"), "")

    def test_the_chosen_event_stays_chosen_while_it_is_shown(self):
        self.run_script("eventList.select(5)")
        self.find("#search").send_keys("eclog")
        self.assertIn("event 992614512", self.text("#detail .event-heading"))
        self.find("#search").send_keys(Keys.BACKSPACE * 5, "strange")
        self.assertIn("event 17", self.text("#detail .event-heading"))
        self.find("#search").send_keys("nothing like that")
        self.assertIn("Select an event", self.text("#detail"))


class Keyboard(PageTest):
    def test_tab_goes_through_the_page_from_top_to_bottom(self):
        seen = []
        for _ in range(40):
            self.press(Keys.TAB)
            name = self.focused() or self.run_script(
                "return document.activeElement.className || document.activeElement.textContent")
            if name in seen[:1]:
                break
            seen.append(name)
        wanted = ["skip", "theme", "print", "help", "Summary", "search", "key", "number", "reset",
                  "event-list", "detail", "log-search", "hide-loop", "log-list"]
        places = [seen.index(name) for name in wanted]
        self.assertEqual(places, sorted(places))
        self.assertEqual(seen.count("mark bios") + seen.count("mark component"), 1)

    def test_the_focus_can_be_seen(self):
        self.find("#search").send_keys("")
        self.press(Keys.TAB)
        style = self.browser.switch_to.active_element.value_of_css_property("outline-style")
        self.assertEqual(style, "solid")

    def test_keys_walk_through_the_events(self):
        self.press("j")
        self.press("j")
        self.press("k")
        self.assertIn("number 2 of 12", self.text("#detail .event-heading"))
        self.press("e")
        self.assertEqual(self.focused(), "event-list")
        for key, number in [(Keys.ARROW_DOWN, 3), (Keys.END, 12), (Keys.ARROW_DOWN, 12),
                            (Keys.ARROW_UP, 11), (Keys.HOME, 1)]:
            self.press(key)
            self.assertIn(f"number {number} of 12", self.text("#detail .event-heading"))
            active = self.find("#event-list").get_attribute("aria-activedescendant")
            row = self.find(f"#{active}")
            self.assertEqual(row.get_attribute("aria-selected"), "true")
            self.assertEqual(row.get_attribute("aria-posinset"), str(number))
            self.assertEqual(row.get_attribute("aria-setsize"), "12")

    def test_letters_are_letters_while_one_types(self):
        self.press("/")
        self.assertEqual(self.focused(), "search")
        self.press("j1x?")
        self.assertEqual(self.find("#search").get_attribute("value"), "j1x?")
        self.press(Keys.ESCAPE)
        self.press("x")
        self.assertEqual(self.find("#search").get_attribute("value"), "")

    def test_digits_hide_and_show_kinds(self):
        self.press("1")
        self.assertTrue(self.status().startswith("10 of 12 events"))
        self.press("1")
        self.assertTrue(self.status().startswith("12 of 12 events"))

    def test_keys_go_to_the_parts_of_the_page(self):
        for key, place in [("l", "log-list"), ("f", "detail"), ("d", "list-title"),
                           ("e", "event-list")]:
            self.press(key)
            self.assertEqual(self.focused(), place)

    def test_arrows_walk_along_the_time_line_and_enter_opens(self):
        self.press("t")
        label = "return document.activeElement.getAttribute('aria-label')"
        self.assertIn("BIOS information, 2026-03-02", self.run_script(label))
        self.press(Keys.ARROW_RIGHT)
        self.assertIn("BIOS information, 2026-03-05", self.run_script(label))
        self.press(Keys.ARROW_DOWN)
        self.assertIn("Optimisation component, 2026-03-04", self.run_script(label))
        self.press(Keys.ENTER)
        self.assertIn("2026-03-04 08:00:00", self.text("#detail .event-heading"))

    def test_shortcuts_are_listed_and_can_be_turned_off(self):
        self.press("?")
        dialog = self.find("#shortcuts")
        self.assertTrue(dialog.is_displayed())
        listed = [key.text for key in self.find_all("#shortcuts kbd")]
        self.assertEqual(listed, self.run_script("return SHORTCUTS.map(([key]) => key)"))
        self.find("#keys-on").click()
        self.press(Keys.ESCAPE)
        self.assertFalse(dialog.is_displayed())
        self.press("j")
        self.assertIn("number 1 of 12", self.text("#detail .event-heading"))


class Looks(PageTest):
    def background(self):
        return self.find("body").value_of_css_property("background-color")

    def test_light_and_dark_follow_the_system_until_the_person_chooses(self):
        light = self.background()
        prefer(self.browser, "dark")
        dark = self.background()
        self.assertNotEqual(light, dark)
        self.press("m")
        self.assertEqual((self.text("#theme"), self.background()), ("Theme: light", light))
        self.find("#theme").click()
        prefer(self.browser, "light")
        self.assertEqual((self.text("#theme"), self.background()), ("Theme: dark", dark))
        self.press("m")
        self.assertEqual((self.text("#theme"), self.background()), ("Theme: system", light))

    def test_leave_screenshots(self):
        self.run_script("eventList.select(3)")
        for scheme in ["light", "dark"]:
            prefer(self.browser, scheme)
            self.assertTrue(self.browser.save_screenshot(str(FOLDER / f"page_{scheme}.png")))

    def test_a_narrow_window_needs_no_scrolling_sideways(self):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": 400, "height": 800, "deviceScaleFactor": 1, "mobile": False})
        self.addCleanup(self.browser.execute_cdp_cmd, "Emulation.clearDeviceMetricsOverride", {})
        self.assertLessEqual(self.run_script("return document.documentElement.scrollWidth"), 400)
