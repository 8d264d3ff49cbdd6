"""MXF files that attack the reader of partitions: their links, the random index pack, index tables, and what an edit
moves or writes again."""

from . import filled, joined, mxf_input
from .mxf import (BODY, CLOSED_COMPLETE, FOOTER, GENERIC_STREAM, HEADER, INDEX_KEY, PACK_SIZE, Header, fill, items, klv, pack,
                  pack_key, partitions, random_index, rate, u32, u64, uid, utf16)

EXTRA = ["info-partitions", "export-footer", "set-copy"]


def header_and(*packs, **numbers):
    """A header partition, and what is made of the offset behind it."""
    metadata = b"".join(Header().metadata())
    end = PACK_SIZE + len(metadata)
    behind = [make(end) for make in packs]
    return [pack(HEADER, header_bytes=len(metadata), **numbers), metadata, *behind]


def header_size():
    return PACK_SIZE + sum(map(len, Header().metadata()))


@mxf_input("partitions-million", "a million body partitions that nothing lists: a walk through the file", more=EXTRA)
def partitions_million():
    return header_and(lambda end: pack(BODY, this=end) * 1_000_000)


@mxf_input("partitions-linked", "300,000 body partitions, to be followed from the footer by their links", more=EXTRA)
def partitions_linked():
    return partitions(Header(), [b""] * 300_000, listed=False)


@mxf_input("partitions-listed", "300,000 body partitions in the random index pack", more=EXTRA)
def partitions_listed():
    return partitions(Header(), [b""] * 300_000)


@mxf_input("partitions-damaged", "300,000 body partition packs of no octets", more=EXTRA)
def partitions_damaged():
    return header_and(lambda end: klv(pack_key(BODY)) * 300_000)


@mxf_input("partitions-of-streams", "100,000 generic stream partitions with a stream each", more=EXTRA)
def partitions_of_streams():
    stream = klv(bytes.fromhex("060e2b34010101010d01050900000000"), b"stream")
    sids = ((u64(0) + u32(sid),) for sid in range(1, 100_001))
    one = pack(BODY, GENERIC_STREAM, body_sid=0x0BADBEEF) + stream
    return [*header_and(), *filled(one, [u64(0) + u32(0x0BADBEEF)], sids)]


@mxf_input("previous-self", "a footer whose previous partition is itself", more=EXTRA)
def previous_self():
    size = header_size()
    return header_and(lambda end: pack(FOOTER, this=end, previous=end, footer=end), footer=size)


@mxf_input("previous-loop", "two body partitions that are each other's previous partition", more=EXTRA)
def previous_loop():
    size = header_size()
    last = size + 2 * PACK_SIZE
    return header_and(lambda end: pack(BODY, this=end, previous=end + PACK_SIZE, footer=last),
                      lambda end: pack(BODY, this=end + PACK_SIZE, previous=end, footer=last),
                      lambda end: pack(FOOTER, this=last, previous=end + PACK_SIZE, footer=last), footer=last)


@mxf_input("footer-is-header", "a FooterPartition that leads to the header partition", more=EXTRA)
def footer_is_header():
    return [*Header().file(run_in=bytes(100), footer=0), pack(FOOTER, this=0, previous=0, footer=0)]


@mxf_input("footer-in-metadata", "a FooterPartition that leads to a partition pack in the value of a set", more=EXTRA)
def footer_in_metadata():
    header = Header()
    inside = pack(FOOTER, this=0, header_bytes=1 << 40)
    header.behind = [header.set("KLVData", 20, KLVDataValue=inside)]
    offset = b"".join(header.file()).index(inside)
    return header.file(footer=offset)


@mxf_input("random-index-of-4-gib", "a random index pack that says it is 4 GiB long", more=EXTRA)
def random_index_of_4_gib():
    return header_and(lambda end: random_index([(0, 0)])[:-4] + u32(0xFFFFFFFF))


@mxf_input("random-index-of-0", "a random index pack that says it has no bytes", more=EXTRA)
def random_index_of_0():
    return header_and(lambda end: random_index([(0, 0)])[:-4] + u32(0))


@mxf_input("random-index-million", "a million entries that lead to no partition", more=EXTRA)
def random_index_million():
    body = klv(bytes.fromhex("060e2b34010201010d01030115010500"), bytes(1 << 21))
    return header_and(lambda end: body, lambda end: random_index((0, offset) for offset in range(1_000_000)))


@mxf_input("random-index-of-one", "a million entries that lead to one partition", more=EXTRA)
def random_index_of_one():
    return header_and(lambda end: random_index([(0, 0)] * 1_000_000))


@mxf_input("random-index-twice", "two random index packs, of which the first ends within the second", more=EXTRA)
def random_index_twice():
    first = random_index([(0, 0)])
    return header_and(lambda end: first + random_index([(0, 0), (1, end)]))


def segment(*pairs):
    return klv(INDEX_KEY, items(*pairs))


def index_segment(edit_units=1, start=0, duration=1, entries=b""):
    return segment((0x3C0A, uid(500)), (0x3F0B, rate(25, 1)), (0x3F0C, start.to_bytes(8, "big", signed=True)),
                   (0x3F0D, duration.to_bytes(8, "big", signed=True)), (0x3F05, u32(edit_units)), (0x3F06, u32(2)),
                   (0x3F07, u32(1)), *([(0x3F0A, entries)] if entries else []))


@mxf_input("index-segments", "400,000 index table segments in the footer partition", more=EXTRA)
def index_segments():
    return partitions(Header(), [b""], index=index_segment() * 400_000)


@mxf_input("index-entries-2-32", "an index table with 2^32 - 1 entries, of 11 octets and of none", more=EXTRA)
def index_entries_2_32():
    return partitions(Header(), [b""], index=index_segment(0, entries=u32(0xFFFFFFFF) + u32(11)) +
                      index_segment(0, entries=u32(0xFFFFFFFF) + u32(0)))


@mxf_input("index-extremes", "index tables of negative starts and durations, and of all bytes to an edit unit", more=EXTRA)
def index_extremes():
    low, high = -(1 << 63), (1 << 63) - 1
    return partitions(Header(), [b""], index=b"".join(index_segment(unit, start, duration) for unit in (0, 0xFFFFFFFF)
                                                      for start in (low, -1, high) for duration in (low, -1, high)))


@mxf_input("index-bytes-2-63", "a footer partition that counts 2^63 bytes of index tables", more=EXTRA)
def index_bytes_2_63():
    size = header_size()
    return header_and(lambda end: pack(FOOTER, this=end, footer=end, index_bytes=1 << 63, index_sid=2) + index_segment(),
                      footer=size)


@mxf_input("index-items-cut", "index table segments whose items claim more than the segment has", more=EXTRA)
def index_items_cut():
    return partitions(Header(), [b""], index=klv(INDEX_KEY, b"\x3f\x0b\xff\xff" + bytes(4)) * 1000)


@mxf_input("kag-2-32", "a KAG of 2^32 - 1 bytes, which a grown partition would be filled up to", more=EXTRA)
def kag_2_32():
    return partitions(Header(), [b""] * 3, repeats=True, kag=0xFFFFFFFF)


@mxf_input("kag-of-1-mib", "1,000 partitions on a grid of 1 MiB without room: an edit makes 1 GiB of 2 MB", more=EXTRA)
def kag_of_1_mib():
    return partitions(Header(), [b""] * 1000, repeats=True, kag=1 << 20)


@mxf_input("repetitions", "20,000 partitions that repeat the header metadata", more=EXTRA)
def repetitions():
    return partitions(Header(), [b""] * 20_000, repeats=True)


@mxf_input("repetitions-differ", "5,000 partitions with metadata of their own in the place of repetitions", more=EXTRA)
def repetitions_differ():
    header = Header()
    offset = header_size()
    pieces = header.file()
    for number in range(5000):
        header.change(4, PackageName=utf16(f"Title {number}"))
        metadata = b"".join(header.metadata())
        pieces += [pack(BODY, this=offset, header_bytes=len(metadata)), metadata]
        offset += PACK_SIZE + len(metadata)
    return joined(pieces)


@mxf_input("this-partition-lies", "packs that all say they stand at the offset of the footer", more=EXTRA)
def this_partition_lies():
    size = header_size()
    return header_and(lambda end: pack(BODY, this=end + PACK_SIZE * 100) * 100,
                      lambda end: pack(FOOTER, this=end + PACK_SIZE * 100, footer=end + PACK_SIZE * 100),
                      footer=size + PACK_SIZE * 100)


@mxf_input("open-headers", "an open header partition, and 10,000 footer partitions that are all the last one", more=EXTRA)
def open_headers():
    metadata = b"".join(Header().metadata())
    footer = pack(FOOTER, CLOSED_COMPLETE, this=1, header_bytes=len(metadata)) + metadata + fill(64)
    return [pack(HEADER, 1, header_bytes=len(metadata)), metadata, footer * 10_000]
