"""Writes MXF: KLVs, partition packs, primer packs, local sets, and header metadata that are sound up to an attack."""

import functools
import os
import struct

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
DEFINITIONS = ("SmpteRegisters.dictionary", "SmpteSupplement.dictionary")

HEADER, BODY, FOOTER = 2, 3, 4
OPEN_INCOMPLETE, CLOSED_INCOMPLETE, OPEN_COMPLETE, CLOSED_COMPLETE, GENERIC_STREAM = 1, 2, 3, 4, 0x11
FILL_KEY = bytes.fromhex("060e2b34010101020301021001000000")
PRIMER_KEY = bytes.fromhex("060e2b34020501010d01020101050100")
RANDOM_INDEX_KEY = bytes.fromhex("060e2b34020501010d01020101110100")
INDEX_KEY = bytes.fromhex("060e2b34025301010d01020101100100")
ESSENCE_KEY = bytes.fromhex("060e2b34010201010d01030115010500")
DARK_KEY = bytes.fromhex("060e2b34025301010f0e0d0c00000100")
OP1A = bytes.fromhex("060e2b34040101010d01020101010900")
CONTAINER = bytes.fromhex("060e2b34040101020d01030102046001")
PICTURE = bytes.fromhex("060e2b34040101010103020201000000")
TIMECODE = bytes.fromhex("060e2b34040101010103020101000000")
LARGEST = 0xFFFF  # octets of an item with a length of two


def u8(number):
    return struct.pack(">B", number)


def u16(number):
    return struct.pack(">H", number)


def u32(number):
    return struct.pack(">I", number)


def u64(number):
    return struct.pack(">Q", number)


def i64(number):
    return struct.pack(">q", number)


def rate(numerator, denominator):
    return struct.pack(">ii", numerator, denominator)


def utf16(text):
    return text.encode("utf-16-be")


def uid(number):
    """An InstanceUID."""
    return b"hostile\x01" + u64(number)


def umid(number):
    return bytes.fromhex("060a2b340101010501010d0013000000") + b"hostile\x02" + u64(number)


def batch(items, size=16):
    return u32(len(items)) + u32(size) + b"".join(items)


def references(*numbers):
    return batch([uid(number) for number in numbers])


def ber(length, octets=4):
    """In so many octets, or in more where these are too few."""
    if octets == 1 and length < 0x80:
        return u8(length)
    octets = max(octets, 1 + (length.bit_length() + 7) // 8)
    return u8(0x7F + octets) + length.to_bytes(octets - 1, "big")


def klv(key, value=b"", octets=4, length=None):
    """@param length  what the length field says, where that is not the truth."""
    return key + ber(len(value) if length is None else length, octets) + value


def fill(size):
    """A fill item of so many bytes, 20 or more."""
    return klv(FILL_KEY, bytes(size - 20))


def pack_key(kind, status=CLOSED_COMPLETE):
    return bytes.fromhex("060e2b34020501010d01020101") + bytes([kind, status, 0])


def pack(kind, status=CLOSED_COMPLETE, this=0, previous=0, footer=0, header_bytes=0, index_bytes=0, index_sid=0,
         body_offset=0, body_sid=0, kag=1, containers=batch([CONTAINER])):
    numbers = struct.pack(">HHIQQQQQIQI", 1, 3, kag, this, previous, footer, header_bytes, index_bytes, index_sid,
                          body_offset, body_sid)
    return klv(pack_key(kind, status), numbers + OP1A + containers)


PACK_SIZE = len(pack(HEADER))


def primer_pack(rows, size=18):
    return klv(PRIMER_KEY, batch([u16(tag) + label for tag, label in rows], size))


def random_index(entries):
    """@param entries  BodySID and offset of each."""
    value = b"".join(u32(sid) + u64(offset) for sid, offset in entries)
    return klv(RANDOM_INDEX_KEY, value + u32(20 + len(value) + 4))


def items(*pairs):
    """The value of a local set, from tags and values."""
    return b"".join(u16(tag) + u16(len(value)) + value for tag, value in pairs)


class Definition:
    """A set of the built-in dictionary: its key, and tag and label of its properties by symbol; no tag is 0."""

    def __init__(self, key, parent):
        self.key, self.parent, self.properties = key, parent, {}


@functools.lru_cache(maxsize=None)
def definitions():
    found, last = {}, None
    for name in DEFINITIONS:
        with open(os.path.join(ROOT, "Core/Dictionary", name), encoding="utf-8") as file:
            for line in file:
                words = line.split()
                if not words or words[0].startswith("#"):
                    continue
                if line[0].isspace():
                    if last is not None and len(words) >= 4 and len(words[1]) == 35:
                        tag = 0 if words[0] == "-" else int(words[0], 16)
                        last.properties[words[2]] = tag, bytes.fromhex(words[1].replace(".", ""))
                elif len(words[0]) == 35 and len(words) >= 3:
                    key = bytes.fromhex(words[0].replace(".", ""))
                    last = found.setdefault(words[1], Definition(key[:5] + b"\x53" + key[6:], words[2]))
                else:
                    last = found.get(words[1]) if words[0] == "extend" else None
    return found


def definition_of(name, symbol):
    """Tag and label of a property of a set, inherited ones included."""
    while name != "-":
        definition = definitions()[name]
        if symbol in definition.properties:
            return definition.properties[symbol]
        name = definition.parent
    raise KeyError(symbol)


class Header:
    """Header metadata: those of a sound file with one track, which attacks change before they are rendered."""

    FIRST_DYNAMIC_TAG = 0x8000
    FIRST_FREE = 1000  # number of an InstanceUID

    def __init__(self):
        self.rows = {}  # labels of the primer pack by tag
        self.sets = {}  # name and properties by the number of the InstanceUID
        self.behind = []  # KLVs behind these
        self.primer = None  # another one
        self.add_sound_sets()

    def tag(self, name, symbol):
        tag, label = definition_of(name, symbol)
        if tag == 0:
            free = max([self.FIRST_DYNAMIC_TAG - 1, *self.rows]) + 1
            tag = next((known for known, other in self.rows.items() if other == label), free)
        self.rows[tag] = label
        return tag

    def items(self, name, properties):
        return [(self.tag(name, symbol), value) for symbol, value in properties.items()]

    def set(self, name, identifier=None, _items=b"", **properties):
        """A set as bytes.
        @param identifier  the number of an InstanceUID, or its octets.
        @param _items      octets of more items.
        """
        pairs = self.items(name, properties)
        if identifier is not None:
            octets = identifier if isinstance(identifier, bytes) else uid(identifier)
            pairs.insert(0, (self.tag(name, "InstanceID"), octets))
        return klv(definitions()[name].key, items(*pairs) + _items)

    def wide_set(self, name, identifier, **properties):
        """The same with BER lengths, which allow for longer values."""
        key = definitions()[name].key
        pairs = [(self.tag(name, "InstanceID"), uid(identifier)), *self.items(name, properties)]
        value = b"".join(u16(tag) + ber(len(octets), 5) + octets for tag, octets in pairs)
        return klv(key[:5] + b"\x13" + key[6:], value, 5)

    def put(self, number, name, **properties):
        """A set among those of the sound header, or in the place of one."""
        self.sets[number] = name, properties

    def change(self, number, **properties):
        self.sets[number][1].update(properties)

    def add_sound_sets(self):
        self.put(1, "Preface", FileLastModified=bytes(8), ContentStorageObject=uid(3), FormatVersion=u16(0x103),
                 IdentificationList=references(2), OperationalPattern=OP1A, EssenceContainers=batch([CONTAINER]),
                 DescriptiveSchemes=batch([]))
        self.put(2, "Identification", ApplicationSupplierName=utf16("Supplier"), ApplicationName=utf16("Name"),
                 ApplicationVersionString=utf16("1"), ApplicationProductID=uid(90), GenerationID=uid(91))
        self.put(3, "ContentStorage", Packages=references(4, 8), EssenceDataObjects=references(13))
        self.put(4, "MaterialPackage", PackageID=umid(1), PackageName=utf16("Title"), PackageTracks=references(5),
                 PackageLastModified=bytes(8), CreationTime=bytes(8))
        self.put(5, "TimelineTrack", TrackID=u32(1), TrackSegment=uid(6), EssenceTrackNumber=u32(0), EditRate=rate(25, 1),
                 Origin=i64(0))
        self.put(6, "Sequence", ComponentDataDefinition=PICTURE, ComponentLength=i64(9), ComponentObjects=references(7))
        self.put(7, "SourceClip", ComponentDataDefinition=PICTURE, ComponentLength=i64(9), StartPosition=i64(0),
                 SourcePackageID=umid(2), SourceTrackID=u32(1))
        self.put(8, "SourcePackage", PackageID=umid(2), PackageTracks=references(9), PackageLastModified=bytes(8),
                 CreationTime=bytes(8), EssenceDescription=uid(12))
        self.put(9, "TimelineTrack", TrackID=u32(1), TrackSegment=uid(10), EssenceTrackNumber=u32(0x15010500),
                 EditRate=rate(25, 1), Origin=i64(0))
        self.put(10, "Sequence", ComponentDataDefinition=PICTURE, ComponentLength=i64(9), ComponentObjects=references(11))
        self.put(11, "SourceClip", ComponentDataDefinition=PICTURE, ComponentLength=i64(9), StartPosition=i64(0),
                 SourcePackageID=bytes(32), SourceTrackID=u32(0))
        self.put(12, "CDCIDescriptor", SampleRate=rate(25, 1), ContainerFormat=CONTAINER, EssenceLength=i64(9))
        self.put(13, "EssenceData", LinkedPackageID=umid(2), EssenceStreamID=u32(1))

    def metadata(self):
        """Primer pack and sets, in pieces."""
        sets = [self.set(name, number, **properties) for number, (name, properties) in self.sets.items()]
        primer = self.primer if self.primer is not None else primer_pack(sorted(self.rows.items()))
        return [primer, *sets, *self.behind]

    def file(self, count=None, behind=(), run_in=b"", **numbers):
        """A file with nothing but a header partition, in pieces.
        @param count   of header bytes, where that is not the truth.
        @param behind  pieces behind the metadata.
        """
        metadata = self.metadata()
        true = sum(map(len, metadata))
        return [run_in, pack(HEADER, header_bytes=true if count is None else count, **numbers), *metadata, *behind]


def partitions(header, bodies=(), repeats=False, index=b"", listed=True, kag=1):
    """A whole file: header partition, body partitions with a content each, footer partition, random index pack.
    @param repeats  whether the other partitions repeat the header metadata.
    @param index    of the footer partition.
    """
    metadata = b"".join(header.metadata())
    repeated = metadata if repeats else b""
    offsets = [0]
    for content in ("", *bodies):
        inside = len(metadata) if len(offsets) == 1 else len(repeated) + len(content)
        offsets.append(offsets[-1] + PACK_SIZE + inside)
    last = offsets[-1]
    yield pack(HEADER, footer=last, header_bytes=len(metadata), kag=kag) + metadata
    for number, content in enumerate(bodies, 1):
        yield pack(BODY, this=offsets[number], previous=offsets[number - 1], footer=last, header_bytes=len(repeated),
                   body_sid=1, kag=kag)
        yield repeated + content
    yield pack(FOOTER, this=last, previous=offsets[-2], footer=last, header_bytes=len(repeated), index_bytes=len(index),
               index_sid=2 if index else 0, kag=kag)
    yield repeated + index
    if listed:
        yield random_index([(int(0 < number < len(bodies) + 1), offset) for number, offset in enumerate(offsets)])
