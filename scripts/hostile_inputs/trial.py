"""Runs a command on an input within limits, and judges what came of it."""

import filecmp
import os
import pickle
import resource
import signal
import subprocess
import traceback
import xml.parsers.expat

HEAD = 1 << 16
WELL_FORMED_BYTES = 256 << 20  # of a larger document, only the end is looked at
MIB = 1 << 20
MOST_OF_MESSAGES = MIB
SANITIZERS = (b"ERROR: AddressSanitizer", b"ERROR: LeakSanitizer", b"WARNING: ThreadSanitizer", b": runtime error: ")
TERMINATED = b"terminate called"
UNKNOWN = (b"unknown error", b"unknown exception")


def apart(function, *arguments):
    """Calls in a process of its own, so that what it takes does not count for the commands that follow."""
    source, sink = os.pipe()
    child = os.fork()
    if child == 0:
        os.close(source)
        try:
            answer = True, function(*arguments)
        except BaseException:
            answer = False, traceback.format_exc()
        with os.fdopen(sink, "wb") as pipe:
            pickle.dump(answer, pipe)
        os._exit(0)
    os.close(sink)
    with os.fdopen(source, "rb") as pipe:
        octets = pipe.read()
    os.waitpid(child, 0)
    done, answer = pickle.loads(octets) if octets else (False, "the process ended without an answer")
    if not done:
        raise RuntimeError(answer)
    return answer


class Command:
    """@param arguments  of the program; {file}, {other} (the sound file), {copy} (of the input) and {out} name files.
    @param out      kind of the output file.
    @param keeps    whether there may be an output although the command fails.
    @param stdin    whether the input goes to standard input.
    """

    def __init__(self, *arguments, out=None, keeps=False, stdin=False):
        self.arguments, self.out, self.keeps, self.stdin = arguments, out, keeps, stdin

    @property
    def edits(self):
        return "{copy}" in self.arguments


VALUE = "Identification.ApplicationName"
CHANGE = VALUE + "=Changed"
COMMANDS = {
    "file": {
        "info": Command("info", "{file}"),
        "sets": Command("info", "--sets", "{file}"),
        "pipe": Command("info", "-", stdin=True),
        "export": Command("export", "{file}", "-o", "{out}", out="xml"),
        "flat": Command("export", "--flat", "{file}", "-o", "{out}", out="xml"),
        "json": Command("export", "--format", "json", "{file}", "-o", "{out}", out="json"),
        "exact": Command("export", "--exact", "{file}", "-o", "{out}", out="xml"),
        "verify": Command("verify", "{file}"),
        "check": Command("check", "{file}"),
        "diff": Command("diff", "{file}", "{file}"),
        "show": Command("show", "{file}"),
        "get": Command("get", "{file}", VALUE, "Component[*].ComponentLength"),
        "set": Command("set", "{copy}", CHANGE),
    },
    "document": {
        "import": Command("import", "{file}", "-o", "{out}", out="mxf"),
        "exact": Command("import", "--exact", "{file}", "-o", "{out}", out="mxf"),
        "into": Command("import", "{file}", "--into", "{other}", "--merge-anyway", "--keep-going", "-o", "{out}", out="mxf",
                        keeps=True),
        "diff": Command("diff", "{file}", "{file}"),
        "show": Command("show", "{file}"),
        "get": Command("get", "{file}", VALUE),
    },
    "dictionary": {
        "list": Command("dictionary", "--dictionary", "{file}"),
        "json": Command("dictionary", "--json", "--dictionary", "{file}"),
        "export": Command("export", "{other}", "--dictionary", "{file}", "-o", "{out}", out="xml"),
        "check": Command("check", "{other}", "--dictionary", "{file}"),
    },
}
MORE = {
    "info-partitions": Command("info", "--partitions", "{file}"),
    "export-footer": Command("export", "--partition", "footer", "{file}", "-o", "{out}", out="xml"),
    "export-own": Command("export", "--own-dictionary", "{file}", "-o", "{out}", out="xml"),
    "learn": Command("dictionary", "--learn", "{file}", "-o", "{out}", out="dictionary"),
    "set-copy": Command("set", "{file}", CHANGE, "-o", "{out}", out="any"),
    "import-own": Command("import", "--own-dictionary", "{file}", "-o", "{out}", out="mxf"),
}


def commands_of(one):
    """The commands that fit an input, by name."""
    fitting = {name: command for name, command in COMMANDS[one.kind].items() if name not in one.less}
    fitting.update((name, MORE[name]) for name in one.more)
    return fitting


class Limits:
    def __init__(self, cpu, memory, messages):
        self.cpu, self.memory, self.messages = cpu, memory, messages  # seconds, bytes, lines


class Result:
    """What came of a run."""

    def __init__(self, status, usage, output, messages):
        self.signal = signal.Signals(os.WTERMSIG(status)).name if os.WIFSIGNALED(status) else None
        self.status = None if self.signal else os.WEXITSTATUS(status)
        self.cpu = usage.ru_utime + usage.ru_stime
        self.memory = usage.ru_maxrss * 1024
        self.output, self.messages = Text(output), Text(messages)

    @property
    def outcome(self):
        return self.signal or str(self.status)

    @property
    def line(self):
        """The reason of a failure, else what is said first."""
        return (self.messages.last() if self.status else self.messages.first()) or self.output.first()


class Text:
    """The ends of what a program printed."""

    def __init__(self, path):
        self.lines, self.tail, self.size = 0, b"", os.path.getsize(path)
        with open(path, "rb") as file:
            self.head = file.read(HEAD)
            file.seek(0)
            while piece := file.read(MIB):
                self.lines += piece.count(b"\n")
                self.tail = (self.tail + piece)[-HEAD:]

    def first(self):
        return self.head.split(b"\n", 1)[0].decode("utf-8", "backslashreplace")

    def last(self):
        return self.tail.rstrip(b"\n").rsplit(b"\n", 1)[-1].decode("utf-8", "backslashreplace")

    def has(self, *words):
        """Whatever the case of letters."""
        return any(word.lower() in text.lower() for word in words for text in (self.head, self.tail))


def restrict(limits, address_space):
    """In the process of the command."""
    cpu = int(limits.cpu) + 2
    resource.setrlimit(resource.RLIMIT_CPU, (cpu, cpu + 1))
    resource.setrlimit(resource.RLIMIT_FSIZE, (8 << 30, 8 << 30))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    if address_space:
        resource.setrlimit(resource.RLIMIT_AS, (address_space, address_space))
    signal.alarm(10 * cpu)  # for a command that waits


def run(words, folder, stdin, limits, address_space):
    """Runs in a folder of its own beside the texts of the command."""
    texts = [os.path.join(os.path.dirname(folder), name) for name in ("output", "messages")]
    with open(stdin or os.devnull, "rb") as source, open(texts[0], "wb") as output, open(texts[1], "wb") as messages:
        process = subprocess.Popen(words, cwd=folder, stdin=source, stdout=output, stderr=messages,
                                   preexec_fn=lambda: restrict(limits, address_space))
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = status
    return Result(status, usage, *texts)


def broken_xml(path):
    size = os.path.getsize(path)
    with open(path, "rb") as file:
        if size > WELL_FORMED_BYTES:
            file.seek(-100, os.SEEK_END)
            return None if file.read().rstrip().endswith(b"MetadataSets>") else "a document without its end"
        try:
            xml.parsers.expat.ParserCreate(namespace_separator=" ").ParseFile(file)
        except xml.parsers.expat.ExpatError as error:
            return f"a document that is not well-formed: {error}"
    return None


def broken_json(path):
    import json
    with open(path, "rb") as file:
        if os.path.getsize(path) > WELL_FORMED_BYTES:
            file.seek(-10, os.SEEK_END)
            return None if file.read().endswith(b"}\n") else "a document without its end"
        try:
            json.load(file)
        except ValueError as error:
            return f"a document that is no JSON: {error}"
    return None


def broken_mxf(path):
    size, offset = os.path.getsize(path), 0
    with open(path, "rb") as file:
        while offset < size:
            file.seek(offset)
            start = file.read(25)
            octets = 1 + (start[16] & 0x7F if len(start) > 16 and start[16] & 0x80 else 0)
            if len(start) < 16 + octets or start[:4] == bytes(4):
                return f"no KLV at {offset}"
            length = int.from_bytes(start[17:16 + octets], "big") if octets > 1 else start[16]
            offset += 16 + octets + length
    return None if size != 0 and offset == size else "a KLV that ends behind the end of the file"


BROKEN = {"xml": broken_xml, "json": broken_json, "mxf": broken_mxf,
          "dictionary": lambda path: None if os.path.getsize(path) else "an empty file",
          "any": lambda path: None if os.path.getsize(path) else "an empty file"}


class Trial:
    """One command on one input.

    @param path   of the input.
    @param other  a sound file.
    """

    def __init__(self, command, path, other, folder):
        self.command, self.path, self.folder = command, path, folder
        self.name = os.path.basename(path)  # of a link to the input, so that messages are short
        self.out = os.path.join(folder, "out." + (command.out or ""))
        self.copy = os.path.join(folder, "copy.mxf")
        self.names = {"{file}": self.name, "{other}": os.path.relpath(other, folder),
                      "{out}": os.path.basename(self.out), "{copy}": os.path.basename(self.copy)}

    def run(self, program, limits, address_space):
        if self.command.edits:
            subprocess.run(["cp", "--sparse=always", self.path, self.copy], check=True)
        else:
            os.symlink(self.path, os.path.join(self.folder, self.name))
        words = [program, *(self.names.get(word, word) for word in self.command.arguments)]
        self.limits = limits
        self.result = run(words, self.folder, self.path if self.command.stdin else None, limits, address_space)
        return self.result

    def problems(self):
        """What must not be, in words."""
        yield from self.problems_of_end()
        yield from self.problems_of_texts()
        yield from self.problems_of_files()

    def problems_of_end(self):
        result = self.result
        if result.signal:
            yield f"killed by {result.signal}"
        elif result.status not in (0, 1, 2):
            yield f"exit status {result.status}"
        if result.cpu > self.limits.cpu:
            yield f"{result.cpu:.1f} s of CPU"
        if result.memory > self.limits.memory:
            yield f"{result.memory // MIB} MiB of memory"

    def problems_of_texts(self):
        result, messages = self.result, self.result.messages
        if messages.has(*SANITIZERS):
            yield "a sanitizer's finding"
        if messages.has(TERMINATED):
            yield "std::terminate"
        if messages.has(*UNKNOWN):
            yield "an unknown error"
        if messages.lines > self.limits.messages:
            yield f"{messages.lines} lines of messages"
        if messages.size > MOST_OF_MESSAGES:
            yield f"{messages.size / MIB:.1f} MiB of messages"
        if result.status and not messages.head and not result.output.head:
            yield "a failure without a message"

    def problems_of_files(self):
        failed = self.result.status != 0
        found = set(os.listdir(self.folder)) - {self.name, os.path.basename(self.copy)}
        has_out = os.path.basename(self.out) in found and self.command.out
        if has_out:
            found.discard(os.path.basename(self.out))
        if found:
            yield f"left behind: {', '.join(sorted(found))}"
        if self.command.out and not failed and not has_out:
            yield "no output file"
        if has_out and failed and not self.command.keeps:
            yield "an output file although it failed"
        elif has_out:
            wrong = apart(BROKEN[self.command.out], self.out)
            if wrong:
                yield f"an output file that is not whole: {wrong}"
        if self.command.edits and failed and not apart(filecmp.cmp, self.path, self.copy, False):
            yield "the file changed although the edit failed"
