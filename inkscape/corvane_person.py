"""The person in front of Inkscape: what is said to them, and what they are asked."""
import ctypes
import html
import os
import shutil
import stat
import subprocess
import sys

LIBRARY = ctypes.CDLL(None, use_errno=True)
PIDFD_GETFD = 438  # the same on every machine with Linux 5.6

# Words on Inkscape's command line that mean that it works without anybody watching.
BATCH = ("--export", "--query", "--actions", "--batch-process", "--pipe", "--shell", "-o", "-p")

# How programs for dialogs are told what to ask; the text comes behind it. They print the answer.
TOOLS = {
    "zenity": {
        "line": ["--entry", "--text"],
        "secret": ["--entry", "--hide-text", "--text"],
        "yes": ["--question", "--default-cancel", "--no-markup", "--text"],
        "news": ["--info", "--no-markup", "--text"],
    },
    "kdialog": {
        "line": ["--inputbox"],
        "secret": ["--password"],
        "yes": ["--warningcontinuecancel"],
        "news": ["--msgbox"],
    },
}


def inkscape_process():
    """Number of the process that reads our standard error; None where that cannot be told."""
    try:
        ours = os.readlink("/proc/self/fd/2")
        processes = [name for name in os.listdir("/proc") if name.isdigit()]
    except OSError:
        return None
    for process in processes if ours.startswith("pipe:") else []:
        folder = f"/proc/{process}/fd"
        try:
            for name in os.listdir(folder):
                path = os.path.join(folder, name)
                is_reading = not os.lstat(path).st_mode & stat.S_IWUSR
                if is_reading and os.readlink(path) == ours:
                    return int(process)
        except OSError:
            continue  # another person's process, or it has ended
    return None


def write_to_errors_of(process, line):
    """Writes to the standard error of another process. A copy of its descriptor goes on where that
    has come in a file; a file that is opened anew does not, but needs no permission."""
    try:
        copy = LIBRARY.syscall(PIDFD_GETFD, os.pidfd_open(process), 2, 0)
        errors = copy if copy >= 0 else os.open(f"/proc/{process}/fd/2", os.O_WRONLY | os.O_APPEND)
        os.write(errors, line.encode("utf-8", "backslashreplace"))
    except OSError:
        pass  # it has none, and there is nobody else to tell


def is_batch(process):
    """Whether the Inkscape of that number works without anybody watching."""
    try:
        with open(f"/proc/{process}/cmdline", "rb") as file:
            words = os.fsdecode(file.read()).split("\0")
    except OSError:
        return False
    if "-g" in words or "--with-gui" in words:
        return "--batch-process" in words
    return any(word.startswith(BATCH) for word in words)


def shown(text):
    """Without control characters, which names of files may hold, nor letters that hide others."""
    return "".join(c if c.isprintable() else c.encode("unicode_escape").decode("ascii") for c in text)


class Person:
    def __init__(self):
        self._inkscape = inkscape_process()
        has_display = os.environ.get("DISPLAY") or os.environ.get("WAYLAND_DISPLAY")
        self._tool = next(filter(None, map(shutil.which, TOOLS)), None)
        self.is_there = bool(has_display) and not is_batch(self._inkscape)

    def inkscape(self):
        """Path of the Inkscape that runs us."""
        try:
            return os.readlink(f"/proc/{self._inkscape}/exe")
        except OSError:
            return "inkscape"

    def tell(self, sentence):
        """Inkscape shows what we say on standard error, and waits until somebody has read it. Where
        nobody is there it must not: it gets the sentence where it complains itself."""
        line = f"corvane: {shown(sentence)}\n"
        if self.is_there or self._inkscape is None:
            sys.stderr.write(line)
        else:
            write_to_errors_of(self._inkscape, line)

    def inform(self, sentence):
        """Good news: Inkscape's own window would say that something may have gone wrong."""
        if self._ask("news", sentence) is None:
            self.tell(sentence)

    def line(self, text):
        """What the person writes; None where they do not want to, or nobody can be asked."""
        return self._ask("line", text)

    def secret(self, *paragraphs):
        return self._ask("secret", *paragraphs)

    def agrees(self, *paragraphs):
        return self._ask("yes", *paragraphs) is not None

    def obstacle(self):
        """Why nobody could be asked, as the end of a sentence; empty where somebody was."""
        if not self.is_there:
            return "; somebody at a window is asked, and corvane save --force does not ask"
        return "" if self._tool or gtk() else "; install zenity, kdialog or python3-gi to be asked"

    def _ask(self, kind, *paragraphs):
        if not self.is_there:
            return None
        text = "\n\n".join(map(shown, paragraphs))
        if self._tool is None:
            return ask_with_gtk(kind, text)
        tool = os.path.basename(self._tool)
        words = TOOLS[tool][kind]
        if tool == "kdialog":  # what looks like markup is taken as such
            text = "<qt>" + html.escape(text).replace("\n", "<br/>") + "</qt>"
        asked = subprocess.run([self._tool, "--title", "PDF page", *words, text], check=False,
                               stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        answer = os.fsdecode(asked.stdout).removesuffix("\n")
        return answer if asked.returncode == 0 else None


def gtk():
    """None where Python does not have it."""
    try:
        import gi

        gi.require_version("Gtk", "3.0")
        from gi.repository import Gtk
    except (ImportError, ValueError):
        return None
    return Gtk


def ask_with_gtk(kind, text):
    Gtk = gtk()
    if Gtk is None:
        return None
    kinds, buttons = Gtk.MessageType, Gtk.ButtonsType
    message, button = {"yes": (kinds.WARNING, buttons.YES_NO),
                       "news": (kinds.INFO, buttons.OK)}.get(kind, (kinds.QUESTION, buttons.OK_CANCEL))
    dialog = Gtk.MessageDialog(message_type=message, buttons=button, text=text, title="PDF page")
    entry = Gtk.Entry(visibility=kind != "secret", activates_default=True)
    if kind in ("line", "secret"):
        dialog.get_content_area().pack_end(entry, False, False, 12)
    dialog.set_default_response(Gtk.ResponseType.NO if kind == "yes" else Gtk.ResponseType.OK)
    dialog.set_keep_above(True)
    dialog.show_all()
    answer = dialog.run()
    dialog.destroy()
    return entry.get_text() if answer in (Gtk.ResponseType.OK, Gtk.ResponseType.YES) else None
