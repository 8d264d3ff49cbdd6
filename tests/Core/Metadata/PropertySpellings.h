#pragma once

#include <gtest/gtest.h>

#include <string>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {

/// A set of its own, of the registers, whose properties are set by texts.
class SpelledSet {
 public:
  /// @param kind  a symbol; a Timecode counts 25 frames a second, "Timecode/30" and "Timecode/60" so many with drop
  ///              frame.
  explicit SpelledSet(const std::string& kind)
      : partition_(builtInDictionary()), set_(partition_.createMetadataSet(kind.substr(0, kind.find('/')))) {
    if (kind.compare(0, 8, "Timecode") != 0) return;
    const auto slash = kind.find('/');
    set_.set("FramesPerSecond", slash == std::string::npos ? 25 : std::stoi(kind.substr(slash + 1)));
    set_.set("DropFrame", slash != std::string::npos);
  }

  MetadataSet& set() { return set_; }
  /// The octets of a property in hexadecimal digits.
  std::string octets(const std::string& property) const {
    const auto* value = set_.find(property)->wireValue();
    return value == nullptr ? "none" : hexOf(value->rawBuffer(), value->encodedSize());
  }
  std::string text(const std::string& property) const { return Utils::wstringToString(set_.text(property)); }
  /// Why a text is refused, without the names of property and set before it.
  std::string refusal(const std::string& property, const std::string& text) {
    try {
      set_.set(property, Utils::stringToWstring(text));
    } catch (const Exceptions::InvalidFormat& error) {
      const std::string message = error.what();
      return message.substr(message.find(": ") + 2);
    }
    return "none";
  }

 private:
  PartitionMetadata partition_;
  MetadataSet& set_;
};

}  // namespace Vantor
