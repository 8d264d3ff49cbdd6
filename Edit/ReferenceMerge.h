#pragma once

#include <optional>
#include <vector>

#include "Core/Types/UUID.h"

namespace Vantor {

/// The targets of a collection of references, in its order.
using ReferenceTargets = std::vector<Types::UUID>;

/// Brings the edits of references, some of which a document does not show, to all of them.
///
/// @param original  all references.
/// @param shown     those that an unedited document shows.
/// @param edited    those that the edited document shows.
/// @return the edited ones, and each that is not shown behind the one that it follows in the original, as far as that
///         is still there; one that the edited document has all the same is not doubled. None when the shown ones are
///         no part of the original in its order, so that nobody can tell which are not shown.
std::optional<ReferenceTargets> mergeReferences(const ReferenceTargets& original, const ReferenceTargets& shown,
                                                const ReferenceTargets& edited);

}  // namespace Vantor
