#include <gtest/gtest.h>

#include "Refusal.h"

/// Edits with `set` that are refused.
namespace Vantor::Tool {
namespace {

const Refusal kRefusedEdits[] = {
    {"a frame layout that does not exist",
     {"set", "{file}", "MPEGVideoDescriptor.FrameLayout=9"},
     1,
     {"{file}: warning: enumeration-value: partition 0: MPEGVideoDescriptor "
      "AD.AB.44.24.2F.25.4D.C7.92.FF.00.0E.00.00.00.00: FrameLayout: 9 is no value of LayoutType",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"},
     kOp1a},
    {"an edit rate of nothing",
     {"set", "{file}", "TimelineTrack[1].EditRate=0/0"},
     1,
     {"{file}: error: edit-rate: partition 0: TimelineTrack AD.AB.44.24.2F.25.4D.C7.92.FF.00.09.00.00.00.00: EditRate: "
      "0/0 is no rate: both numbers have to be above 0",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"},
     kOp1a},
    {"a picture without width",
     {"set", "{file}", "MPEGVideoDescriptor.StoredWidth=0"},
     1,
     {"{file}: error: picture-size: partition 0: MPEGVideoDescriptor AD.AB.44.24.2F.25.4D.C7.92.FF.00.0E.00.00.00.00: "
      "StoredWidth: a picture cannot have the size 0",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"},
     kOp1a},
    {"no package identifier",
     {"set", "{file}", "--remove", "MaterialPackage.PackageID"},
     1,
     {"{file}: error: needed-property: partition 0: MaterialPackage AD.AB.44.24.2F.25.4D.C7.92.FF.00.01.00.00.00.00: "
      "PackageID (PackageUID): a property that readers need is missing or empty",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"},
     kOp1a},
    {"a track number twice",
     {"set", "{file}", "TimelineTrack[2].TrackID=1"},
     1,
     {"{file}: error: track-id: partitions 0, 2: TimelineTrack DA.87.E0.C7.73.4F.44.E9.B7.42.6D.EE.B5.EF.08.2F: "
      "TrackID: TrackID 1 occurs twice in the MaterialPackage",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"}},
    {"no list of identifications",
     {"set", "{file}", "--remove", "Preface.IdentificationList"},
     1,
     {"{file}: warning: required-property: partitions 0, 2: Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: "
      "IdentificationList (Identifications): a required property is missing",
      "{file}: warning: unreached-set: partitions 0, 2: Identification "
      "85.43.AA.CE.4F.14.40.97.80.CE.25.A8.1C.87.90.74: no reference leads to the set",
      "{file}: the edit would break 2 rules that the file keeps; nothing is written; --ignore RULE permits it"}},
    {"a package identifier that leaves references behind",
     {"set", "{file}",
      "SourcePackage.PackageID=06.0A.2B.34.01.01.01.05.01.01.0D.22.13.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00."
      "00.00.01",
      "--only"},
     1,
     {"{file}: error: source-package: partitions 0, 2: SourceClip B0.05.E2.81.B8.73.40.93.AB.98.BE.C2.68.45.04.53: "
      "SourcePackageID: the file has no package "
      "06.0A.2B.34.01.01.01.05.01.01.0D.22.13.9B.BD.B8.45.EE.F7.3A.7A.98.45.6A.B9.3F.97.6A.95.3F.0F.F9, though its "
      "operational pattern asks for it",
      "{file}: error: linked-package: partitions 0, 2: EssenceData 3B.4A.3B.74.61.B1.41.73.BB.A7.20.72.AF.1F.60.E2: "
      "LinkedPackageID (LinkedPackageUID): the file has no source package "
      "06.0A.2B.34.01.01.01.05.01.01.0D.22.13.9B.BD.B8.45.EE.F7.3A.7A.98.45.6A.B9.3F.97.6A.95.3F.0F.F9",
      "{file}: the edit would break 2 rules that the file keeps; nothing is written; --ignore RULE permits it"}},
    {"a track number that leaves references behind",
     {"set", "{file}", "TimelineTrack[1].TrackID=9", "--only"},
     1,
     {"{file}: warning: linked-track: partitions 0, 2: SoundDescriptor "
      "DF.7E.30.CB.90.92.45.6D.A8.9F.69.11.11.2F.35.BA: LinkedTrackID: the SourcePackage has no track 2",
      "{file}: error: source-track: partitions 0, 2: SourceClip B0.05.E2.81.B8.73.40.93.AB.98.BE.C2.68.45.04.53: "
      "SourceTrackID: the SourcePackage 22.1E.14.F3.7C.58.4B.02.94.E6.26.D4.31.97.8E.40 has no track 2",
      "{file}: the edit would break 2 rules that the file keeps; nothing is written; --ignore RULE permits it"}},
    {"an operational pattern that leaves the packs behind",
     {"set", "{file}", "Preface.OperationalPattern=06.0E.2B.34.04.01.01.01.0D.01.02.01.02.01.09.00", "--only"},
     1,
     {"{file}: error: pack-pattern: partition 0: OperationalPattern: the pack has the operational pattern "
      "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00, the Preface 06.0E.2B.34.04.01.01.01.0D.01.02.01.02.01.09.00",
      "{file}: error: pack-pattern: partition 1: OperationalPattern: the pack has the operational pattern "
      "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00, the Preface 06.0E.2B.34.04.01.01.01.0D.01.02.01.02.01.09.00",
      "{file}: error: pack-pattern: partition 2: OperationalPattern: the pack has the operational pattern "
      "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00, the Preface 06.0E.2B.34.04.01.01.01.0D.01.02.01.02.01.09.00",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"}},
    {"a label that is no operational pattern",
     {"set", "{file}", "Preface.OperationalPattern=06.0E.2B.34.04.01.01.02.0D.01.03.01.02.06.03.00"},
     1,
     {"{file}: error: operational-pattern: partitions 0, 2: Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: "
      "OperationalPattern: 06.0E.2B.34.04.01.01.02.0D.01.03.01.02.06.03.00 is no operational pattern",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"}},
    {"a reference to nothing",
     {"set", "{file}", "Preface.PrimaryPackage=11.11.11.11.22.22.33.33.44.44.55.55.55.55.55.55"},
     1,
     {"{file}: warning: dangling-weak-reference: partitions 0, 2: Preface "
      "69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: PrimaryPackage: no set has the InstanceUID "
      "11.11.11.11.22.22.33.33.44.44.55.55.55.55.55.55",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"}},
    {"a reference to a set of another kind",
     {"set", "{file}", "Preface.ContentStorageObject=85.43.AA.CE.4F.14.40.97.80.CE.25.A8.1C.87.90.74", "--ignore",
      "unreached-set"},
     1,
     {"{file}: error: reference-kind: partitions 0, 2: Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: "
      "ContentStorageObject (ContentStorage): Identification 85.43.AA.CE.4F.14.40.97.80.CE.25.A8.1C.87.90.74 is no "
      "ContentStorage",
      "{file}: warning: shared-set: partitions 0, 2: Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: "
      "IdentificationList (Identifications): the set 85.43.AA.CE.4F.14.40.97.80.CE.25.A8.1C.87.90.74 belongs to a "
      "Preface already",
      "{file}: the edit would break 2 rules that the file keeps; nothing is written; --ignore RULE permits it"}},
    {"a sequence shorter than its components",
     {"set", "{file}", "Sequence[1].ComponentLength=3"},
     1,
     {"{file}: warning: sequence-length: partitions 0, 2: Sequence 65.DC.EE.2E.4C.63.49.EE.83.DC.2D.AC.8E.B3.2B.A9: "
      "ComponentLength (Duration): the length is 3, that of all components 4",
      "{file}: warning: source-length: partitions 0, 2: SourceClip B0.05.E2.81.B8.73.40.93.AB.98.BE.C2.68.45.04.53: "
      "ComponentLength (Duration): the clip takes 4 from 0 on, its source has 3",
      "{file}: the edit would break 2 rules that the file keeps; nothing is written; --ignore RULE permits it"}},
    {"a modification before the last identification",
     {"set", "{file}", "Preface.FileLastModified=2001-02-03T04:05:06.000"},
     1,
     {"{file}: warning: modification-date: partitions 0, 2: Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: "
      "FileLastModified (LastModifiedDate): 2001-02-03T04:05:06.000 is before the date of the last identification, "
      "2026-10-21T01:15:27.020",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"}},
    {"the header alone",
     {"set", "{file}", "Identification.ApplicationName=Ed", "--partition", "header"},
     1,
     {"{file}: warning: repeated-metadata: partition 0: differences from the metadata of partition 2: 1",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"}},
    {"a mistyped property",
     {"set", "{file}", "Preface.ByteOrdr=18761"},
     1,
     {"{file}: Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C has no property 'ByteOrdr' (did you mean "
      "'ByteOrder'?)"}},
    {"a mistyped set",
     {"set", "{file}", "Prefce.ByteOrder=18761"},
     1,
     {"{file}: the dictionary has no set 'Prefce' (did you mean 'Preface'?)"}},
    {"a set that is not there",
     {"set", "{file}", "Filler.ComponentLength=1"},
     1,
     {"{file}: the partition has no set Filler"}},
    {"one of several sets",
     {"set", "{file}", "TimelineTrack.TrackID=9"},
     1,
     {"{file}: TimelineTrack is ambiguous: 4 sets (see \"mxfxml info --sets\"); use TimelineTrack[1] (TrackID 2, in "
      "SourcePackage), TimelineTrack[2] (TrackID 2, in MaterialPackage), TimelineTrack[3] (TrackID 1, TrackName "
      "\"Timecode track\", in MaterialPackage), TimelineTrack[4] (TrackID 1, TrackName \"Timecode track\", in "
      "SourcePackage), or TimelineTrack[*] for all"}},
    {"a letter for a number",
     {"set", "{file}", "Preface.ByteOrder=II"},
     1,
     {"{file}: ByteOrder of Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: 'II' is not a whole number "
      "from -32768 to 32767; for example 25 or 0x19"}},
    {"a word for a rate",
     {"set", "{file}", "TimelineTrack[1].EditRate=PAL"},
     1,
     {"{file}: EditRate of TimelineTrack 8D.9D.AD.D1.E1.B5.47.63.93.E4.7F.25.1B.C8.BF.00: 'PAL' is not a rate or "
      "ratio; for example 25, 30000/1001, 29.97 or 16:9"}},
    {"a value in another shape",
     {"set", "{file}", "Preface.EssenceContainers=none"},
     1,
     {"{file}: EssenceContainers of Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: 'none' is not a list; "
      "for example [MXFGCGenericEssenceMultipleMappings]"}},
    {"an InstanceUID",
     {"set", "{file}", "--remove", "Preface.InstanceUID"},
     1,
     {"{file}: the InstanceUID of Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C cannot be removed: "
      "references to the set would break"}},
    {"one of two assignments",
     {"set", "{file}", "Identification.ApplicationName=Ed", "Preface.ByteOrder=II"},
     1,
     {"{file}: ByteOrder of Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: 'II' is not a whole number "
      "from -32768 to 32767; for example 25 or 0x19"}},
    {"two values",
     {"set", "{file}", "Preface.ByteOrder=1", "Preface.ByteOrder=2"},
     2,
     {"Preface.ByteOrder is given more than once; see mxfxml set --help"}},
    {"no value",
     {"set", "{file}", "Preface.ByteOrder"},
     2,
     {"'Preface.ByteOrder' is no assignment; write Set.Property=VALUE, or Set[2].Property=VALUE for the second set of "
      "a name; see mxfxml set --help"}},
    {"nothing to set",
     {"set", "{file}"},
     2,
     {"Set.Property=VALUE, --remove or --from is required; see mxfxml set --help"}},
    {"a rule that does not exist",
     {"set", "{file}", "--remove", "Preface.IdentificationList", "--ignore", "unreached-sets"},
     2,
     {"--ignore: 'unreached-sets' is no rule (did you mean 'unreached-set'?); see mxfxml set --help"}},
    {"a rule that is not the broken one",
     {"set", "{file}", "--remove", "Preface.IdentificationList", "--ignore", "unreached-set"},
     1,
     {"{file}: warning: required-property: partitions 0, 2: Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: "
      "IdentificationList (Identifications): a required property is missing",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"}},
    {"a read only file",
     {"set", "{file}", "Identification.ApplicationName=Ed"},
     1,
     {"cannot change '{file}': it is read-only"},
     kGst,
     readOnly()},
    {"a file with another name",
     {"set", "{file}", "Identification.ApplicationName=Ed"},
     1,
     {"cannot change '{file}': it has 2 hard links, and its other names would change, too, or be parted from it; write "
      "to another file"},
     kGst,
     linked()},
    {"a file that is not there",
     {"set", "{file}", "Identification.ApplicationName=Ed"},
     1,
     {"cannot open '{file}': No such file or directory"},
     kGst,
     removed()},
    {"a document instead of a file",
     {"set", "{doc}", "Preface.ByteOrder=1"},
     1,
     {"{doc}: this is no MXF file: no partition pack among its first 65,536 bytes"},
     kGst,
     written("<a/>\n")},
    {"a copy onto the file itself",
     {"set", "{file}", "Identification.ApplicationName=Ed", "-o", "{file}"},
     1,
     {"the output '{file}' is the input itself"}},
    {"old bytes of a change that does not fit",
     {"set", "{file}", "Identification.ApplicationName=" + std::string(6000, 'x') + "", "--keep-undo"},
     1,
     {"cannot keep the old bytes of '{file}': the edit does not fit in place, so that the file would be written anew; "
      "save a copy"}},
    {"old bytes of a copy",
     {"set", "{file}", "Identification.ApplicationName=Ed", "-o", "{out}", "--keep-undo"},
     2,
     {"--keep-undo is for a change in place, not for -o; see mxfxml set --help"}},
    {"a copy without writing",
     {"set", "{file}", "Identification.ApplicationName=Ed", "-o", "{out}", "--dry-run"},
     2,
     {"--dry-run writes no output; see mxfxml set --help"}},
    {"a partition that is not there",
     {"set", "{file}", "Identification.ApplicationName=Ed", "--partition", "7"},
     1,
     {"{file}: the file has no partition 7, only 3, counted from 0"}},
    {"a partition without metadata",
     {"set", "{file}", "Identification.ApplicationName=Ed", "--partition", "1"},
     1,
     {"{file}: at byte offset 3553: the partition has no header metadata"}},
};

class RefusedEdit : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedEdit, WritesNothingAndGivesTheReason) { expectRefusal(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Mistakes, RefusedEdit, testing::ValuesIn(kRefusedEdits), mistakeOf);

}  // namespace
}  // namespace Vantor::Tool
