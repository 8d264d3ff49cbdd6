#include "Core/Metadata/Element.h"

namespace Vantor {

void Element::appendTargets(ReferenceKinds, std::vector<Types::UUID>&) const {}

}  // namespace Vantor
