"""Inputs that attack a reader of MXF files, documents and dictionaries: each with a name and a line on what it attacks.

A maker takes no argument, or a source of chance that its seed determines. It returns bytes, pieces of bytes, or for a
folder its files by name; a `Hole` among the pieces is so many zeros, which take no room on disk.
"""

import importlib
import os
import random

MODULES = ("file_structure", "file_partitions", "file_sets", "file_values", "file_references", "file_definitions",
           "xml_documents", "xml_texts", "json_documents", "dictionary_files", "register_files")
PIECES = 4096  # joined before they are written


class Hole(int):
    """Bytes of zero."""


class Input:
    def __init__(self, kind, name, attacks, suffix, more, less, make):
        self.kind, self.name, self.attacks, self.suffix, self.make = kind, name, attacks, suffix, make
        self.more = more  # commands beside those that fit the kind
        self.less = less  # commands of the kind that do not fit

    @property
    def title(self):
        """The name of its file."""
        return self.name + self.suffix

    def made(self, seed):
        if self.make.__code__.co_argcount:
            return self.make(random.Random(f"{seed} {self.name}"))
        return self.make()

    def write(self, folder, seed):
        """Returns the path."""
        path = os.path.join(folder, self.title)
        content = self.made(seed)
        if isinstance(content, dict):
            os.makedirs(path)
            for name, pieces in content.items():
                write_pieces(os.path.join(path, name), pieces)
        else:
            write_pieces(path, content)
        return path


INPUTS = []


def hostile(kind, name, attacks, suffix, more=(), less=()):
    """Registers the function below it as the maker of an input."""
    def register(make):
        INPUTS.append(Input(kind, name, attacks, suffix, tuple(more), tuple(less), make))
        return make
    return register


def mxf_input(name, attacks, more=(), less=()):
    return hostile("file", name, attacks, ".mxf", more, less)


def xml_input(name, attacks, more=(), less=()):
    return hostile("document", name, attacks, ".xml", more, less)


def json_input(name, attacks, more=(), less=()):
    return hostile("document", name, attacks, ".json", more, (*less, "exact"))


def dictionary_input(name, attacks, suffix=".dictionary", more=(), less=()):
    return hostile("dictionary", name, attacks, suffix, more, less)


def write_pieces(path, pieces):
    if isinstance(pieces, (bytes, bytearray)):
        pieces = [pieces]
    with open(path, "wb") as file:
        for piece in pieces:
            if isinstance(piece, Hole):
                file.seek(piece, os.SEEK_CUR)
            else:
                file.write(piece)
        file.truncate()


def joined(pieces):
    """The same bytes in fewer pieces."""
    some = []
    for piece in pieces:
        some.append(piece)
        if len(some) == PIECES:
            yield b"".join(some)
            some.clear()
    yield b"".join(some)


def filled(pattern, markers, rows):
    """The pattern once for each row, whose values take the places of the markers."""
    parts, rest = [], pattern
    for marker in markers:
        before, found, rest = rest.partition(marker)
        assert found, f"{marker!r} is not in the pattern"
        parts.append(before)
    def one(row):
        pieces = [piece for pair in zip(parts, row) for piece in pair]
        return b"".join((*pieces, rest))
    return joined(one(row) for row in rows)


def load():
    """All inputs, in the order of the modules."""
    if not INPUTS:
        for module in MODULES:
            importlib.import_module(f"{__name__}.{module}")
    return INPUTS
