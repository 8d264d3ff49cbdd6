"""Dictionary files that attack their reader: rows, names, inheritance, types, and tables of keys and symbols."""

from . import collisions, dictionary_input, joined

MILLION = 1_000_000
FIRST = b"dictionary 1\n"
OBJECT = "InterchangeObject"


def set_key(number):
    return f"060e2b34.027f0101.0f0e0d0c.{number:08x}"


def property_key(number):
    return f"060e2b34.01010101.0f0e0d0c.{number:08x}"


def heading(number, symbol, parent=OBJECT):
    return f"{set_key(number)}  {symbol}  {parent}\n"


def row(number, symbol, kind="UInt32", tag="-", status="optional"):
    return f"  {tag}  {property_key(number)}  {symbol}  {kind}  {status}\n"


def file(*pieces):
    """@param pieces  text, or iterables of text."""
    yield FIRST
    for piece in pieces:
        yield from [piece.encode()] if isinstance(piece, str) else joined(part.encode() for part in piece)


@dictionary_input("empty", "a file without a byte")
def empty():
    return b""


@dictionary_input("version-giant", "a version of a million digits")
def version_giant():
    return b"dictionary " + b"9" * MILLION + b"\n"


@dictionary_input("bytes-random", "a megabyte of random bytes behind the first row")
def bytes_random(chance):
    return FIRST + chance.randbytes(1 << 20)


@dictionary_input("utf8-invalid", "names of labels with bytes that are not UTF-8, and NULs in symbols")
def utf8_invalid():
    return FIRST + b"label 060e2b34.04010101.0f0e0d0c.01000000  Odd  \xff\xc0\xaf\0name\n" + heading(1, "S\0et").encode()


@dictionary_input("beyond-64-mib", "65 MiB of comments, more than a file may have")
def beyond_64_mib():
    return [FIRST, *[b"#" + b"x" * ((1 << 20) - 2) + b"\n"] * 65]


@dictionary_input("line-60-mib", "one row of 60 MiB, a word of 30 MiB and as many blanks")
def line_60_mib():
    return [FIRST, b"x" * (30 << 20), b" " * (30 << 20), b"x\n"]


@dictionary_input("rows-empty", "30 million empty rows")
def rows_empty():
    return [FIRST, b"\n" * (30 * MILLION)]


@dictionary_input("rows-wrong", "a million rows of which each is wrong")
def rows_wrong():
    return file("  -  row of no set\n" * MILLION)


@dictionary_input("parent-self", "sets that inherit from themselves and from each other")
def parent_self():
    return file(heading(1, "Self", "Self"), heading(2, "Left", "Right"), heading(3, "Right", "Left"))


@dictionary_input("parents-cycle", "200,000 sets that inherit from each other in a circle")
def parents_cycle():
    return file(heading(i, f"Set{i}", f"Set{(i + 1) % 200_000}") for i in range(200_000))


@dictionary_input("parents-deep", "200,000 sets that inherit from each other in a row")
def parents_deep():
    return file(heading(i, f"Set{i}", f"Set{i - 1}" if i else OBJECT) for i in range(200_000))


@dictionary_input("parents-deep-backwards", "200,000 sets in a row, the last of which is defined first")
def parents_deep_backwards():
    return file(heading(i, f"Set{i}", f"Set{i - 1}" if i else OBJECT) for i in range(199_999, -1, -1))


@dictionary_input("parents-missing", "300,000 sets whose parents nothing defines")
def parents_missing():
    return file(heading(i, f"Set{i}", f"Missing{i}") for i in range(300_000))


@dictionary_input("sets-400000", "400,000 sets, which inherit four properties each")
def sets_400000():
    return file(heading(i, f"Set{i}") for i in range(400_000))


@dictionary_input("properties-600000", "a set of 600,000 properties")
def properties_600000():
    return file(heading(1, "Set"), (row(i, f"Property{i}") for i in range(600_000)))


@dictionary_input("properties-inherited", "100 generations of 200 properties each, and 5,000 sets that inherit all of them")
def properties_inherited():
    generations = (heading(i, f"Set{i}", f"Set{i - 1}" if i else OBJECT) +
                   "".join(row(200 * i + j, f"Property{200 * i + j}") for j in range(200)) for i in range(99))
    return file(generations, (heading(1000 + i, f"Heir{i}", "Set98") for i in range(5000)))


@dictionary_input("keys-one-hash", "100,000 sets whose keys fold to one number")
def keys_one_hash():
    tails = collisions.tails_of_one_hash(100_000)
    return file(f"060e2b34.027f0101.{tail.hex()}  Set{i}  {OBJECT}\n" for i, tail in enumerate(tails))


@dictionary_input("labels-one-hash", "200,000 labels whose keys fold to one number")
def labels_one_hash():
    tails = collisions.tails_of_one_hash(200_000)
    return file(f"label 060e2b34.04010101.{tail.hex()}  Label{i}  name\n" for i, tail in enumerate(tails))


@dictionary_input("properties-one-hash", "100,000 properties whose keys fold to one number")
def properties_one_hash():
    return file(heading(1, "Set"), (f"  -  060e2b34.01010101.{tail.hex()}  Property{i}  UInt32  optional\n"
                                    for i, tail in enumerate(collisions.tails_of_one_hash(100_000))))


@dictionary_input("symbols-one-hash", "40,000 sets whose symbols have one hash by std::hash")
def symbols_one_hash():
    return file(heading(i, symbol) for i, symbol in enumerate(collisions.texts_of_one_hash(40_000)))


@dictionary_input("symbol-16-mib", "a symbol of 16 MiB, and a parent of as many letters")
def symbol_16_mib():
    return file(heading(1, "x" * (16 << 20), "y" * (16 << 20)))


@dictionary_input("symbols-same", "200,000 sets of one symbol")
def symbols_same():
    return file(heading(i, "Set") for i in range(200_000))


@dictionary_input("keys-same", "300,000 sets of one key, and properties of one key")
def keys_same():
    return file(heading(1, "Set") * 150_000, heading(2, "Other"), row(1, "Property") * 150_000)


@dictionary_input("tags-same", "30,000 properties that claim one static tag, and each of the others")
def tags_same():
    return file(heading(1, "Set"), (row(i, f"Property{i}", tag=f"{i % 2 * (i + 1):04x}") for i in range(30_000)))


@dictionary_input("tags-odd", "tags of 0000, 8000 and beyond, of InstanceUIDs, and of odd digits")
def tags_odd():
    odd = ("0000", "8000", "ffff", "3c0a", "10000", "0x10", "-1", "zz", "3b02")
    return file(*(heading(i, f"Set{i}") + row(i, f"Property{i}", tag=tag) for i, tag in enumerate(odd)))


@dictionary_input("keys-odd", "keys of odd digits, of partition packs, fill, primer packs and essence, and of zeros")
def keys_odd():
    odd = ("0" * 32, "060e2b3402050101.0d01020101020400", "060e2b34.01010102.03010210.01000000",
           "060e2b34.02050101.0d010201.01050100", "060e2b34.01020101.0d010301.15010500", "x" * 32, "060e2b34", "." * 100,
           "urn:smpte:ul:", "80530800362108.04b3b398a51c9011d4")
    return file(*(f"{key}  Set{i}  {OBJECT}\n" for i, key in enumerate(odd)))


@dictionary_input("types-nested", "a type of 500,000 arrays within each other")
def types_nested():
    return file(heading(1, "Set"), row(1, "Property", "ArrayOf(" * 500_000 + "UInt8" + ")" * 500_000))


@dictionary_input("types-odd", "types that are themselves, that end too soon, and references to references")
def types_odd():
    odd = ("Own", "ArrayOf(", "ArrayOf()", "BatchOf(BatchOf(UInt8))", "StrongReference(StrongReference)", "StrongReference()",
           "ArrayOf(StrongReference(Missing))", "WeakReference(Set0)))", "ArrayOf(UTF16String)", "(", ")", "UInt8 UInt8")
    return file("enum Own Own\n  0  Zero\n", *(heading(i, f"Set{i}") + row(i, f"P{i}", kind) for i, kind in enumerate(odd)))


@dictionary_input("references-missing", "300,000 properties that refer to sets that nothing defines")
def references_missing():
    return file(heading(1, "Set"), (row(i, f"Property{i}", f"StrongReference(Missing{i})") for i in range(300_000)))


@dictionary_input("enumeration-million", "an enumeration of a million values")
def enumeration_million():
    return file("enum Big UInt32\n", (f"  {i}  Value{i}\n" for i in range(MILLION)), heading(1, "Set"), row(1, "P", "Big"))


@dictionary_input("enumerations-same", "200,000 values of one number and one name, and 200,000 enumerations of none")
def enumerations_same():
    return file("enum One UInt8\n" + "  0  Zero\n" * 200_000, (f"enum Enum{i} UInt8\n" for i in range(200_000)))


@dictionary_input("labels-million", "700,000 labels")
def labels_million():
    return file(f"label 060e2b34.04010101.0f0e0d0c.{i:08x}  Label{i}  name\n" for i in range(700_000))


@dictionary_input("namespaces-1001", "1,001 namespaces, and 100,000 more of one prefix")
def namespaces_1001():
    return file((f"namespace sets p{i} urn:{i}\n" for i in range(1001)), "namespace sets p0 urn:0\n" * 100_000)


@dictionary_input("namespace-16-mib", "a namespace of 16 MiB, in which all sets of a file are")
def namespace_16_mib():
    return file("namespace sets own urn:" + "x" * (16 << 20) + "\n", (heading(i, f"Set{i}") for i in range(1000)))


@dictionary_input("extend-million", "a million headings that extend one set, without and with the same property")
def extend_million():
    return file("extend Preface\n" * MILLION, ("extend Preface\n" + row(1, "Property")) * 300_000)


@dictionary_input("names-million", "300,000 common names of one set, and as many of one property")
def names_million():
    key = "060e2b34.027f0101.0d010101.01011400"
    return file((f"names {key}  Name{i}\n" for i in range(300_000)),
                (f"names {key}  -\n  060e2b34.01010102.04040101.02060000  Other{i}\n" for i in range(300_000)))


@dictionary_input("names-in-xml-same", "100,000 properties of one name in XML, in sets that inherit from one another")
def names_in_xml_same():
    pieces = (heading(i, f"Set{i}", f"Set{i // 2}" if i else OBJECT) +
              f"  -  {property_key(i)}  Property{i}  UInt32  optional  name=Same\n" for i in range(100_000))
    return file(pieces)


@dictionary_input("built-in-again", "the built-in sets defined again, with other parents and properties")
def built_in_again():
    return file("060e2b34.027f0101.0d010101.01012f00  Preface  Preface\n", row(1, "ContentStorageObject"),
                "060e2b34.027f0101.0d010101.01010100  InterchangeObject  Preface\n", row(2, "InstanceID", "UInt8", "3c0a"))
