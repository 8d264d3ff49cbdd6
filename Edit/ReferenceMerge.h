#pragma once

#include <vector>

#include "Core/Types/UUID.h"

namespace Vantor::Edit {

/// The targets of a collection of references, in its order.
using ReferenceTargets = std::vector<Types::UUID>;

/// Merges the edits of a collection of references, some of which are hidden.
///
/// @param all     all references of ours.
/// @param shown   those that are not hidden, in the order of `all`.
/// @param theirs  the edited ones.
/// @return theirs, with each hidden reference behind its nearest predecessor in `all` that is still there.
ReferenceTargets mergeReferences(const ReferenceTargets& all, const ReferenceTargets& shown,
                                 const ReferenceTargets& theirs);

}  // namespace Vantor::Edit
