#!/usr/bin/env python3
"""How many of the words that pdftotext finds on a page are words of the SVG, too.

    compare_words.py [--corvane PATH] [--least SHARE] [--show N] FILE-OR-FOLDER ...

Opens page 1 of each PDF file, those in folders included, and prints a line for each page of which
less than SHARE (0.95) of the words are there, the worst first: the share, how many words the page
has, and up to N of those that are missing. The last line tells how many pages have enough.

A word is what stands between blanks, as often as it stands there; ligatures and the forms of Arabic
letters count as their letters. Glyphs without a meaning, which readers show as they like, do not
count, nor do pages in fonts of procedures (Type 3) alone, whose letters are drawings.
"""

import argparse
import collections
import os
import re
import subprocess
import sys
import tempfile
import unicodedata
import xml.etree.ElementTree as tree

SVG = '{http://www.w3.org/2000/svg}'
MEANINGLESS = re.compile('[\u0000-\u001f\u00ad\u200e\u200f\u202a-\u202e\ufffd\ue000-\uf8ff\U000f0000-\U0010ffff]')
FORMS = re.compile('[\ufb00-\ufdff\ufe70-\ufefc]')
LIMIT = 60  # seconds for one page


def words_of(text):
    """The words of a text, each as often as it is there."""
    plain = FORMS.sub(lambda form: unicodedata.normalize('NFKC', form[0]), text)
    words = (MEANINGLESS.sub('', word) for word in plain.split())
    return collections.Counter(word for word in words if word)


def words_of_page(path):
    """What pdftotext finds; None where it fails."""
    run = subprocess.run(['pdftotext', '-q', '-f', '1', '-l', '1', path, '-'],
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=LIMIT)
    return words_of(run.stdout.decode('utf-8', 'replace')) if run.returncode == 0 else None


def words_of_svg(corvane, path, folder):
    """What the elements of text hold; None where the page does not open."""
    svg = os.path.join(folder, 'page.svg')
    run = subprocess.run([corvane, 'open', path, '-o', svg, '--fonts', 'none', '--images', 'none'],
                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=LIMIT)
    if run.returncode != 0:
        return None
    texts = [''.join(text.itertext()) for text in tree.parse(svg).iter(SVG + 'text')]
    return words_of('\n'.join(texts))


def has_plain_font(path):
    """Whether a font of the page has characters."""
    run = subprocess.run(['pdffonts', '-f', '1', '-l', '1', path], stdout=subprocess.PIPE,
                         stderr=subprocess.DEVNULL, timeout=LIMIT)
    lines = run.stdout.decode('utf-8', 'replace').splitlines()[2:]
    return any('Type 3' not in line for line in lines)


def files_of(paths):
    for path in paths:
        if os.path.isdir(path):
            for folder, _, names in sorted(os.walk(path)):
                yield from (os.path.join(folder, n) for n in sorted(names) if n.endswith('.pdf'))
        else:
            yield path


def measured(corvane, path, folder):
    """The share, the words of the page and those that are missing; None where nothing is to say."""
    try:
        wanted = words_of_page(path)
        if not wanted or not has_plain_font(path):
            return None
        found = words_of_svg(corvane, path, folder)
    except (subprocess.TimeoutExpired, tree.ParseError):
        return None
    if found is None:
        return None
    missing = wanted - found
    count = wanted.total()
    return 1 - missing.total() / count, count, missing


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument('paths', nargs='+')
    parser.add_argument('--corvane', default='build/corvane')
    parser.add_argument('--least', type=float, default=0.95)
    parser.add_argument('--show', type=int, default=6)
    options = parser.parse_args()
    pages = []
    with tempfile.TemporaryDirectory() as folder:
        for path in files_of(options.paths):
            result = measured(options.corvane, path, folder)
            if result:
                pages.append((*result, path))
    for share, count, missing, path in sorted(pages, key=lambda page: page[0]):
        if share < options.least:
            some = ' '.join(list(missing)[:options.show])
            print(f'{share:.3f} {count:6} {path}: {some}')
    enough = sum(page[0] >= options.least for page in pages)
    print(f'{enough} of {len(pages)} pages have {options.least:.0%} of their words')
    return 0


if __name__ == '__main__':
    sys.exit(main())
