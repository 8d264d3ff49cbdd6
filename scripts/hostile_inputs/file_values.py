"""MXF files that attack the reader of values: counts and sizes of collections, texts, and numbers at their limits."""

from . import filled, mxf_input
from .mxf import OP1A, PICTURE, TIMECODE, Header, i64, rate, references, u8, u16, u32, uid, umid, utf16

FREE = Header.FIRST_FREE
LOW, HIGH = -(1 << 63), (1 << 63) - 1


def many(header, count, name, **properties):
    octets = header.set(name, 0, **properties)
    return list(filled(octets, [uid(0)], ((uid(i),) for i in range(FREE, FREE + count))))


def with_packages(value):
    header = Header()
    header.change(3, Packages=value)
    return header.file()


@mxf_input("batch-count-2-32", "a batch of 2^32 - 1 references in a value of eight octets")
def batch_count_2_32():
    return with_packages(u32(0xFFFFFFFF) + u32(16))


@mxf_input("batch-items-of-0", "a batch of 2^32 - 1 references of no octets")
def batch_items_of_0():
    return with_packages(u32(0xFFFFFFFF) + u32(0))


@mxf_input("batch-items-of-2-32", "a batch of one reference of 2^32 - 1 octets")
def batch_items_of_2_32():
    return with_packages(u32(1) + u32(0xFFFFFFFF) + uid(4))


@mxf_input("batch-product-wraps", "a batch whose count times size is 0 in 32 bits, and 32 with what it has")
def batch_product_wraps():
    return with_packages(u32(0x10000002) + u32(16) + uid(4) + uid(8))


@mxf_input("batch-too-long", "batches with octets behind their last item, and a header of seven octets")
def batch_too_long():
    header = Header()
    header.change(3, Packages=references(4, 8) + b"more")
    header.change(6, ComponentObjects=u32(1) + bytes(3))
    return header.file()


@mxf_input("arrays-of-octets", "100 descriptors with 65,000 items of an octet each: 6 MB of values, 6.5 million elements")
def arrays_of_octets():
    header = Header()
    value = u32(65000) + u32(1) + bytes(range(250)) * 260
    header.behind = many(header, 100, "AES3PCMDescriptor", FixedUserData=value)
    return header.file()


@mxf_input("arrays-of-numbers", "300 clips with 16,000 channels each")
def arrays_of_numbers():
    header = Header()
    value = u32(16000) + u32(4) + b"".join(map(u32, range(16000)))
    header.behind = many(header, 300, "SourceClip", ChannelIDs=value)
    return header.file()


@mxf_input("labels-of-4000", "500 Prefaces with 4,000 labels of essence containers each")
def labels_of_4000():
    header = Header()
    value = u32(4000) + u32(16) + b"".join(OP1A[:12] + u32(i) for i in range(4000))
    header.change(1, EssenceContainers=value)
    header.behind = many(header, 500, "Preface", EssenceContainers=value, DescriptiveSchemes=value)
    return header.file()


def with_title(text):
    header = Header()
    header.change(4, PackageName=text)
    return header.file()


@mxf_input("text-without-nul", "a text of 65,534 octets without a NUL, at the end of the file")
def text_without_nul():
    header = Header()
    header.behind = [header.set("Identification", 20, ApplicationName=utf16("x" * 32000))]
    return header.file()


@mxf_input("text-odd", "a text that ends within a code unit")
def text_odd():
    return with_title(utf16("Title") + b"\0")


@mxf_input("text-surrogates", "lone surrogates, in the wrong order and at both ends of texts")
def text_surrogates():
    high, low = b"\xd8\x3d", b"\xde\x00"
    return with_title(low + high + b"\0x" + high + high + low + low + low * 3000 + high * 3000)


@mxf_input("text-of-nuls", "1,000 texts of 32,000 NULs, with one letter behind them")
def text_of_nuls():
    header = Header()
    header.behind = many(header, 1000, "Identification", ApplicationName=bytes(64000) + utf16("x"))
    return header.file()


@mxf_input("text-of-controls", "500 texts of 32,000 characters that XML cannot have: each becomes five")
def text_of_controls():
    header = Header()
    header.behind = many(header, 500, "Identification", ApplicationName=utf16("\x01" * 32000))
    return header.file()


@mxf_input("text-of-markup", "500 texts of 32,000 characters of markup, line ends and escapes")
def text_of_markup():
    header = Header()
    text = ("<&>\"']]>\r\n$#x1;<!--%s&#0;" * 2000)[:32000]
    header.behind = many(header, 500, "Identification", ApplicationName=utf16(text))
    return header.file()


@mxf_input("text-beyond-7-bits", "texts of seven and eight bits whose octets are none, and texts in UTF-8 that are not")
def text_beyond_7_bits():
    header = Header()
    octets = bytes(range(256)) * 200
    header.behind = [*many(header, 50, "SceneFramework", SceneNumber=octets),
                     *many(header, 50, "MCALabelSubDescriptor", RFC5646SpokenLanguage=octets, MCATagSymbol=octets)]
    return header.file()


@mxf_input("rates-of-0", "edit rates of 0/0, 0/1, 1/0, negative and at the limits of their numbers")
def rates_of_0():
    header = Header()
    rates = [(0, 0), (0, 1), (1, 0), (-1, 1), (1, -1), (-(1 << 31), -1), (-(1 << 31), (1 << 31) - 1), ((1 << 31) - 1, 1)]
    header.change(5, EditRate=rate(0, 0))
    header.change(9, EditRate=rate(-(1 << 31), -1))
    header.change(12, SampleRate=rate(0, 0), ImageAspectRatio=rate(0, 0))
    tracks = range(FREE, FREE + len(rates))
    header.change(4, PackageTracks=references(5, *tracks))
    for number, (above, below) in zip(tracks, rates):
        header.put(number, "TimelineTrack", TrackID=u32(number), TrackSegment=uid(6), EditRate=rate(above, below),
                   Origin=i64(LOW))
    return header.file()


@mxf_input("durations-extreme", "durations and positions of -1, -2^63 and 2^63 - 1, whose sums overflow")
def durations_extreme():
    header = Header()
    header.change(5, Origin=i64(HIGH), EditRate=rate(1, (1 << 31) - 1))
    header.change(6, ComponentLength=i64(HIGH), ComponentObjects=references(7, 20, 21, 22))
    header.change(7, ComponentLength=i64(HIGH), StartPosition=i64(HIGH))
    header.change(10, ComponentLength=i64(LOW))
    header.change(12, EssenceLength=i64(-1))
    for number, length in ((20, HIGH), (21, LOW), (22, -1)):
        header.put(number, "SourceClip", ComponentDataDefinition=PICTURE, ComponentLength=i64(length),
                   StartPosition=i64(length), SourcePackageID=umid(2), SourceTrackID=u32(0xFFFFFFFF))
    return header.file()


@mxf_input("timecodes-extreme", "timecodes with 0 and 65,535 frames to a second, dropped ones too, and starts at the limits")
def timecodes_extreme():
    header = Header()
    numbers = range(FREE, FREE + 24)
    header.change(6, ComponentDataDefinition=TIMECODE, ComponentObjects=references(*numbers))
    some = [(base, start, drop) for base in (0, 1, 29, 65535) for start in (LOW, -1, HIGH) for drop in (0, 255)]
    for number, (base, start, drop) in zip(numbers, some):
        header.put(number, "Timecode", ComponentDataDefinition=TIMECODE, ComponentLength=i64(HIGH),
                   StartTimecode=i64(start), FramesPerSecond=u16(base), DropFrame=u8(drop))
    return header.file()


@mxf_input("values-of-ones", "a sound header with all bits set in all values but references")
def values_of_ones():
    header = Header()
    kept = {"ContentStorageObject", "IdentificationList", "Packages", "PackageTracks", "TrackSegment", "ComponentObjects",
            "EssenceDescription", "EssenceDataObjects", "PackageID", "PackageName"}
    for number, (name, properties) in list(header.sets.items()):
        header.put(number, name, **{symbol: value if symbol in kept else b"\xff" * len(value)
                                    for symbol, value in properties.items()})
    return header.file()


@mxf_input("values-of-odd-sizes", "values one octet longer and shorter than their types")
def values_of_odd_sizes(chance):
    header = Header()
    for number, (name, properties) in list(header.sets.items()):
        header.put(number, name, **{symbol: value + b"\0" if chance.random() < 0.5 else value[:-1]
                                    for symbol, value in properties.items()})
    return header.file()


@mxf_input("layouts-endless", "pixel layouts of eight components without an end, and of components that none has")
def layouts_endless():
    header = Header()
    header.behind = [header.set("RGBADescriptor", 20 + i, PixelLayout=layout, PaletteLayout=layout)
                     for i, layout in enumerate((b"R\x08" * 8, b"\xff" * 16, b"\0\x08" * 8, b"\x01" * 15, b"", b"A" * 400))]
    return header.file()


@mxf_input("umids-of-0", "packages without identifiers, that clips without source lead to")
def umids_of_0():
    header = Header()
    header.change(4, PackageID=bytes(32))
    header.change(7, SourcePackageID=bytes(32), SourceTrackID=u32(0))
    header.change(8, PackageID=bytes(32))
    header.change(13, LinkedPackageID=bytes(32))
    return header.file()


@mxf_input("tagged-values-odd", "10,000 tagged values whose indirect values have not the type, byte order and size that they name")
def tagged_values_odd(chance):
    header = Header()
    for number in range(10_000):
        kind = chance.choice((b"\x42", b"\x4c", b"\x00")) + chance.randbytes(16)
        value = kind[:chance.randrange(18)] + chance.randbytes(chance.randrange(40))
        header.behind.append(header.set("TaggedValue", FREE + number, Tag=utf16("x"), IndirectValue=value))
    header.change(4, PackageUserComments=references(*range(FREE, FREE + 4000)))
    return header.file()


@mxf_input("chunks-of-documents", "1,000 values of 64 KB that claim to be XML, with octets that no encoding has")
def chunks_of_documents():
    header = Header()
    value = b"<?xml version='1.0'?><a>" + b"\xff\xfe\x00" * 21000
    header.behind = many(header, 1000, "KLVData", KLVDataValue=value)
    return header.file()
