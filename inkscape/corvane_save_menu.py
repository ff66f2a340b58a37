#!/usr/bin/env python3
"""Extensions > PDF Page > Save into a PDF: into the one that is named, else the drawing's own."""
import argparse
import os
import sys

from corvane_page import Artwork, guarded, save_page, sentence_of


def save(program):
    parser = argparse.ArgumentParser()
    parser.add_argument("--pdf", default="")
    parser.add_argument("--page", type=int, default=0)
    parser.add_argument("--force", type=lambda word: word == "true", default=False)
    wish = parser.parse_known_args()[0]
    artwork = Artwork(sys.argv[-1])
    pdf = os.path.abspath(wish.pdf) if wish.pdf else artwork.origin()
    program.person.tell(sentence_of(save_page(artwork, pdf, program, wish.page, wish.force)))
    return b""


guarded(save)
