#!/usr/bin/env python3
"""Extensions > PDF Page > Save into a PDF: into the one that is named, else the drawing's own."""
import argparse
import sys

from corvane_page import Artwork, save_page, sentence_of, whole_path
from corvane_run import guarded


def save(program):
    parser = argparse.ArgumentParser()
    parser.add_argument("--pdf", default="")
    parser.add_argument("--page", type=int, default=0)
    wish = parser.parse_known_args()[0]
    artwork = Artwork(sys.argv[-1])
    pdf = whole_path(wish.pdf, "the PDF") if wish.pdf else artwork.target(program.person)
    program.person.inform(sentence_of(save_page(artwork, pdf, program, wish.page)))
    return b""


guarded(save)
