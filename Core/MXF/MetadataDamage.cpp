#include "Core/MXF/MetadataDamage.h"

#include "Core/KLV/Keys.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"

namespace Vantor::MXF {

namespace {

using DamageKind = MetadataDamage::Kind;

struct KindText {
  const char* name;
  const char* sentence;          ///< a format for the name of the KLV, then the arguments
  const char* withoutArguments;  ///< the same where there are none
};

KindText textOf(DamageKind kind) {
  switch (kind) {
    case DamageKind::kCutOff:
      return {"cut-off", "the file ends within {}: {} of its {} bytes are there",
              "the file ends within a key or length"};
    case DamageKind::kLength:
      return {"length", "{} cannot have {} bytes", "{} has no length"};
    case DamageKind::kTooLong:
      return {"too-long", "{} has {} bytes, more than the limit 'value' allows", ""};
    case DamageKind::kItems:
      return {"items", "the items of {} do not fill its {} bytes", ""};
    case DamageKind::kPrimerPack:
      return {"primer-pack", "the rows of {} do not fill its {} bytes; without them, dynamic tags mean nothing", ""};
    case DamageKind::kNoPrimerPack:
      return {"no-primer-pack", "", "there is no primer pack; without its rows, dynamic tags mean nothing"};
    case DamageKind::kNoKLV:
      return {"no-klv", "", "what stands there is no KLV of header metadata"};
    case DamageKind::kSearchEnded:
      return {"search-ended", "", "there is too much damage; what follows is not looked at"};
  }
  return {"", "", ""};
}

}  // namespace

const char* nameOf(DamageKind kind) { return textOf(kind).name; }

std::string describe(const MetadataDamage& damage) {
  const auto text = textOf(damage.kind);
  std::vector<std::string> arguments = {klvName(damage.key, damage.set)};
  arguments.insert(arguments.end(), damage.arguments.begin(), damage.arguments.end());
  const char* const sentence = damage.arguments.empty() ? text.withoutArguments : text.sentence;
  return "at byte offset " + std::to_string(damage.offset) + ": " + Exceptions::formatted(sentence, arguments);
}

std::string klvName(const KLV::Key& key, const std::string& symbol) {
  if (KLV::isPrimerPack(key)) return "the primer pack";
  if (!symbol.empty()) return "set " + symbol;
  return "the set with key " + Utils::wstringToString(key.toString());
}

}  // namespace Vantor::MXF
