"""page_in_browser_test.py SOURCE_FOLDER BUILD_FOLDER [TEST...]: the page in a real browser.

A TEST is a class of tests, such as Keyboard. Pages and
screenshots are left in the build folder's page/.
"""

import sys
import unittest

sys.dont_write_bytecode = True

if len(sys.argv) < 3:
    sys.exit("usage: page_in_browser_test.py SOURCE_FOLDER BUILD_FOLDER [TEST...]")
try:
    import selenium  # noqa: F401
except ImportError:
    sys.exit("page_in_browser_test.py: Debian's python3-selenium is missing; run: ./dev setup")

# The folders in the arguments are read by what the tests stand on.
from content_cases import Content, Nothing  # noqa: E402, F401
from limit_cases import ManyEvents, Markup  # noqa: E402, F401
from use_cases import Filter, Keyboard, Looks  # noqa: E402, F401

unittest.main(argv=[sys.argv[0], *sys.argv[3:]], verbosity=2)
