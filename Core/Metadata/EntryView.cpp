#include "Core/Metadata/EntryView.h"

#include "Core/Platform/Strings.h"

namespace Vantor {

namespace {

/// An empty value has an address, too: the address marks dark KLVs.
std::string_view viewOf(const Bytes& octets) {
  return octets.empty() ? std::string_view("")
                        : std::string_view(reinterpret_cast<const char*>(octets.data()), octets.size());
}

}  // namespace

EntryView::EntryView(const PartitionMetadata::Entry& entry) {
  if (const auto* dark = std::get_if<auto_ptr<DarkMetadataSet>>(&entry)) {
    key = &(*dark)->key();
    berLength = (*dark)->berLength();
    octets = viewOf((*dark)->value().bytes());
    return;
  }
  set = std::get<auto_ptr<MetadataSet>>(entry).get();
  key = &set->key();
  berLength = set->berLength();
  if (const auto* group = dynamic_cast<const DarkParsedGroup*>(set)) octets = viewOf(group->value());
}

std::string EntryView::name() const { return set != nullptr ? set->name() : Utils::wstringToString(key->toString()); }

}  // namespace Vantor
