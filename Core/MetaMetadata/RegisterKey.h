#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Core/KLV/Key.h"

namespace Vantor::MetaMetadata {

/// Sixteen octets as the registers print them: 32 hexadecimal digits in either case, dots between octets ignored, with
/// or without "urn:smpte:ul:" in front.
/// @throws Exceptions::InvalidFormat naming the text when it is anything else.
KLV::Key registerKey(std::string_view text);
/// The same; none for any other text.
std::optional<KLV::Key> parseRegisterKey(std::string_view text);

/// The key of a property, a type or a label without what does not count, to look it up by: octet 8 of labels is 0, and
/// the halves of an AUID stand in one order. Two keys are one definition when these are equal.
KLV::Key comparableKey(const KLV::Key& key);

/// As the registers print it: four groups of eight digits in lower case, dots between them.
std::string registerText(const KLV::Key& key);

}  // namespace Vantor::MetaMetadata
