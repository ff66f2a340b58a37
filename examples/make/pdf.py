"""Writes PDF files: numbered objects, streams, a cross-reference table."""

import zlib


class Document:
    """Objects are bytes; `add` gives the reference of one, `reserve` one for later."""

    def __init__(self, title):
        self.objects = []
        self.catalog = self.reserve()
        self.pages = self.reserve()
        self.kids = []
        self.extra = ""  # more entries of the catalog
        self.info = self.add(f"<< /Title ({title}) /Producer (examples/make) >>")

    def reserve(self):
        self.objects.append(None)
        return f"{len(self.objects)} 0 R"

    def add(self, body, at=None):
        reference = at or self.reserve()
        data = body if isinstance(body, bytes) else body.encode("latin-1")
        self.objects[int(reference.split()[0]) - 1] = data
        return reference

    def stream(self, data, entries="", is_packed=True):
        """A stream, compressed unless its entries already say how its data are coded."""
        if is_packed:
            data = zlib.compress(data, 9)
            entries += " /Filter /FlateDecode"
        head = f"<< {entries.strip()} /Length {len(data)} >>\nstream\n".encode("latin-1")
        return self.add(head + data + b"\nendstream")

    def page(self, width, height, content, resources):
        contents = self.stream(content.encode("cp1252"))
        self.kids.append(self.add(
            f"<< /Type /Page /Parent {self.pages} /MediaBox [0 0 {width} {height}]\n"
            f"   /Resources << {resources} >> /Contents {contents} >>"))

    def finish(self):
        self.add(f"<< /Type /Catalog /Pages {self.pages} {self.extra}>>", self.catalog)
        self.add(f"<< /Type /Pages /Kids [{' '.join(self.kids)}] /Count {len(self.kids)} >>",
                 self.pages)
        data = bytearray(b"%PDF-1.5\n%\xe2\xe3\xcf\xd3\n")
        rows = b"0000000000 65535 f \n"
        for number, body in enumerate(self.objects, 1):
            rows += b"%010d 00000 n \n" % len(data)
            data += b"%d 0 obj\n%s\nendobj\n" % (number, body)
        start = len(data)
        count = len(self.objects) + 1
        data += b"xref\n0 %d\n%s" % (count, rows)
        data += f"trailer\n<< /Size {count} /Root {self.catalog} /Info {self.info} >>\n".encode()
        data += b"startxref\n%d\n%%%%EOF\n" % start
        return bytes(data)


def number(value):
    return f"{value:.2f}".rstrip("0").rstrip(".") if value % 1 else str(int(value))


def numbers(*values):
    return " ".join(number(value) for value in values)
