#!/usr/bin/env python3
"""Counts the metadata sets of one partition of an MXF file: a witness that shares no code with the library.

Prints one number: the KLVs of the partition's header metadata (SMPTE ST 377-1) apart from the primer pack and fill
items, so local sets as well as KLVs of any other kind. With --list, one line per such KLV comes before it:
key, offset of the value in the file, length of the value and SHA-256 of the value, separated by tabs.
"""

import argparse
import hashlib
import os
import sys

LARGEST_RUN_IN = 65535
PARTITION_PACK = bytes.fromhex("060e2b34020501010d0102")


class Damaged(Exception):
    pass


def same(key, pattern):
    """Compares a key with hexadecimal octets; "--" stands for any octet, missing octets at the end too."""
    octets = pattern.replace(".", "")
    pairs = [octets[i : i + 2] for i in range(0, len(octets), 2)]
    return len(key) == 16 and all(pair in ("--", f"{octet:02x}") for octet, pair in zip(key, pairs))


def is_fill(key):
    return same(key, "060e2b34.010101--.03010210.01000000")


def is_primer(key):
    return same(key, "060e2b34.020501--.0d010201.010501")


def is_partition(key):
    kinds = {2: {1, 2, 3, 4}, 3: {1, 2, 3, 4, 0x11}, 4: {2, 4}}
    return same(key, "060e2b34.020501--.0d010201.01----") and key[14] in kinds.get(key[13], ())


def is_random_index(key):
    return same(key, "060e2b34.020501--.0d010201.011101")


def is_local_set(key):
    return same(key, "060e2b34.02") and key[5] in (0x13, 0x53)


def is_other_part(key):
    """Whether the key is of something that stands in a file, but not among its header metadata."""
    return (
        (same(key, "060e2b34.02------.0d010201") and not is_primer(key))  # partitions, index tables, random index
        or same(key, "060e2b34.--------.0d010301")  # essence and system items of generic containers
        or same(key, "060e2b34.0102")  # essence elements of any organisation
        or same(key, "060e2b34.01------.0d0105")  # generic stream data (ST 410)
    )


class File:
    def __init__(self, path):
        self.file = open(path, "rb")
        self.size = os.fstat(self.file.fileno()).st_size

    def bytes(self, offset, count):
        if offset < 0 or count < 0 or offset + count > self.size:
            raise Damaged(f"{count} bytes at offset {offset} are beyond the end of the file ({self.size} bytes)")
        self.file.seek(offset)
        return self.file.read(count)

    def number(self, offset, count):
        return int.from_bytes(self.bytes(offset, count), "big")

    def klv(self, offset):
        """Key, offset of the value and length of the value."""
        key = self.bytes(offset, 16)
        first = self.number(offset + 16, 1)
        if first < 0x80:
            return key, offset + 17, first
        if not 0x81 <= first <= 0x88:
            raise Damaged(f"no BER length at offset {offset + 16}: {first:#04x}")
        octets = first - 0x80
        return key, offset + 17 + octets, self.number(offset + 17, octets)

    def key_at(self, offset):
        return self.bytes(offset, 16) if 0 <= offset <= self.size - 16 else b""


def run_in(file):
    start = file.bytes(0, min(file.size, LARGEST_RUN_IN + 16)).find(PARTITION_PACK)
    if start < 0 or not same(file.key_at(start), "060e2b34.020501--.0d010201.0102"):
        raise Damaged("there is no header partition pack")
    return start


def walk(file, offset):
    """Offsets of all partition packs from one KLV on; ends where the KLVs do."""
    while offset < file.size:
        try:
            key, value, length = file.klv(offset)
        except Damaged:
            return
        if not any(key):
            return
        if is_partition(key):
            yield offset
        offset = value + length


def random_index(file, start):
    """Offsets of the partitions that the random index pack lists; nothing when the file ends without one."""
    try:
        pack = file.size - file.number(file.size - 4, 4)
        key, value, length = file.klv(pack)
    except Damaged:
        return []
    if not is_random_index(key) or value + length != file.size or length % 12 != 4:
        return []
    return [start + file.number(at, 8) for at in range(value + 4, file.size - 4, 12)]


def all_partitions(file, start):
    listed = random_index(file, start)
    if listed and listed[0] == start and all(is_partition(file.key_at(offset)) for offset in listed):
        return listed
    return list(walk(file, start))


def partition_offset(file, choice):
    start = run_in(file)
    if choice == "header":
        return start
    if choice == "footer":
        _, value, _ = file.klv(start)
        told = file.number(value + 24, 8)
        candidates = ([start + told] if told else []) + random_index(file, start)[-1:] + list(walk(file, start))[-1:]
        for offset in candidates:
            if is_partition(file.key_at(offset)) and file.key_at(offset)[13] == 4:
                return offset
        raise Damaged("the file has no footer partition")
    partitions = all_partitions(file, start)
    if int(choice) >= len(partitions):
        raise Damaged(f"the file has {len(partitions)} partitions; they are counted from 0")
    return partitions[int(choice)]


def after_fill(file, offset):
    while is_fill(file.key_at(offset)):
        _, value, length = file.klv(offset)
        offset = value + length
    return offset


def metadata(file, partition):
    """Key, value offset and length of each KLV of the header metadata that is neither primer nor fill."""
    _, pack, length = file.klv(partition)
    count = file.number(pack + 32, 8)
    offset = after_fill(file, pack + length)
    if not is_primer(file.key_at(offset)):
        raise Damaged(f"the partition at offset {partition} has no header metadata")
    # ST 377-1: the count starts with the key of the primer pack. Writers also leave it 0, or count too much or too
    # little; so a count that ends between two KLVs is believed unless a local set follows, and any other is not.
    end = offset + count if count else None
    believed = False
    while offset < file.size:
        believed = believed or offset == end
        key = file.key_at(offset)
        if not any(key) or is_other_part(key):
            return
        if believed and is_local_set(key):
            believed, end = False, None
        if believed and not is_fill(key):
            return
        key, value, length = file.klv(offset)
        offset = value + length
        if is_fill(key):
            continue
        file.bytes(offset, 0)
        if not is_primer(key):
            yield key, value, length


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("file")
    parser.add_argument("--partition", default="header", help="header (default), footer, or a number from 0")
    parser.add_argument("--list", action="store_true", help="show every KLV that is counted")
    arguments = parser.parse_args()
    try:
        file = File(arguments.file)
        found = list(metadata(file, partition_offset(file, arguments.partition)))
    except (Damaged, OSError, ValueError) as error:
        sys.exit(f"count-sets.py: {arguments.file}: {error}")
    for key, value, length in found if arguments.list else ():
        print(key.hex(), value, length, hashlib.sha256(file.bytes(value, length)).hexdigest(), sep="\t")
    print(len(found))


if __name__ == "__main__":
    main()
