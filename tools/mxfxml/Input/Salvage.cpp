#include "Input/Salvage.h"

#include <algorithm>
#include <string>

#include "Core/Platform/Path.h"
#include "Core/Platform/Strings.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

constexpr std::size_t kMostPrinted = 20;

std::string numberOf(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}

std::string lineOf(const MXF::MetadataDamage& damage) {
  const auto bytes = damage.size == 0 ? "" : "; " + numberOf(damage.size, "byte is", "bytes are") + " left out";
  return "missing: " + describe(damage) + bytes;
}

JSON::Value jsonOf(const MXF::MetadataDamage& damage) {
  auto json = JSON::Value::object().add("kind", nameOf(damage.kind));
  json.add("offset", damage.offset).add("bytes", damage.size);
  if (!damage.set.empty()) json.add("set", damage.set);
  if (damage.key != KLV::Key()) json.add("key", Utils::wstringToString(damage.key.toString()));
  return json.add("text", describe(damage));
}

}  // namespace

void SalvageOption::add(CLI::App& command, bool byDefault) {
  isOn_ = byDefault;
  auto* salvage = command.add_flag_callback(
      "--salvage", [this] { isOn_ = true; },
      byDefault ? "Go on behind damage, and print what is missing (default)"
                : "Go on behind damage: print what is missing, do the rest, and\nend with 1");
  if (!byDefault) return;
  command
      .add_flag_callback(
          "--no-salvage", [this] { isOn_ = false; }, "Refuse damaged metadata")
      ->excludes(salvage);
}

void requireSomething(const PartitionMetadata& metadata, const Missing& missing) {
  if (missing.empty() || !metadata.entries().empty()) return;
  throw CommandError(describe(missing.front()) + "; there is no whole set");
}

ExitCode reportMissing(const Path& file, const PartitionMetadata& metadata, const Missing& missing) {
  if (missing.empty()) return kSuccess;
  const auto print = [&](const std::string& text) { printMessage(Platform::pathToUTF8(file) + ": " + text); };
  const auto printed = std::min(kMostPrinted, missing.size());
  for (std::size_t i = 0; i < printed; ++i) print(lineOf(missing[i]));
  if (printed < missing.size()) print("missing: " + numberOf(missing.size() - printed, "more place", "more places"));
  print("the metadata are damaged at " + numberOf(missing.size(), "place", "places") + "; " +
        numberOf(metadata.entries().size(), "whole set is", "whole sets are") + " there");
  return kFailure;
}

void addMissing(const Missing& missing, JSON::Value& object) {
  if (missing.empty()) return;
  auto places = JSON::Value::array();
  for (const auto& damage : missing) places.append(jsonOf(damage));
  object.add("missing", std::move(places));
}

}  // namespace Vantor::Tool
