#pragma once

#include "Core/KLV/Key.h"

namespace Vantor::MXF {

/// Whether a KLV cannot be part of header metadata, which ends before it: partition packs, index table segments, the
/// random index pack, essence and generic stream data, and the zeros that may stand behind all KLVs.
bool endsHeaderMetadata(const KLV::Key& key);

/// Whether a KLV is part of header metadata but no set of it: the primer pack and fill items.
bool isHeaderMetadataFraming(const KLV::Key& key);

}  // namespace Vantor::MXF
