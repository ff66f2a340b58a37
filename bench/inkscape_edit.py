#!/usr/bin/python3
"""Edits pages with a real Inkscape, saves them, and compares their words.

    inkscape_edit.py FOLDER [--corvane build/corvane] [--most 20] [--only NAME]

For each PDF of the folder whose first page has text: Corvane opens the page, Inkscape loads the SVG,
moves one line and paints another one, and writes it anew; then a word is typed over. Corvane saves
each of these into a copy. The words of the page, as pdftotext finds them, must be the same, but for
the one that was typed. What Inkscape only loaded and wrote must change no text at all.

Needs: inkscape, poppler-utils. Exit: 0, or 1 where something failed.
"""
import argparse
import collections
import os
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as tree

from pages import program_in_build, run, words

SVG = '{http://www.w3.org/2000/svg}'


SECONDS = 120  # for one run


def lines_of(svg):
    """Ids of text elements whose letters are ASCII, longest first."""
    root = tree.parse(svg).getroot()
    lines = [(len(text), each.get('id')) for each in root.iter(SVG + 'text')
             if (text := ''.join(each.itertext()).strip()).isascii() and len(text) > 3 and each.get('id')]
    return [name for _, name in sorted(lines, reverse=True)]


def inkscape(source, target, actions=''):
    done = run('inkscape', source, f'--actions={actions}export-filename:{target};export-do', seconds=SECONDS)
    return os.path.exists(target) and done.returncode == 0


def retype(source, target, line):
    """Turns the first two letters of a word of a line round; the words of the line before and after."""
    svg = tree.parse(source)
    for each in svg.getroot().iter(SVG + 'text'):
        if each.get('id') != line:
            continue
        for part in each.iter():
            match = re.search(r'(?<!\S)([A-Za-z])(?!\1)([A-Za-z])[A-Za-z]*(?!\S)', part.text or '')
            if match:
                word, before = match.group(0), ''.join(each.itertext()).split()
                new = word[1] + word[0] + word[2:]
                part.text = part.text[:match.start()] + new + part.text[match.end():]
                svg.write(target, encoding='utf-8', xml_declaration=True)
                return before, ''.join(each.itertext()).split()
    return None


class Page:
    def __init__(self, corvane, pdf, folder):
        self.corvane, self.pdf, self.folder = corvane, pdf, folder
        self.before = collections.Counter(words(pdf))
        self.faults = []

    def path(self, name):
        return os.path.join(self.folder, name)

    def save(self, svg, name, removed=(), added=()):
        copy = self.path(name + '.pdf')
        shutil.copy(self.pdf, copy)
        os.chmod(copy, 0o600)
        done = run(self.corvane, 'save', svg, copy, seconds=SECONDS)
        message = done.stderr.decode('utf-8', 'replace')
        if 'error 32' in message:
            return  # the file permits no changes
        if done.returncode != 0:
            self.faults.append(f'{name}: {message.strip()[-300:]}')
            return
        want = self.before.copy()
        want.subtract(removed)
        want.update(added)
        have = collections.Counter(words(copy))
        lost, new = +want - have, have - +want
        if lost or new:
            self.faults.append(f'{name}: lost {list(lost)[:6]}, new {list(new)[:6]}')

    def run(self):
        opened = self.path('page.svg')
        if run(self.corvane, 'open', self.pdf, '-o', opened, seconds=SECONDS).returncode != 0 or not self.before:
            return False
        lines = lines_of(opened)
        if not lines:
            return False
        kept, moved = self.path('kept.svg'), self.path('moved.svg')
        if not inkscape(opened, kept):
            return False
        self.save(kept, 'kept')
        second = lines[len(lines) // 2]
        if inkscape(opened, moved, f'select-by-id:{lines[0]};transform-translate:0,3;select-clear;'
                                   f'select-by-id:{second};object-set-attribute:fill,#336699;select-clear;'):
            self.save(moved, 'moved')
        typed = self.path('typed.svg')
        for line in lines[:8]:
            if change := retype(kept, typed, line):
                self.save(typed, 'typed', *change)
                break
        return True


def main():
    options = argparse.ArgumentParser()
    options.add_argument('folder')
    options.add_argument('--corvane', default=program_in_build())
    options.add_argument('--most', type=int, default=20)
    options.add_argument('--only', default='')
    given = options.parse_args()
    tried = failed = 0
    for name in sorted(os.listdir(given.folder)):
        if not name.endswith('.pdf') or given.only not in name or tried == given.most:
            continue
        with tempfile.TemporaryDirectory() as folder:
            try:
                page = Page(os.path.abspath(given.corvane), os.path.join(given.folder, name), folder)
                if not page.run():
                    continue
            except subprocess.TimeoutExpired:
                continue
            tried += 1
            failed += bool(page.faults)
            for fault in page.faults:
                print(f'{name}: {fault}', flush=True)
    print(f'{tried} pages, {failed} with faults')
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main())
