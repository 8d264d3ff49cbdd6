"""XML documents that attack what reads sets: numbers of sets and properties, references, values, names of new sets."""

from . import joined, xml_input
from .markup import a_property, a_set, document, element, identifier, reference, sound_sets
from .mxf import uid

MILLION = 1_000_000
OWN = ["import-own"]


def numbered(pattern, numbers):
    """The pattern with identifiers in the places of @0, @1: of a number and the one behind it."""
    parts = [part.encode() for part in pattern.replace("@1", "@0\0").split("@0")]
    head = uid(0)[:8].hex(".").upper().encode() + b"."
    def text(number):
        return head + number.to_bytes(8, "big").hex(".").upper().encode()
    def one(number):
        pieces = [parts[0]]
        for part in parts[1:]:
            following = part.startswith(b"\0")
            pieces += [text(number + following), part[following:]]
        return b"".join(pieces)
    return joined(map(one, numbers))


@xml_input("unknown-elements", "4 MB: a million unknown elements, and a warning for each")
def unknown_elements():
    return document("<x/>" * MILLION)


@xml_input("unknown-properties", "a million unknown properties in one set")
def unknown_properties():
    return document(a_set("Filler", 20, "<x>1</x>" * MILLION))


@xml_input("sets-million", "a million sets in a flat document, 80 MB")
def sets_million():
    return document(numbered('<s377m:Filler rp210:InstanceUID="@0"/>\n', range(1000, 1000 + MILLION)))


@xml_input("sets-without-uid", "a million sets without InstanceUID, which all get one")
def sets_without_uid():
    return document("<s377m:Filler/>" * MILLION)


@xml_input("sets-one-uid", "200,000 sets of one InstanceUID, and 200,000 references to it")
def sets_one_uid():
    sequence = a_set("Sequence", 21, a_property("ComponentObjects", reference("Filler", 20) * 200_000))
    return document(a_set("Filler", 20) * 200_000, sequence)


@xml_input("uids-odd", "InstanceUIDs of odd digits, of a million digits, and none")
def uids_odd():
    odd = ("", ".", "0", "x" * 47, "00." * MILLION, "urn:uuid:", "new", "&#9;")
    return document(*(a_set("Filler", text) for text in odd))


@xml_input("new-300000", "300,000 sets that are named new: and refer to each other in a circle")
def new_300000():
    some = (b'<s377m:Selector rp210:InstanceUID="new:%d"><rp210:SelectedSegment><s377m:Selector_REF types:TargetInstance='
            b'"new:%d"/></rp210:SelectedSegment></s377m:Selector>' % (i, (i + 1) % 300_000) for i in range(300_000))
    return document(joined(some))


@xml_input("new-of-none", "a million references to names that no set has")
def new_of_none():
    some = joined(b'<s377m:Filler_REF types:TargetInstance="new:%d"/>' % i for i in range(MILLION))
    return document('<s377m:Sequence rp210:InstanceUID="new:s"><rp210:ComponentObjects>', some,
                    "</rp210:ComponentObjects></s377m:Sequence>")


@xml_input("new-doubled", "300,000 sets of one new: name")
def new_doubled():
    return document(a_set("Filler", "new:" + "x" * 100) * 300_000)


@xml_input("chain-100000", "a flat document with 100,000 references in a row")
def chain_100000():
    pattern = a_set("Selector", "@0", a_property("SelectedSegment", reference("Selector", "@1")))
    return document(numbered(pattern, range(1000, 101_000)))


@xml_input("cycle", "a flat document whose sets own each other and themselves")
def cycle():
    every = a_property("ComponentObjects", "".join(reference("Sequence", 20 + i) for i in range(100)))
    return document(*(a_set("Sequence", 20 + i, every) for i in range(100)))


@xml_input("floating-shared", "200 floating sets that share a chain of 400 sets, flat")
def floating_shared():
    first = a_property("SelectedSegment", reference("Selector", 1000))
    roots = "".join(a_set("Selector", 10_000 + i, first) for i in range(200))
    pattern = a_set("Selector", "@0", a_property("SelectedSegment", reference("Selector", "@1")))
    return document(roots, numbered(pattern, range(1000, 1400)))


@xml_input("items-million", "a batch of a million labels, more than a value of KLV holds")
def items_million():
    label = element("rp210:Element", "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00")
    return document(sets=sound_sets(preface=a_property("EssenceContainers", label * MILLION)))


@xml_input("items-odd", "a batch whose items are sets, texts, batches and comments")
def items_odd():
    odd = ("text<rp210:Element><rp210:Element>1</rp210:Element></rp210:Element><!-- --><rp210:Other/>"
           + a_set("Filler", 20))
    return document(sets=sound_sets(preface=a_property("EssenceContainers", odd * 1000)))


@xml_input("property-million", "one property of one set a million times")
def property_million():
    return document(a_set("Filler", 20, a_property("ComponentLength", "1") * MILLION))


@xml_input("dark-million", "300,000 dark sets of an octet, and one of 32 MiB")
def dark_million():
    key = "06.0E.2B.34.02.05.01.01.0F.0E.0D.0C.00.00.01.00"
    dark = element("groups:DarkMetadata", "{}", groups__BEROctetCount="4", groups__Key=key)
    return document("<groups:FloatingDarkMetadata>", dark.format("5A") * 300_000, dark.format("5A" * (32 << 20)),
                    "</groups:FloatingDarkMetadata>")


@xml_input("dark-odd", "dark sets and properties of half octets, with keys of fill and partition packs, and of 2^64 octets")
def dark_odd():
    dark = [element("groups:DarkMetadata", content, groups__BEROctetCount=octets, groups__Key=key)
            for content in ("5", "zz", "", "5A 5A") for octets in ("0", "1", "99", "-1", "18446744073709551616", "x")
            for key in ("06.0E.2B.34.01.01.01.02.03.01.02.10.01.00.00.00", "06.0E.2B.34.02.05.01.01.0D.01.02.01.01.02.04.00",
                        "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00", "x")]
    return document("<groups:FloatingDarkMetadata>", *dark, "</groups:FloatingDarkMetadata>")


@xml_input("dark-elements", "a set with 70,000 unknown properties, more than there are tags")
def dark_elements():
    some = (b'<groups:DarkElement groups:UniversalLabel="06.0E.2B.34.01.01.01.01.0F.0E.0D.0C.%02X.%02X.%02X.00">5A'
            b'</groups:DarkElement>' % (i >> 16, i >> 8 & 255, i & 255) for i in range(70_000))
    return document("<s377m:Filler><groups:ExtensionElements>", joined(some), "</groups:ExtensionElements></s377m:Filler>")


@xml_input("values-giant", "numbers, times and labels of a million digits")
def values_giant():
    digits = "9" * MILLION
    some = [a_property("ComponentLength", digits), a_property("ComponentDataDefinition", "06." * MILLION)]
    rate = element("types:Numerator", digits) + element("types:Denominator", "-" + digits)
    return document(a_set("Filler", 20, "".join(some)), a_set("TimelineTrack", 21, a_property("EditRate", rate)),
                    a_set("Timecode", 22, a_property("StartTimecode", "1:" * MILLION)))


@xml_input("values-odd", "values that are no values, of every kind: signs, points, exponents, blanks, other digits")
def values_odd():
    odd = ("", " ", "-", "+1", "0x10", "1e999999999", "1.5", "NaN", "-0", "\u0661", "9223372036854775808",
           "-9223372036854775809", "1/0", "0/0", "24:00:00:99", "true", "$#x0;", "$#xFFFFFFFFFFFFFFFFF;")
    names = ("ComponentLength", "StartTimecode", "FramesPerSecond", "DropFrame", "ComponentDataDefinition")
    return document(*(a_set("Timecode", 1000 + i, "".join(a_property(name, text) for name in names))
                      for i, text in enumerate(odd)))


@xml_input("text-64-mib", "a text of 64 MiB, which no value of two length octets has room for")
def text_64_mib():
    return document('<s377m:Identification><rp210:ApplicationName>', [b"x" * (1 << 20)] * 64,
                    "</rp210:ApplicationName></s377m:Identification>")


@xml_input("texts-of-65535", "2,000 texts of 32,767 characters")
def texts_of_65535():
    text = a_property("ApplicationName", "x" * 32_767)
    return document(a_set("Identification", 1000 + i, text) for i in range(2000))


@xml_input("sets-in-wrong-places", "sets within values, within other sets, and within themselves, 300 deep")
def sets_in_wrong_places():
    deep = "<s377m:Filler>" * 300 + "</s377m:Filler>" * 300
    return document(a_set("Filler", 20, a_property("ComponentLength", a_set("Filler", 20, deep))) * 100)


@xml_input("own-definitions", "20,000 classes of a MetaDictionary, which inherit from themselves, and sets of them", more=OWN)
def own_definitions():
    label = "06.0E.2B.34.02.7F.01.01.0F.0E.0D.0C.00.00.{:02X}.{:02X}"
    some = (a_set("ClassDefinition", 1000 + i, a_property("MetaDefinitionIdentification", label.format(i >> 8, i & 255)) +
                  a_property("MetaDefinitionName", f"Class{i}") + a_property("IsConcrete", "1") +
                  a_property("ParentClass", label.format(i >> 8, i & 255))).encode() for i in range(20_000))
    return document(joined(some), '<o:Class1 xmlns:o="urn:vantor:own:sets"/>' * 1000,
                    a_set("MetaDictionary", 20, a_property("ClassDefinitions", reference("ClassDefinition", identifier(1000)))))
