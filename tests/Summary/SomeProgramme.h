#pragma once

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Types/Position.h"
#include "Core/Types/Rational.h"
#include "Core/Types/Text/TypeText.h"
#include "Core/Types/UMID32.h"
#include "Core/Types/UniversalLabel.h"

/// Metadata of a programme, made set by set.
namespace Vantor::Summary {

/// A material package with one picture track, whose clip leads to a file package with the same.
class SomeProgramme {
 public:
  SomeProgramme() : metadata(builtInDictionary()) {
    preface.set("ContentStorageObject", storage);
    material.set("PackageName", u"Programme");
    file.set("PackageName", u"reel");
    addTo(material, materialTrack, materialClip);
    addTo(file, fileTrack, fileClip);
    materialClip.set("SourcePackageID", *file.tryGet<Types::UMID32>("PackageID"));
    materialClip.set("SourceTrackID", 2);
  }

  MetadataSet& add(const char* kind) { return metadata.createMetadataSet(kind); }

  MetadataSet& addPackage(const char* kind, uint8 id) {
    auto& package = add(kind);
    std::array<uint8, 32> octets{};
    octets[31] = id;
    package.set("PackageID", Types::UMID32(octets));
    storage.append("Packages", package);
    return package;
  }

  /// A track of 250 frames at 25, of pictures, with a clip as its segment.
  static void addTo(MetadataSet& package, MetadataSet& track, MetadataSet& clip) {
    track.set("TrackID", 2);
    track.set("EditRate", Types::Rational(25, 1));
    track.set("TrackSegment", clip);
    clip.set("ComponentDataDefinition", u"PictureEssenceTrack");
    clip.set("ComponentLength", 250);
    package.append("PackageTracks", track);
  }

  /// A timecode track. @return its component.
  MetadataSet& addTimecode(MetadataSet& package, int start, bool drops = false) {
    auto& track = add("TimelineTrack");
    auto& timecode = add("Timecode");
    track.set("TrackID", 1);
    track.set("TrackSegment", timecode);
    track.set("EditRate", drops ? Types::Rational(30000, 1001) : Types::Rational(25, 1));
    timecode.set("ComponentDataDefinition", u"SMPTE12MTimecodeTrackInactiveUserBits");
    timecode.set("StartTimecode", Types::Position(start));
    timecode.set("FramesPerSecond", drops ? 30 : 25);
    timecode.set("DropFrame", drops);
    package.append("PackageTracks", track);
    return timecode;
  }

  PartitionMetadata metadata;
  MetadataSet& preface = add("Preface");
  MetadataSet& storage = add("ContentStorage");
  MetadataSet& file = addPackage("SourcePackage", 2);
  MetadataSet& material = addPackage("MaterialPackage", 1);
  MetadataSet& fileTrack = add("TimelineTrack");
  MetadataSet& fileClip = add("SourceClip");
  MetadataSet& materialTrack = add("TimelineTrack");
  MetadataSet& materialClip = add("SourceClip");
};

}  // namespace Vantor::Summary
