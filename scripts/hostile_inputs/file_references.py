"""MXF files that attack what follows references: chains, cycles, sets that several others share, lists of many."""

from . import filled, mxf_input
from .mxf import PICTURE, TIMECODE, Header, batch, i64, rate, references, u32, uid, umid

FREE = Header.FIRST_FREE
LIST = 4000  # references that a value of 65,535 octets has room for


NEXT = 1 << 60


def numbered(header, name, count, first=FREE, **properties):
    """Sets of which each has the next one in the place of `NEXT` in its properties; the last one leads to nowhere."""
    octets = header.set(name, 0, **properties)
    rows = ((uid(i), uid(i + 1)) for i in range(first, first + count))
    return list(filled(octets, [uid(0), uid(NEXT)], rows))


def chain(count):
    header = Header()
    header.change(6, ComponentObjects=references(7, FREE))
    header.behind = numbered(header, "Selector", count - 1, SelectedSegment=uid(NEXT), ComponentDataDefinition=PICTURE)
    header.behind.append(header.set("Filler", FREE + count - 1, ComponentDataDefinition=PICTURE))
    return header.file()


@mxf_input("chain-1100", "1,100 references in a row, more than a nested document may nest")
def chain_1100():
    return chain(1100)


@mxf_input("chain-100000", "100,000 references in a row, for what recurses")
def chain_100000():
    return chain(100_000)


def floating(roots):
    """Sets that nothing refers to, which all lead to one chain of 400."""
    header = Header()
    header.behind = [header.set("Selector", 10 * FREE + i, SelectedSegment=uid(FREE)) for i in range(roots)]
    header.behind += numbered(header, "Selector", 399, SelectedSegment=uid(NEXT))
    header.behind.append(header.set("Filler", FREE + 399))
    return header.file()


@mxf_input("floating-100", "34 KB: 100 floating sets that share a chain of 400 sets")
def floating_100():
    return floating(100)


@mxf_input("floating-200", "68 KB: 200 floating sets that share a chain of 400 sets")
def floating_200():
    return floating(200)


@mxf_input("floating-20000", "20,000 floating sets that share a chain of 400 sets")
def floating_20000():
    return floating(20_000)


@mxf_input("cycle-of-2", "a Sequence that is a component of its own component")
def cycle_of_2():
    header = Header()
    header.change(6, ComponentObjects=references(20))
    header.put(20, "Sequence", ComponentDataDefinition=PICTURE, ComponentObjects=references(6))
    return header.file()


@mxf_input("cycle-of-100000", "100,000 sets in a circle that nothing leads to")
def cycle_of_100000():
    header = Header()
    header.behind = numbered(header, "Selector", 99_999, SelectedSegment=uid(NEXT))
    header.behind.append(header.set("Selector", FREE + 99_999, SelectedSegment=uid(FREE)))
    return header.file()


@mxf_input("self-reference", "sets that own themselves: a Sequence, a descriptor, a ContentStorage and the Preface")
def self_reference():
    header = Header()
    header.change(1, ContentStorageObject=uid(1))
    header.change(6, ComponentObjects=references(6, 6, 6))
    header.put(12, "MultipleDescriptor", FileDescriptors=references(12, 12), SampleRate=rate(25, 1))
    return header.file()


@mxf_input("preface-below", "a Preface that its own track owns")
def preface_below():
    header = Header()
    header.change(6, ComponentObjects=references(1, 3, 4))
    return header.file()


@mxf_input("preface-missing", "sets without a Preface to begin with")
def preface_missing():
    header = Header()
    del header.sets[1]
    return header.file()


@mxf_input("diamonds", "40 sets of which each owns the next one twice: 2^40 ways to the last")
def diamonds():
    header = Header()
    header.change(6, ComponentObjects=references(FREE, FREE))
    header.behind = [header.set("Sequence", FREE + i, ComponentDataDefinition=PICTURE,
                                ComponentObjects=references(FREE + i + 1, FREE + i + 1)) for i in range(40)]
    header.behind.append(header.set("Filler", FREE + 40))
    return header.file()


@mxf_input("lattice", "20 levels of 300 sets, of which each refers to all of the next level: 1.7 million references")
def lattice():
    header = Header()
    header.change(6, ComponentObjects=references(*range(FREE, FREE + 300)))
    for level in range(20):
        first = FREE + 300 * (level + 1)
        below = references(*range(first, first + 300)) if level < 19 else references()
        header.behind += [header.set("Sequence", first - 300 + i, ComponentObjects=below) for i in range(300)]
    return header.file()


@mxf_input("dangling-million", "250 sets of 4,000 references to no set")
def dangling_million():
    header = Header()
    header.behind = [header.set("Sequence", FREE + i, ComponentObjects=references(*range(1 << 40, (1 << 40) + LIST)))
                     for i in range(250)]
    return header.file()


@mxf_input("one-target-million", "250 sets of 4,000 references to one set")
def one_target_million():
    header = Header()
    header.behind = [header.set("Sequence", FREE + i, ComponentObjects=references(*[7] * LIST)) for i in range(250)]
    return header.file()


@mxf_input("two-owners", "100,000 sets with two owners each, 24 a list and one beside it")
def two_owners():
    header = Header()
    for number in range(4000):
        first = FREE + 30 * number
        children = range(first + 2, first + 26)
        header.behind += [header.set("Sequence", first, ComponentObjects=references(*children)),
                          header.set("Sequence", first + 1, ComponentObjects=references(*children)),
                          *(header.set("Filler", child) for child in children)]
    return header.file()


@mxf_input("wrong-kinds", "references to sets of kinds that cannot stand there, to dark ones too")
def wrong_kinds():
    header = Header()
    for number, (name, properties) in list(header.sets.items()):
        for symbol in ("ContentStorageObject", "TrackSegment", "EssenceDescription"):
            if symbol in properties:
                properties[symbol] = uid(13 - number)
        for symbol in ("IdentificationList", "Packages", "PackageTracks", "ComponentObjects", "EssenceDataObjects"):
            if symbol in properties:
                properties[symbol] = references(*range(1, 14))
    return header.file()


@mxf_input("packages-100000", "100,000 packages in a list of 1.6 MB, which BER lengths allow")
def packages_100000():
    header = Header()
    numbers = range(FREE, FREE + 100_000)
    del header.sets[3]
    octets = header.set("MaterialPackage", 0, PackageID=umid(0), PackageTracks=references(5))
    header.behind = [header.wide_set("ContentStorage", 3, Packages=references(4, 8, *numbers)),
                     *filled(octets, [uid(0), umid(0)], ((uid(i), umid(i)) for i in numbers))]
    return header.file()


@mxf_input("packages-of-one-id", "4,000 packages of one PackageID, and clips that lead to it")
def packages_of_one_id():
    header = Header()
    numbers = range(FREE, FREE + LIST - 2)
    header.change(3, Packages=references(4, 8, *numbers))
    header.change(6, ComponentObjects=references(*[7] * LIST))
    octets = header.set("SourcePackage", 0, PackageID=umid(2), PackageTracks=references(9), EssenceDescription=uid(12))
    header.behind = list(filled(octets, [uid(0)], ((uid(i),) for i in numbers)))
    return header.file()


@mxf_input("tracks-of-one-id", "100 packages of 1,000 tracks with one TrackID")
def tracks_of_one_id():
    header = Header()
    tracks = range(10 * FREE, 10 * FREE + 1000)
    packages = range(FREE, FREE + 100)
    header.change(3, Packages=references(4, 8, *packages))
    header.behind = [header.set("SourcePackage", i, PackageID=umid(i), PackageTracks=references(*tracks)) for i in packages]
    header.behind += [header.set("TimelineTrack", i, TrackID=u32(1), EditRate=rate(25, 1), TrackSegment=uid(10))
                      for i in tracks]
    return header.file()


def source_packages(count, last):
    """Packages whose clips lead to the next one, and from the last one to that with another number."""
    header = Header()
    header.change(3, Packages=references(4, 8, *range(FREE, FREE + min(count, LIST - 2))))
    header.change(7, SourcePackageID=umid(FREE))
    for i in range(FREE, FREE + count):
        step = 10 * i * FREE
        following = umid(i + 1 if i + 1 < FREE + count else last)
        header.behind += [
            header.set("SourcePackage", i, PackageID=umid(i), PackageTracks=references(step), EssenceDescription=uid(12)),
            header.set("TimelineTrack", step, TrackID=u32(1), TrackSegment=uid(step + 1), EditRate=rate(25, 1),
                       Origin=i64(0)),
            header.set("Sequence", step + 1, ComponentDataDefinition=TIMECODE, ComponentObjects=references(step + 2)),
            header.set("SourceClip", step + 2, SourcePackageID=following, SourceTrackID=u32(1), StartPosition=i64(0)),
        ]
    return header.file()


@mxf_input("sources-deep", "20,000 packages of which each is the source of the one before")
def sources_deep():
    return source_packages(20_000, 2)


@mxf_input("sources-cycle", "2,000 packages that are their own source, by way of the others")
def sources_cycle():
    return source_packages(2000, FREE)


@mxf_input("descriptors-deep", "50,000 descriptors that hold each other, and one that holds all of those in front")
def descriptors_deep():
    header = Header()
    header.change(8, EssenceDescription=uid(FREE))
    deep = numbered(header, "MultipleDescriptor", 50_000, SampleRate=rate(25, 1), FileDescriptors=references(NEXT))
    some = references(*range(FREE, FREE + LIST))
    header.behind = [*deep, header.set("MultipleDescriptor", FREE + 50_000, FileDescriptors=some)]
    return header.file()


@mxf_input("descriptors-shared", "4,000 descriptors in one list, each with the same 1,000 subdescriptors")
def descriptors_shared():
    header = Header()
    parts = range(10 * FREE, 10 * FREE + 1000)
    numbers = range(FREE, FREE + LIST)
    header.put(12, "MultipleDescriptor", SampleRate=rate(25, 1), FileDescriptors=references(*numbers))
    shared = references(*parts)
    header.behind = [header.set("AES3PCMDescriptor", i, LinkedTrackID=u32(1), SubDescriptors=shared) for i in numbers]
    header.behind += [header.set("AudioChannelLabelSubDescriptor", i, MCALinkID=uid(1), MCATagSymbol=b"chL") for i in parts]
    return header.file()


@mxf_input("labels-of-sound", "4,000 channels and groups of sound under one MCALinkID, that link to each other")
def labels_of_sound():
    header = Header()
    numbers = range(FREE, FREE + LIST)
    header.put(12, "AES3PCMDescriptor", SampleRate=rate(48000, 1), LinkedTrackID=u32(1), SubDescriptors=references(*numbers))
    kinds = ("AudioChannelLabelSubDescriptor", "SoundfieldGroupLabelSubDescriptor",
             "GroupOfSoundfieldGroupsLabelSubDescriptor")
    for i in numbers:
        links = {"SoundfieldGroupLinkID": uid(1)} if i % 3 == 0 else {}
        if i % 3 == 1:
            links = {"GroupOfSoundfieldGroupsLinkID": batch([uid(1)] * 100)}
        header.behind.append(header.set(kinds[i % 3], i, MCALinkID=uid(1), MCATagSymbol=b"chL", MCAChannelID=u32(1),
                                        **links))
    return header.file()


@mxf_input("frameworks-deep", "a descriptive framework at the head of 50,000 events that each lead to the next")
def frameworks_deep():
    header = Header()
    header.change(6, ComponentObjects=references(7, 20))
    header.put(20, "DescriptiveMarker", ComponentDataDefinition=PICTURE, DescriptiveFrameworkObject=uid(21))
    header.put(21, "ProductionFramework", EventObjects=references(FREE))
    header.behind = numbered(header, "DMS1Event", 50_000, PublicationObjects=references(NEXT))
    return header.file()


@mxf_input("frameworks-cycle", "descriptive frameworks whose markers and objects lead back to them, weakly and strongly")
def frameworks_cycle():
    header = Header()
    header.change(6, ComponentObjects=references(7, 20))
    header.put(20, "DescriptiveMarker", ComponentDataDefinition=PICTURE, DescriptiveFrameworkObject=uid(21))
    header.put(21, "ProductionFramework", LinkedDescriptiveFrameworkPluginID=uid(20), EventObjects=references(20, 21),
               IdentificationObjects=references(21))
    header.change(1, PrimaryPackage=uid(1))
    return header.file()


@mxf_input("components-400000", "100 Sequences of 4,000 clips each")
def components_400000():
    header = Header()
    clip = header.set("SourceClip", 0, ComponentDataDefinition=PICTURE, ComponentLength=i64(1), StartPosition=i64(0))
    sequences = range(FREE, FREE + 100)
    header.change(6, ComponentObjects=references(*sequences))
    for place, number in enumerate(sequences):
        clips = range((place + 10) * LIST, (place + 11) * LIST)
        header.behind.append(header.set("Sequence", number, ComponentDataDefinition=PICTURE,
                                        ComponentObjects=references(*clips)))
        header.behind += filled(clip, [uid(0)], ((uid(i),) for i in clips))
    return header.file()
