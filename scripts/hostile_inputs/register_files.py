"""Folders of registers in XML, as SMPTE publishes them, that attack what makes definitions of their entries."""

import functools

from . import collisions, dictionary_input, joined

GROUPS = "http://www.smpte-ra.org/ns/395/2016"
ELEMENTS = "http://www.smpte-ra.org/schemas/335/2012"
TYPES = "http://www.smpte-ra.org/schemas/2003/2012"
LABELS = "http://www.smpte-ra.org/schemas/400/2012"
OBJECT = "060e2b34.027f0101.0d010101.01010100"
UINT8 = "060e2b34.01040101.01010100.00000000"

register_input = functools.partial(dictionary_input, suffix="")


def key(head, number):
    return f"{head}.0f0e0d0c.{number:08x}"


group_key = functools.partial(key, "060e2b34.027f0101")
element_key = functools.partial(key, "060e2b34.01010101")
type_key = functools.partial(key, "060e2b34.01040101")


def entry(register, identifier, symbol, *more):
    return (f"<Entry><Register>{register}</Register><NamespaceName>urn:x</NamespaceName><Symbol>{symbol}</Symbol>"
            f"<UL>urn:smpte:ul:{identifier}</UL><Kind>LEAF</Kind><Name>{symbol}</Name><IsDeprecated>false</IsDeprecated>"
            f"{''.join(more)}</Entry>\n")


def group(identifier, symbol, parent=OBJECT, properties=()):
    records = "".join(f"<Record><UL>urn:smpte:ul:{one}</UL>{f'<LocalTag>{tag}</LocalTag>' if tag else ''}"
                      "<IsUniqueID>false</IsUniqueID><IsOptional>true</IsOptional></Record>" for one, tag in properties)
    return entry("Groups", identifier, symbol, f"<Parent>urn:smpte:ul:{parent}</Parent>" if parent else "",
                 "<IsConcrete>true</IsConcrete><KLVSyntax>06 53</KLVSyntax>",
                 f"<Contents>{records}</Contents>" if records else "")


def element(identifier, symbol, kind=UINT8):
    return entry("Elements", identifier, symbol, f"<Type>urn:smpte:ul:{kind}</Type>")


def a_type(identifier, symbol, kind, base=None, *more):
    return entry("Types", identifier, symbol, f"<TypeKind>{kind}</TypeKind>",
                 f"<BaseType>urn:smpte:ul:{base}</BaseType>" if base else "", *more)


def register(name, namespace, entries, before=""):
    yield f'<?xml version="1.0"?>\n{before}<{name}Register xmlns="{namespace}"><Entries>\n'.encode()
    yield from joined(one.encode() for one in entries)
    yield f"</Entries></{name}Register>\n".encode()


SOUND = {"groups": [group(OBJECT, "InterchangeObject", None, [("060e2b34.01010101.01011502.00000000", "3c0a")])],
         "elements": [element("060e2b34.01010101.01011502.00000000", "InstanceID", type_key(0))],
         "types": [a_type(UINT8, "UInt8", "Integer", None, "<TypeSize>1</TypeSize>"),
                   a_type(type_key(0), "UUID", "FixedArray", UINT8, "<TypeSize>16</TypeSize>")]}


def registers(groups=(), elements=(), types=(), **files):
    """A folder of registers with more entries than the sound ones."""
    def chained(name, more):
        yield from SOUND[name]
        yield from more
    return {"Groups.xml": register("Groups", GROUPS, chained("groups", groups)),
            "Elements.xml": register("Elements", ELEMENTS, chained("elements", elements)),
            "Types.xml": register("Types", TYPES, chained("types", types)), **files}


@register_input("registers-alone", "a folder with one of the three registers that are needed together")
def registers_alone():
    return {"Groups.xml": registers()["Groups.xml"]}


@register_input("registers-parents", "20,000 groups that inherit from each other in a circle, and as many in a row")
def registers_parents():
    circle = (group(group_key(i), f"Circle{i}", group_key((i + 1) % 20_000)) for i in range(20_000))
    row = (group(group_key(50_000 + i), f"Row{i}", group_key(50_000 + i - 1) if i else OBJECT) for i in range(20_000))
    return registers([*circle, *row])


@register_input("registers-types-self", "types renamed to themselves, arrays and records of themselves, and references to types")
def registers_types_self():
    kinds = ("Rename", "VariableArray", "Set", "FixedArray", "String", "StrongReference", "WeakReference", "Enumeration")
    types = [a_type(type_key(i), f"Type{i}", kind, type_key(i), "<TypeSize>4294967295</TypeSize>")
             for i, kind in enumerate(kinds, 1)]
    facets = "".join(f"<Facet><Symbol>F{i}</Symbol><Type>urn:smpte:ul:{type_key(20)}</Type></Facet>" for i in range(1000))
    types.append(a_type(type_key(20), "Record", "Record", None, f"<Facets>{facets}</Facets>"))
    elements = [element(element_key(i), f"Element{i}", type_key(i)) for i in range(1, 21)]
    return registers([group(group_key(1), "Set", OBJECT, [(element_key(i), "") for i in range(1, 21)])], elements, types)


@register_input("registers-types-deep", "50,000 types of which each renames the one before, and arrays of arrays as deep")
def registers_types_deep():
    types = (a_type(type_key(i), f"Type{i}", "Rename" if i % 2 else "VariableArray", type_key(i - 1) if i > 1 else UINT8)
             for i in range(1, 50_001))
    return registers([group(group_key(1), "Set", OBJECT, [(element_key(1), "")])],
                     [element(element_key(1), "Deep", type_key(50_000))], types)


@register_input("registers-records-double", "40 records of which each holds the one before twice: 2^40 octets")
def registers_records_double():
    def facets(i):
        kind = type_key(i - 1) if i > 1 else UINT8
        return "".join(f"<Facet><Symbol>F{place}</Symbol><Type>urn:smpte:ul:{kind}</Type></Facet>" for place in range(2))
    types = [a_type(type_key(i), f"Type{i}", "Record", None, f"<Facets>{facets(i)}</Facets>") for i in range(1, 41)]
    types += [a_type(type_key(100 + i), f"Array{i}", "FixedArray", type_key(100 + i - 1) if i else UINT8,
                     "<TypeSize>4294967295</TypeSize>") for i in range(10)]
    return registers([group(group_key(1), "Set", OBJECT, [(element_key(1), ""), (element_key(2), "")])],
                     [element(element_key(1), "Double", type_key(40)), element(element_key(2), "Array", type_key(109))], types)


@register_input("registers-same", "100,000 entries of one key and one symbol in each register")
def registers_same():
    return registers([group(group_key(1), "Set")] * 100_000, [element(element_key(1), "Element")] * 100_000,
                     [a_type(type_key(1), "Type", "Rename", UINT8)] * 100_000)


@register_input("registers-one-hash", "50,000 elements whose keys fold to one number")
def registers_one_hash():
    keys = [f"060e2b34.01010101.{tail.hex()}" for tail in collisions.tails_of_one_hash(50_000)]
    return registers([group(group_key(1), "Set", OBJECT, [(one, "") for one in keys])],
                     (element(one, f"Element{i}") for i, one in enumerate(keys)))


@register_input("registers-200000", "200,000 groups, elements and types")
def registers_200000():
    return registers((group(group_key(i), f"Set{i}", OBJECT, [(element_key(i), "")]) for i in range(200_000)),
                     (element(element_key(i), f"Element{i}", type_key(i + 1)) for i in range(200_000)),
                     (a_type(type_key(i + 1), f"Type{i}", "Rename", UINT8) for i in range(200_000)))


@register_input("registers-entities", "entities of 10^10 characters in the symbol of a group")
def registers_entities():
    levels = ['<!ENTITY e0 "0123456789">'] + [f'<!ENTITY e{i} "{f"&e{i - 1};" * 10}">' for i in range(1, 10)]
    bomb = register("Groups", GROUPS, [group(group_key(1), "&e9;")], f"<!DOCTYPE GroupsRegister [{''.join(levels)}]>")
    return registers(**{"Groups.xml": bomb})


@register_input("registers-names", "80,000 element names in one bucket of Xerces-C++, and a symbol of 16 MB")
def registers_names():
    names = (f"<{name}/>" for name in collisions.names_in_one_bucket(80_000))
    return registers(groups=[entry("Groups", group_key(1), "x" * (16 << 20)), "".join(names)])


@register_input("registers-nested", "a million elements within each other, in the place of an entry")
def registers_nested():
    return registers(groups=["<Entry>" * 1_000_000 + "</Entry>" * 1_000_000])


@register_input("registers-odd", "entries without keys, kinds and symbols, facets of wrong numbers, and tags of odd digits")
def registers_odd():
    types = [a_type(type_key(i), f"Type{i}", "Enumeration", UINT8,
                    f"<Facets><Facet><Symbol>A</Symbol><Value>{value}</Value></Facet></Facets>")
             for i, value in enumerate(("", "-1", "256", "9" * 100_000, "x", "0x1"), 1)]
    groups = ["<Entry/>", "<Entry><Kind>LEAF</Kind></Entry>", entry("Groups", "urn:x", "Odd"),
              entry("Groups", group_key(1), ""),
              group(group_key(2), "Set", "x", [("", "zzzz"), (element_key(9), "fffff")])]
    return registers(groups, [element("", ""), element(element_key(9), "E", "x")], types)
