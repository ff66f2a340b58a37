#!/usr/bin/env python3
"""File > Save: the artwork goes into its PDF, and Inkscape gets the link to that page."""
import os
import sys

from corvane_page import Artwork, Link, Refusal, guarded, save_page


def save(program):
    artwork = Artwork(sys.argv[-1])
    pdf = os.environ.get("CORVANE_PDF") or artwork.origin()
    if not os.path.isabs(pdf):
        raise Refusal(f"CORVANE_PDF takes a path from the root, not {pdf}")
    return Link(pdf, save_page(artwork, pdf, program)["page"]).text().encode("utf-8")


guarded(save)
