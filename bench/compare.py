#!/usr/bin/env python3
"""Runs corvane beside other readers on the same files and prints ratios of time and memory.

    compare.py [--corvane PATH] [--pages FOLDER] [--runs N] [--limit SECONDS] [NAME ...]

For every file these races are run:

    open   corvane open, pdftocairo -svg, mutool convert -F svg   (page 1 becomes SVG)
    info   corvane info, mutool show trailer, qpdf --show-npages  (the file is opened and looked at)
    save   corvane open and save, qpdf, mutool clean              (the file is read and written anew)
    read   corvane save --dry-run, rsvg-convert -f pdf            (page 1 as SVG becomes page content)

    append corvane save                                           (a change goes into the file itself)
    loop   corvane open, mutool draw -F trace, pdftocairo -svg    (page 1 of every file of a folder)

"save" and "read" are for maps only, "append" for archives, "loop" for folders of small files, which
take part in nothing else. What "append" appended is taken off again before the next run, off the
clock.

The runners of a race take turns (A B C A B C ...), N times after a round of warm-up that does not
count, so that a slow minute of the machine hits all of them. Each row gives the medians of wall
clock, processor time (user and system) and peak memory, and ratios corvane / that row, below 1 where
corvane needs less. On a busy machine the processor time is the one to look at. A run that fails or passes the limit ends the row, which then says so. A peer that is
not installed is named and left out.

NAME is a name of make_pages.py (map-120000, objects-1000000, ...) or a PDF file; without names the
standard list is run. Made pages are kept in FOLDER. Lines at the end compare with the aims: the map
against its peers, opening a million objects against mutool show trailer, and time per object.

Peak memory is what the kernel reports of the child, never less than what this driver itself holds
when it starts one; the row "floor" is a program that does nothing.
"""

import argparse
import os
import platform
import re
import shlex
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass, field

import make_pages

HERE = os.path.dirname(os.path.abspath(__file__))
PEERS = {"pdftocairo": ["-v"], "mutool": ["-v"], "qpdf": ["--version"], "rsvg-convert": ["--version"]}


@dataclass
class Run:
    wall: float  # seconds
    cpu: float  # seconds, the child's own and the kernel's for it
    peak: float  # MiB
    fault: str = ""


@dataclass
class Runner:
    name: str
    command: list
    before: list = field(default_factory=list)  # run first, off the clock
    runs: list = field(default_factory=list)
    fault: str = ""

    def median(self, what):
        return statistics.median(getattr(run, what) for run in self.runs)


def run_once(command, folder, limit):
    """One child in its own folder, output discarded; a fault where it fails or passes the limit."""
    started = time.perf_counter()
    pid = os.fork()
    if pid == 0:
        try:
            os.chdir(folder)
            sink = os.open(os.devnull, os.O_RDWR)
            for stream in (0, 1, 2):
                os.dup2(sink, stream)
            signal.alarm(limit)  # survives exec; its default is to end the process
            os.execvp(command[0], command)
        finally:
            os._exit(127)
    _, status, usage = os.wait4(pid, 0)
    run = Run(time.perf_counter() - started, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024)
    if os.WIFSIGNALED(status):
        name = signal.Signals(os.WTERMSIG(status)).name
        run.fault = f"over {limit} s" if name == "SIGALRM" else f"died of {name}"
    elif os.WEXITSTATUS(status) != 0:
        run.fault = f"exit {os.WEXITSTATUS(status)}"
    return run


def race(runners, rounds, limit):
    """Lets the runners take turns; the first round is warm-up."""
    for turn in range(rounds + 1):
        for runner in runners:
            if runner.fault:
                continue
            if runner.before:
                subprocess.run(runner.before, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
            with tempfile.TemporaryDirectory(prefix="compare-") as folder:
                run = run_once(runner.command, folder, limit)
            if run.fault:
                runner.fault = run.fault
            elif turn > 0:
                runner.runs.append(run)


def one_after_the_other(*commands):
    return ["sh", "-c", " && ".join(shlex.join(command) for command in commands)]


def saving_races(corvane, path):
    """`path` is a file whose page 1 is artwork beside it, NAME.svg, made where it is not there."""
    artwork = os.path.splitext(path)[0] + ".svg"
    if not os.path.exists(artwork):
        subprocess.run([corvane, "open", path, "--page", "1", "--quiet", "-o", artwork], check=True)
    opened = [corvane, "open", path, "--page", "1", "--quiet", "-o", "page.svg"]
    saved = [corvane, "save", "page.svg", path, "--quiet", "--output", "out.pdf"]
    return {
        "save": [
            Runner("corvane open, save", one_after_the_other(opened, saved)),
            Runner("qpdf", ["qpdf", path, "out.pdf"]),
            Runner("mutool clean", ["mutool", "clean", path, "out.pdf"]),
        ],
        f"read {os.path.getsize(artwork):,} bytes of SVG": [
            Runner("corvane save", [corvane, "save", artwork, path, "--quiet", "--dry-run"]),
            Runner("rsvg-convert -f pdf", ["rsvg-convert", "--unlimited", "-f", "pdf", "-o", "out.pdf", artwork]),
        ],
    }


def appending_races(corvane, path):
    """Into a copy beside `path`; the artwork is its page 1 with one number changed."""
    copy, artwork = os.path.splitext(path)[0] + "-copy.pdf", os.path.splitext(path)[0] + ".svg"
    if not os.path.exists(copy):
        shutil.copyfile(path, copy)
    if not os.path.exists(artwork):
        subprocess.run([corvane, "open", copy, "--page", "1", "--quiet", "-o", artwork], check=True)
        with open(artwork, encoding="utf-8") as opened:
            text = opened.read()
        with open(artwork, "w", encoding="utf-8") as changed:
            changed.write(re.sub(r'( d="M) ?[0-9.]+', r"\1 100", text, count=1))
    return {"append": [Runner("corvane save", [corvane, "save", artwork, copy, "--quiet"],
                              [corvane, "revert", copy, "--quiet"])]}


def loop_races(corvane, folder):
    def each(command):
        return ["sh", "-c", f'for file in {shlex.quote(folder)}/*.pdf; do {command} || exit 1; done']

    return {"loop": [
        Runner("corvane open", each(f'{shlex.quote(corvane)} open "$file" --page 1 --quiet -o page.svg')),
        Runner("mutool draw -F trace", each('mutool draw -q -F trace -o page.txt "$file" 1')),
        Runner("pdftocairo -svg", each('pdftocairo -svg -f 1 -l 1 "$file" page.svg')),
    ]}


def races(corvane, path):
    if os.path.isdir(path):
        return loop_races(corvane, path)
    return {
        "open": [
            Runner("corvane open", [corvane, "open", path, "--page", "1", "--quiet", "-o", "page.svg"]),
            Runner("pdftocairo -svg", ["pdftocairo", "-svg", "-f", "1", "-l", "1", path, "page.svg"]),
            Runner("mutool convert", ["mutool", "convert", "-F", "svg", "-o", "page.svg", path, "1"]),
        ],
        "info": [
            Runner("corvane info", [corvane, "info", path]),
            Runner("mutool show trailer", ["mutool", "show", path, "trailer"]),
            Runner("qpdf --show-npages", ["qpdf", "--show-npages", path]),
        ],
    }


def first_line(command):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          check=False)
    return (done.stdout.splitlines() or ["?"])[0].strip()


def describe_machine():
    model = platform.processor() or platform.machine()
    try:
        with open("/proc/cpuinfo", encoding="ascii", errors="replace") as info:
            model = next((line.split(":", 1)[1].strip() for line in info
                          if line.startswith("model name")), model)
    except OSError:
        pass
    return (f"{model}, {os.cpu_count()} cores, {platform.system()} {platform.release()}, "
            f"load {os.getloadavg()[0]:.2f}")


def print_header(corvane, missing):
    print(f"machine    {describe_machine()}")
    print(f"corvane    {first_line([corvane, '--version'])}")
    for peer, flags in PEERS.items():
        print(f"{peer:<10} " + ("not installed, left out" if peer in missing
                                else first_line([peer, *flags])))


def ratio(ours, theirs):
    return f"{ours / theirs:8.2f}" if theirs > 0 else "       -"


def print_race(title, runners):
    print(f"\n{title}\n{'':22}{'wall s':>10}{'cpu s':>10}{'peak MiB':>10}     corvane / row: "
          f"{'wall':>6}{'cpu':>8}{'memory':>8}")
    ours = runners[0]
    for runner in runners:
        if not runner.runs or runner.fault:
            print(f"  {runner.name:<20}{runner.fault:>10}")
            continue
        line = f"  {runner.name:<20}" + f"{runner.median('wall'):10.3f}{runner.median('cpu'):10.3f}" \
               f"{runner.median('peak'):10.1f}"
        if runner is not ours and ours.runs and not ours.fault:
            line += " " * 18 + "".join(ratio(ours.median(what), runner.median(what))
                                       for what in ("wall", "cpu", "peak"))
        print(line, flush=True)


def good(results, name, kind, runner):
    """The runner's row of that race where it ran to the end, or None."""
    found = next((r for r in results.get((name, kind), []) if r.name == runner), None)
    return found if found and found.runs and not found.fault else None


def print_aims(results):
    def line(text, name, ours, theirs, what, aim):
        mine, other = good(results, name, *ours), good(results, name, *theirs)
        if mine and other:
            value = mine.median(what) / other.median(what)
            print(f"  {text:<66}{value:6.2f}  aim {aim:4.2f}  {'met' if value <= aim else 'MISSED'}")

    print("\naims (ratio corvane / peer)")
    opened, cairo, mutool = ("open", "corvane open"), ("open", "pdftocairo -svg"), ("open", "mutool convert")
    trailer = ("info", "mutool show trailer")
    for what, time_name in ("wall", "wall clock"), ("cpu", "processor time"):
        line(f"map, {time_name}: open, against {cairo[1]}", "map-120000", opened, cairo, what, 0.2)
        line(f"map, {time_name}: open, against {mutool[1]}", "map-120000", opened, mutool, what, 1.0)
        for ours in opened, ("info", "corvane info"):
            line(f"a million objects, {time_name}: {ours[0]}, against {trailer[1]}", "objects-1000000", ours,
                 trailer, what, 1.0)
    line(f"map, memory: open, against {cairo[1]}", "map-120000", opened, cairo, "peak", 0.5)
    for archive in "archive-1000000", "archive-streams-1000000":
        rows = [row for row in (good(results, archive, *peer) for peer in (cairo, mutool)) if row]
        if rows:
            faster = min(rows, key=lambda row: row.median("wall"))
            line(f"{archive}, wall clock: open, against {faster.name}", archive, opened,
                 ("open", faster.name), "wall", 1 / 3)
        saved = good(results, archive, "append", "corvane save")
        if saved:
            wall, peak = saved.median("wall"), saved.median("peak")
            print(f"  {archive}, save: {wall:.3f} s, aim 0.2; {peak:.1f} MiB, aim 100  "
                  f"{'met' if wall <= 0.2 and peak <= 100 else 'MISSED'}")


def described(path):
    return f"{len(os.listdir(path)):,} files" if os.path.isdir(path) else f"{os.path.getsize(path):,} bytes"


def print_per_object(results):
    sizes = sorted({int(name.rpartition("-")[2]) for name, _ in results if name.startswith("objects-")})
    print("\nmicroseconds per object" + "".join(f"{size:>12,}" for size in sizes))
    for kind, runners in races("", "").items():
        for runner in runners:
            rows = [good(results, f"objects-{size}", kind, runner.name) for size in sizes]
            cells = [f"{row.median('wall') / size * 1e6:12.3f}" if row else f"{'-':>12}"
                     for size, row in zip(sizes, rows)]
            slope = ""
            if len(sizes) > 1 and rows[0] and rows[-1]:
                grown = rows[-1].median("wall") - rows[0].median("wall")
                slope = f"   {grown / (sizes[-1] - sizes[0]) * 1e6:8.3f} for each further one"
            print(f"  {runner.name:<21}" + "".join(cells) + slope)


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--corvane", default=os.path.join(HERE, "..", "build", "corvane"))
    parser.add_argument("--pages", default=os.path.join(tempfile.gettempdir(), "corvane-pages"))
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--limit", type=int, default=120, help="seconds for one run")
    parser.add_argument("names", nargs="*", metavar="NAME")
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    corvane = os.path.abspath(arguments.corvane)
    if not os.access(corvane, os.X_OK):
        sys.exit(f"compare.py: {corvane} is not there; build it first or name it with --corvane")
    missing = {peer for peer in PEERS if shutil.which(peer) is None}
    print_header(corvane, missing)

    floor = Runner("floor", ["true"])
    race([floor], arguments.runs, arguments.limit)
    print_race("a program that does nothing", [floor])
    results = {}
    for name in arguments.names or make_pages.STANDARD:
        path = name if name.endswith(".pdf") else make_pages.make(arguments.pages, name)
        path = os.path.abspath(path)
        all_races = races(corvane, path)
        if name.startswith("map-"):
            all_races |= saving_races(corvane, path)
        if name.startswith("archive-"):
            all_races |= appending_races(corvane, path)
        for kind, runners in all_races.items():
            runners = [runner for runner in runners
                       if runner.command[0] not in missing and runner.name.split()[0] not in missing]
            race(runners, arguments.runs, arguments.limit)
            results[name, kind] = runners
            print_race(f"{name}, {described(path)}: {kind}", runners)
    print_aims(results)
    if any(name.startswith("objects-") for name, _ in results):
        print_per_object(results)


if __name__ == "__main__":
    main()
