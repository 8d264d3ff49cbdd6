#include "tests/XMLBuilder/OldStandard.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "XMLBuilder.h"

#if __cplusplus >= 201703L
#error "this file is there to be compiled as C++14"
#endif

VANTOR_AUTO_PTR_BEGIN

namespace Vantor {

namespace XMLBuilder {

std::size_t OldStandard::countChildren(PartitionMetadata* partition, const MetadataSet* start) {
  std::auto_ptr<xercesc::DOMNode> document(partition2XML(partition, start, true, false));
  const std::auto_ptr<xercesc::DOMNode> owner(document);  // takes it over, as auto_ptr does when it is copied
  if (document.get() != nullptr || owner.get() == nullptr) return 0;
  return static_cast<xercesc::DOMDocument&>(*owner).getDocumentElement()->getChildElementCount();
}

std::size_t OldStandard::textSize(PartitionMetadata* partition) {
  wstring text;
  partition2XML(partition, true, false, XMLUtils::EncodingType::kUTF16, text);
  return text.size();
}

}  // namespace XMLBuilder

}  // namespace Vantor

VANTOR_AUTO_PTR_END
