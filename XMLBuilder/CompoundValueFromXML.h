#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "Core/Types/SimpleDataType.h"
#include "XMLBuilder/ImportDocument.h"

/// Reads the values that are made of child elements. Children are found by name, in the namespaces that the document
/// element declares for the prefixes "types" and "s422mTypes". A number that is missing or none is 0.
namespace Vantor::XML2Partition {

auto_ptr<Types::SimpleDataType> readRational(const xercesc::DOMNode& node, ImportDocument& document);
auto_ptr<Types::SimpleDataType> readProductVersion(const xercesc::DOMNode& node, ImportDocument& document);
auto_ptr<Types::SimpleDataType> readRGBALayout(const xercesc::DOMNode& node, ImportDocument& document);

/// @throws InvalidFormat naming the first child that is missing. The milliseconds are the number of "types:mSec4" as it
///         stands.
auto_ptr<Types::SimpleDataType> readTimestamp(const xercesc::DOMNode& node, ImportDocument& document);

/// The JPEG 2000 values stand in an element of their own within the property. @throws InvalidFormat naming what is
/// missing.
auto_ptr<Types::SimpleDataType> readJ2KPictureComponent(const xercesc::DOMNode& node, ImportDocument& document);
auto_ptr<Types::SimpleDataType> readJ2KCodingStyleDefault(const xercesc::DOMNode& node, ImportDocument& document);
auto_ptr<Types::SimpleDataType> readJ2KQuantisationDefault(const xercesc::DOMNode& node, ImportDocument& document);

}  // namespace Vantor::XML2Partition
