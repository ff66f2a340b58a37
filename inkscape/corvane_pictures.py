"""Addresses of linked pictures, for a copy of the drawing that lies elsewhere."""
import os
import re
from urllib.parse import quote, unquote_to_bytes
from xml.parsers import expat
from xml.sax.saxutils import quoteattr

PICTURES = ("image", "feImage")
ADDRESS = re.compile(rb"""(\s)((?:xlink:)?href)(\s*=\s*)("[^"]*"|'[^']*')""")
TAG = re.compile(rb"""<(?:[^"'>]+|"[^"]*"|'[^']*')*>""")
HAS_PLACE = re.compile(r"[A-Za-z][A-Za-z0-9+.-]*:|/|#")  # a scheme, a path from the root, an element


def with_whole_paths(svg, path, document):
    """The drawing with whole paths to its pictures. Inkscape counts `xlink:href` from the file at
    `path`, where it put the drawing, and leaves `href` to count from the `document`."""
    places = {"xlink:href": os.path.dirname(path), "href": os.path.dirname(document)}
    pieces, done = [], 0
    for start, addresses in relative_addresses(svg):
        tag = TAG.match(svg, start)
        if tag:
            text = tag[0]
            for name, address in addresses.items():
                if places[name]:
                    text = with_address(text, name, whole(address, places[name]))
            pieces += [svg[done:start], text]
            done = tag.end()
    return b"".join([*pieces, svg[done:]])


def relative_addresses(svg):
    """Where the tags of pictures with such addresses begin, and these by name of the attribute."""
    found = []
    parser = expat.ParserCreate()

    def note(element, attributes):
        if element.rpartition(":")[2] in PICTURES:
            named = {name: attributes.get(name, "").strip() for name in ("xlink:href", "href")}
            relative = {name: address for name, address in named.items()
                        if address and not HAS_PLACE.match(address)}
            if relative:
                found.append((parser.CurrentByteIndex, relative))

    parser.StartElementHandler = note
    parser.Parse(svg, True)
    return found


def with_address(tag, name, address):
    def replace(match):
        if match[2].decode() != name:
            return match[0]
        return match[1] + match[2] + match[3] + quoteattr(address).encode("ascii")

    return ADDRESS.sub(replace, tag)


def whole(address, place):
    """Inkscape counts ".." in names alone, whatever links to folders are on the way."""
    path, mark, rest = re.fullmatch(r"([^?#]*)([?#]?)(.*)", address, re.DOTALL).groups()
    plain = os.path.normpath(os.path.join(os.fsencode(place), unquote_to_bytes(path)))
    return quote(plain) + mark + quote(rest, safe="/=&%")
