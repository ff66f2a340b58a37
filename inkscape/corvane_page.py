"""Pages of PDF files in Inkscape: links to them, artwork of them, and the program that saves them.

A link is a small file, NAME.pdfpage, that says which page of which PDF it stands for. Inkscape opens
and saves the link; the PDF itself is written by the program alone, which appends to it.
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import uuid
import xml.etree.ElementTree as xml
from xml.sax.saxutils import quoteattr

from corvane_person import Person

PASSWORD = (7, 32)  # errors: a password is missing or wrong; only the owner's may change the file
LOSSES = (21, 26, 29, 30, 33, 34)  # errors that are refusals: a person may insist
OPEN_MENU = "Extensions > PDF Page > Open a Page of a PDF"
SAVE_MENU = "Extensions > PDF Page > Save into a PDF"
PROGRAM_FILE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corvane_program")


class Refusal(Exception):
    """Why nothing was done: a sentence for the person."""


def program_path():
    """Where the program was when the extensions were installed, else where PATH finds it."""
    try:
        with open(PROGRAM_FILE, encoding="utf-8", errors="surrogateescape") as file:
            path = file.read().removesuffix("\n")
        if os.access(path, os.X_OK):
            return path
    except OSError:
        pass
    path = shutil.which("corvane")
    if path is None:
        raise Refusal("the program corvane is not found; install it, and run: corvane inkscape --install")
    return path


class Program:
    """The program corvane, and the password that it was given last."""

    def __init__(self, person):
        self.person = person
        self._path = program_path()
        self._password = None

    def run(self, words, pdf):
        """What the program found; the person is asked for a password where the file needs one."""
        facts = self.try_once(words, pdf)
        while code_of(facts) in PASSWORD:
            why = advice_removed(facts["error"]["sentence"])
            self._password = self.person.secret(f"{why}.\n\nPassword of {os.path.basename(pdf)}:")
            if self._password is None:
                raise Refusal(f"{pdf}: {why}; start Inkscape with it in the variable CORVANE_PASSWORD")
            facts = self.try_once(words, pdf)
        return facts

    def try_once(self, words, pdf):
        given, secret = [], b""
        if self._password is not None:
            given, secret = ["--password-file", "-"], os.fsencode(self._password) + b"\n"
        try:
            done = subprocess.run([self._path, *words, *given, "--json", pdf], input=secret,
                                  capture_output=True, check=False)
            return json.loads(done.stdout.decode("utf-8", "replace"))
        except (OSError, ValueError) as fault:
            raise Refusal(f"{self._path} gave no answer ({fault}); install it again") from fault


def code_of(facts):
    return facts["error"]["code"] if facts["error"] else 0


def advice_removed(sentence):
    """Advice that names an option is for people at a terminal."""
    said, _, advice = sentence.rpartition("; ")
    return said if said and "--" in advice else sentence


def require(facts, person):
    """Says the warnings; raises `Refusal` where the program failed."""
    if facts["error"]:
        raise Refusal(f"{facts['file']}: {advice_removed(facts['error']['sentence'])}")
    for warning in facts["warnings"]:
        person.tell(warning["sentence"])


class Link:
    def __init__(self, pdf, page=0):
        self.pdf = pdf    # path; of a link that was read, absolute
        self.page = page  # 0: not said

    @staticmethod
    def read(path):
        """Raises `Refusal` where the file at `path` is no link."""
        try:
            with open(path, encoding="utf-8") as file:
                facts = json.loads(file.read(65536))
            pdf, page = facts["pdf"], facts.get("page", 0)
            if not isinstance(pdf, str) or not isinstance(page, int) or page < 0:
                raise ValueError
        except OSError as fault:
            raise Refusal(f"{path}: {fault.strerror}") from fault
        except (ValueError, LookupError, TypeError, AttributeError, RecursionError) as fault:
            raise Refusal(f'{path} is no link to a page of a PDF, such as '
                          '{"pdf": "report.pdf", "page": 2}') from fault
        here = os.path.dirname(path)
        folder, name = os.path.split(pdf)
        places = [os.path.join(here, folder), here]  # both may have been moved
        return Link(found(name, places, f"correct the link {path}"), page)

    def text(self):
        return json.dumps({"pdf": self.pdf, "page": self.page}) + "\n"


def found(name, places, advice):
    """Path of the PDF `name`, in the first of some folders that has it."""
    places = dict.fromkeys(os.path.abspath(place) for place in places)
    for place in places:
        path = os.path.join(place, name)
        if os.path.isfile(path):
            return path
    raise Refusal(f"{name} is not in {' nor in '.join(places)}; {advice}")


class Artwork:
    """The drawing as Inkscape hands it out, and what it says of its origin."""

    def __init__(self, path):
        self.path = path
        try:
            root = next(xml.iterparse(path, ("start",)))[1]
        except (xml.ParseError, StopIteration, OSError) as fault:
            raise Refusal(f"the drawing cannot be read ({fault})") from fault
        is_ours = root.get("data-producer") == "corvane"
        self.pdf = root.get("data-file", "") if is_ours else ""
        self.folder = root.get("data-folder", "") if is_ours else ""

    def origin(self):
        """Path of the PDF that the page came from."""
        document = document_path()
        if self.pdf:
            places = [self.folder, os.path.dirname(document)]
            return found(os.path.basename(self.pdf), filter(None, places), f"name it in {SAVE_MENU}")
        if document.endswith(".pdfpage") and os.path.isfile(document):
            return Link.read(document).pdf
        raise Refusal(f"the drawing does not say which PDF it belongs to; name that in {SAVE_MENU}")


def open_page(link, program):
    """The page as SVG that says where its PDF is."""
    link.page = link.page or wished_page(link, program)
    with tempfile.TemporaryDirectory(prefix="corvane-inkscape-") as folder:
        # Two openings of one page are two artworks, which the name tells apart.
        art = os.path.join(folder, f"{uuid.uuid4().hex}.svg")
        words = ["open", "--page", str(link.page), "--images", "embed", "-o", art]
        require(program.run(words, link.pdf), program.person)
        with open(art, "rb") as file:
            svg = file.read()
    place = quoteattr(os.path.dirname(link.pdf), {"\n": "&#10;"}).encode("utf-8", "replace")
    return svg.replace(b" data-file=", b" data-folder=" + place + b" data-file=", 1)


def wished_page(link, program):
    """The page of a link that names none."""
    named = os.environ.get("CORVANE_PAGE", "")
    if named.isdecimal() and int(named) > 0:
        return int(named)
    facts = program.run(["info"], link.pdf)
    require(facts, program.person)
    count = facts["pageCount"]
    if count > 1 and program.person.is_there:
        return asked_page(os.path.basename(link.pdf), count, program.person)
    if count > 1:
        program.person.tell(f"{link.pdf} has {count} pages, and this is page 1; CORVANE_PAGE names another")
    return 1


def asked_page(name, count, person):
    while True:
        line = person.line(f"Which page of {name} (1 to {count})?")
        if line is None:
            raise Refusal(f"no page was opened; {OPEN_MENU} asks for it, too")
        if line.strip().isdecimal() and 1 <= int(line) <= count:
            return int(line)


def save_page(artwork, pdf, program, page=0, force=False):
    """Saves into `pdf`, as an appended update; what the program says of it. Where a save would lose
    something, it is made if the person agrees."""
    words = ["save"] + (["--page", str(page)] if page else []) + (["--force"] if force else [])
    document = document_path()
    if document:
        words += ["--images", os.path.dirname(document)]
    facts = program.run([*words, artwork.path], pdf)
    if code_of(facts) in LOSSES and not force:
        why = advice_removed(facts["error"]["sentence"])
        if not program.person.agrees(f"{os.path.basename(pdf)}: {why}.\n\nSave all the same? What others "
                                     "changed on this page since it was opened would be undone, too."):
            raise Refusal(f"nothing was saved into {pdf}: {why}; {SAVE_MENU} can save all the same")
        facts = program.run([*words, "--force", artwork.path], pdf)
    require(facts, program.person)
    return facts


def document_path():
    """Where the document is, or is about to be; empty for one that was never saved."""
    return os.environ.get("DOCUMENT_PATH", "")


def sentence_of(facts):
    """ "report.pdf, page 2: 1 object changed, 3 added; 812 bytes appended"."""
    name = f"{os.path.basename(facts['file'])}, page {facts['page']}: "
    if facts["nothing"]:
        return name + "nothing to save"
    kinds = [f"{facts[kind]} {kind}" for kind in ("changed", "added", "removed", "moved") if facts[kind]]
    appended = f"{facts['length'] - facts['formerLength']:,} bytes appended"
    return name + "; ".join(filter(None, [", ".join(kinds), appended]))


def guarded(work):
    """Runs `work(program)`. What it returns goes to standard output, whole, when all else is done:
    Inkscape puts that in the place of the file, even where it is only a piece."""
    person = Person()
    try:
        output = work(Program(person))
    except Refusal as refusal:
        person.tell(str(refusal))
        sys.exit(1)
    sys.stdout.buffer.write(output)
    sys.stdout.buffer.flush()
