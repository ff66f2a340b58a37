#!/usr/bin/python3
"""Edits the text of pages with a real Inkscape, saves them, and looks at what became of them.

    inkscape_edit.py FOLDER [--corvane build/corvane] [--most 20] [--only NAME] [--edits kept,moved,...]

For each PDF of the folder whose first page has text: Corvane opens the page, Inkscape loads the SVG, edits
it or gets it edited, and writes it anew. Corvane saves each of these into a copy:

    kept        nothing is edited: no text may change at all
    moved       one line is moved and another one is painted otherwise
    recoloured  a word gets a colour
    typed       the first two letters of a word change places
    longer      a word gets its last two letters once more
    shorter     a word loses its second half
    lacking     a word gets letters that the page's font hardly has
    deleted     a line is deleted
    system      a line is added in a font of the machine; in Arabic and in Chinese: arabic, chinese

Then the words of the page, as pdftotext finds them, must be the same but for those that were edited; mutool and
pdftoppm must draw it; what is not drawn anew must keep its bytes. Prints a line for each fault and, for
each edit, how many objects of the pages kept their bytes, changed, were added, went or were written apart.

Needs: inkscape, mupdf-tools, poppler-utils. Exit: 0, or 1 where something failed.
"""
import argparse
import collections
import json
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
WORD = re.compile(r'(?<!\S)([A-Za-z])(?!\1)([A-Za-z])[A-Za-z]*(?!\S)')
LEFTWARD = re.compile('[\u0590-\u08ff]')  # letters that run from the right
COUNTS = ('kept', 'changed', 'added', 'removed', 'moved')

TYPED = {
    'typed': lambda word: word[1] + word[0] + word[2:],
    'longer': lambda word: word + word[-2:],
    'shorter': lambda word: word[:(len(word) + 1) // 2],
    'lacking': lambda word: '\u0436\u042f' + word,
}
ADDED = {
    'system': ('DejaVu Sans', 'Corvane gr\u00fc\u00dft'),
    'arabic': ('DejaVu Sans', '\u0645\u0631\u062d\u0628\u0627 \u0643\u062a\u0627\u0628'),
    'chinese': ('Droid Sans Fallback', '\u4f60\u597d\u4e16\u754c'),
}


def lines_of(svg):
    """Ids of text elements whose letters are ASCII, longest first."""
    root = tree.parse(svg).getroot()
    lines = [(len(text), each.get('id')) for each in root.iter(SVG + 'text')
             if (text := ''.join(each.itertext()).strip()).isascii() and len(text) > 3 and each.get('id')]
    return [name for _, name in sorted(lines, reverse=True)]


def inkscape(source, target, actions=''):
    done = run('inkscape', source, f'--actions={actions}export-filename:{target};export-do', seconds=SECONDS)
    return os.path.exists(target) and done.returncode == 0


def text_of(svg, line):
    return next(each for each in svg.getroot().iter(SVG + 'text') if each.get('id') == line)


def split_word(svg, lines):
    """The first word of a line that stands in one element; with that element and its line."""
    for line in lines:
        each = text_of(svg, line)
        for part in each.iter():
            if match := WORD.search(part.text or ''):
                return each, part, match
    return None


class Page:
    def __init__(self, corvane, pdf, folder, counts):
        self.corvane, self.pdf, self.folder, self.counts = corvane, pdf, folder, counts
        self.before = collections.Counter(words(pdf))
        self.faults = []

    def path(self, name):
        return os.path.join(self.folder, name)

    def save(self, svg, name, removed=(), added=()):
        copy = self.path(name + '.pdf')
        shutil.copy(self.pdf, copy)
        os.chmod(copy, 0o600)
        done = run(self.corvane, 'save', svg, copy, '--json', seconds=SECONDS)
        message = (done.stdout + done.stderr).decode('utf-8', 'replace')
        if '"code":32' in message.replace(' ', ''):
            return  # the file permits no changes
        if done.returncode != 0:
            self.faults.append(f'{name}: {message.strip()[-300:]}')
            return
        saved = json.loads(done.stdout)
        self.counts[name].update({count: saved[count] for count in COUNTS})
        self.counts[name]['pages'] += 1
        if name == 'kept' and not saved['nothing']:
            self.faults.append(f'{name}: {saved["changed"]} changed, {saved["moved"]} written apart')
        if name != 'kept' and saved['nothing']:
            self.faults.append(f'{name}: nothing was saved')
        want = self.before.copy()
        want.subtract(removed)
        want.update(added)
        have = collections.Counter(words(copy))
        lost, new = +want - have, have - +want
        if lost or new:
            self.faults.append(f'{name}: lost {list(lost)[:6]}, new {list(new)[:6]}')
        self.draw(copy, name)

    def draw(self, pdf, name):
        drawings = (('mutool', 'draw', '-q', '-r', '36', '-o', self.path('mutool.png'), pdf, '1'),
                    ('pdftoppm', '-q', '-l', '1', '-r', '36', '-singlefile', '-png', pdf, self.path('pdftoppm')))
        for command in drawings:
            if run(*command, seconds=SECONDS).returncode != 0:
                self.faults.append(f'{name}: {command[0]} does not draw it')

    def rewritten(self, svg, name):
        """What Inkscape makes of a document; its path."""
        source, target = self.path(name + '-source.svg'), self.path(name + '.svg')
        svg.write(source, encoding='utf-8', xml_declaration=True)
        return target if inkscape(source, target) else None

    def edit_line(self, opened, name, line, actions, removed=()):
        target = self.path(name + '.svg')
        if inkscape(opened, target, f'select-by-id:{line};{actions}select-clear;'):
            self.save(target, name, removed)

    def type_word(self, kept, lines, name):
        svg = tree.parse(kept)
        if found := split_word(svg, lines):
            line, part, match = found
            before = ''.join(line.itertext()).split()
            part.text = part.text[:match.start()] + TYPED[name](match[0]) + part.text[match.end():]
            target = self.path(name + '.svg')
            svg.write(target, encoding='utf-8', xml_declaration=True)
            self.save(target, name, before, ''.join(line.itertext()).split())

    def colour_word(self, kept, lines, name):
        svg = tree.parse(kept)
        if found := split_word(svg, lines):
            _, part, match = found
            word = tree.Element(SVG + 'tspan', {'style': 'fill:#cc0033'})
            word.text, word.tail = match[0], part.text[match.end():]
            part.text = part.text[:match.start()]
            part.insert(0, word)
            if target := self.rewritten(svg, name):
                self.save(target, name)

    def add_line(self, kept, name):
        svg = tree.parse(kept)
        family, letters = ADDED[name]
        # A corner of the page, in its own unit.
        line = tree.SubElement(svg.getroot(), SVG + 'text', {
            'x': '9', 'y': '9', 'xml:space': 'preserve', 'style': f'font-family:"{family}";font-size:6px'})
        line.text = letters
        if target := self.rewritten(svg, name):
            self.save(target, name, (), letters.split())

    def run(self, edits):
        opened, kept = self.path('page.svg'), self.path('kept.svg')
        if run(self.corvane, 'open', self.pdf, '-o', opened, seconds=SECONDS).returncode != 0 or not self.before:
            return False
        lines = lines_of(opened)
        if not lines or not inkscape(opened, kept):
            return False
        first, middle = lines[0], lines[len(lines) // 2]
        for name in edits:
            if name == 'kept':
                self.save(kept, name)
            elif name == 'moved':
                self.edit_line(opened, name, first, 'transform-translate:0,3;select-clear;'
                               f'select-by-id:{middle};object-set-attribute:fill,#336699;')
            elif name == 'deleted':
                self.edit_line(opened, name, middle, 'delete-selection;',
                               ''.join(text_of(tree.parse(opened), middle).itertext()).split())
            elif name == 'recoloured':
                self.colour_word(kept, lines[:8], name)
            elif name in TYPED:
                self.type_word(kept, lines[:8], name)
            elif name != 'arabic' or not any(LEFTWARD.search(word) for word in self.before):
                # Where more runs from the right, pdftotext reads the page otherwise.
                self.add_line(kept, name)
        return True


def main():
    every = ('kept', 'moved', 'recoloured', *TYPED, 'deleted', *ADDED)
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument('folder')
    options.add_argument('--corvane', default=program_in_build())
    options.add_argument('--most', type=int, default=20)
    options.add_argument('--only', default='')
    options.add_argument('--edits', default=','.join(every))
    given = options.parse_args()
    edits = [name for name in every if name in given.edits.split(',')]
    tried = failed = 0
    counts = collections.defaultdict(collections.Counter)
    for name in sorted(os.listdir(given.folder)):
        if not name.endswith('.pdf') or given.only not in name or tried == given.most:
            continue
        with tempfile.TemporaryDirectory() as folder:
            try:
                page = Page(os.path.abspath(given.corvane), os.path.join(given.folder, name), folder, counts)
                if not page.run(edits):
                    continue
            except subprocess.TimeoutExpired:
                continue
            tried += 1
            failed += bool(page.faults)
            for fault in page.faults:
                print(f'{name}: {fault}', flush=True)
    print(f'\n{"":12}{"pages":>8}' + ''.join(f'{count:>9}' for count in COUNTS))
    for name in edits:
        print(f'{name:12}{counts[name]["pages"]:8}' + ''.join(f'{counts[name][count]:9}' for count in COUNTS))
    print(f'{tried} pages, {failed} with faults')
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main())
