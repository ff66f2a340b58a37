"""The program corvane, which does the work, and the way in and out of a script."""
import json
import os
import shutil
import subprocess
import sys

from corvane_person import Person

PASSWORD = (7, 32)  # errors: a password is missing or wrong; only the owner's may change the file
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
            self._password = self.person.secret(f"{why}.", f"Password of {os.path.basename(pdf)}:")
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


def guarded(work):
    """Runs `work(program)`. What it returns goes to standard output, whole, when all else is done:
    Inkscape puts that in the place of the file, even where it is only a piece."""
    person = Person()
    try:
        output = work(Program(person))
        sys.stdout.buffer.write(output)
        sys.stdout.buffer.flush()
    except (Refusal, OSError, ValueError) as fault:
        person.tell(sentence_about(fault))
        sys.exit(1)


def sentence_about(fault):
    if isinstance(fault, OSError) and fault.strerror:
        place = f"{os.fsdecode(fault.filename)}: " if isinstance(fault.filename, (str, bytes)) else ""
        return place + fault.strerror
    return str(fault) or type(fault).__name__
