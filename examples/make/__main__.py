"""Makes the larger examples: pages that people know from their work.

    python3 examples/make [FOLDER]

Needs the Debian package fonts-urw-base35 and nothing but Python's own library. The same packages make
the same bytes.
"""

import pathlib
import sys

import invoice
import report
import scan
import town_map

FILES = {
    "report.pdf": report.make,
    "map.pdf": town_map.make,
    "invoice.pdf": invoice.make,
    "new-logo.png": invoice.make_logo,
    "scan.pdf": scan.make,
}


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent)
    for name, make in FILES.items():
        (folder / name).write_bytes(make())


if __name__ == "__main__":
    main()
