"""XML documents that attack the parser and what counts names: markup, encodings, entities, nesting, attributes."""

from . import collisions, joined, xml_input
from .markup import DECLARATION, ROOT, a_property, a_set, begin, document, element, end, sound_sets

MILLION = 1_000_000
OPEN = "<s377m:Selector><rp210:SelectedSegment>"
CLOSE = "</rp210:SelectedSegment></s377m:Selector>"


def doctype(subset):
    return f"<!DOCTYPE {ROOT} [\n{subset}]>\n"


@xml_input("names-one-bucket", "720 KB: 80,000 element names in one bucket of Xerces-C++")
def names_one_bucket():
    return document(f"<{name}/>" for name in collisions.names_in_one_bucket(80_000))


@xml_input("names-one-hash", "2.5 MB: 100,000 element names whose hashes are equal")
def names_one_hash():
    return document(f"<{name}/>" for name in collisions.names_of_one_hash(100_000))


@xml_input("names-million", "a million element names that differ")
def names_million():
    return document(joined(b"<n%d/>" % i for i in range(MILLION)))


@xml_input("prefixes", "9.4 MB: 300,000 prefixes, each for a namespace of its own")
def prefixes():
    return document(joined(b'<p%d:e xmlns:p%d="urn:%d"/>' % (i, i, i) for i in range(300_000)))


@xml_input("prefixes-one-bucket", "20,000 prefixes and namespaces in one bucket each, on one element and on many")
def prefixes_one_bucket():
    names = list(collisions.names_in_one_bucket(19_000))
    return document(element("s377m:Filler", **{f"xmlns__{name}": name for name in names[:9000]}),
                    (f'<{name}:e xmlns:{name}="{name}"/>' for name in names[9000:]))


@xml_input("attributes-one-bucket", "an element of 19,000 attributes in one bucket, in no namespace and in one")
def attributes_one_bucket():
    names = list(collisions.names_in_one_bucket(19_000))
    return document(element("s377m:Filler", **dict.fromkeys(names, "x")),
                    element("s377m:Filler", **{f"rp210__{name}": "x" for name in names[:9000]}))


@xml_input("attributes-million", "an element of a million attributes")
def attributes_million():
    return document("<s377m:Filler", joined(b' a%d="x"' % i for i in range(MILLION)), "/>")


@xml_input("attributes-same", "an element of a million attributes of one name")
def attributes_same():
    return document("<s377m:Filler", ' a="x"' * MILLION, "/>")


@xml_input("attribute-giant", "an InstanceUID of 64 MB")
def attribute_giant():
    return document(a_set("Filler", "A" * (64 << 20)))


@xml_input("name-giant", "an element name of 16 MB, and a prefix of 16 MB")
def name_giant():
    name = "n" * (16 << 20)
    return document(f"<{name}/><{name}:e/>")


@xml_input("names-below-limit", "2,000 names, a thousand times each: two million elements")
def names_below_limit():
    some = "".join(f"<n{i}/>" for i in range(2000))
    return document([some] * 1000)


@xml_input("doctype", "a document type, with declarations of elements and attributes")
def doctype_declared():
    subset = "".join(f'<!ELEMENT e{i} ANY><!ATTLIST e{i} a{i} CDATA "x">\n' for i in range(100_000))
    return document(before=doctype(subset))


@xml_input("entities-billion", "ten entities of ten entities each: 10^10 characters")
def entities_billion():
    levels = ['<!ENTITY e0 "0123456789">'] + [f'<!ENTITY e{i} "{f"&e{i - 1};" * 10}">' for i in range(1, 10)]
    return document(a_set("Filler", 20, a_property("ComponentLength", "&e9;")), before=doctype("\n".join(levels)))


@xml_input("entities-quadratic", "an entity of 100 KB, 100,000 times")
def entities_quadratic():
    return document("&e;" * 100_000, before=doctype(f'<!ENTITY e "{"x" * 100_000}">'))


@xml_input("entities-cycle", "entities that hold each other")
def entities_cycle():
    return document("&a;", before=doctype('<!ENTITY a "&b;"><!ENTITY b "&a;">'))


@xml_input("entities-of-files", "entities that are files and addresses of the host, and a document type that is one")
def entities_of_files():
    subset = ('<!ENTITY f SYSTEM "file:///etc/hostname"><!ENTITY n SYSTEM "http://127.0.0.1:9/x">'
              '<!ENTITY % p SYSTEM "file:///dev/zero"> %p;')
    return document(a_set("Filler", 20, a_property("ComponentLength", "&f;&n;")), before=doctype(subset))


@xml_input("entities-of-parameters", "parameter entities that double themselves 40 times")
def entities_of_parameters():
    levels = ["<!ENTITY % p0 'x'>"] + [f"<!ENTITY % p{i} '&#37;p{i - 1};&#37;p{i - 1};'>" for i in range(1, 41)]
    return document(before=doctype("\n".join(levels) + "%p40;"))


@xml_input("nested-490", "490 sets within each other, as deep as a document may be")
def nested_490():
    return document(OPEN * 490, CLOSE * 490)


@xml_input("nested-million", "a million elements within each other")
def nested_million():
    return document("<a>" * MILLION, "</a>" * MILLION)


@xml_input("nested-open", "ten million elements that none ends")
def nested_open():
    return [begin().encode(), b"<a>" * (10 * MILLION)]


@xml_input("nested-namespaces", "900 elements within each other, which all bind the same 20 prefixes again")
def nested_namespaces():
    bound = "".join(f' xmlns:p{i}="urn:{i}"' for i in range(20))
    return document(f"<s377m:Filler{bound}>" * 900, "</s377m:Filler>" * 900)


@xml_input("comments-million", "a million comments, within a property and behind the root")
def comments_million():
    comments = "<!---->" * (MILLION // 2)
    return [*document(a_set("Filler", 20, a_property("ComponentLength", f"{comments}1"))), comments.encode()]


@xml_input("sections-million", "a million CDATA sections that make one text")
def sections_million():
    return document(a_set("Identification", 20, a_property("ApplicationName", "<![CDATA[x]]>" * MILLION)))


@xml_input("instructions-million", "a million processing instructions, of which each claims to be the description")
def instructions_million():
    return document(before='<?mxfxml form="nested" sets="all" partition="header" metadata="0"?>' * 250_000
                    + "<?mxfxml?>" * 750_000)


@xml_input("characters-million", "a million character references, and as many escapes")
def characters_million():
    text = "&#65;&#x10FFFF;" * (MILLION // 2) + "$#x1;$#xD800;$#x24;#x41;" * (MILLION // 4)
    return document(a_set("Identification", 20, a_property("ApplicationName", text)))


@xml_input("references-odd", "character references of NUL, surrogates and beyond Unicode, of a million digits")
def references_odd():
    return document("&#0;&#xD800;&#x110000;&#" + "9" * MILLION + ";")


@xml_input("text-128-mib", "a text of 128 MiB where there may be none, and white space of 32 MiB")
def text_128_mib():
    return document([b"x" * (1 << 20)] * 128, b" \n" * (16 << 20))


@xml_input("utf8-invalid", "overlong characters, surrogates, and characters that end too soon")
def utf8_invalid():
    return document(b"\xc0\xaf\xe0\x80\xaf\xed\xa0\x80\xf4\x90\x80\x80\xff\xfe\xc3")


@xml_input("utf16-unmarked", "UTF-16 without byte order mark, in which all markup is doubled by NULs")
def utf16_unmarked():
    return b"".join(document(a_set("Filler", 20))).decode().replace("UTF-8", "UTF-16").encode("utf-16-be")


@xml_input("utf16-surrogates", "UTF-16 with lone surrogates, that ends within a code unit")
def utf16_surrogates():
    text = b"".join(document(a_set("Identification", 20, a_property("ApplicationName", "SURROGATE"))))
    octets = text.decode().replace("UTF-8", "UTF-16").encode("utf-16-le")
    return b"\xff\xfe" + octets.replace("SURROGATE".encode("utf-16-le"), b"\x00\xd8\x00\xd8\x00\xdc\x00\xdc") + b"x"


@xml_input("utf16-64-mib", "32 million characters of UTF-16, all of them three bytes in UTF-8")
def utf16_64_mib():
    before, _, behind = b"".join(document(a_set("Identification", 20, a_property("ApplicationName", "HERE")))).decode(
    ).replace("UTF-8", "UTF-16").partition("HERE")
    return [b"\xff\xfe", before.encode("utf-16-le"), *[b"\x2d\x4e" * (1 << 20)] * 32, behind.encode("utf-16-le")]


@xml_input("encoding-lies", "an XML declaration that names UTF-32 and EBCDIC, and markup that is none of them")
def encoding_lies():
    text = b"".join(document())
    return text.replace(b'encoding="UTF-8"', b'encoding="UTF-32"', 1) + text.replace(b"UTF-8", b"EBCDIC-CP-US", 1)


@xml_input("encoding-giant", "an XML declaration whose encoding has a name of a million letters")
def encoding_giant():
    return b"".join(document()).replace(b"UTF-8", b"U" * MILLION, 1)


@xml_input("nul-characters", "NULs within names, values, comments and behind the root")
def nul_characters():
    return [*document(a_set("Filler", 20, a_property("Component\0Length", "1\0")), "<!--\0-->"), b"\0" * 1000]


@xml_input("cut-in-tag", "a document that ends within a tag, after 100,000 sets")
def cut_in_tag():
    return [begin().encode(), *joined(a_set("Filler", i).encode() for i in range(1000, 101_000)), b"<s377m:Fill"]


@xml_input("roots-many", "100,000 roots, one behind the other")
def roots_many():
    return [DECLARATION.encode(), b"<a/>" * 100_000]


@xml_input("root-of-other-name", "a root of another vocabulary, that binds the prefixes to other namespaces")
def root_of_other_name():
    text = b"".join(document()).decode()
    return text.replace(ROOT, "rp210:Other").replace("urn:SMPTE:RP210", "urn:SMPTE:S377M").encode()


@xml_input("markup-odd", "ends of comments, sections and tags that begin nowhere, and quotes that none closes")
def markup_odd():
    return (begin() + sound_sets() + "]]>-->?>/>" * 1000 + "<a b='" + "<!--" * 1000 + end()).encode()
