// Reads the header metadata of an MXF file, turns it into XML, and the XML back into sets.

#include <cstdio>
#include <exception>

#include <vantor/Core/Dictionary/BuiltInDictionary.h>
#include <vantor/Core/MXF/HeaderMetadataReader.h>
#include <vantor/Core/Platform/Strings.h>
#include "XML2Partition.h"
#include "XMLBuilder.h"

int main(int argc, char** argv) try {
  if (argc != 2) return 2;
  const auto fromFile = Vantor::MXF::readHeaderMetadata(argv[1], Vantor::builtInDictionary());

  Vantor::wstring xml;
  const bool nested = true, structuralOnly = false;
  Vantor::XMLBuilder::partition2XML(fromFile.get(), nested, structuralOnly,
                                    Vantor::XMLUtils::EncodingType::kUTF8Indented, xml);
  std::fputs(Vantor::Utils::wstringToString(xml).c_str(), stdout);

  Vantor::PartitionMetadata fromXML(Vantor::builtInDictionary());
  Vantor::XML2Partition::getPartitionMetadataFromString(xml, &fromXML);
  return fromXML.sets().size() == fromFile->sets().size() ? 0 : 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
