#!/usr/bin/env python3
"""Opens many small files with corvane in one batch, and beside it with others in a loop.

    many_files.py [--corvane PATH] [--files N] [--of FOLDER...] [--sample N] [--jobs LIST]
                  [--keep FOLDER] [--only NAMES]

N files (1,000) are made, each with bytes of its own: of small pages in examples/, or of all PDFs up to
64 KiB in the folders that --of names and below them. Then page 1 of each becomes SVG:

    open-1, open-2   corvane open FILES -o '{stem}-{page}.svg' --jobs 1, 2   (--jobs 1,2)
    check-1          corvane check FILES: no page is drawn
    loop             corvane open, one process a file
    mutool           mutool convert -F svg, one process a file
    pdftocairo       pdftocairo -svg, one process a file

Printed are files a second, processor time a file, and the peak memory of the largest process, which is
never less than what this driver itself holds. All outputs go to one folder, which is
emptied before each row. A peer that is not installed is left out. --only names the rows to run. Rows
of one process a file take only the first files where --sample says how many.
"""

import argparse
import os
import resource
import shutil
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
EXAMPLES = ["harbour.pdf", "strokes.pdf", "turned.pdf", "two-pages.pdf"]
SMALL = 64 * 1024  # bytes


def source_names(folders):
    if folders is None:
        return [os.path.join(HERE, "..", "examples", name) for name in EXAMPLES]
    found = []
    for folder in folders:
        for path, _, names in os.walk(folder):
            found += [os.path.join(path, name) for name in names if name.endswith(".pdf")]
    return sorted(name for name in found if os.path.getsize(name) <= SMALL)


def make_files(folder, count, originals):
    """A comment behind the end of each file makes it one of its own."""
    sources = []
    for name in source_names(originals):
        with open(name, "rb") as file:
            sources.append(file.read())
    print(f"{len(sources)} different files, {sum(map(len, sources)) / len(sources):,.0f} bytes on average")
    names = []
    for number in range(count):
        name = os.path.join(folder, f"file-{number:06}.pdf")
        with open(name, "wb") as file:
            file.write(sources[number % len(sources)] + b"%% %06d\n" % number)
        names.append(name)
    return names


def measure(commands, output):
    """Runs one command after another; wall clock, processor time, peak memory, and how many failed."""
    shutil.rmtree(output, ignore_errors=True)
    os.mkdir(output)
    failed = 0
    peak = 0
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    start = time.monotonic()
    for command in commands:
        child = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        failed += child.returncode != 0
        peak = max(peak, usage.ru_maxrss)
    wall = time.monotonic() - start
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    cpu = (after.ru_utime + after.ru_stime) - (before.ru_utime + before.ru_stime)
    return wall, cpu, peak / 1024, failed


def rows(options, files, output):
    pattern = os.path.join(output, "{stem}-{page}.svg")
    corvane = options.corvane
    for jobs in options.jobs.split(","):
        yield f"open-{jobs}", [[corvane, "open", *files, "-o", pattern, "--jobs", jobs]]
    yield "check-1", [[corvane, "check", *files, "--jobs", "1"]]

    def svg(name):
        return os.path.join(output, os.path.basename(name)[:-4] + ".svg")

    files = files[:options.sample]
    yield "loop", [[corvane, "open", name, "--page", "1", "-o", svg(name)] for name in files]
    if shutil.which("mutool"):
        yield "mutool", [["mutool", "convert", "-F", "svg", "-o", svg(name), name, "1"]
                         for name in files]
    if shutil.which("pdftocairo"):
        yield "pdftocairo", [["pdftocairo", "-svg", "-f", "1", "-l", "1", name, svg(name)]
                             for name in files]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--corvane", default=os.path.join(HERE, "..", "build", "corvane"))
    parser.add_argument("--files", type=int, default=1000)
    parser.add_argument("--of", nargs="+", metavar="FOLDER", help="folders of PDFs to copy")
    parser.add_argument("--sample", type=int, help="files for rows of one process a file")
    parser.add_argument("--jobs", default="1,2")
    parser.add_argument("--keep", help="a folder for files and outputs, which stays")
    parser.add_argument("--only", help="names of rows, with commas")
    options = parser.parse_args()
    options.corvane = os.path.abspath(options.corvane)
    if not os.access(options.corvane, os.X_OK):
        sys.exit(f"{options.corvane} is not there; build it, or name it with --corvane")
    folder = options.keep or tempfile.mkdtemp(prefix="corvane-many-")
    inputs = os.path.join(folder, "in")
    output = os.path.join(folder, "out")
    os.makedirs(inputs, exist_ok=True)
    wanted = options.only.split(",") if options.only else None
    try:
        files = make_files(inputs, options.files, options.of)
        print(f"{'row':12}{'files':>8}{'seconds':>9}{'files/s':>10}{'ms cpu/file':>13}{'peak MiB':>10}"
              f"{'failed':>8}{'load':>7}")
        for name, commands in rows(options, files, output):
            if wanted is None or name in wanted:
                wall, cpu, peak, failed = measure(commands, output)
                count = max(len(files) if len(commands) == 1 else len(commands), 1)
                print(f"{name:12}{count:8}{wall:9.2f}{count / wall:10.1f}{1000 * cpu / count:13.2f}"
                      f"{peak:10.1f}{failed:8}{os.getloadavg()[0]:7.1f}", flush=True)
    finally:
        if not options.keep:
            shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    main()
