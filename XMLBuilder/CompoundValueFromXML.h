#pragma once

#include "Core/Types/SimpleDataType.h"
#include "XMLBuilder/ReadingRules.h"

namespace Vantor::XML2Partition {

using CompoundReader = auto_ptr<Types::SimpleDataType> (*)(const xercesc::DOMNode& node, ReadingRules& rules);

/// The reader of values that are made of child elements; null for every other type.
///
/// By the exact rules, children are found by name in the namespaces that the document element declares for the prefixes
/// "types" and "s422mTypes", a malformed number is 0, and so is a missing one unless the value is a timestamp or a JPEG
/// 2000 value: these throw InvalidFormat naming what is missing. JPEG 2000 values stand in an element of their own
/// within the property.
CompoundReader compoundReader(Types::Identifiers::Identifier type);

}  // namespace Vantor::XML2Partition
