#pragma once

#include "Core/KLV/Key.h"

namespace Vantor::Structural {

/// Keys of ST 377-1 that the model depends on.
struct StructuralMetadataKeys {
  static constexpr KLV::Key kPreface{{0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,  //
                                      0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f, 0x00}};

  /// The key of the Preface set, coding octet 0x53.
  static const KLV::Key& preface() { return kPreface; }
};

}  // namespace Vantor::Structural
