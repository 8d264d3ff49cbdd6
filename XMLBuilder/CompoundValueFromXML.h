#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "Core/Types/SimpleDataType.h"
#include "XMLBuilder/ReadingRules.h"

/// Reads the values that are made of child elements. By the exact rules, children are found by name in the namespaces
/// that the document element declares for the prefixes "types" and "s422mTypes", and a missing or malformed number is
/// 0.
namespace Vantor::XML2Partition {

auto_ptr<Types::SimpleDataType> readRational(const xercesc::DOMNode& node, ReadingRules& rules);
auto_ptr<Types::SimpleDataType> readProductVersion(const xercesc::DOMNode& node, ReadingRules& rules);
auto_ptr<Types::SimpleDataType> readRGBALayout(const xercesc::DOMNode& node, ReadingRules& rules);

/// @throws InvalidFormat naming the first child that is missing. The milliseconds are the number of "types:mSec4" as it
///         stands.
auto_ptr<Types::SimpleDataType> readTimestamp(const xercesc::DOMNode& node, ReadingRules& rules);

/// The JPEG 2000 values stand in an element of their own within the property. @throws InvalidFormat naming what is
/// missing.
auto_ptr<Types::SimpleDataType> readJ2KPictureComponent(const xercesc::DOMNode& node, ReadingRules& rules);
auto_ptr<Types::SimpleDataType> readJ2KCodingStyleDefault(const xercesc::DOMNode& node, ReadingRules& rules);
auto_ptr<Types::SimpleDataType> readJ2KQuantisationDefault(const xercesc::DOMNode& node, ReadingRules& rules);

}  // namespace Vantor::XML2Partition
