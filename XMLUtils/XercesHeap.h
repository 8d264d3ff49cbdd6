#pragma once

#include <cstddef>
#include <xercesc/framework/MemoryManager.hpp>

#include "Core/Platform/Types.h"

namespace Vantor::XMLUtils {

/// The memory of Xerces-C++: documents, parsers and serializers, charged to the budget of the thread
/// (`Platform::MemoryBudget`).
///
/// Xerces cannot take back a start that runs out of memory. Until `finishStart`, memory comes from one block that the
/// constructor has allocated, so that either nothing is started or all of it has room.
class XercesHeap : public xercesc::MemoryManager {
 public:
  /// @throws std::bad_alloc.
  XercesHeap();
  ~XercesHeap() override;

  /// @throws std::bad_alloc, of which Platform::MemoryLimitReached is one. Behind its own OutOfMemoryException, Xerces
  /// would leave everything as it is, and leak what it was building.
  void* allocate(XMLSize_t size) override;
  void deallocate(void* memory) override;
  /// The C heap without a budget: messages of exceptions come from it, so that one about memory has room.
  MemoryManager* getExceptionMemoryManager() override { return &forExceptions_; }

  /// From now on, memory comes from the C heap. What is in the block stays there.
  void finishStart() { isStarting_ = false; }

 private:
  class PlainHeap : public xercesc::MemoryManager {
   public:
    void* allocate(XMLSize_t size) override;
    void deallocate(void* memory) override;
    MemoryManager* getExceptionMemoryManager() override { return this; }
  };

  bool isInBlock(const void* memory) const;

  uint8* block_;
  std::size_t used_ = 0;
  bool isStarting_ = true;
  PlainHeap forExceptions_;
};

}  // namespace Vantor::XMLUtils
