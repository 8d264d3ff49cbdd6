#include "Core/Metadata/StructuralMetadataKeys.h"

namespace Vantor::Structural {

const KLV::Key& StructuralMetadataKeys::preface() {
  static const KLV::Key key(std::array<uint8, 16>{0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x01,
                                                  0x01, 0x01, 0x01, 0x2f, 0x00});
  return key;
}

const Types::UniversalLabel& StructuralMetadataKeys::instanceUID() {
  static const Types::UniversalLabel label(KLV::Key(std::array<uint8, 16>{
      0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x15, 0x02, 0x00, 0x00, 0x00, 0x00}));
  return label;
}

}  // namespace Vantor::Structural
