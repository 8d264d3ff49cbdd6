"""MXF files that attack the reader of sets: primer packs, numbers of sets and of items, identifiers, and tables of them."""

from . import collisions, filled, mxf_input
from .mxf import (DARK_KEY, LARGEST, OP1A, PRIMER_KEY, Header, ber, definitions, i64, items, klv, primer_pack, references, u16,
                  u32, uid, utf16)

MILLION = 1_000_000
DARK_LABEL = bytes.fromhex("060e2b34010101010f0e0d0c00000000")
FREE = Header.FIRST_FREE


def dark_label(number):
    return DARK_LABEL[:12] + u32(number)


def many(header, count, name, first=FREE, _items=b"", **properties):
    """So many sets that differ in their InstanceUIDs."""
    octets = header.set(name, 0, _items=_items, **properties)
    return list(filled(octets, [uid(0)], ((uid(i),) for i in range(first, first + count))))


def with_primer(change):
    """Header metadata whose primer pack is made of the sound one's rows."""
    header = Header()
    header.metadata()
    header.primer = change(sorted(header.rows.items()))
    return header


@mxf_input("primer-all-tags", "a primer pack of 65,536 rows, a label for every tag")
def primer_all_tags():
    every = {tag: dark_label(tag) for tag in range(65536)}
    return with_primer(lambda rows: primer_pack(sorted({**every, **dict(rows)}.items()))).file()


@mxf_input("primer-one-tag", "65,536 labels for one tag")
def primer_one_tag():
    return with_primer(lambda rows: primer_pack([*rows, *((0x8000, dark_label(i)) for i in range(65536))])).file()


@mxf_input("primer-one-label", "65,536 tags for one label")
def primer_one_label():
    return with_primer(lambda rows: primer_pack([*rows, *((i, dark_label(7)) for i in range(65536))])).file()


@mxf_input("primer-million", "a million rows")
def primer_million():
    return with_primer(lambda rows: primer_pack([*rows, *((i & 0xFFFF, dark_label(i)) for i in range(MILLION))])).file()


@mxf_input("primer-rows-2-32", "2^32 - 1 rows in a primer pack of a few octets")
def primer_rows_2_32():
    return with_primer(lambda rows: klv(PRIMER_KEY, u32(0xFFFFFFFF) + u32(18) + bytes(36))).file()


@mxf_input("primer-rows-of-0", "2^32 - 1 rows of no octets")
def primer_rows_of_0():
    return with_primer(lambda rows: klv(PRIMER_KEY, u32(0xFFFFFFFF) + u32(0))).file()


@mxf_input("primers-100000", "100,000 primer packs among the sets, each with rows of its own")
def primers_100000():
    header = Header()
    header.behind = [b"".join(primer_pack([(0x8000 + (i & 0x7FFF), dark_label(i))]) for i in range(100_000))]
    return header.file()


@mxf_input("primer-swaps-tags", "a primer pack that gives static tags the labels of other properties")
def primer_swaps_tags():
    return with_primer(lambda rows: primer_pack([(tag, label) for (tag, _), (_, label) in zip(rows, rows[::-1])])).file()


@mxf_input("primer-missing", "sets without a primer pack")
def primer_missing():
    return with_primer(lambda rows: b"").file()


@mxf_input("sets-million", "a million small sets, 40 MB")
def sets_million():
    header = Header()
    header.behind = many(header, MILLION, "Filler")
    return header.file()


@mxf_input("sets-one-uid", "200,000 sets of one InstanceUID, that references lead to")
def sets_one_uid():
    header = Header()
    header.change(6, ComponentObjects=references(7, 20, 20))
    header.behind = [header.set("Filler", 20, ComponentLength=i64(0)) * 200_000]
    return header.file()


@mxf_input("sets-one-uid-each", "all sets of a sound header under one InstanceUID, which all references lead to")
def sets_one_uid_each():
    octets = b"".join(Header().file())
    for number in range(1, 14):
        octets = octets.replace(uid(number), uid(1))
    return octets


@mxf_input("sets-without-uid", "300,000 sets without InstanceUID, with equal values: pairs for a comparison")
def sets_without_uid():
    header = Header()
    header.behind = [header.set("Filler", ComponentLength=i64(0)) * 300_000]
    return header.file()


@mxf_input("sets-of-all-kinds", "a set of every definition in the dictionary, with all its properties empty, 100 times")
def sets_of_all_kinds():
    header = Header()
    for name, definition in definitions().items():
        empty = {symbol: b"" for symbol in definition.properties if symbol != "InstanceID"}
        header.behind.append(header.set(name, **empty) * 100)
    return header.file()


@mxf_input("prefaces", "100,000 sets of the kind that there is one of")
def prefaces():
    header = Header()
    header.behind = many(header, 100_000, "Preface", ContentStorageObject=uid(3), OperationalPattern=OP1A)
    return header.file()


@mxf_input("identifications", "100,000 Identifications of one generation, in a list of 65 KB and outside of it")
def identifications():
    header = Header()
    header.change(1, IdentificationList=references(2, *range(FREE, FREE + 4000)))
    header.behind = many(header, 100_000, "Identification", GenerationID=uid(91), ApplicationName=utf16("Name"))
    return header.file()


@mxf_input("items-million", "one set of a million unknown items without octets")
def items_million():
    header = Header()
    header.behind = [header.set("Filler", 20, _items=items((0x7FFE, b"")) * MILLION)]
    return header.file()


@mxf_input("items-all-tags", "2,000 sets of 500 unknown items, under all tags that there are")
def items_all_tags():
    header = Header()
    for number in range(2000):
        some = [(0x8100 + (number * 500 + i) % 0x7E00, u16(i)) for i in range(500)]
        header.behind.append(header.set("Filler", FREE + number, _items=items(*some)))
    return header.file()


@mxf_input("item-repeated", "one set with one property a million times, of different values")
def item_repeated():
    header = Header()
    header.behind = [header.set("Filler", 20, _items=b"".join(items((0x0202, i64(i))) for i in range(MILLION)))]
    return header.file()


@mxf_input("uid-repeated", "1,000 sets of 1,000 InstanceUIDs each")
def uid_repeated():
    header = Header()
    for number in range(1000):
        some = ((0x3C0A, uid(FREE + number * 1000 + i)) for i in range(1000))
        header.behind.append(header.set("Filler", _items=items(*some)))
    return header.file()


@mxf_input("item-past-end", "an item of 65,535 octets in a set of 30")
def item_past_end():
    header = Header()
    header.behind = [header.set("Filler", 20, _items=u16(0x0202) + u16(LARGEST) + bytes(8))]
    return header.file()


@mxf_input("item-cut", "a set that ends within the tag of an item")
def item_cut():
    header = Header()
    header.behind = [header.set("Filler", 20, _items=b"\x02")]
    return header.file()


@mxf_input("items-of-ber-2-63", "items with BER lengths of 2^63 and 2^64 - 1")
def items_of_ber_2_63():
    header = Header()
    key = definitions()["Filler"].key
    for length in (1 << 63, (1 << 64) - 1):
        header.behind.append(klv(key[:5] + b"\x13" + key[6:], u16(0x0202) + ber(length, 9) + bytes(8)))
    return header.file()


@mxf_input("values-empty", "a sound header, all of whose values have no octets but the InstanceUIDs")
def values_empty():
    header = Header()
    for number, (name, properties) in list(header.sets.items()):
        header.put(number, name, **dict.fromkeys(properties, b""))
    return header.file()


@mxf_input("unknown-million", "100,000 sets of 10 unknown properties, that are DarkElements in a document")
def unknown_million():
    header = Header()
    some = [(0x9000 + i, b"\x5a") for i in range(10)]
    for tag, _ in some:
        header.rows[tag] = dark_label(tag)
    header.behind = many(header, 100_000, "Filler", _items=items(*some))
    return header.file()


@mxf_input("misplaced-million", "100,000 sets of 10 properties that belong to others")
def misplaced_million():
    header = Header()
    some = [(header.tag("Timecode", symbol), value) for symbol, value in
            (("StartTimecode", i64(0)), ("FramesPerSecond", u16(25)), ("DropFrame", b"\0"))]
    some += [(header.tag("Identification", symbol), utf16("x")) for symbol in
             ("ApplicationName", "ApplicationSupplierName", "ApplicationVersionString", "ApplicationPlatform")]
    some += [(header.tag("Track", "TrackID"), u32(1)), (header.tag("Track", "TrackName"), utf16("x")),
             (header.tag("Sequence", "ComponentObjects"), references(7))]
    header.behind = many(header, 100_000, "Filler", _items=items(*some))
    return header.file()


@mxf_input("dark-one-hash", "60,000 dark sets whose octets have one hash by std::hash, for a comparison")
def dark_one_hash(chance):
    header = Header()
    header.behind = [klv(DARK_KEY, octets) for octets in collisions.octets_of_one_hash(60_000, chance)]
    return header.file()


@mxf_input("dark-keys-one-hash", "200,000 dark sets whose keys fold to one number")
def dark_keys_one_hash():
    header = Header()
    header.behind = [klv(DARK_KEY[:8] + tail, items((0x3C0A, uid(FREE + i))))
                     for i, tail in enumerate(collisions.tails_of_one_hash(200_000))]
    return header.file()


@mxf_input("unknown-labels-one-hash", "30,000 unknown properties whose labels fold to one number")
def unknown_labels_one_hash():
    header = Header()
    tails = list(collisions.tails_of_one_hash(30_000))
    for number, tail in enumerate(tails):
        header.rows[0x8100 + number] = DARK_LABEL[:8] + tail
    for start in range(0, len(tails), 1000):
        some = ((0x8100 + start + i, b"x") for i in range(1000))
        header.behind.append(header.set("Filler", FREE + start, _items=items(*some)))
    return header.file()
