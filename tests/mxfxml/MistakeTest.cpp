#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <ostream>
#include <regex>
#include <stdexcept>

#include "Edit.h"
#include "Program.h"
#include "ScratchFolder.h"

/// What users get wrong in a document that they edit, and what they are told.
namespace Vantor::Tool {
namespace {

using Change = std::function<std::string(const std::string&)>;

constexpr const char* kSample = "gst-audio-ac3.mxf";
const std::string kTrack = "TimelineTrack 79.4E.DE.7C.04.C7.43.42.80.EE.FA.59.53.B7.25.B3: ";
const std::string kTimecode = "Timecode 74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D: ";
const std::string kPreface = "Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: ";

/// The first of the texts becomes another.
Change replaced(const std::string& from, const std::string& to) {
  return [=](std::string xml) {
    const auto at = xml.find(from);
    if (at == std::string::npos) throw std::runtime_error("the document has no " + from);
    return xml.replace(at, from.size(), to);
  };
}

Change both(const Change& first, const Change& second) {
  return [=](const std::string& xml) { return second(first(xml)); };
}

Change cutAt(const std::string& text) {
  return [=](const std::string& xml) { return xml.substr(0, xml.find(text)); };
}

/// Without the first element of the name.
Change without(const std::string& name) {
  return [=](std::string xml) {
    const auto from = xml.find("<" + name + ">");
    const std::string end = "</" + name + ">";
    return xml.erase(from, xml.find(end) + end.size() - from);
  };
}

Change only(const std::string& text) {
  return [=](const std::string&) { return text; };
}

/// ASCII as UTF-16 with a byte order mark, whatever the declaration says.
Change inUTF16() {
  return [](const std::string& xml) {
    std::string wide = "\xff\xfe";
    for (const char character : xml) wide += {character, '\0'};
    return wide;
  };
}

struct Mistake {
  const char* name;
  Change change;
  std::vector<std::string> warnings;      ///< without what they start with; InstanceUIDs that are made up are NEW
  std::string refusal;                    ///< empty where what could be read is put back
  std::vector<std::string> remarks = {};  ///< of what is put back, without what they start with
  Change alsoPutBack = [](const std::string& xml) { return xml; };
  std::vector<std::string> ignored = {};  ///< rules that the rest breaks
};

/// What is told of something that the document lacks because of a mistake.
std::vector<std::string> kept(const std::string& kind, const std::string& what) {
  return {"1 " + kind + " that the document lacks is kept, since parts of it could not be read", "kept: the " + what};
}
const std::string kTheTrack = "TimelineTrack 79.4E.DE.7C.04.C7.43.42.80.EE.FA.59.53.B7.25.B3";
const std::string kTheTimecode = "Timecode 74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D";

void PrintTo(const Mistake& mistake, std::ostream* stream) { *stream << mistake.name; }

const std::string kNoInstanceUID =
    "the set has no rp210:InstanceUID; restore it, or name a new set: rp210:InstanceUID=\"new:...\"";
std::string noSetOfTheFile(int line) {
  return "cannot be put into ORIGINAL: line " + std::to_string(line) +
         ": the set has no valid InstanceUID, so that it matches no set of the file";
}

const Mistake kMistakes[] = {
    {"wrong element name",
     replaced("rp210:TrackName>Timecode track</rp210:TrackName", "rp210:TrackTitle>Timecode track</rp210:TrackTitle"),
     {"line 23: " + kTrack +
      "the set has no property TrackTitle in the namespace urn:SMPTE:RP210; the element is not read"},
     "",
     kept("property", "TrackName of the " + kTheTrack)},
    {"missing set",
     both(replaced("<s377m:Timecode rp210:InstanceUID=\"74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D\">",
                   "<s377m:Tomcode rp210:InstanceUID=\"74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D\">"),
          replaced("</s377m:Timecode>", "</s377m:Tomcode>")),
     {"line 29: Sequence 8B.A4.E1.37.37.4E.42.EB.9E.4D.A4.6E.41.69.C5.DD: ComponentObjects: there is no set Tomcode in "
      "the namespace urn:SMPTE:S377M; --dictionary FILE adds definitions"},
     "",
     kept("set", kTheTimecode)},
    {"letters in a number",
     replaced("<rp210:TrackID>1<", "<rp210:TrackID>one<"),
     {"line 22: " + kTrack + "TrackID: 'one' is no whole number from 0 to 4294967295"},
     ""},
    {"number with a unit",
     replaced("FramesPerSecond>188<", "FramesPerSecond>188 fps<"),
     {"line 33: " + kTimecode + "FramesPerSecond: '188 fps' is no whole number from 0 to 65535"},
     ""},
    {"number with a decimal point",
     replaced("FramesPerSecond>188<", "FramesPerSecond>188.0<"),
     {"line 33: " + kTimecode + "FramesPerSecond: '188.0' is no whole number from 0 to 65535"},
     ""},
    {"hexadecimal number",
     replaced("FramesPerSecond>188<", "FramesPerSecond>0xBC<"),
     {"line 33: " + kTimecode + "FramesPerSecond: '0xBC' is no whole number from 0 to 65535"},
     ""},
    {"negative number",
     replaced("<rp210:TrackID>1<", "<rp210:TrackID>-1<"),
     {"line 22: " + kTrack + "TrackID: '-1' is no whole number from 0 to 4294967295"},
     ""},
    {"number out of range",
     replaced("FramesPerSecond>188<", "FramesPerSecond>65536<"),
     {"line 33: " + kTimecode + "FramesPerSecond: '65536' is no whole number from 0 to 65535"},
     ""},
    {"number of many digits",
     replaced("Origin>0<", "Origin>9223372036854775808<"),
     {"line 44: " + kTrack +
      "Origin: '9223372036854775808' is no whole number from -9223372036854775808 to 9223372036854775807"},
     ""},
    {"empty number",
     replaced("<rp210:TrackID>1<", "<rp210:TrackID><"),
     {"line 22: " + kTrack + "TrackID: the element is empty, and the type UInt32 has no empty value"},
     ""},
    {"number behind a number",
     replaced("<rp210:TrackID>1<", "<rp210:TrackID>1 2<"),
     {"line 22: " + kTrack + "TrackID: '1 2' is no whole number from 0 to 4294967295"},
     ""},
    {"boolean in words",
     replaced("DropFrame>0<", "DropFrame>no<"),
     {"line 34: " + kTimecode + "DropFrame: 'no' is neither 0 nor 1, neither false nor true"},
     ""},
    {"boolean of two",
     replaced("DropFrame>0<", "DropFrame>2<"),
     {"line 34: " + kTimecode + "DropFrame: '2' is neither 0 nor 1, neither false nor true"},
     ""},
    {"label without its last octet",
     replaced(".01.09.00</rp210:OperationalPattern>", ".01.09</rp210:OperationalPattern>"),
     {"line 229: " + kPreface +
      "OperationalPattern: '06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09' is not the text of an AUID"},
     ""},
    {"label with an octet too many",
     replaced(".01.09.00</rp210:OperationalPattern>", ".01.09.00.00</rp210:OperationalPattern>"),
     {"line 229: " + kPreface +
      "OperationalPattern: '06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00.00' is not the text of an AUID"},
     ""},
    {"label with a letter that is no digit",
     replaced(".01.09.00</rp210:OperationalPattern>", ".01.09.0G</rp210:OperationalPattern>"),
     {"line 229: " + kPreface +
      "OperationalPattern: '06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.0G' is not the text of an AUID"},
     ""},
    {"label without dots",
     replaced("06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00</rp210:OperationalPattern>",
              "060E2B34040101010D01020101010900</rp210:OperationalPattern>"),
     {"line 229: " + kPreface + "OperationalPattern: '060E2B34040101010D01020101010900' is not the text of an AUID"},
     ""},
    {"two labels",
     replaced(".01.09.00</rp210:OperationalPattern>",
              ".01.09.00 06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00</rp210:OperationalPattern>"),
     {"line 229: " + kPreface +
      "OperationalPattern: '06.0E.2B.34.04.01.01.01.0D.01.02.01.01.0...' is more than one identifier"},
     ""},
    {"UMID of half its length",
     replaced(".60.6E.55.EA.41.0D.60</rp210:PackageID>", "</rp210:PackageID>"),
     {"line 18: MaterialPackage 41.B3.1A.F9.95.F2.4B.72.AE.C8.96.5D.AC.A5.45.E7: PackageID: "
      "'06.0A.2B.34.01.01.01.05.01.01.0D.22.13.6B.8D.CD.9C.D3.91.7D.27.A2.4C.F9.A8' is not the text of a UMID32"},
     ""},
    {"item of a batch that is no label",
     replaced("04.40.01</rp210:Element>", "04.40</rp210:Element>"),
     {"line 230: " + kPreface +
      "EssenceContainers: '06.0E.2B.34.04.01.01.02.0D.01.03.01.02.04.40' is not the text of an AUID"},
     ""},
    {"duplicate property",
     replaced("<rp210:TrackID>1</rp210:TrackID>", "<rp210:TrackID>1</rp210:TrackID><rp210:TrackID>9</rp210:TrackID>"),
     {"line 22: " + kTrack + "TrackID: TrackID stands here a second time; only the first is read"},
     ""},
    {"dangling reference",
     replaced("MaterialPackage_REF types:TargetInstance=\"41", "MaterialPackage_REF types:TargetInstance=\"FF"),
     {"line 227: " + kPreface +
      "PrimaryPackage: no set of the document has the InstanceUID FF.B3.1A.F9.95.F2.4B.72.AE.C8.96.5D.AC.A5.45.E7"},
     "",
     {},
     replaced("MaterialPackage_REF types:TargetInstance=\"41", "Dangling_REF types:TargetInstance=\"FF"),
     {"dangling-weak-reference"}},
    {"reference without target",
     replaced(" types:TargetInstance=\"41.B3.1A.F9.95.F2.4B.72.AE.C8.96.5D.AC.A5.45.E7\"/>", "/>"),
     {"line 227: " + kPreface +
      "PrimaryPackage: the reference MaterialPackage_REF names no set: it lacks the attribute TargetInstance "
      "in the namespace urn:SMPTE:Types:MXF"},
     ""},
    {"reference to no identifier",
     replaced("<s377m:MaterialPackage_REF types:TargetInstance=\"41.B3",
              "<s377m:MaterialPackage_REF types:TargetInstance=\"the source package"),
     {"line 227: " + kPreface +
      "PrimaryPackage: 'the source package.1A.F9.95.F2.4B.72.AE....' is more than one identifier"},
     ""},
    {"reference without element",
     replaced("<s377m:MaterialPackage_REF types:TargetInstance=\"41.B3.1A.F9.95.F2.4B.72.AE.C8.96.5D.AC.A5.45.E7\"/>",
              ""),
     {"line 226: " + kPreface + "PrimaryPackage: the reference is empty"},
     ""},
    {"wrong namespace of properties",
     replaced("urn:SMPTE:RP210", "urn:smpte:rp210"),
     {"line 4: Preface: " + kNoInstanceUID,
      "line 4: Preface: the set has no attribute InstanceUID in the namespace urn:smpte:rp210; it is not read",
      "line 5: Preface: the set has no property FileLastModified in the namespace urn:smpte:rp210; the element is "
      "not read",
      "line 14: Preface: the set has no property ContentStorageObject in the namespace urn:smpte:rp210; the "
      "element is not read",
      "line 191: Preface: the set has no property FormatVersion in the namespace urn:smpte:rp210; the element is "
      "not read",
      "line 192: Preface: the set has no property IdentificationList in the namespace urn:smpte:rp210; the element "
      "is not read",
      "line 225: Preface: the set has no property ObjectModelVersion in the namespace urn:smpte:rp210; the element "
      "is not read",
      "line 226: Preface: the set has no property PrimaryPackage in the namespace urn:smpte:rp210; the element is "
      "not read",
      "line 229: Preface: the set has no property OperationalPattern in the namespace urn:smpte:rp210; the element "
      "is not read",
      "line 230: Preface: the set has no property EssenceContainers in the namespace urn:smpte:rp210; the element "
      "is not read",
      "line 233: Preface: the set has no property DescriptiveSchemes in the namespace urn:smpte:rp210; the element "
      "is not read"},
     noSetOfTheFile(4)},
    {"wrong namespace of sets",
     replaced("urn:SMPTE:S377M", "urn:SMPTE:S377"),
     {"line 3: the root element is MetadataSets in the namespace urn:SMPTE:S377, not MetadataSets in the namespace "
      "urn:SMPTE:S377M",
      "line 4: there is no set Preface in the namespace urn:SMPTE:S377"},
     "cannot be put into ORIGINAL: the document has no set that could be read"},
    {"set of another vocabulary",
     both(replaced("xmlns:types=",
                   "xmlns:st395=\"http://www.smpte-ra.org/schemas/434/2014/groups/395/2012\" xmlns:types="),
          both(replaced("<s377m:Timecode ", "<st395:Timecode "), replaced("</s377m:Timecode>", "</st395:Timecode>"))),
     {"line 29: Sequence 8B.A4.E1.37.37.4E.42.EB.9E.4D.A4.6E.41.69.C5.DD: ComponentObjects: there is no set Timecode "
      "in the namespace http://www.smpte-ra.org/schemas/434/2014/groups/395/2012"},
     "",
     kept("set", kTheTimecode)},
    {"property of another vocabulary",
     replaced(
         "<rp210:TrackID>1</rp210:TrackID>",
         "<st335:TrackID xmlns:st335=\"http://www.smpte-ra.org/schemas/434/2014/elements/335/2012\">1</st335:TrackID>"),
     {"line 22: " + kTrack +
      "the set has no property TrackID in the namespace http://www.smpte-ra.org/schemas/434/2014/elements/335/2012; "
      "the element is not read"},
     "",
     kept("property", "TrackID of the " + kTheTrack)},
    {"property in a namespace of somebody else",
     replaced("<rp210:TrackID>1</rp210:TrackID>", "<acme:TrackID xmlns:acme=\"urn:acme\">1</acme:TrackID>"),
     {"line 22: " + kTrack +
      "the set has no property TrackID in the namespace urn:acme; the element is not read; --dictionary FILE adds "
      "definitions"},
     "",
     kept("property", "TrackID of the " + kTheTrack)},
    {"unknown prefix",
     replaced("<rp210:TrackID>1</rp210:TrackID>", "<rp211:TrackID>1</rp211:TrackID>"),
     {},
     "not well-formed XML: line 22, column 32: prefix 'rp211' can not be resolved to namespace URI"},
    {"missing prefix",
     replaced("<rp210:TrackID>1</rp210:TrackID>", "<TrackID>1</TrackID>"),
     {"line 22: " + kTrack + "the set has no property TrackID in no namespace; the element is not read"},
     "",
     kept("property", "TrackID of the " + kTheTrack)},
    {"prefix of sets for a property",
     replaced("<rp210:TrackID>1</rp210:TrackID>", "<s377m:TrackID>1</s377m:TrackID>"),
     {"line 22: " + kTrack +
      "the set has no property TrackID in the namespace urn:SMPTE:S377M; the element is not read"},
     "",
     kept("property", "TrackID of the " + kTheTrack)},
    {"prefix that was taken away",
     replaced(" xmlns:types=\"urn:SMPTE:Types:MXF\"", ""),
     {},
     "not well-formed XML: line 6, column 19: prefix 'types' can not be resolved to namespace URI"},
    {"missing end tag",
     replaced("</rp210:TrackName>", ""),
     {},
     "not well-formed XML: line 45, column 17: expected end of tag 'rp210:TrackName'"},
    {"end tag of another case",
     replaced("</rp210:TrackName>", "</rp210:Trackname>"),
     {},
     "not well-formed XML: line 23, column 50: expected end of tag 'rp210:TrackName'"},
    {"missing end",
     cutAt("</s377m:MetadataSets>"),
     {},
     "not well-formed XML: line 235, column 1: input ended before all started tags were ended; last tag started is "
     "'s377m:MetadataSets'"},
    {"missing half",
     cutAt("<rp210:FramesPerSecond>"),
     {},
     "not well-formed XML: line 33, column 25: input ended before all started tags were ended; last tag started is "
     "'s377m:Timecode'"},
    {"unescaped ampersand",
     replaced("Timecode track", "Time & code"),
     {},
     "not well-formed XML: line 23, column 40: expected entity name for reference"},
    {"unescaped less-than sign",
     replaced("Timecode track", "Time < code"),
     {},
     "not well-formed XML: line 23, column 40: element name expected"},
    {"attribute without quotes",
     replaced("InstanceUID=\"74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D\"",
              "InstanceUID=74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D"),
     {},
     "not well-formed XML: line 29, column 57: attribute value expected"},
    {"renamed set",
     both(replaced("<s377m:Timecode ", "<s377m:Filler "), replaced("</s377m:Timecode>", "</s377m:Filler>")),
     {"line 32: Filler 74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D: the set has no property StartTimecode in the "
      "namespace urn:SMPTE:RP210; the element is not read",
      "line 33: Filler 74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D: the set has no property FramesPerSecond in the "
      "namespace urn:SMPTE:RP210; the element is not read",
      "line 34: Filler 74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D: the set has no property DropFrame in the "
      "namespace urn:SMPTE:RP210; the element is not read"},
     "",
     {"an edit of the " + kTheTimecode + " is rejected: the document has a Filler with its InstanceUID"}},
    {"set where a value goes",
     replaced("<rp210:TrackID>1<", "<rp210:TrackID><s377m:Filler/><"),
     {"line 22: " + kTrack + "TrackID: 's377m:Filler' is an element within a value that has none"},
     ""},
    {"value where a set goes",
     replaced("<rp210:EssenceDataObjects>\n          ", "<rp210:EssenceDataObjects>none"),
     {"line 182: ContentStorage A6.0F.89.4D.52.68.48.07.A3.31.60.A2.2E.D0.95.5F: EssenceDataObjects: 'none' is text "
      "where only elements are expected"},
     "",
     kept("set", "EssenceData 3B.4A.3B.74.61.B1.41.73.BB.A7.20.72.AF.1F.60.E2")},
    {"text between properties",
     replaced("<rp210:TrackID>1</rp210:TrackID>", "<rp210:TrackID>1</rp210:TrackID> and"),
     {"line 21: " + kTrack + "'and' is text between the elements of TimelineTrack; it is not read"},
     ""},
    {"text between sets",
     replaced("</s377m:Preface>", "</s377m:Preface>\n  end"),
     {"line 3: 'end' is text between the elements of MetadataSets; it is not read"},
     ""},
    {"InstanceUID without its last octet",
     replaced(".10.9C.37.4D\">", ".10.9C.37\">"),
     {"line 29: Timecode NEW: '74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37' is not an InstanceUID; the set gets a new "
      "one, to which nothing refers"},
     noSetOfTheFile(29)},
    {"InstanceUID without its prefix",
     replaced(" rp210:InstanceUID=\"74.", " InstanceUID=\"74."),
     {"line 29: Timecode: " + kNoInstanceUID,
      "line 29: Timecode: the set has no attribute InstanceUID in no namespace; it is not read"},
     noSetOfTheFile(29)},
    {"two sets of two kinds and one InstanceUID",
     replaced("B0.05.E2.81.B8.73.40.93.AB.98.BE.C2.68.45.04.53", "74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D"),
     {},
     "cannot be put into ORIGINAL: line 53: the SourceClip has the InstanceUID of the Timecode "
     "74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D at "
     "line 29; give one of them another"},
    {"month out of range",
     replaced("Month>10<", "Month>256<"),
     {"line 5: " + kPreface + "FileLastModified: '256' is no number from 0 to 255 for Month"},
     ""},
    {"time that lacks a part",
     without("types:Second"),
     {"line 5: " + kPreface + "FileLastModified: Second is missing or empty, and the value needs it"},
     ""},
    {"rate without denominator",
     without("types:Denominator"),
     {"line 40: " + kTrack + "EditRate: Denominator is missing or empty, and the value needs it"},
     ""},
    {"rate of letters",
     replaced("<types:Numerator>", "<types:Numerator>x"),
     {"line 40: " + kTrack + "EditRate: 'x48000' is no number from -2147483648 to 2147483647 for Numerator"},
     ""},
    {"rate as text",
     replaced("<types:Numerator>48000</types:Numerator>", "48000/1"),
     {"line 40: " + kTrack + "EditRate: '48000/1' is text where only elements are expected"},
     ""},
    {"root of another kind",
     only("<?xml version=\"1.0\"?>\n<html><body/></html>\n"),
     {"line 2: the root element is html in no namespace, not MetadataSets in the namespace urn:SMPTE:S377M",
      "line 2: there is no set body in no namespace"},
     "cannot be put into ORIGINAL: the document has no set that could be read"},
    {"misspelt root",
     both(replaced("<s377m:MetadataSets ", "<s377m:MetaDataSets "),
          replaced("</s377m:MetadataSets>", "</s377m:MetaDataSets>")),
     {"line 3: the root element is MetaDataSets in the namespace urn:SMPTE:S377M, not MetadataSets in the namespace "
      "urn:SMPTE:S377M"},
     ""},
    {"root alone",
     only("<s377m:MetadataSets xmlns:s377m=\"urn:SMPTE:S377M\"/>\n"),
     {},
     "cannot be put into ORIGINAL: the document has no set that could be read"},
    {"empty file", only(""), {}, "the file is empty; metadata in XML begin with '<', in JSON with '{'"},
    {"blank file", only(" \n"), {}, "the file has only white space; metadata in XML begin with '<', in JSON with '{'"},
    {"text that is no XML",
     only("Hello\n"),
     {},
     "the file begins with 'Hello'; metadata in XML begin with '<', in JSON with '{'"},
    {"UTF-16 that says UTF-8", inUTF16(), {}, ""},
    {"UTF-8 that says UTF-16", replaced("encoding=\"UTF-8\"", "encoding=\"UTF-16\""), {}, ""},
    {"Latin 1 that says UTF-8",
     replaced("Timecode track", "Zeitspur f\xfcr alle"),
     {},
     "unreadable XML: line 23, column 44: a character is not in UTF-8; save the text as UTF-8, or name its encoding in "
     "the XML declaration"},
    {"unknown encoding",
     replaced("encoding=\"UTF-8\"", "encoding=\"KOI8-R\""),
     {},
     "unreadable XML: line 1, column 1: encoding 'KOI8-R' is not supported"},
    {"control character",
     replaced("Timecode track",
              "Time\x01"
              "code"),
     {},
     "not well-formed XML: line 23, column 39: invalid character 0x1"},
    {"character reference to a control character",
     replaced("Timecode track", "Time&#1;code"),
     {},
     "not well-formed XML: line 23, column 42: invalid character reference"},
    {"entity that nobody declared",
     replaced("Timecode track", "Time&nbsp;code"),
     {},
     "not well-formed XML: line 23, column 44: entity 'nbsp' not found; document type declarations, which define "
     "entities, are not read"},
    {"blank before the declaration",
     replaced("<?xml ", " <?xml "),
     {},
     "not well-formed XML: line 1, column 8: XML or TEXT declaration must start at line 1, column 1"},
    {"two roots",
     replaced("</s377m:MetadataSets>", "</s377m:MetadataSets><more/>"),
     {},
     "not well-formed XML: line 235, column 22: comment or processing instruction expected"},
    {"two declarations of a prefix",
     replaced("xmlns:types=", "xmlns:rp210=\"urn:SMPTE:RP210\" xmlns:types="),
     {},
     "not well-formed XML: line 3, column 137: attribute 'xmlns:rp210' is already specified for element "
     "'s377m:MetadataSets'"},
    {"namespace of types that is no other",
     replaced("<types:Numerator>48000<", "<types:Numerator xmlns:types=\"urn:SMPTE:Types\">48000<"),
     {"line 40: " + kTrack + "EditRate: 'types:Numerator' is no part of the value"},
     ""},
};

/// With NEW in the place of every InstanceUID that neither the original nor the document has.
std::string withoutNewInstanceUIDs(const std::string& messages, const std::string& known) {
  static const std::regex instanceUID("[0-9A-F]{2}(\\.[0-9A-F]{2}){15}");
  std::string text = messages;
  for (std::sregex_iterator at(messages.begin(), messages.end(), instanceUID), end; at != end; ++at) {
    const std::string found = at->str();
    if (known.find(found) == std::string::npos) text = std::regex_replace(text, std::regex(found), "NEW");
  }
  return text;
}

class MistakeTest : public testing::TestWithParam<Mistake> {
 protected:
  MistakeTest()
      : original_(run({"export", sample(kSample)}).out),
        // An edit that is right, to see that it is put back whatever is wrong elsewhere.
        edited_(replaced("<rp210:ApplicationPlatform>Linux", "<rp210:ApplicationPlatform>Plan 9 and Linux")(original_)),
        document_(GetParam().change(edited_)) {
    writeFile(path_, document_);
  }

  Result import(const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments = {"import", path_, "--into", sample(kSample), "-o", copy_};
    arguments.insert(arguments.end(), options.begin(), options.end());
    Result result = run(arguments);
    result.err = withoutNewInstanceUIDs(result.err, original_ + document_);
    return result;
  }

  std::string expectedMessages(const std::string& kind, const std::string& last) const {
    std::string messages;
    for (const auto& warning : GetParam().warnings) messages += "mxfxml: " + path_ + ": " + kind + warning + "\n";
    return last.empty() ? messages : messages + "mxfxml: " + path_ + ": " + last + "\n";
  }

  const ScratchFolder folder_;
  const std::string path_ = folder_.path("edited.xml");
  const std::string copy_ = folder_.path("copy.mxf");
  const std::string original_;
  const std::string edited_;
  const std::string document_;
};

/// With the path of the file to edit.
std::string withFile(std::string refusal) {
  const std::string original = "ORIGINAL";
  const auto at = refusal.find(original);
  return at == std::string::npos ? refusal : refusal.replace(at, original.size(), sample(kSample));
}

TEST_P(MistakeTest, KeepsNothingElseFromBeingPutBackWhereTheRestIsToBe) {
  const Result result = import(ignoring(GetParam().ignored, {"--keep-going"}));
  std::string expected = expectedMessages("warning: ", withFile(GetParam().refusal));
  for (const auto& remark : GetParam().remarks) expected += "mxfxml: " + sample(kSample) + ": " + remark + "\n";
  EXPECT_EQ(result.err, expected);
  EXPECT_EQ(result.exitCode, GetParam().warnings.empty() && GetParam().refusal.empty() ? 0 : 1);
  ASSERT_EQ(std::filesystem::exists(copy_), GetParam().refusal.empty());
  if (!GetParam().refusal.empty()) return;
  EXPECT_EQ(withoutDescription(run({"export", copy_}).out), withoutDescription(GetParam().alsoPutBack(edited_)));
}

TEST_P(MistakeTest, KeepsEverythingFromBeingPutBack) {
  for (const auto& options : {std::vector<std::string>(), {"--strict"}}) {
    const Result result = import(options);
    const auto count = GetParam().warnings.size();
    const std::string last = count == 0
                                 ? withFile(GetParam().refusal)
                                 : std::to_string(count) + (count == 1 ? " thing is" : " things are") +
                                       " wrong with the document; nothing is written; --keep-going writes the rest";
    EXPECT_EQ(result.err, expectedMessages("", last));
    EXPECT_EQ(result.exitCode, last.empty() ? 0 : 1);
    EXPECT_EQ(std::filesystem::exists(copy_), last.empty());
    std::filesystem::remove(copy_);
  }
}

INSTANTIATE_TEST_SUITE_P(Documents, MistakeTest, testing::ValuesIn(kMistakes), [](const auto& info) {
  return std::regex_replace(std::string(info.param.name), std::regex("[^A-Za-z0-9]+"), "_");
});

}  // namespace
}  // namespace Vantor::Tool
