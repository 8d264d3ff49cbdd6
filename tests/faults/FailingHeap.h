#pragma once

#include "Core/Platform/Types.h"

/// A C heap that fails when a test asks for it. The program that links it allocates nothing else: its `malloc` takes
/// the place of the system's in all libraries of the process.
namespace Vantor::FailingHeap {

/// Which allocations of the calling thread fail.
enum class Fails { kOnce, kFromThenOn };

/// Lets the `number`th allocation from now on fail, from 1.
void failAt(uint64 number, Fails which);
/// Ends that. @return whether an allocation failed.
bool stop();
/// Whether a function of Xerces-C++ or XQilla was running when one failed first.
bool hasFailedInXMLStack();
/// Blocks of the whole process that are allocated now.
int64 liveBlocks();

}  // namespace Vantor::FailingHeap
