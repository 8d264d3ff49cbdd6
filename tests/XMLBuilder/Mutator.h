#pragma once

#include <random>
#include <string>

#include "Core/Platform/Types.h"

namespace Vantor {

/// Damages documents and files, in the same way on every run and every platform.
class Mutator {
 public:
  explicit Mutator(uint32 seed) : random_(seed) {}

  /// A number from 0 up to a bound that is not 0.
  std::size_t below(std::size_t bound) { return random_() % bound; }

  /// Does one to four things to an XML text: to elements, names, texts, attributes and numbers, and to one text of four
  /// also to octets, whatever these are.
  void mutateDocument(std::string& text);

  /// Does one to four things to the KLVs of header metadata: to whole ones, to lengths and items, and to octets.
  /// @param start  where the first KLV starts; what stands before it stays.
  void mutateKLVs(std::string& bytes, std::size_t start);

 private:
  using Operation = void (Mutator::*)(std::string&);

  void flipBit(std::string& text);
  void cut(std::string& text);
  void duplicateSpan(std::string& text);
  void deleteSpan(std::string& text);
  void swapSpans(std::string& text);

  void duplicateElement(std::string& text);
  void deleteElement(std::string& text);
  void moveElement(std::string& text);
  void swapElements(std::string& text);
  void renameElement(std::string& text);
  void replaceText(std::string& text);
  void replaceAttribute(std::string& text);
  void replaceNumber(std::string& text);

  void duplicateKLV(std::string& bytes);
  void deleteKLV(std::string& bytes);
  void swapKLVs(std::string& bytes);
  void copyItem(std::string& bytes);
  void replaceItemLength(std::string& bytes);
  void replaceLength(std::string& bytes);
  void replaceOctets(std::string& bytes);

  struct Span {
    std::size_t start;
    std::size_t end;
  };
  Span spanOf(const std::string& text);
  void swap(std::string& text, Span one, Span other);
  std::string hostileText();

  std::mt19937 random_;
};

}  // namespace Vantor
