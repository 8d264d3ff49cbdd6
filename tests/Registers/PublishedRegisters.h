#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "Core/Dictionary/Definitions.h"
#include "Registers/RegisterDefinitions.h"
#include "Registers/RegisterFile.h"

namespace Vantor::Registers {

/// The registers as SMPTE publishes them, from the folder `shared/registers` beside the repository.
class PublishedRegisters : public ::testing::Test {
 protected:
  static Path folder() { return VANTOR_SHARED_REGISTERS_DIR; }

  void SetUp() override {
    if (!std::filesystem::exists(folder() / "xml")) GTEST_SKIP() << "no registers beside the repository";
    for (const auto* name : {"Groups.xml", "Elements.xml", "Types.xml", "Labels.xml"}) {
      readRegister(folder() / "xml" / name, registers_);
    }
  }

  const Entries& registers() const { return registers_; }

  /// The definitions of sets and properties, checked.
  Definitions definitions() const {
    Definitions definitions;
    addDefinitions(registers_, definitions);
    definitions.check();
    return definitions;
  }

 private:
  Entries registers_;
};

}  // namespace Vantor::Registers
