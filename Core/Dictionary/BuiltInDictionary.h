#pragma once

#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Platform/Types.h"

namespace Vantor {

/// The sets and properties of the SMPTE metadata registers that occur in MXF header metadata, with the legacy XML
/// vocabulary. Part of the library: no file is read.
///
/// Built by the first caller, shared by all; any thread may call, at once with others. It lives until the process ends,
/// and longer where the caller still holds a reference.
SharedPtr<const MetaMetadata::Dictionary> builtInDictionary();

/// What the first call of `builtInDictionary` does, once more: an equal dictionary that belongs to the caller alone.
SharedPtr<const MetaMetadata::Dictionary> makeBuiltInDictionary();

}  // namespace Vantor
