#!/usr/bin/env python3
"""File > Save: the artwork goes into its PDF, and Inkscape gets the link to that page."""
import os
import sys

from corvane_page import SAVE_MENU, Artwork, Link, save_page, whole_path
from corvane_run import Refusal, guarded


def save(program):
    artwork = Artwork(sys.argv[-1])
    named = "" if program.person.is_there else os.environ.get("CORVANE_PDF", "")
    pdf = whole_path(named, "CORVANE_PDF") if named else artwork.target(program.person)
    return Link(pdf, save_page(artwork, pdf, program)["page"]).text().encode("utf-8")


def save_or_advise(program):
    """After a save that failed Inkscape 1.2 has forgotten that the document is a link."""
    try:
        return save(program)
    except Refusal as refusal:
        if program.person.is_there and SAVE_MENU not in str(refusal):
            raise Refusal(f"{refusal}; to try again, choose {SAVE_MENU}") from refusal
        raise


guarded(save_or_advise)
