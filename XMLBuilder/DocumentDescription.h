#pragma once

#include <optional>

#include "LosslessXML.h"

/// The processing instruction in which a document describes itself, ahead of its root: see `LosslessXML::Description`.
namespace Vantor::XMLBuilder {

/// The instruction's target.
inline constexpr std::u16string_view kDescriptionTarget = u"mxfxml";

/// The instruction's data: one pseudo-attribute per field.
/// @throws InvalidFormat when the partition is named by neither "header" nor "footer" nor a number.
wstring renderDescription(const LosslessXML::Description& description);

/// Reads the data. Pseudo-attributes may come in any order; unknown ones are ignored.
/// @return none when the data is malformed, has an attribute twice, lacks a required one (all but `start`), or gives a
///         known one a value that `renderDescription` never writes.
std::optional<LosslessXML::Description> parseDescription(const wstring& data);

}  // namespace Vantor::XMLBuilder
