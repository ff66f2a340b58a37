#!/usr/bin/env python3
"""File > Open: a link becomes the artwork of its page."""
import sys

from corvane_page import Link, open_page
from corvane_run import guarded

guarded(lambda program: open_page(Link.read(sys.argv[-1]), program))
