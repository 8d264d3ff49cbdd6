#include "Registers/FileDefinitions.h"

namespace Vantor::Registers {

namespace {

using Kind = DefinitionProblem::Kind;

const char* textOf(BytesReason reason) {
  switch (reason) {
    case BytesReason::kNone:
      return "";
    case BytesReason::kNoType:
      return "neither the file nor the registers define its type";
    case BytesReason::kFloat:
      return "its type is a floating-point number";
    case BytesReason::kIntegerSize:
      return "its type is an integer of neither 1, 2, 4 nor 8 octets";
    case BytesReason::kCharacters:
      return "its type is a string of numbers";
    case BytesReason::kItems:
      return "its type is a collection of items that have no fixed size, or are collections";
    case BytesReason::kCharacter:
      return "its type is a single character";
    case BytesReason::kFixedArray:
      return "its type is a fixed array";
    case BytesReason::kIndirect:
      return "its type is indirect: each value has a type of its own";
    case BytesReason::kOpaque:
      return "its type is opaque";
    case BytesReason::kRecord:
      return "its type is a record";
    case BytesReason::kStream:
      return "its type is a stream";
    case BytesReason::kOther:
      return "its type cannot be resolved";
  }
  return "";
}

std::string textOf(const DefinitionProblem& problem) {
  switch (problem.kind) {
    case Kind::kNoIdentification:
      return "left out: its identification is neither a label nor a UUID";
    case Kind::kNoSetKey:
      return "left out: its identification is a label, but not that of a set";
    case Kind::kNoPropertyKey:
      return "left out: its identification is a label, but not that of a property";
    case Kind::kObjectDirectory:
      return "left out: the object directory is not read as a set";
    case Kind::kSecondDefinition:
      return "left out: it has the identification of " + problem.detail;
    case Kind::kNoClass:
      return "left out: no class has it";
    case Kind::kOtherTags:
      return "left out of " + problem.detail + ": it has several static local tags";
    case Kind::kTooMany:
      return "left out: its sets have more properties than a dictionary holds";
    case Kind::kMissingProperty:
      return "it lists a property that the file does not define: " + problem.detail;
    case Kind::kMissingParent:
      return "its parent is not defined; it inherits from InterchangeObject";
    case Kind::kCircle:
      return "it leads to itself";
    case Kind::kTooDeep:
      return "it has too many ancestors; it inherits from InterchangeObject";
    case Kind::kTooManyBases:
      return "it is made of too many types in a row";
    case Kind::kMissingType:
      return "it is made of a type that neither the file nor the registers define";
    case Kind::kTagTaken:
      return "its local tag " + problem.detail + " is that of another property";
    case Kind::kUnnamedValues:
      return "some of its numbers have no name, or no place in its base type";
    case Kind::kRenamed:
      return "it is called " + problem.detail + ", as its name is taken or has other characters than names";
    case Kind::kBytes:
      return std::string("its values are bytes: ") + textOf(problem.reason);
  }
  return {};
}

}  // namespace

std::string describe(const DefinitionProblem& problem) { return problem.definition + ": " + textOf(problem); }

}  // namespace Vantor::Registers
