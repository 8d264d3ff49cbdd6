#pragma once

#include <vector>

#include "Core/Types/UUID.h"

namespace Vantor::Edit {

/// The targets of a collection of references, in its order.
using ReferenceTargets = std::vector<Types::UUID>;

/// Merges the edits of a collection of references that are not all shown.
///
/// @param all     all references of ours.
/// @param shown   those of them that the form of the edit shows, in the order of `all`.
/// @param theirs  the edited ones.
/// @return theirs, and each that is not shown behind the one that it follows in `all`, as far as that is still there.
ReferenceTargets mergeReferences(const ReferenceTargets& all, const ReferenceTargets& shown,
                                 const ReferenceTargets& theirs);

}  // namespace Vantor::Edit
