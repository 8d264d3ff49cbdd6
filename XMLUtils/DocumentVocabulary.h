#pragma once

#include <cstddef>
#include <optional>

#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Platform/Types.h"

namespace Vantor::XMLUtils {

/// The vocabulary that a document's sets and properties are written in, told by the first element below the root that
/// is in a namespace of either. Reads no further than that element.
///
/// @param buffer  as `loadDocumentFromBuffer` takes it.
/// @return none when no element tells, or when the document is damaged before one does: loading it says what is wrong.
std::optional<MetaMetadata::Vocabulary> vocabularyOf(const uint8* buffer, std::size_t size);

/// The same for a document that stands in a file.
/// @param path  NUL-terminated UTF-16, as `loadDocumentFromFile` takes it.
/// @throws xercesc::SAXException naming the path and the system's reason when the file cannot be read.
std::optional<MetaMetadata::Vocabulary> vocabularyOfFile(const uint16* path);

}  // namespace Vantor::XMLUtils
