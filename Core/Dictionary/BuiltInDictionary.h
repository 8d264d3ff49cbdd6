#pragma once

#include "Core/Dictionary/Definitions.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Platform/Types.h"

namespace Vantor {

/// The sets and properties of the SMPTE metadata registers that occur in MXF header metadata, and those that SMPTE has
/// published since (SmpteSupplement.dictionary). Part of the library: no file is read.
///
/// Built by the first caller who asks for the vocabulary, shared by all; any thread may call, at once with others. It
/// lives until the process ends, and longer where the caller still holds a reference.
SharedPtr<const MetaMetadata::Dictionary> builtInDictionary(
    MetaMetadata::Vocabulary vocabulary = MetaMetadata::Vocabulary::kLegacy);

/// The definitions that the built-in dictionary is made from, with their enumerations, to add others to: first those of
/// the registers, then those of the supplement. Labels are not among them.
Definitions builtInDefinitions();
/// The edition of the registers that the built-in definitions and labels are made from, and its year: the tag that
/// SMPTE's own files carry.
inline constexpr const char* kRegistersEdition = "v000000084";
inline constexpr int kRegistersYear = 2023;
/// Those of the registers alone.
Definitions registerDefinitions();

/// The universal labels of the SMPTE labels register (ST 400), and nothing else. Read by the first caller; any thread
/// may call.
const Definitions& builtInLabels();

/// Appends them, as a `MetaMetadata::LabelSource`.
void appendBuiltInLabels(MetaMetadata::LabelIndex::Labels& labels);

}  // namespace Vantor
