"""JSON documents that attack the reader of text, and what makes sets of it."""

import json

from . import collisions, joined, json_input
from .markup import IDENTIFICATION, OP1A, PACKAGE, PREFACE, STORAGE, dotted, identifier
from .mxf import umid

MILLION = 1_000_000


def a_set(name, number, properties=None, **more):
    text = number if isinstance(number, str) else identifier(number)
    return {"set": name, "instanceUID": text, "properties": properties or {}, **more}


def sound_sets():
    return [
        a_set("Preface", PREFACE, {"ContentStorageObject": identifier(STORAGE), "OperationalPattern": OP1A,
                                   "FormatVersion": 259, "IdentificationList": [identifier(IDENTIFICATION)]}),
        a_set("ContentStorage", STORAGE, {"Packages": [identifier(PACKAGE)]}),
        a_set("MaterialPackage", PACKAGE, {"PackageID": dotted(umid(1)), "PackageName": "Title"}),
        a_set("Identification", IDENTIFICATION, {"ApplicationName": "Name"}),
    ]


def document(*pieces, members='"version": 1'):
    """@param pieces  of sets behind the sound ones, with their commas."""
    sets = ",\n".join(json.dumps(one) for one in sound_sets())
    yield f'{{"format": "mxfxml-metadata", {members}, "sets": [\n{sets}'.encode()
    for piece in pieces:
        if isinstance(piece, (str, bytes)):
            yield piece.encode() if isinstance(piece, str) else piece
        else:
            yield from piece
    yield b"\n]}\n"


def with_sets(*sets):
    return document(*("," + json.dumps(one) for one in sets))


def with_length(text):
    """The text as the value of a property."""
    before, behind = json.dumps(a_set("Filler", 20, {"ComponentLength": "HERE"})).split('"HERE"')
    return document("," + before, text, behind)


@json_input("deep-arrays", "a million arrays within each other, in the place of a value")
def deep_arrays():
    return with_length("[" * MILLION + "]" * MILLION)


@json_input("deep-objects", "ten million objects within each other that none ends")
def deep_objects():
    return [b'{"a":' * (10 * MILLION)]


@json_input("members-twice", "objects that have the members format, sets and properties twice")
def members_twice():
    return document(',{"set": "Filler", "set": "Preface", "properties": {"ComponentLength": 1, "ComponentLength": 2}}',
                    members='"version": 1, "format": "mxfxml-metadata", "version": 2, "sets": []')


@json_input("members-million", "a million members that no document has, in one object")
def members_million():
    return document(',{"set": "Filler", "properties": {', joined(b'"n%d": 1,' % i for i in range(MILLION)), '"n": 1}}')


@json_input("members-one-hash", "40,000 members of an object whose names have one hash by std::hash")
def members_one_hash():
    names = ",".join(f'"{name}":1' for name in collisions.texts_of_one_hash(40_000))
    return document(',{"set": "Filler", "properties": {', names, "}}")


@json_input("numbers-giant", "a number of ten million digits")
def numbers_giant():
    return with_length("9" * (10 * MILLION))


@json_input("numbers-odd", "numbers of exponents beyond all types, of negative zeros and of no digits")
def numbers_odd():
    sets = ((",", json.dumps(a_set("Filler", 1000 + i, {"ComponentLength": "HERE"})).replace('"HERE"', text))
            for i, text in enumerate(("1e999999999", "-0", "-0.0", "1e-999999999", "9223372036854775808", "0.1", "1E400",
                                      "18446744073709551616", "-9223372036854775809", "00", "1.", "null", "true")))
    return document(*(piece for pair in sets for piece in pair))


@json_input("texts-odd", "lone surrogates, NULs, escapes that end too soon, controls and bytes that are not UTF-8")
def texts_odd():
    return document(',{"set": "Identification", "properties": {"ApplicationName": "\\ud800\\u0000\\udc00", ',
                    '"ApplicationPlatform": "', b"\xff\xc0\x80\x01\0", '\\u12"}}')


@json_input("text-escapes", "ten million escapes in one text")
def text_escapes():
    return document(',{"set": "Identification", "properties": {"ApplicationName": "', "\\u0001" * (10 * MILLION), '"}}')


@json_input("octets-128-mib", "a dark set whose octets are 128 MiB of digits")
def octets_128_mib():
    return document(',{"key": "06.0E.2B.34.02.05.01.01.0F.0E.0D.0C.00.00.01.00", "lengthOctets": 4, "octets": "',
                    [b"5A" * (1 << 19)] * 128, '"}')


@json_input("utf16", "UTF-16, which is no JSON")
def utf16():
    return b"".join(document()).decode().encode("utf-16")


@json_input("sets-million", "a million sets, 90 MB")
def sets_million():
    pattern = json.dumps(a_set("Filler", "HERE")).encode()
    before, _, behind = pattern.partition(b"HERE")
    return document(joined(b",\n" + before + identifier(i).encode() + behind for i in range(1000, 1000 + MILLION)))


@json_input("sets-unknown", "300,000 sets of names that no set has, each another one")
def sets_unknown():
    return document(joined(b',{"set": "Unknown%d"}' % i for i in range(300_000)))


@json_input("sets-one-uid", "200,000 sets of one InstanceUID")
def sets_one_uid():
    return document(("," + json.dumps(a_set("Filler", 20))) * 200_000)


@json_input("items-million", "a batch of a million labels, and one of a million nulls")
def items_million():
    return with_sets(a_set("Preface", 20, {"EssenceContainers": [OP1A] * 200_000, "DescriptiveSchemes": [None] * MILLION}))


@json_input("chain-100000", "100,000 sets in a row of references, the last of which leads to the first")
def chain_100000():
    def one(i):
        following = identifier(1000 + (i - 999) % 100_000)
        return ("," + json.dumps(a_set("Selector", i, {"SelectedSegment": following}))).encode()
    return document(joined(one(i) for i in range(1000, 101_000)))


@json_input("others-million", "a set of 500,000 properties that it does not have, under a few tags")
def others_million():
    other = '{"tag": "90.00", "key": "06.0E.2B.34.01.01.01.01.0F.0E.0D.0C.00.00.00.00", "octets": "5A"}'
    return document(',{"set": "Filler", "others": [', ",".join([other] * 500_000), "]}")


@json_input("forms-odd", "arrays, objects, texts and nulls where each of the others has to stand")
def forms_odd():
    odd = [None, True, 0, "", [], {}, [[]], {"value": {}}, {"numerator": [], "denominator": None}, {"octets": 1},
           {"octets": "0"}]
    sets = [a_set("TimelineTrack", 1000 + i, {"EditRate": form, "TrackID": form, "TrackName": form}, others=form,
                  names=form, key=form) for i, form in enumerate(odd)]
    return with_sets(*sets, *odd)


@json_input("cut", "a document that ends within a name, after 100,000 sets")
def cut():
    return [*document(("," + json.dumps(a_set("Filler", "x"))) * 100_000)][:-1] + [b',{"se']


@json_input("blanks-256-mib", "256 MiB of line ends in front of the document")
def blanks_256_mib():
    return [*[b"\n" * (1 << 20)] * 256, *document()]
