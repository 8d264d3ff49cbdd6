"""MXF files that attack the way to the metadata: run-in, keys, lengths, fill, and where header metadata end."""

from . import Hole, filled, mxf_input
from .mxf import (BODY, DARK_KEY, ESSENCE_KEY, FILL_KEY, HEADER, PICTURE, Header, ber, definitions, fill, items, klv, pack,
                  pack_key, partitions, u32, uid)

MILLION = 1_000_000
FILLER = definitions()["Filler"].key


def sound(**numbers):
    return b"".join(Header().file(**numbers))


@mxf_input("empty", "reading a key where there is no byte")
def empty():
    return b""


@mxf_input("zeros", "the search of a header partition in 64 MiB of zeros")
def zeros():
    return [Hole(64 << 20)]


@mxf_input("run-in-longest", "a run-in of 65,535 bytes that nearly is a partition pack at every place")
def run_in_longest():
    return Header().file(run_in=(pack_key(HEADER)[:10] * 6554)[:65535])


@mxf_input("run-in-too-long", "a run-in of one byte more than there may be")
def run_in_too_long():
    return Header().file(run_in=bytes(65536))


@mxf_input("run-in-body-pack", "a body partition pack where the header partition has to begin")
def run_in_body_pack():
    return [pack(BODY), sound()]


@mxf_input("pack-of-2-63", "a header partition pack that claims 2^63 octets")
def pack_of_2_63():
    return pack_key(HEADER) + ber(1 << 63, 9) + sound()[20:]


@mxf_input("pack-of-1-mib", "a header partition pack with 65,000 labels of essence containers")
def pack_of_1_mib():
    return Header().file(containers=u32(65000) + u32(16) + b"".join(PICTURE[:12] + u32(i) for i in range(65000)))


@mxf_input("pack-labels-2-32", "a count of 2^32 - 1 essence containers in a header partition pack of 88 octets")
def pack_labels_2_32():
    return Header().file(containers=u32(0xFFFFFFFF) + u32(16))


@mxf_input("pack-labels-of-0", "2^32 - 1 essence containers of no octets in a header partition pack")
def pack_labels_of_0():
    return Header().file(containers=u32(0xFFFFFFFF) + u32(0))


@mxf_input("pack-cut", "the end of the file within the header partition pack")
def pack_cut():
    return sound()[:70]


@mxf_input("ber-indefinite", "a set whose length is indefinite")
def ber_indefinite():
    return Header().file(behind=[FILLER + b"\x80" + bytes(100)])


@mxf_input("ber-of-127-octets", "a length field of 127 octets")
def ber_of_127_octets():
    return Header().file(behind=[FILLER + b"\xff" + b"\xff" * 127 + bytes(100)])


@mxf_input("length-2-64", "a set of 2^64 - 1 octets, whose end is in front of it when offsets wrap")
def length_2_64():
    return Header().file(behind=[klv(FILLER, bytes(40), 9, (1 << 64) - 1)])


@mxf_input("length-before", "a set whose length leads back to itself when offsets wrap")
def length_before():
    return Header().file(behind=[klv(FILLER, b"", 9, (1 << 64) - 25)])


@mxf_input("length-past-end", "a set of 2 GiB in a file of a kilobyte: memory before the first read")
def length_past_end():
    return Header().file(behind=[klv(FILLER, bytes(40), 5, 1 << 31)])


@mxf_input("fill-2-63", "fill of 2^63 octets behind the primer pack")
def fill_2_63():
    header = Header()
    header.behind = [klv(FILL_KEY, bytes(10), 9, 1 << 63)]
    return header.file()


@mxf_input("zero-length-sets", "a million sets without an item")
def zero_length_sets():
    header = Header()
    header.behind = [klv(FILLER, b"", 1) * MILLION]
    return header.file()


@mxf_input("header-bytes-2-64", "a count of 2^64 - 1 header bytes", more=["info-partitions"])
def header_bytes_2_64():
    return Header().file(count=(1 << 64) - 1)


@mxf_input("header-bytes-inside", "a count of header bytes that ends within a set")
def header_bytes_inside():
    return Header().file(count=777)


@mxf_input("header-bytes-none", "sets in a partition that says it has none")
def header_bytes_none():
    return Header().file(count=0)


@mxf_input("cut-in-set", "a header cut in the middle of a set")
def cut_in_set():
    octets = sound()
    return octets[:octets.index(definitions()["TimelineTrack"].key) + 40]


@mxf_input("cut-in-key", "a header cut in the middle of a key")
def cut_in_key():
    octets = sound()
    return octets[:octets.index(definitions()["TimelineTrack"].key) + 9]


@mxf_input("cut-in-primer", "a header cut in the middle of the primer pack")
def cut_in_primer():
    return sound()[:200]


@mxf_input("fill-million", "a million fill items in front of the primer pack")
def fill_million():
    metadata = Header().metadata()
    return [pack(HEADER, header_bytes=sum(map(len, metadata))), klv(FILL_KEY, b"", 1) * MILLION, *metadata]


@mxf_input("fill-between", "a million fill items among two thousand sets")
def fill_between():
    header = Header()
    some = header.set("Filler", uid(0), ComponentDataDefinition=PICTURE) + klv(FILL_KEY, b"", 1) * 500
    header.behind = list(filled(some, [uid(0)], ((uid(i),) for i in range(1000, 3000))))
    return header.file()


@mxf_input("fill-alone", "fill where the header metadata ought to be")
def fill_alone():
    return [pack(HEADER, header_bytes=1 << 20), *[fill(1 << 19)] * 2]


@mxf_input("key-of-zeros", "a key of zeros between two sets")
def key_of_zeros():
    header = Header()
    header.behind = [bytes(16) + ber(40) + bytes(40), header.set("Filler", 20)]
    return header.file()


@mxf_input("keys-of-noise", "a thousand KLVs of random keys and octets", more=["export-footer"])
def keys_of_noise(chance):
    header = Header()
    header.behind = [klv(chance.randbytes(16), chance.randbytes(chance.randrange(80))) for _ in range(1000)]
    return header.file()


@mxf_input("essence-million", "a million essence elements of no octets, for a walk through the file", more=["export-footer"])
def essence_million():
    return partitions(Header(), [klv(ESSENCE_KEY) * MILLION], listed=False)


@mxf_input("dark-million", "a million dark sets of 20 octets")
def dark_million():
    header = Header()
    octets = klv(DARK_KEY, items((0x3C0A, uid(0))), 1)
    header.behind = list(filled(octets, [uid(0)], ((uid(i),) for i in range(1000, 1000 + MILLION))))
    return header.file()


@mxf_input("dark-256-mib", "a dark set of 256 MiB, whose octets are digits in a document")
def dark_256_mib():
    return sparse_set(256 << 20)


@mxf_input("dark-2-gib", "a dark set of 2 GiB, all of it a hole in the file")
def dark_2_gib():
    return sparse_set(2 << 30)


def sparse_set(size):
    metadata = Header().metadata()
    key = DARK_KEY + ber(size, 9)
    return [pack(HEADER, header_bytes=sum(map(len, metadata)) + len(key) + size), *metadata, key, Hole(size)]


@mxf_input("dark-local-sets", "dark local sets whose items claim more than there is, and 3C0A of odd sizes")
def dark_local_sets(chance):
    header = Header()
    header.behind = [klv(DARK_KEY, b"\x3c\x0a" + chance.randbytes(chance.randrange(2, 40))) for _ in range(5000)]
    return header.file()


@mxf_input("header-twice", "a second header partition pack within the header metadata")
def header_twice():
    first = Header().file(count=1 << 16)
    return [*first, pack(HEADER, this=0, header_bytes=1 << 16), *Header().metadata()]


@mxf_input("numbers-of-ones", "offsets, counts and identifiers of 2^64 - 1 in a partition pack", more=["info-partitions"])
def numbers_of_ones():
    most = (1 << 64) - 1
    return Header().file(this=most, previous=most, footer=most, index_bytes=most, body_offset=most, index_sid=0xFFFFFFFF,
                         body_sid=0xFFFFFFFF, kag=0xFFFFFFFF)
