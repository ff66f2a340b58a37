"""Pages of PDF files in Inkscape: links to them, and artwork of them.

A link is a small file, NAME.pdfpage, that says which page of which PDF it stands for. Inkscape opens
and saves the link; the PDF itself is written by the program alone, which appends to it.
"""
import json
import os
import tempfile
import uuid
import xml.etree.ElementTree as xml
from xml.parsers import expat
from xml.sax.saxutils import quoteattr

from corvane_pictures import with_whole_paths
from corvane_run import Refusal, advice_removed, code_of, require

LOSSES = (21, 26, 29, 30, 33, 34)  # errors that are refusals: a person may insist
SHOWN_WARNINGS = 6
OPEN_MENU = "Extensions > PDF Page > Open a Page of a PDF"
SAVE_MENU = "Extensions > PDF Page > Save into a PDF"


class Link:
    def __init__(self, pdf, page=0):
        self.pdf = pdf    # path; of a link that was read, absolute
        self.page = page  # 0: not said

    @staticmethod
    def read(path):
        """Raises `Refusal` where the file at `path` is no link."""
        if os.path.exists(path) and not os.path.isfile(path):
            raise Refusal(f"{path} is no file")  # a pipe would keep us waiting
        try:
            with open(path, encoding="utf-8") as file:
                facts = json.loads(file.read(65536))
            pdf, page = facts["pdf"], facts.get("page", 0)
            if not isinstance(pdf, str) or type(page) is not int or page < 0:  # true is an int, too
                raise ValueError
        except OSError as fault:
            raise Refusal(f"{path}: {fault.strerror}") from fault
        except (ValueError, LookupError, TypeError, AttributeError, RecursionError) as fault:
            raise Refusal(f'{path} is no link to a page of a PDF, such as '
                          '{"pdf": "report.pdf", "page": 2}') from fault
        folder, name = os.path.split(pdf)
        here = os.path.dirname(os.path.realpath(path))
        place = find(name, [os.path.join(here, folder), here])  # both may have been moved
        if place is None:
            raise Refusal(f"{pdf} is not there, nor beside the link {path}; correct the link")
        return Link(place, page)

    def text(self):
        return json.dumps({"pdf": self.pdf, "page": self.page}) + "\n"


def find(name, places):
    """Path of the PDF `name`, in the first of some folders that has it; None where none has."""
    paths = (os.path.abspath(os.path.join(place, name)) for place in places)
    return next(filter(os.path.isfile, paths), None)


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

    def target(self, person):
        """Path of the PDF to save into, where the person names none. A drawing may be a stranger's, so
        its word alone is not enough: the link that is open agrees with it, or the person does."""
        document = document_path()
        if document.endswith(".pdfpage") and os.path.lexists(document):
            linked, named = Link.read(document).pdf, self._named()
            if named is not None and not os.path.samefile(linked, named):
                raise Refusal(f"{document} is a link to {linked}, but the drawing is of {named}; name the "
                              f"PDF in {SAVE_MENU}")
            return linked
        pdf = self._named()
        if pdf is None:
            places = self._places()
            name = os.path.basename(self.pdf)
            why = f"{name} is not in {' nor in '.join(places)}" if places and name else (
                "the drawing does not say which PDF it belongs to")
            raise Refusal(f"{why}; name the PDF in {SAVE_MENU}")
        if not person.agrees(f"Save into {pdf}?"):
            advice = person.obstacle() if person.is_there else "; CORVANE_PDF names the PDF where nobody can be asked"
            raise Refusal(f"nothing was saved: only the drawing says that it belongs to {pdf}{advice}")
        return pdf

    def _places(self):
        return [place for place in (self.folder, os.path.dirname(document_path())) if place]

    def _named(self):
        """Path of the PDF that the drawing names; None where it is not there."""
        name = os.path.basename(self.pdf)
        return find(name, self._places()) if name else None

    def copy_to(self, path):
        with open(self.path, "rb") as file:
            svg = file.read()
        try:
            svg = with_whole_paths(svg, self.path, document_path())
        except expat.ExpatError as fault:
            raise Refusal(f"the drawing cannot be read ({fault})") from fault
        with open(path, "wb") as file:
            file.write(svg)
        return path


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
    named = "" if program.person.is_there else os.environ.get("CORVANE_PAGE", "")
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


def save_page(artwork, pdf, program, page=0):
    """Saves into `pdf`, as an appended update; what the program says of it. Where a save would lose
    something, it is made if the person agrees."""
    words = ["save"] + (["--page", str(page)] if page else [])
    document = document_path()
    if document:
        words += ["--images", os.path.dirname(document)]
    # Inkscape's file lies among those of others, which would be pictures that the drawing may have.
    with tempfile.TemporaryDirectory(prefix="corvane-inkscape-") as folder:
        art = artwork.copy_to(os.path.join(folder, "page.svg"))
        facts = program.run([*words, art], pdf)
        if code_of(facts) in LOSSES:
            why = advice_removed(facts["error"]["sentence"])
            agree_to_loss(why, program.run([*words, "--dry-run", "--force", art], pdf), program.person)
            facts = program.run([*words, "--force", art], pdf)
    require(facts, program.person)
    return facts


def agree_to_loss(why, would, person):
    """Raises `Refusal` where the person does not want it, or cannot be asked. A yes is one to all that
    such a save does, not to the first loss alone: `would` is what it would be."""
    if would["error"]:
        require(would, person)
    pdf = would["file"]
    if not person.agrees(f"{os.path.basename(pdf)}: {why}.", f"The save would be: {sentence_of(would)}.",
                         *shortened([warning["sentence"] + "." for warning in would["warnings"]]),
                         "Save all the same? What others changed on this page since it was opened would "
                         "be undone, too."):
        raise Refusal(f"nothing was saved into {pdf}: {why}{person.obstacle()}")


def shortened(sentences):
    """A dialog must fit the screen, or its buttons are out of reach."""
    rest = len(sentences) - SHOWN_WARNINGS
    return sentences[:SHOWN_WARNINGS] + ([f"And {rest} more warnings."] if rest > 0 else [])


def whole_path(path, who):
    """We do not know the folder that a person counts from."""
    if not os.path.isabs(path):
        raise Refusal(f"{who} takes a path from the root, not {path}")
    return path


def document_path():
    """Where the document is, or is about to be; empty for one that was never saved."""
    return os.environ.get("DOCUMENT_PATH", "")


def sentence_of(facts):
    """ "report.pdf, page 2: 1 object changed, 3 added; 812 bytes appended"."""
    name = f"{os.path.basename(facts['file'])}, page {facts['page']}: "
    if facts["nothing"]:
        return name + "nothing to save"
    kinds = [f"{facts[kind]} {kind}" for kind in ("changed", "added", "removed", "moved") if facts[kind]]
    if kinds:
        count, _, rest = kinds[0].partition(" ")
        kinds[0] = f"{count} object{'' if count == '1' else 's'} {rest}"
    appended = f"{facts['length'] - facts['formerLength']:,} bytes appended"
    return name + "; ".join(filter(None, [", ".join(kinds), appended]))
