#!/usr/bin/env python3
"""Runs one fuzz target until some minutes bring no new edge, and says what that took.

    run.py PROGRAM CORPUS [--minutes 5] [--seconds-each 20] [-- LIBFUZZER-OPTION ...]

PROGRAM is a target built with the preset "fuzz", CORPUS the folder that collects its inputs; the
seeds of the target (fuzz/seeds/NAME for NAME_fuzz) are read as well. A finding ends the run with
exit 1 and stays beside the corpus as crash-..., timeout-... or oom-....
"""

import argparse
import collections
import os
import re
import signal
import subprocess
import sys
import threading
import time

HERE = os.path.dirname(os.path.abspath(__file__))


class Report:
    """The fuzzer's own report, followed by a thread: it may be silent for long."""

    def __init__(self, lines):
        self.edges = self.executions = 0
        self.newest = time.monotonic()
        self.tail = collections.deque(maxlen=60)
        self.thread = threading.Thread(target=self.follow, args=(lines,))
        self.thread.start()

    def follow(self, lines):
        for line in lines:
            self.tail.append(line)
            found = re.match(r"#(\d+)\s+\w+\s+cov: (\d+)", line)
            if found:
                self.executions = int(found[1])
                if int(found[2]) > self.edges:
                    self.edges, self.newest = int(found[2]), time.monotonic()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("corpus")
    parser.add_argument("--minutes", type=float, default=5)
    parser.add_argument("--seconds-each", type=int, default=20, help="a longer run is a hang")
    parser.add_argument("options", nargs="*", help="passed on to libFuzzer")
    arguments = parser.parse_intermixed_args()

    os.makedirs(arguments.corpus, exist_ok=True)
    name = os.path.basename(arguments.program).removesuffix("_fuzz")
    command = [arguments.program, f"-timeout={arguments.seconds_each}", "-rss_limit_mb=1024", "-max_len=16384",
               f"-dict={HERE}/pdf.dict", f"-artifact_prefix={arguments.corpus.rstrip('/')}-",
               *arguments.options, arguments.corpus, f"{HERE}/seeds/{name}"]
    started = time.monotonic()
    with subprocess.Popen(command, stderr=subprocess.PIPE, text=True, errors="replace") as fuzzer:
        report = Report(fuzzer.stderr)
        stopped = False
        while fuzzer.poll() is None and not stopped:
            time.sleep(1)
            stopped = time.monotonic() - report.newest > arguments.minutes * 60
        if stopped:
            fuzzer.send_signal(signal.SIGINT)  # it says its last counts
        report.thread.join()
    print(f"{name}: {report.executions} runs in {time.monotonic() - started:.0f} s, {report.edges} edges")
    if not stopped:
        sys.stderr.writelines(report.tail)
        sys.exit(1)


if __name__ == "__main__":
    main()
