#!/usr/bin/env python3
"""Extensions > PDF Page > Open a Page of a PDF: makes a link beside the PDF and opens it."""
import argparse
import os
import subprocess

from corvane_page import Link
from corvane_run import PASSWORD, Refusal, code_of, guarded, require


def link_path(link):
    """Name of a link beside the PDF: the one that is there for this page, or a free one."""
    stem = f"{link.pdf.removesuffix('.pdf')}-page{link.page}"
    for number in range(1, 1000):
        path = stem + (f"-{number}" if number > 1 else "") + ".pdfpage"
        try:
            with open(path, "x", encoding="utf-8") as file:
                file.write(link.text())
            return path
        except FileExistsError:
            if is_link_to(path, link):
                return path
        except OSError as fault:
            raise Refusal(f"{path} cannot be made: {fault.strerror}") from fault
    raise Refusal(f"{stem}.pdfpage is there already, and is no link to this page")


def is_link_to(path, wanted):
    try:
        there = Link.read(path)
    except Refusal:
        return False
    return there.page == wanted.page and os.path.samefile(there.pdf, wanted.pdf)


def open_window(program):
    parser = argparse.ArgumentParser()
    parser.add_argument("--pdf", default="")
    parser.add_argument("--page", type=int, default=1)
    wish = parser.parse_known_args()[0]
    if not os.path.isfile(wish.pdf):
        raise Refusal(f"{wish.pdf} is no file" if wish.pdf else "choose a PDF first")
    link = Link(os.path.abspath(wish.pdf), wish.page)
    facts = program.try_once(["info"], link.pdf)  # of an encrypted file the window asks
    if code_of(facts) not in (0, *PASSWORD):
        require(facts, program.person)
    if link.page > facts.get("pageCount", link.page):
        raise Refusal(f"{link.pdf} has {facts['pageCount']} pages, and no page {link.page}")
    subprocess.Popen([program.person.inkscape(), link_path(link)], start_new_session=True,
                     stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return b""


guarded(open_window)
