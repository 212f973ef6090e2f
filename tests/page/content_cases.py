"""What the page shows, on the screen and on paper."""

import base64
import json

import sample_records as records
from browser import prefer
from page_case import PageTest, make_page


class Content(PageTest):
    def test_the_summary_counts_events_and_bytes_of_each_kind(self):
        tiles = self.run_script("return [...document.querySelectorAll('.tile')].map((tile) =>"
                                "[...tile.children].slice(0, 2).map((part) => part.textContent))")
        expected = {}
        for event in records.sample():
            size = sum(len(text.encode()) for field in event["fields"] for text in field.values())
            number, total = expected.get(event["id"], (0, 0))
            expected[event["id"]] = (number + 1, total + size)
        shown = {name: amount.replace("\u00a0", " ") for name, amount in tiles}
        for number, name in [(records.BIOS, "BIOS information"),
                             (records.COMPONENT, "Optimisation component"),
                             (records.EC_LOG, "Embedded controller’s log"),
                             (records.DEVICE_LIST, "Device list"), (17, "Unknown event")]:
            self.assertEqual(shown[name], "{} {:,} B".format(*expected[number]))
        self.assertEqual(shown["All events"].split()[0], str(len(records.sample())))

    def test_every_event_is_shown_with_its_fields_in_full(self):
        for event in records.sample():
            sent = self.run_script("return [...document.querySelectorAll('#detail details pre')]"
                                   ".map((field) => field.textContent)")
            self.assertEqual(sent, [field["value"] for field in event["fields"]])
            heading = self.text("#detail .event-heading")
            self.assertIn(f"event {event['id']}", heading)
            self.assertIn(event["time"][:10] + " " + event["time"][11:19] + " UTC", heading)
            self.press("j")

    def test_the_controllers_log_is_shown_as_its_bytes(self):
        self.run_script("eventList.select(5)")
        dump = self.text("#detail .dump").splitlines()
        self.assertEqual(dump[0], "  0  " + " ".join(f"{n:02x}" for n in range(1, 17)))
        self.assertEqual(dump[-1], "240  " + " ".join(f"{n:02x}" for n in range(241, 254)))
        self.assertIn("253 bytes as 1,012 characters", self.text("#detail"))
        self.assertIn("how many bytes the firmware calls used: 16.", self.text("#detail"))

    def test_device_lists_are_put_together_from_their_parts(self):
        caption, rows = self.table("Devices of each list")
        self.assertEqual([row[:3] + row[4:] for row in rows],
                         [["List 1", "2026-03-03 08:06:00", "2", "2", "2", ""],
                          ["List 2", "2026-03-04 08:12:00", "2", "3", "2", "1 new"],
                          ["List 3", "2026-03-05 09:00:00", "1", "0", "0", "5 gone"]])
        self.find_all("#lists button.link")[1].click()
        self.assertEqual(self.text("#list-title")[:14], "List 2 in full")
        parts = [field["value"] for event in records.sample()[7:9] for field in event["fields"]
                 if field["key"] == "HIDList"]
        caption, rows = self.table("HIDList")
        size = sum(len(part.encode()) for part in parts)
        self.assertEqual(caption, f"HIDList · 3 devices · {size}\u00a0B")
        self.assertEqual(rows, [[one[key] for key in ("class", "name", "desc", "maker", "device")]
                                for part in parts for one in json.loads(part)])
        self.assertEqual(len(self.table("DisplayList")[1]), 2)
        self.assertIn("Stick 64 GB", self.text("#lists h4 + .scroll"))

    def test_a_part_that_cannot_be_read_is_shown_as_it_is(self):
        self.find_all("#lists button.link")[2].click()
        self.assertIn("A part that cannot be read:no array", self.text("#lists"))

    def test_each_event_says_what_let_it_out_and_what_is_masked(self):
        self.run_script("eventList.select(3)")
        detail = self.text("#detail")
        for words in ["The user agreed to the data clause: the stored answer is exactly “1”",
                      "Fewer than 10 lists", "At least 24 hours", "ReportDeviceList is 3",
                      "Bytes 12 and 13 of a display’s EDID", "first 32 characters",
                      "Bluetooth devices are sent without their names",
                      "List: The first one in this record."]:
            self.assertIn(words, detail)
        self.run_script("eventList.select(9)")
        self.assertIn("At least 72 hours have passed", self.text("#detail"))
        self.assertIn("agreement to the data clause is not asked", self.text("#detail"))
        self.assertIn("3 d 30 min after the one before it in this record.", self.text("#detail"))
        self.assertEqual(len(self.find_all("#rules article")), 4)

    def test_the_log_stands_beside_and_follows_the_event(self):
        self.assertIn("4 of 6 lines", self.text("#log-title"))
        self.run_script("eventList.select(5)")
        self.assertEqual(self.text("#log-line"), "EC log data size is 16(ReportECLogInfo)")
        self.find("#hide-loop").click()
        self.assertIn("6 of 6 lines", self.text("#log-title"))
        self.find("#log-search").send_keys("nullptr<B>")
        self.assertIn("1 of 6 lines", self.text("#log-title"))
        self.assertEqual(self.text("#log-list [role=option] .level"), "level 4")

    def test_the_time_line_has_a_mark_for_each_kind_and_time(self):
        marks = [mark.get_attribute("aria-label") for mark in self.find_all("#lanes button")]
        self.assertIn("BIOS information, 2026-03-02 08:00:00, 1 event", marks)
        self.assertIn("Device list, 2026-03-03 08:06:00, 2 events", marks)
        self.assertEqual(sum(int(mark.split()[-2]) for mark in marks), len(records.sample()))

    def test_the_printer_gets_every_event_in_full_and_the_screen_nothing_more(self):
        paper = "return document.getElementById('paper').textContent"
        self.run_script("window.kept = ''; window.addEventListener('beforeprint', () => {"
                        "window.kept = document.getElementById('paper').textContent; });")
        pdf = self.browser.execute_cdp_cmd("Page.printToPDF", {})["data"]
        self.assertTrue(base64.b64decode(pdf).startswith(b"%PDF"))
        printed = self.run_script("return window.kept")
        for words in ["Stick 64 GB", "OPEN_MODE", "no array", "Strange", "fd", "nullptr<b>"]:
            self.assertIn(words, printed)
        self.assertEqual(printed.count("number "), len(records.sample()))
        self.assertEqual(self.run_script(paper), "")
        prefer(self.browser, "dark", "print")
        self.assertEqual(self.find("#events").value_of_css_property("display"), "none")
        self.assertEqual(self.find("body").value_of_css_property("background-color"),
                         "rgba(255, 255, 255, 1)")


class Nothing(PageTest):
    @classmethod
    def make(cls):
        return make_page("nothing", [])

    def test_a_record_without_events_says_so(self):
        self.assertIn("The plug-in sent nothing.", self.text("#detail"))
        self.assertIn("No device list was sent.", self.text("#lists"))
        self.assertIn("not in this record", self.text("#log-title"))
        self.assertEqual(self.status().replace("\u00a0", " "), "0 of 0 events, 0 B")
