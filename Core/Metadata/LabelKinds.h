#pragma once

#include <string_view>

#include "Core/Types/UniversalLabel.h"

namespace Vantor {

/// What kind of label a property takes: those below some nodes of the register of labels (ST 400), or none at all.
struct LabelKind;

/// Null for properties that may have any.
const LabelKind* labelKindOf(std::string_view property);

/// Whether the property has identifiers that are no labels, and therefore no names: products, generations, definitions.
bool hasNoNames(const LabelKind* kind);
/// Whether labels of the kind are below a node that this label is below. @param kind  null for labels of any kind.
bool isOfKind(const LabelKind* kind, const Types::UniversalLabel& label);
/// The same, and for labels below no node of any kind: private ones, of which the register has no more than the node.
bool mayBeOfKind(const LabelKind* kind, const Types::UniversalLabel& label);

/// Completes "'x' is not ": "a transfer characteristic".
const char* nounOf(const LabelKind* kind);
/// Completes "; for example ". The property takes each of them.
const char* examplesOf(const LabelKind* kind);

}  // namespace Vantor
