"""Texts and keys that meet in one place of a table, for hash functions that have no seed.

* Names of Xerces-C++: h = first character, then h = 38 h + (h >> 24) + c for each of the others; tables that never grow
  have 29, 109 or 257 buckets.
* `std::hash` of GCC's library for texts, on 64 bits: each 8 bytes are multiplied, folded and multiplied again before they
  go into the hash. All of that can be undone, so that a word can be found that leads from any hash to any other.
* Halves of labels that are folded to 32 bits before they are multiplied.
"""

import itertools
import string
import struct

WORD = (1 << 64) - 1
XERCES_FACTOR = 38
XERCES_BUCKETS = 29 * 257
LETTERS = string.ascii_letters + string.digits

SEED = 0xC70F6907
MULTIPLIER = 0xC6A4A7935BD1E995
INVERSE = pow(MULTIPLIER, -1, 1 << 64)

# Words of 16 characters: those in one row lead from one hash to one other in texts of 128 bytes. A search among 85,000
# random words finds a row's next one.
ROWS = (
    ("OTXF3fWyOORWpE6V", "Ww1IojMv5sh2yamc", "kd0rCroj171QrrPF"),
    ("InSJ7yFZ4T0QoTvw", "9f78lushMturJ8E1", "Z0VlDvNRqUEBDngI", "E1mNynj6UjfpgEiE"),
    ("GQ89VJ8KXO29mFGZ", "caoZ12c39D9lDs0l", "32ow5fHlIVCiJSTS", "qflCbcnofgz7amW8"),
    ("4DZkqCLbvh1bfuCZ", "zoRWZgSGXNwxIqMU", "gi2YGqnsOlhW8U8Y", "MwvjVd6DlAfRTTsg"),
    ("oGf2UovJFD6Uc2Gj", "pecutNnMKwCxN0UF", "4IxzZBq1ANCBqORH", "HRVh8pkG152VhnqE"),
    ("PygxzXUuxPVKTVXR", "nJZSWxWf8vcULLC2", "dLZ0UED36TvJ6cSm", "KpNhOHqAHvrmvJrx"),
    ("sm1D4YQRucwV8tGj", "81xkHTC2tgRb4ElO", "jtHomwdjM0ZhnxsU", "V1Yv6bOIYURLCXoE"),
    ("oIq3gbeXNKXmoAYZ", "HgBiD7CJP9sVAWXT", "oOeT0KW03PsYqIol", "uV6iIlrHK1cThksO"),
)
MOST_TEXTS = 3 * 4 ** 7


def xerces_hash(name):
    value = ord(name[0])
    for character in name[1:]:
        value = (value * XERCES_FACTOR + (value >> 24) + ord(character)) & WORD
    return value


def names_in_one_bucket(count):
    """Names of six letters and digits in one bucket of tables of 29 and of 257."""
    endings = {}
    for pair in itertools.product(LETTERS, repeat=2):
        endings.setdefault((ord(pair[0]) * XERCES_FACTOR + ord(pair[1])) % XERCES_BUCKETS, []).append("".join(pair))

    def found():
        for start in itertools.product(string.ascii_letters, LETTERS, LETTERS, LETTERS):
            value = xerces_hash(start) * XERCES_FACTOR
            for ending in endings.get(-(value * XERCES_FACTOR + (value >> 24)) % XERCES_BUCKETS, ()):
                name = "".join(start) + ending
                if xerces_hash(name) % XERCES_BUCKETS == 0:
                    yield name
    return itertools.islice(found(), count)


def names_of_one_hash(count):
    """Names whose hashes are equal, whatever the number of buckets: of 23 characters for 100,000."""
    pieces = ("Az", "BT", "C.")
    length = next(n for n in itertools.count(1) if len(pieces) ** n >= count)
    return itertools.islice(("x" + "".join(parts) for parts in itertools.product(pieces, repeat=length)), count)


def folded(value):
    return value ^ value >> 47


def std_hash(octets):
    """Of whole words."""
    value = SEED ^ (len(octets) * MULTIPLIER & WORD)
    for (word,) in struct.iter_unpack("<Q", octets):
        value = (value ^ (folded(word * MULTIPLIER & WORD) * MULTIPLIER & WORD)) * MULTIPLIER & WORD
    return folded(folded(value) * MULTIPLIER & WORD)


def has_one_hash(rows):
    """Whether each word can stand in the place of the first of its row."""
    firsts = [row[0] for row in rows]
    texts = ["".join([*firsts[:place], word, *firsts[place + 1:]]) for place, row in enumerate(rows) for word in row]
    return len({std_hash(text.encode()) for text in texts}) == 1


def texts_of_one_hash(count):
    """Names of 128 letters and digits that `std::hash` does not tell apart."""
    assert count <= MOST_TEXTS and has_one_hash(ROWS)
    return itertools.islice(("".join(parts) for parts in itertools.product(*ROWS)), count)


def partner(word):
    """Another word: where two words of a text are replaced by it, the text's hash stays what it is."""
    mixed = folded(word * MULTIPLIER & WORD) * MULTIPLIER & WORD
    return folded((mixed ^ 1 << 63) * INVERSE & WORD) * INVERSE & WORD


def octets_of_one_hash(count, chance):
    """Octets that `std::hash` does not tell apart, nor texts that begin with the same words and go on with these."""
    word = chance.getrandbits(64)
    doubled = [struct.pack("<QQ", choice, choice) for choice in (word, partner(word))]
    bits = (count - 1).bit_length()
    for number in range(count):
        yield b"".join(doubled[number >> bit & 1] for bit in range(bits))


def tails_of_one_hash(count, start=0x0F0E0D0C):
    """Second halves of labels that fold to one number."""
    for number in range(count):
        yield struct.pack(">II", start + number, (start + number) ^ 0x01000000)
