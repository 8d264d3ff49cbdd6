"""MXF files that attack what reads definitions in a file, a MetaDictionary, and what follows an object directory."""

from . import collisions, mxf_input
from .mxf import Header, batch, items, klv, references, u8, u16, u32, u64, uid, utf16

FREE = Header.FIRST_FREE
OWN = ["export-own", "learn"]
INTERCHANGE_OBJECT = bytes.fromhex("060e2b34027f01010d01010101010100")
UINT32 = bytes.fromhex("060e2b34010401010101030000000000")
DIRECTORY_KEY = bytes.fromhex("9613b38a87348746f10296f056e04d2a")
ROOT_KEY = bytes.fromhex("8053080036210804b3b398a51c9011d4")
ENTRY = 25


def class_key(number):
    return bytes.fromhex("060e2b34027f01010f0e0d0c") + u32(number)


def property_key(number):
    return bytes.fromhex("060e2b34010101010f0e0d0c") + u32(number)


def type_key(number):
    return bytes.fromhex("060e2b34010401010f0e0d0c") + u32(number)


class Own(Header):
    """A sound header with a MetaDictionary."""

    DICTIONARY = 30

    def __init__(self):
        super().__init__()
        self.classes, self.types, self.free = [], [], FREE

    def define(self, kind, identification, name, **properties):
        self.free += 1
        self.behind.append(self.set(kind, self.free, MetaDefinitionIdentification=identification,
                                    MetaDefinitionName=utf16(name), **properties))
        return self.free

    def add_class(self, identification, name, parent=INTERCHANGE_OBJECT, listed=()):
        number = self.define("ClassDefinition", identification, name, ParentClass=parent, IsConcrete=b"\1",
                             **({"Properties": references(*listed)} if listed else {}))
        self.classes.append(number)
        return number

    def add_property(self, identification, name, kind=UINT32, tag=0):
        return self.define("PropertyDefinition", identification, name, PropertyType=kind, IsOptional=b"\1",
                           LocalIdentification=u16(tag))

    def add_type(self, kind, identification, name, **properties):
        self.types.append(self.define(kind, identification, name, **properties))

    def file(self, **numbers):
        self.behind.insert(0, self.wide_set("MetaDictionary", self.DICTIONARY, ClassDefinitions=references(*self.classes),
                                            TypeDefinitions=references(*self.types)))
        return super().file(**numbers)


@mxf_input("own-parent-self", "classes that inherit from themselves and from each other", more=OWN)
def own_parent_self():
    own = Own()
    own.add_class(class_key(1), "Self", class_key(1))
    own.add_class(class_key(2), "Left", class_key(3))
    own.add_class(class_key(3), "Right", class_key(2))
    return own.file()


@mxf_input("own-parents-cycle", "50,000 classes that inherit from each other in a circle", more=OWN)
def own_parents_cycle():
    own = Own()
    for i in range(50_000):
        own.add_class(class_key(i), f"Class{i}", class_key((i + 1) % 50_000))
    return own.file()


@mxf_input("own-parents-deep", "50,000 classes that inherit from each other in a row", more=OWN)
def own_parents_deep():
    own = Own()
    for i in range(50_000):
        own.add_class(class_key(i), f"Class{i}", class_key(i - 1) if i else INTERCHANGE_OBJECT)
    return own.file()


@mxf_input("own-properties", "100 generations with 1,000 properties each: 5 million properties by inheritance", more=OWN)
def own_properties():
    own = Own()
    for i in range(100):
        listed = [own.add_property(property_key(1000 * i + j), f"Property{1000 * i + j}") for j in range(1000)]
        own.add_class(class_key(i), f"Class{i}", class_key(i - 1) if i else INTERCHANGE_OBJECT, listed)
    return own.file()


@mxf_input("own-properties-shared", "500 classes that list the same 4,000 properties: two million", more=OWN)
def own_properties_shared():
    own = Own()
    listed = [own.add_property(property_key(j), f"Property{j}") for j in range(4000)]
    for i in range(500):
        own.add_class(class_key(i), f"Class{i}", listed=listed)
    return own.file()


@mxf_input("own-one-name", "30,000 classes and 30,000 properties of one name", more=OWN)
def own_one_name():
    own = Own()
    listed = [own.add_property(property_key(j), "Name") for j in range(30_000)]
    for i in range(30_000):
        own.add_class(class_key(i), "Name", listed=listed[i:i + 1])
    return own.file()


@mxf_input("own-names-odd", "names of NULs, surrogates, markup, 32,000 characters, and none", more=OWN)
def own_names_odd():
    own = Own()
    names = ["", "\0", "\0\0x", "<&>", "_REF", "xmlns", "Preface", "DarkMetadata", "InstanceUID", "x" * 32000, "\u4e2d" * 32000,
             "-", ".", "9", "x:y", "\uffff\ufffe"]
    for i, name in enumerate(names):
        listed = [own.add_property(property_key(i), name)]
        own.add_class(class_key(i), name, listed=listed)
    return own.file()


@mxf_input("own-one-hash", "50,000 classes whose keys fold to one number", more=OWN)
def own_one_hash():
    own = Own()
    for i, tail in enumerate(collisions.tails_of_one_hash(50_000)):
        own.add_class(class_key(0)[:8] + tail, f"Class{i}")
    return own.file()


@mxf_input("own-properties-one-hash", "30,000 properties whose keys fold to one number", more=OWN)
def own_properties_one_hash():
    own = Own()
    listed = [own.add_property(property_key(0)[:8] + tail, f"Property{i}")
              for i, tail in enumerate(collisions.tails_of_one_hash(30_000))]
    for i in range(10):
        own.add_class(class_key(i), f"Class{i}", listed=listed[3000 * i:3000 * (i + 1)])
    return own.file()


@mxf_input("own-types-cycle", "types renamed to themselves and to each other, and arrays, sets and records of themselves", more=OWN)
def own_types_cycle():
    own = Own()
    one, other = type_key(1), type_key(2)
    own.add_type("TypeDefinitionRename", one, "One", RenamedType=other)
    own.add_type("TypeDefinitionRename", other, "Other", RenamedType=one)
    for i, (kind, base) in enumerate((("TypeDefinitionRename", "RenamedType"),
                                      ("TypeDefinitionVariableArray", "VariableArrayElementType"),
                                      ("TypeDefinitionSet", "SetElementType"), ("TypeDefinitionString", "StringElementType"),
                                      ("TypeDefinitionFixedArray", "FixedArrayElementType"),
                                      ("TypeDefinitionEnumeration", "ElementType")), 3):
        own.add_type(kind, type_key(i), f"Type{i}", **{base: type_key(i)})
    own.add_type("TypeDefinitionRecord", type_key(20), "Record", MemberTypes=batch([type_key(20)] * 4000))
    listed = [own.add_property(property_key(i), f"Property{i}", type_key(i)) for i in range(1, 21)]
    own.add_class(class_key(1), "Class", listed=listed)
    return own.file()


@mxf_input("own-types-deep", "50,000 types of which each renames the one before, and arrays of arrays as deep", more=OWN)
def own_types_deep():
    own = Own()
    for i in range(50_000):
        base = type_key(i - 1) if i else UINT32
        if i % 2:
            own.add_type("TypeDefinitionRename", type_key(i), f"Type{i}", RenamedType=base)
        else:
            own.add_type("TypeDefinitionVariableArray", type_key(i), f"Type{i}", VariableArrayElementType=base)
    own.add_class(class_key(1), "Class", listed=[own.add_property(property_key(1), "Deep", type_key(49_999))])
    return own.file()


@mxf_input("own-enumerations", "500 enumerations of 8,000 values, with names of one letter, and of none", more=OWN)
def own_enumerations():
    own = Own()
    names, values = utf16("x\0" * 16000), batch([u64(i) for i in range(8000)], 8)
    for i in range(500):
        own.add_type("TypeDefinitionEnumeration", type_key(i), f"Type{i}", ElementType=UINT32, ElementNames=names,
                     ElementValues=values)
    own.add_class(class_key(1), "Class", listed=[own.add_property(property_key(i), f"P{i}", type_key(i)) for i in range(500)])
    return own.file()


@mxf_input("own-redefines", "other definitions of InterchangeObject, Preface and their properties", more=OWN)
def own_redefines():
    own = Own()
    preface = bytes.fromhex("060e2b34027f01010d01010101012f00")
    instance = bytes.fromhex("060e2b34010101010101150200000000")
    identifier = own.add_property(instance, "InstanceID", UINT32, 0x3C0A)
    own.add_class(INTERCHANGE_OBJECT, "InterchangeObject", preface, [identifier])
    own.add_class(preface, "Preface", preface, [own.add_property(property_key(1), "Own", UINT32, 0x3B02), identifier])
    return own.file()


@mxf_input("own-tags", "60,000 properties that claim the same static tags", more=OWN)
def own_tags():
    own = Own()
    for i in range(20):
        listed = [own.add_property(property_key(3000 * i + j), f"Property{3000 * i + j}", tag=j + 1) for j in range(3000)]
        own.add_class(class_key(i), f"Class{i}", listed=listed)
    return own.file()


def directory(entries, count=None, size=ENTRY):
    """@param entries  InstanceUID and offset of each."""
    value = u64(len(entries) if count is None else count) + u8(size)
    return klv(DIRECTORY_KEY, value + b"".join(identifier + u64(offset) + b"\0" for identifier, offset in entries))


def with_directory(make, link=None):
    """@param make  of the offset of the directory: the directory, or what is in its place."""
    header = Header()
    def root(offset):
        return klv(ROOT_KEY, items((0x3C0A, uid(40)), (0x0003, bytes(16) + u64(offset)), (0x0004, u32(8)),
                                   (0x0001, uid(41)), (0x0002, uid(1))))
    header.behind = [root(0)]
    offset = sum(map(len, header.file()))
    header.behind = [root(offset if link is None else link), make(offset)]
    return header.file()


@mxf_input("directory-self", "an object directory whose entries lead to itself, and to its root", more=["set-copy"])
def directory_self():
    return with_directory(lambda offset: directory([(uid(40), offset)] * 1000))


@mxf_input("directory-counts-2-63", "an object directory of 2^63 entries, which it has not", more=["set-copy"])
def directory_counts_2_63():
    return with_directory(lambda offset: directory([(uid(1), 0)], 1 << 63))


@mxf_input("directory-of-0", "an object directory of a million entries without octets", more=["set-copy"])
def directory_of_0():
    return with_directory(lambda offset: directory([], 1_000_000, 0))


@mxf_input("directory-million", "an object directory of a million entries that all lead to one set", more=["set-copy"])
def directory_million():
    return with_directory(lambda offset: directory([(uid(1), 0)] * 1_000_000))


@mxf_input("directory-twice", "two object directories, and a root that leads behind the end of the file", more=["set-copy"])
def directory_twice():
    return with_directory(lambda offset: directory([]) * 2, (1 << 64) - 1)


@mxf_input("directory-root-cut", "a root whose items end within a length, and a directory of eight octets", more=["set-copy"])
def directory_root_cut():
    header = Header()
    header.behind = [klv(ROOT_KEY, b"\x3c\x0a\x00"), klv(DIRECTORY_KEY, bytes(8))]
    return header.file()
