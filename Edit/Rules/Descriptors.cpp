#include <array>
#include <cstdlib>

#include "Core/Comparison/ValueText.h"
#include "Edit/Rules/PackageFacts.h"
#include "Edit/Rules/Rule.h"

/// Rules about what descriptors state about pictures and sound.
namespace Vantor::Edit {

namespace {

using Types::Rational;

bool isUnknown(const Rational& rate) { return rate.numerator() == 0 && rate.denominator() == 0; }

constexpr std::array kRates = {"SampleRate", "AudioSampleRate"};

void checkSampleRates(const Model& model, Report& report) {
  forEachRate(model, kRates, [&](const MetadataSet& set, const char* property, const Rational& rate) {
    if (!isPositive(rate) && !isUnknown(rate)) report.add(set, property, {valueText(rate)});
  });
}

void checkUnknownRates(const Model& model, Report& report) {
  forEachRate(model, kRates, [&](const MetadataSet& set, const char* property, const Rational& rate) {
    if (isUnknown(rate)) report.add(set, property, {valueText(rate)});
  });
}

void checkAudioRates(const Model& model, Report& report) {
  constexpr std::array kProperties = {"AudioSampleRate"};
  constexpr int64 kLowest = 1000;  // per second; telephones have 8,000
  forEachRate(model, kProperties, [&](const MetadataSet& set, const char* property, const Rational& rate) {
    if (isPositive(rate) && rate.numerator() < kLowest * rate.denominator()) {
      report.add(set, property, {valueText(rate)});
    }
  });
}

/// Wider than any screen, or narrower than any pillar.
bool isAbsurd(const Rational& ratio) {
  constexpr int64 kMost = 10;
  const int64 width = ratio.numerator(), height = ratio.denominator();
  return width > kMost * height || height > kMost * width;
}

void checkAspectRatios(const Model& model, Report& report) {
  constexpr std::array kProperties = {"ImageAspectRatio"};
  forEachRate(model, kProperties, [&](const MetadataSet& set, const char* property, const Rational& ratio) {
    if (!isPositive(ratio) || isAbsurd(ratio)) report.add(set, property, {valueText(set, *set.find(property))});
  });
}

/// Whether one is the other, or counts fields where the other counts frames.
bool areFieldsAndFrames(const Rational& left, const Rational& right) {
  const int64 own = int64{left.numerator()} * right.denominator(),
              other = int64{right.numerator()} * left.denominator();
  return own == other || own / 2.0 == static_cast<double>(other) || other / 2.0 == static_cast<double>(own);
}

void checkPictureRates(const Model& model, Report& report) {
  for (const auto& descriptor : model.descriptors()) {
    const auto* track = model.is(*descriptor.set, "PictureDescriptor") ? linkedTrackOf(descriptor) : nullptr;
    const auto* rate = valueOf<Rational>(*descriptor.set, "SampleRate");
    const auto* other = track == nullptr ? nullptr : valueOf<Rational>(*track, "EditRate");
    if (rate == nullptr || other == nullptr || !isPositive(*rate) || !isPositive(*other)) continue;
    if (!areFieldsAndFrames(*rate, *other)) {
      report.add(*descriptor.set, "SampleRate", {valueText(*rate), valueText(*other)});
    }
  }
}

/// Reports each of the properties that a set of a kind has with a wrong number.
template <std::size_t kCount, class IsWrong>
void checkNumbers(const Model& model, const char* kind, const std::array<const char*, kCount>& properties,
                  IsWrong&& isWrong, Report& report) {
  for (const auto* set : model.all(kind)) {
    for (const char* property : properties) {
      const auto number = integerOf(*set, property);
      if (number && isWrong(*set, *number)) report.add(*set, property, {std::to_string(*number)});
    }
  }
}

bool isZero(const MetadataSet&, int64 number) { return number == 0; }

void checkPictureSizes(const Model& model, Report& report) {
  constexpr std::array kSizes = {"StoredWidth", "StoredHeight"};
  checkNumbers(model, "PictureDescriptor", kSizes, isZero, report);
}

void checkPartSizes(const Model& model, Report& report) {
  constexpr std::array kSizes = {"SampledWidth", "SampledHeight", "DisplayWidth", "DisplayHeight"};
  checkNumbers(model, "PictureDescriptor", kSizes, isZero, report);
}

/// A rectangle's side within that of another one: sizes that are missing or 0 set no limit.
struct Side {
  const char* size;
  const char* offset;
  const char* outer;
};

void checkSide(const MetadataSet& set, const Side& side, Report& report) {
  const auto size = integerOf(set, side.size), outer = integerOf(set, side.outer);
  if (size.value_or(0) == 0 || outer.value_or(0) == 0) return;
  const int64 start = integerOf(set, side.offset).value_or(0);
  if (start >= 0 && start + *size <= *outer) return;
  report.add(set, side.size,
             {std::to_string(start), std::to_string(start + *size), side.outer, std::to_string(*outer)});
}

void checkRectangles(const Model& model, Report& report) {
  constexpr std::array<Side, 4> kSides = {{{"SampledWidth", "SampledXOffset", "StoredWidth"},
                                           {"SampledHeight", "SampledYOffset", "StoredHeight"},
                                           {"DisplayWidth", "DisplayXOffset", "SampledWidth"},
                                           {"DisplayHeight", "DisplayYOffset", "SampledHeight"}}};
  for (const auto* set : model.all("PictureDescriptor")) {
    for (const auto& side : kSides) checkSide(*set, side, report);
  }
}

constexpr int64 kMostBits = 64;

/// ST 377-1: 253 to 255 stand for floating point.
bool isDepth(int64 depth) { return (depth > 0 && depth <= kMostBits) || (depth >= 253 && depth <= 255); }

void checkSampling(const Model& model, Report& report) {
  constexpr std::array kSubsamplings = {"HorizontalSubsampling", "VerticalSubsampling"};
  constexpr std::array kDepths = {"ComponentDepth"};
  checkNumbers(
      model, "CDCIDescriptor", kSubsamplings,
      [](const MetadataSet&, int64 number) { return number != 1 && number != 2 && number != 4; }, report);
  checkNumbers(
      model, "CDCIDescriptor", kDepths, [](const MetadataSet&, int64 number) { return !isDepth(number); }, report);
}

void checkReferenceLevels(const Model& model, Report& report) {
  for (const auto* set : model.all("CDCIDescriptor")) {
    const auto black = integerOf(*set, "BlackRefLevel"), white = integerOf(*set, "WhiteRefLevel");
    if (!black || !white || *black <= *white) continue;
    report.add(*set, "BlackRefLevel", {std::to_string(*black), std::to_string(*white)});
  }
}

/// ST 400: 04.02.02.01 are sounds without compression. No label stands for none.
bool isCompressed(const MetadataSet& sound) {
  const auto label = labelOf(sound, "SoundCompression").value_or(Types::UniversalLabel());
  const bool isPlain = label.octet(9) == 4 && label.octet(10) == 2 && label.octet(11) == 2 && label.octet(12) == 1;
  return label != Types::UniversalLabel() && !isPlain;
}

void checkSound(const Model& model, Report& report) {
  constexpr std::array kSizes = {"ChannelCount", "BlockAlign", "AverageBytesPerSecond"};
  constexpr std::array kBits = {"QuantizationBits"};
  checkNumbers(model, "SoundDescriptor", kSizes, isZero, report);
  checkNumbers(
      model, "SoundDescriptor", kBits,
      [](const MetadataSet& set, int64 bits) { return bits > kMostBits || (bits == 0 && !isCompressed(set)); }, report);
}

/// The octets that uncompressed sound takes for one sample of all channels; none where it is not known.
std::optional<int64> blockOf(const MetadataSet& sound) {
  const auto channels = integerOf(sound, "ChannelCount"), bits = integerOf(sound, "QuantizationBits");
  if (isCompressed(sound) || channels.value_or(0) == 0 || bits.value_or(0) == 0) return std::nullopt;
  return *bits > kMostBits ? std::nullopt : std::optional<int64>(*channels * ((*bits + 7) / 8));
}

constexpr std::array kPCM = {"WAVEPCMDescriptor", "AES3PCMDescriptor"};

template <class Visit>
void forEachPCM(const Model& model, Visit&& visit) {
  for (const char* kind : kPCM) {
    for (const auto* set : model.all(kind)) {
      if (const auto block = blockOf(*set)) visit(*set, *block);
    }
  }
}

void checkBlocks(const Model& model, Report& report) {
  forEachPCM(model, [&](const MetadataSet& set, int64 block) {
    const auto own = integerOf(set, "BlockAlign");
    if (own.value_or(0) == 0 || *own == block) return;
    report.add(set, "BlockAlign", {std::to_string(*own), std::to_string(block)});
  });
}

/// The rate may be no whole number.
void checkOctetRates(const Model& model, Report& report) {
  forEachPCM(model, [&](const MetadataSet& set, int64 block) {
    const auto own = integerOf(set, "AverageBytesPerSecond");
    const auto* rate = valueOf<Rational>(set, "AudioSampleRate");
    if (own.value_or(0) == 0 || rate == nullptr || !isPositive(*rate)) return;
    const int64 other = block * rate->numerator() / rate->denominator();
    if (std::llabs(*own - other) <= 1) return;
    report.add(set, "AverageBytesPerSecond", {std::to_string(*own), std::to_string(other)});
  });
}

}  // namespace

const RuleTable& descriptorRules() {
  static const RuleTable table = {
      {{"sample-rate", Severity::kWarning, "{rate} is no rate: both numbers have to be above 0",
        "ST 377-1, File Descriptor"},
       checkSampleRates},
      {{"unknown-rate", Severity::kWarning, "{rate} leaves the rate open", "ST 377-1, File Descriptor"},
       checkUnknownRates},
      {{"audio-rate", Severity::kWarning, "{rate} samples per second are too few for sound",
        "ST 377-1, Generic Sound Essence Descriptor"},
       checkAudioRates},
      {{"aspect-ratio", Severity::kWarning, "{ratio} is no aspect ratio of a picture",
        "ST 377-1, Generic Picture Essence Descriptor"},
       checkAspectRatios},
      {{"picture-rate", Severity::kWarning,
        "the sample rate {rate} and the edit rate of the track, {rate}, are neither equal nor fields and frames",
        "ST 377-1, File Descriptor"},
       checkPictureRates},
      {{"picture-size", Severity::kError, "a picture cannot have the size {number}",
        "ST 377-1, Generic Picture Essence Descriptor"},
       checkPictureSizes},
      {{"sampled-size", Severity::kWarning, "the sampled or displayed part of a picture cannot have the size {number}",
        "ST 377-1, Generic Picture Essence Descriptor"},
       checkPartSizes},
      {{"picture-rectangle", Severity::kWarning, "the rectangle goes from {start} to {end}, outside of {outer} {size}",
        "ST 377-1, Generic Picture Essence Descriptor"},
       checkRectangles},
      {{"picture-sampling", Severity::kWarning, "a subsampling or depth cannot be {number}",
        "ST 377-1, CDCI Picture Essence Descriptor"},
       checkSampling},
      {{"reference-levels", Severity::kWarning, "the level of black, {number}, is above that of white, {number}",
        "ST 377-1, CDCI Picture Essence Descriptor"},
       checkReferenceLevels},
      {{"sound-size", Severity::kWarning, "a number of channels, bits or octets cannot be {number}",
        "ST 377-1, Generic Sound Essence Descriptor; ST 382"},
       checkSound},
      {{"sound-block", Severity::kWarning, "a block has {own} octets; channels and bits make {other}", "ST 382"},
       checkBlocks},
      {{"sound-octets", Severity::kWarning, "a second has {own} octets; channels, bits and rate make {other}",
        "ST 382"},
       checkOctetRates}};
  return table;
}

}  // namespace Vantor::Edit
