#pragma once

#include "Core/KLV/Key.h"
#include "Core/Types/UniversalLabel.h"

namespace Vantor::Structural {

/// Keys and labels of ST 377-1 that the model depends on.
struct StructuralMetadataKeys {
  /// The key of the Preface set, coding octet 0x53.
  static const KLV::Key& preface();
  /// The label of the InstanceUID property, 060e2b34.01010101.01011502.00000000.
  static const Types::UniversalLabel& instanceUID();
  /// The label of the GenerationUID property, 060e2b34.01010102.05200701.08000000.
  static const Types::UniversalLabel& generationUID();
};

}  // namespace Vantor::Structural
