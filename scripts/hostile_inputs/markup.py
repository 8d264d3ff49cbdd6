"""Writes documents: XML in the form of an export, that is sound up to an attack."""

from .mxf import uid, umid

NAMESPACES = {"rp210": "urn:SMPTE:RP210", "s377m": "urn:SMPTE:S377M", "types": "urn:SMPTE:Types:MXF",
              "groups": "urn:SMPTE:Groups:MXF"}
ROOT = "s377m:MetadataSets"
DECLARATION = '<?xml version="1.0" encoding="UTF-8"?>\n'
PREFACE, STORAGE, PACKAGE, IDENTIFICATION = 1, 3, 4, 2
OP1A = "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00"


def dotted(octets):
    return octets.hex(".").upper()


def identifier(number):
    return dotted(uid(number))


def element(name, content="", **attributes):
    some = "".join(f' {key.replace("__", ":")}="{value}"' for key, value in attributes.items())
    return f"<{name}{some}>{content}</{name}>" if content else f"<{name}{some}/>"


def a_set(name, number, content="", prefix="s377m"):
    """@param number  of its InstanceUID, or that as text."""
    text = number if isinstance(number, str) else identifier(number)
    return element(f"{prefix}:{name}", content, rp210__InstanceUID=text)


def a_property(name, content):
    return element(f"rp210:{name}", content)


def reference(name, number):
    text = number if isinstance(number, str) else identifier(number)
    return element(f"s377m:{name}_REF", types__TargetInstance=text)


def sound_sets(preface="", package=""):
    """Preface, ContentStorage, Identification and a package, with the identifiers of the base file.
    @param preface, package  more properties of these.
    """
    material = a_set("MaterialPackage", PACKAGE, a_property("PackageID", dotted(umid(1))) + a_property("PackageName", "Title")
                     + package)
    storage = a_set("ContentStorage", STORAGE, a_property("Packages", material))
    writer = a_set("Identification", IDENTIFICATION, a_property("ApplicationName", "Name"))
    return a_set("Preface", PREFACE, a_property("ContentStorageObject", storage) + a_property("OperationalPattern", OP1A) +
                 a_property("FormatVersion", "259") + a_property("IdentificationList", writer) + preface)


def begin(before="", attributes=""):
    names = "".join(f' xmlns:{prefix}="{uri}"' for prefix, uri in NAMESPACES.items())
    return f"{DECLARATION}{before}<{ROOT}{names}{attributes}>\n"


def end():
    return f"\n</{ROOT}>\n"


def document(*pieces, before="", attributes="", sets=None):
    """@param pieces  text, bytes, or iterables of these, behind the sound sets."""
    yield (begin(before, attributes) + (sound_sets() if sets is None else sets)).encode()
    for piece in pieces:
        if isinstance(piece, (str, bytes)):
            yield encoded(piece)
        else:
            for part in piece:
                yield encoded(part)
    yield end().encode()


def encoded(piece):
    return piece.encode() if isinstance(piece, str) else piece
