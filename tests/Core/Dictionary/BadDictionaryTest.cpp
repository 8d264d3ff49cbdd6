#include <gtest/gtest.h>

#include <ostream>

#include "tests/Core/Dictionary/DictionaryTexts.h"

/// Messages to the author of a wrong text: the file and the line, what is wrong there, and what to do.
namespace Vantor {
namespace {

/// In texts and messages {S1}, {P1} and {L1} stand for keys of sets, properties and labels.
struct BadText {
  const char* name;
  const char* text;
  const char* message;
};
void PrintTo(const BadText& bad, std::ostream* out) { *out << bad.name; }

constexpr BadText kBadTexts[] = {
    {"EmptyFile", "", "bad.dictionary:1: the first row of a dictionary file has to be: dictionary 1"},
    {"OnlyComments",
     "# nothing\n"
     "\n",
     "bad.dictionary:1: the first row of a dictionary file has to be: dictionary 1"},
    {"OtherFile",
     "<?xml version=\"1.0\"?>\n"
     "<Groups/>\n",
     "bad.dictionary:1: the first row of a dictionary file has to be: dictionary 1"},
    {"IndentedFormat", "  dictionary 1\n",
     "bad.dictionary:1: there is white space before the row; the first row of a dictionary file has to be:"
     " dictionary 1"},
    {"FormatOfTheFuture",
     "# mine\n"
     "dictionary 2\n",
     "bad.dictionary:2: the format '2' is not known; this version reads format 1"},
    {"RowUnderNothing",
     "dictionary 1\n"
     "  -  {P1}  P  UInt8  optional\n",
     "bad.dictionary:2: an indented row belongs to the set or enumeration above it, and there is none; put"
     " it under one, or take the white space from its start"},
    {"RowUnderANamespace",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "namespace sets acme urn:acme\n"
     "  -  {P1}  P  UInt8  optional\n",
     "bad.dictionary:4: an indented row belongs to the set or enumeration above it, and there is none; put"
     " it under one, or take the white space from its start"},
    {"UnknownHeading",
     "dictionary 1\n"
     "sets\n",
     "bad.dictionary:2: 'sets' begins no row; a row that is not indented begins with a set's key, or with "
     "extend, enum, label, names or namespace"},
    {"SetWithoutParent",
     "dictionary 1\n"
     "{S1}  A\n",
     "bad.dictionary:2: a word is missing; a set is: key, symbol, parent or '-', and 'abstract' or name=X "
     "where that holds"},
    {"SetWithMisspeltAbstract",
     "dictionary 1\n"
     "{S1}  A  -  abstrakt\n",
     "bad.dictionary:2: 'abstrakt' is not expected here; a set is: key, symbol, parent or '-', and "
     "'abstract' or name=X where that holds"},
    {"SetWithAbstractBehindItsName",
     "dictionary 1\n"
     "{S1}  A  -  name=X  abstract\n",
     "bad.dictionary:2: there are too many words; a set is: key, symbol, parent or '-', and 'abstract' or "
     "name=X where that holds"},
    {"SetKeyTooShort",
     "dictionary 1\n"
     "060e2b34.02530101.0f0e0d0c.000001  A  -\n",
     "bad.dictionary:2: '060e2b34.02530101.0f0e0d0c.000001' is no key; write 32 hexadecimal digits, dots "
     "between octets allowed"},
    {"SetKeyOfAProperty",
     "dictionary 1\n"
     "{P1}  A  -\n",
     "bad.dictionary:2: '{P1}' is no key of a set; such a key begins with 060e2b34.0253 or, for any "
     "coding, 060e2b34.027f, or is a UUID with swapped halves"},
    {"SetKeyOfAnotherCoding",
     "dictionary 1\n"
     "060e2b34.02130101.0f0e0d0c.00000001  A  -\n",
     "bad.dictionary:2: '060e2b34.02130101.0f0e0d0c.00000001' is no key of a set; such a key begins with "
     "060e2b34.0253 or, for any coding, 060e2b34.027f, or is a UUID with swapped halves"},
    {"SetKeyTwice",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "060e2b34.027f0105.0f0e0d0c.00000001  B  -\n",
     "bad.dictionary:3: the key is that of the set A (bad.dictionary:2); to add properties to that set, "
     "write: extend A"},
    {"SetSymbolTwice",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "{S2}  A  -\n",
     "bad.dictionary:3: there is a set A already (bad.dictionary:2), with another key; choose another "
     "symbol"},
    {"SetSymbolWithABlankLetter",
     "dictionary 1\n"
     "{S1}  2A  -\n",
     "bad.dictionary:2: '2A' cannot be a symbol; begin with a letter or '_' and go on with these, digits, "
     "'-' and '.'"},
    {"SetParentThatIsNoSymbol",
     "dictionary 1\n"
     "{S1}  A  B!\n",
     "bad.dictionary:2: 'B!' cannot be a parent's symbol; begin with a letter or '_' and go on with these,"
     " digits, '-' and '.'"},
    {"SetNameWithoutName",
     "dictionary 1\n"
     "{S1}  A  -  name=\n",
     "bad.dictionary:2: '' cannot be a name in XML; begin with a letter or '_' and go on with these, "
     "digits, '-' and '.'"},
    {"UnknownParent",
     "dictionary 1\n"
     "{S1}  A  B\n",
     "bad.dictionary:2: A inherits from 'B', which is not defined; name a set of this or another file, or "
     "'-'"},
    {"ItsOwnParent",
     "dictionary 1\n"
     "{S1}  A  A\n",
     "bad.dictionary:2: A inherits from itself, by way of A; let one of them inherit from another set"},
    {"ItsOwnGrandparent",
     "dictionary 1\n"
     "{S1}  A  B\n"
     "{S2}  B  A\n",
     "bad.dictionary:3: B inherits from itself, by way of A; let one of them inherit from another set"},
    {"SetNameTwice",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "{S2}  B  -  name=A\n",
     "bad.dictionary:3: B has the name of A (bad.dictionary:2) in XML, where sets are told apart by it; "
     "add name=X"},
    {"SetNamedAsAReference",
     "dictionary 1\n"
     "{S1}  MY_REFERENCE  -\n",
     "bad.dictionary:2: MY_REFERENCE has the name MY_REFERENCE in XML, where DarkMetadata, "
     "FloatingDarkMetadata and names with '_REF' are no sets; add name=X"},
    {"SetNamedAsADarkSet",
     "dictionary 1\n"
     "{S1}  A  -  name=DarkMetadata\n",
     "bad.dictionary:2: A has the name DarkMetadata in XML, where DarkMetadata, FloatingDarkMetadata and "
     "names with '_REF' are no sets; add name=X"},
    {"ExtensionOfNothing",
     "dictionary 1\n"
     "extend A\n"
     "{S1}  A  -\n",
     "bad.dictionary:2: there is no set 'A' to extend; define it before, or give the file that does so "
     "first"},
    {"ExtensionOfTwoSets",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "extend A A\n",
     "bad.dictionary:3: there are too many words; an extension is: extend, symbol of the set"},
    {"PropertyWithoutStatus",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  UInt8\n",
     "bad.dictionary:3: a word is missing; a property is: local tag or '-', key, symbol, type, status, and"
     " name=X where XML has another name"},
    {"PropertyWithAComment",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  UInt8  optional  # a number\n",
     "bad.dictionary:3: there are too many words; a property is: local tag or '-', key, symbol, type, "
     "status, and name=X where XML has another name"},
    {"PropertyKeyOfASet",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {S1}  P  UInt8  optional\n",
     "bad.dictionary:3: '{S1}' is no key of a property; such a key begins with 060e2b34.01, or is a UUID with "
     "swapped halves"},
    {"PropertyKeyThatIsNone",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  060e2b34.01010101.0f0e0d0c.0000000g  P  UInt8  optional\n",
     "bad.dictionary:3: '060e2b34.01010101.0f0e0d0c.0000000g' is no key; write 32 hexadecimal digits, dots"
     " between octets allowed"},
    {"PropertySymbolWithAColon",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  a:P  UInt8  optional\n",
     "bad.dictionary:3: 'a:P' cannot be a symbol; begin with a letter or '_' and go on with these, digits,"
     " '-' and '.'"},
    {"UnknownType",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  Int24  optional\n",
     "bad.dictionary:3: 'Int24' is neither a type nor an enumeration; write a type's name, or define it: "
     "enum Int24 UInt8"},
    {"NestedCollections",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  ArrayOf(BatchOf(UInt8))  optional\n",
     "bad.dictionary:3: 'ArrayOf(BatchOf(UInt8))' is no type; write a type's name, StrongReference(Set), "
     "WeakReference(Set), ArrayOf(...) or BatchOf(...)"},
    {"OpenParenthesis",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  StrongReference(A  optional\n",
     "bad.dictionary:3: 'StrongReference(A' is no type; write a type's name, StrongReference(Set), "
     "WeakReference(Set), ArrayOf(...) or BatchOf(...)"},
    {"ReferenceToNothing",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  WeakReference()  optional\n",
     "bad.dictionary:3: 'WeakReference()' is no type; write a type's name, StrongReference(Set), "
     "WeakReference(Set), ArrayOf(...) or BatchOf(...)"},
    {"ItemsOfNoSize",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  ArrayOf(UTF16String)  optional\n",
     "bad.dictionary:3: 'ArrayOf(UTF16String)' has items of no fixed size, which nothing could tell apart;"
     " make it a DataStream"},
    {"UnknownTarget",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  BatchOf(StrongReference(B))  optional\n",
     "bad.dictionary:3: P refers to the set B, which is not defined; define it, or leave out what the "
     "reference is to"},
    {"TagOfThreeDigits",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  3c0  {P1}  P  UInt8  optional\n",
     "bad.dictionary:3: '3c0' is no local tag; write four hexadecimal digits, or '-' when there is no "
     "static one"},
    {"TagZero",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  0000  {P1}  P  UInt8  optional\n",
     "bad.dictionary:3: '0000' is no local tag; write four hexadecimal digits, or '-' when there is no "
     "static one"},
    {"TagThatIsNoNumber",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  3c0x  {P1}  P  UInt8  optional\n",
     "bad.dictionary:3: '3c0x' is no local tag; write four hexadecimal digits, or '-' when there is no "
     "static one"},
    {"DynamicTag",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  8000  {P1}  P  UInt8  optional\n",
     "bad.dictionary:3: '8000' is a dynamic local tag, which each file gives by itself; write '-'"},
    {"UnknownStatus",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  UInt8  Optional\n",
     "bad.dictionary:3: 'Optional' is no status; write required, encoder-required, decoder-required, "
     "best-effort or optional"},
    {"TagTwice",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  4001  {P1}  P  UInt8  optional\n"
     "  4001  {P2}  Q  UInt8  optional\n",
     "bad.dictionary:4: Q has the local tag of P (bad.dictionary:3) in the set A; give it another, or '-' "
     "for one that each file gives"},
    {"TagOfAnInheritedProperty",
     "dictionary 1\n"
     "{S2}  B  A\n"
     "  4001  {P1}  P  UInt8  optional\n"
     "{S1}  A  -\n"
     "  4001  {P2}  Q  UInt8  optional\n",
     "bad.dictionary:5: Q has the local tag of P (bad.dictionary:3) in the set B; give it another, or '-' "
     "for one that each file gives"},
    {"PropertyTwiceInASet",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  UInt8  optional\n"
     "  -  {P1}  P  UInt8  optional\n",
     "bad.dictionary:4: A has the property P already (bad.dictionary:3); take this row away"},
    {"PropertyTwiceByAnExtension",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  UInt8  optional\n"
     "extend A\n"
     "  -  {P1}  P  UInt8  optional\n",
     "bad.dictionary:5: A has the property P already (bad.dictionary:3); take this row away"},
    {"InheritedPropertyWithAnotherTag",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  4001  {P1}  P  UInt8  optional\n"
     "{S2}  B  A\n"
     "  -  {P1}  P  UInt8  optional\n",
     "bad.dictionary:5: B has the property P already (bad.dictionary:3), with another local tag; write the"
     " one that stands there"},
    {"PropertyOfAnotherType",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  ArrayOf(StrongReference(A))  optional  name=Ps\n"
     "{S2}  B  -\n"
     "  -  {P1}  P  BatchOf(StrongReference(A))  optional  name=Ps\n",
     "bad.dictionary:5: the key is that of the property P ArrayOf(StrongReference(A)) name=Ps "
     "(bad.dictionary:3); write it as it stands there, or take another key"},
    {"PropertyOfAnotherSymbol",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  UInt8  optional\n"
     "{S2}  B  -\n"
     "  -  {P1}  Q  UInt8  optional\n",
     "bad.dictionary:5: the key is that of the property P UInt8 (bad.dictionary:3); write it as it stands "
     "there, or take another key"},
    {"PropertyOfAnotherName",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  UInt8  optional\n"
     "{S2}  B  -\n"
     "  -  {P1}  P  UInt8  optional  name=Q\n",
     "bad.dictionary:5: the key is that of the property P UInt8 (bad.dictionary:3); write it as it stands "
     "there, or take another key"},
    {"PropertyOfAnotherTarget",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  StrongReference(A)  optional\n"
     "{S2}  B  -\n"
     "  -  {P1}  P  StrongReference(B)  optional\n",
     "bad.dictionary:5: the key is that of the property P StrongReference(A) (bad.dictionary:3); write it "
     "as it stands there, or take another key"},
    {"PropertyOfAnotherEnumeration",
     "dictionary 1\n"
     "enum E UInt8\n"
     "enum F UInt8\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  E  optional\n"
     "{S2}  B  -\n"
     "  -  {P1}  P  F  optional\n",
     "bad.dictionary:7: the key is that of the property P E (bad.dictionary:5); write it as it stands "
     "there, or take another key"},
    {"PropertyNameTwice",
     "dictionary 1\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  UInt8  optional\n"
     "  -  {P2}  P  UInt8  optional\n",
     "bad.dictionary:4: P has the name of P (bad.dictionary:3) in the namespace urn:SMPTE:RP210; add "
     "name=X, or choose a namespace of your own"},
    {"PropertyNameTwiceInANamespace",
     "dictionary 1\n"
     "namespace properties acme urn:acme\n"
     "{S1}  A  -\n"
     "  -  {P1}  P  UInt8  optional\n"
     "  -  {P2}  Q  UInt8  optional  name=P\n",
     "bad.dictionary:5: Q has the name of P (bad.dictionary:4) in the namespace urn:acme; add name=X, or "
     "choose a namespace of your own"},
    {"PropertyNamedAsTheIdentifier",
     "dictionary 1\n"
     "namespace properties acme urn:acme\n"
     "{S1}  A  -\n"
     "  -  {P1}  InstanceUID  UUID  optional\n",
     "bad.dictionary:4: the name InstanceUID is that of an attribute of every set, which is in no "
     "namespace of yours; add name=X"},
    {"EnumerationWithoutType",
     "dictionary 1\n"
     "enum E\n",
     "bad.dictionary:2: a word is missing; an enumeration is: enum, name, integer type"},
    {"EnumerationOfText",
     "dictionary 1\n"
     "enum E UTF16String\n",
     "bad.dictionary:2: an enumeration cannot be over 'UTF16String'; take one of Int8 to Int64 and UInt8 "
     "to UInt64"},
    {"EnumerationNamedAsAType",
     "dictionary 1\n"
     "enum UInt8 UInt8\n",
     "bad.dictionary:2: 'UInt8' is the name of a type; choose another"},
    {"EnumerationNamedByNoName",
     "dictionary 1\n"
     "enum 1st UInt8\n",
     "bad.dictionary:2: '1st' cannot be the name of an enumeration; begin with a letter or '_' and go on "
     "with these, digits, '-' and '.'"},
    {"EnumerationTwice",
     "dictionary 1\n"
     "enum E UInt8\n"
     "enum E UInt8\n",
     "bad.dictionary:3: there is an enumeration 'E' already (bad.dictionary:2); choose another name"},
    {"ValueWithoutName",
     "dictionary 1\n"
     "enum E UInt8\n"
     "  0\n",
     "bad.dictionary:3: a word is missing; a value of an enumeration is: number, name"},
    {"ValueNamedByNoName",
     "dictionary 1\n"
     "enum E UInt8\n"
     "  0  0\n",
     "bad.dictionary:3: '0' cannot be the name of a value; begin with a letter or '_' and go on with "
     "these, digits, '-' and '.'"},
    {"ValueTooLarge",
     "dictionary 1\n"
     "enum E UInt8\n"
     "  256  X\n",
     "bad.dictionary:3: '256' is no number of the type UInt8; write a decimal number in its range"},
    {"ValueTooSmall",
     "dictionary 1\n"
     "enum E Int8\n"
     "  -129  X\n",
     "bad.dictionary:3: '-129' is no number of the type Int8; write a decimal number in its range"},
    {"ValueInHexadecimal",
     "dictionary 1\n"
     "enum E UInt8\n"
     "  0x10  X\n",
     "bad.dictionary:3: '0x10' is no number of the type UInt8; write a decimal number in its range"},
    {"ValueTwice",
     "dictionary 1\n"
     "enum E UInt8\n"
     "  0  X\n"
     "  1  Y\n"
     "  0  Z\n",
     "bad.dictionary:5: E has the number 0 already (bad.dictionary:3); give each number and each name once"},
    {"ValueNameTwice",
     "dictionary 1\n"
     "enum E UInt8\n"
     "  0  X\n"
     "  1  X\n",
     "bad.dictionary:4: E has the name X already (bad.dictionary:3); give each number and each name once"},
    {"LabelWithoutName",
     "dictionary 1\n"
     "label {L1}  L\n",
     "bad.dictionary:2: a word is missing; a label is: label, key, symbol, name"},
    {"LabelKeyThatIsNoLabel",
     "dictionary 1\n"
     "label 00000000.00000000.00000000.00000001  L  A label\n",
     "bad.dictionary:2: '00000000.00000000.00000000.00000001' is no label; a label begins with 060e2b34"},
    {"LabelKeyThatIsNoKey",
     "dictionary 1\n"
     "label 1  L  A label\n",
     "bad.dictionary:2: '1' is no key; write 32 hexadecimal digits, dots between octets allowed"},
    {"LabelSymbolThatIsNone",
     "dictionary 1\n"
     "label {L1}  -  A label\n",
     "bad.dictionary:2: '-' cannot be a symbol; begin with a letter or '_' and go on with these, digits, "
     "'-' and '.'"},
    {"LabelKeyTwice",
     "dictionary 1\n"
     "label {L1}  L  A label\n"
     "label 060e2b34.0401017e.0f0e0d0c.00000001  M  Another\n",
     "bad.dictionary:3: the label is defined already, as L (bad.dictionary:2); take one of the two away"},
    {"LabelSymbolTwice",
     "dictionary 1\n"
     "label {L1}  L  A label\n"
     "label {L2}  L  Another\n",
     "bad.dictionary:3: there is a label L already (bad.dictionary:2), with another key; choose another "
     "symbol"},
    {"NamespaceOfNothing",
     "dictionary 1\n"
     "namespace set acme urn:acme\n",
     "bad.dictionary:2: 'set' is neither 'sets' nor 'properties'; a namespace is: namespace, 'sets' or "
     "'properties', prefix, URI"},
    {"NamespaceWithoutURI",
     "dictionary 1\n"
     "namespace sets acme\n",
     "bad.dictionary:2: a word is missing; a namespace is: namespace, 'sets' or 'properties', prefix, URI"},
    {"NamespacePrefixWithAColon",
     "dictionary 1\n"
     "namespace sets acme: urn:acme\n",
     "bad.dictionary:2: 'acme:' cannot be a prefix; begin with a letter or '_' and go on with these, "
     "digits, '-' and '.'"},
    {"NamespaceURIWithALetter",
     "dictionary 1\n"
     "namespace sets acme urn:caf\xc3\xa9"
     "\n",
     "bad.dictionary:2: the URI 'urn:caf\xc3\xa9"
     "' has characters that are not printable ASCII; escape them as %XX"},
    {"NamespacePrefixOfTheDocument",
     "dictionary 1\n"
     "namespace sets types urn:acme\n",
     "bad.dictionary:2: the prefix 'types' for 'urn:acme' clashes with 'types' for "
     "'urn:SMPTE:Types:MXF', which exports have for what is built in; choose another of your own"},
    {"NamespaceURIOfTheDocument",
     "dictionary 1\n"
     "namespace sets acme urn:SMPTE:S377M\n",
     "bad.dictionary:2: the prefix 'acme' for 'urn:SMPTE:S377M' clashes with 's377m' for "
     "'urn:SMPTE:S377M', which exports have for what is built in; choose another of your own"},
    {"NamespaceOfAVocabulary",
     "dictionary 1\n"
     "namespace sets st395 http://www.smpte-ra.org/schemas/434/2014/groups/395/2012\n",
     "bad.dictionary:2: the prefix 'st395' for 'http://www.smpte-ra.org/schemas/434/2014/groups/395/2012' clashes with "
     "'st395' for 'http://www.smpte-ra.org/schemas/434/2014/groups/395/2012', which exports have for what is built "
     "in; choose another of your own"},
    {"NamespaceOfContainers",
     "dictionary 1\n"
     "namespace properties groups urn:SMPTE:Groups:MXF\n",
     "bad.dictionary:2: the prefix 'groups' for 'urn:SMPTE:Groups:MXF' clashes with 'groups' for "
     "'urn:SMPTE:Groups:MXF', which exports have for what is built in; choose another of your own"},
    {"PropertyInTwoNamespaces",
     "dictionary 1\n"
     "060e2b34.02530101.0f0e0d0c.00000001 Shot -\n"
     "namespace properties acme urn:acme\n"
     "extend Shot\n"
     "  - 060e2b34.01010101.0f0e0d0c.00000001 Grade UInt8 optional\n"
     "060e2b34.02530101.0f0e0d0c.00000002 Take -\n"
     "namespace properties other urn:other\n"
     "extend Take\n"
     "  - 060e2b34.01010101.0f0e0d0c.00000001 Grade UInt8 optional\n",
     "bad.dictionary:9: the key is that of the property Grade UInt8 (bad.dictionary:5); write it as it stands there, "
     "or "
     "take another key"},
    {"NamespacePrefixOfAnother",
     "dictionary 1\n"
     "namespace sets acme urn:acme\n"
     "namespace properties acme urn:acme:properties\n",
     "bad.dictionary:3: the prefix 'acme' for 'urn:acme:properties' clashes with 'acme' for 'urn:acme'; an "
     "export needs one prefix for each namespace, choose another"},
    {"NamespaceURIOfAnother",
     "dictionary 1\n"
     "namespace sets acme urn:acme\n"
     "namespace properties acmeP urn:acme\n",
     "bad.dictionary:3: the prefix 'acmeP' for 'urn:acme' clashes with 'acme' for 'urn:acme'; an export "
     "needs one prefix for each namespace, choose another"},
    {"NamespacePrefixOfXML",
     "dictionary 1\n"
     "namespace sets XmlMine urn:acme\n",
     "bad.dictionary:2: the prefix 'XmlMine' for 'urn:acme' is reserved for XML itself; choose another"},
    {"NamespaceOfDeclarations",
     "dictionary 1\n"
     "namespace sets acme http://www.w3.org/2000/xmlns/\n",
     "bad.dictionary:2: the prefix 'acme' for 'http://www.w3.org/2000/xmlns/' is reserved for XML itself; "
     "choose another"},
    {"NamespacePrefixOfReferences",
     "dictionary 1\n"
     "namespace sets my_REF urn:acme\n",
     "bad.dictionary:2: exports use names with '_REF' for references; choose another prefix than "
     "'my_REF'"},
};

std::string withKeys(std::string text) {
  for (std::size_t at = 0; (at = text.find('{', at)) != std::string::npos;) {
    const auto number = static_cast<uint32>(text[at + 2] - '0');
    const std::string key = text[at + 1] == 'S'   ? setKey(number)
                            : text[at + 1] == 'P' ? propertyKey(number)
                                                  : numberedKey("060e2b34.04010101.0f0e0d0c.", number);
    text.replace(at, 4, key);
  }
  return text;
}

std::string refusalOfText(const std::string& text) {
  Definitions definitions;
  return refusalOf([&] {
    definitions.readText(text, "bad.dictionary");
    definitions.check();
  });
}

class BadDictionary : public ::testing::TestWithParam<BadText> {};

TEST_P(BadDictionary, IsRefusedWithFileLineReasonAndRemedy) {
  EXPECT_EQ(refusalOfText(withKeys(GetParam().text)), withKeys(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(Texts, BadDictionary, ::testing::ValuesIn(kBadTexts),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace Vantor
