#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <utility>

#include "Core/Dictionary/Definitions.h"
#include "Core/Dictionary/RegisterText.h"
#include "XMLUtils/RegisterFile.h"

namespace Vantor::XMLUtils {

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

  const Registers& registers() const { return registers_; }

  /// What a text holds, found to be right.
  static Definitions definitionsOf(DictionaryText text) {
    Definitions definitions;
    for (std::size_t i = 0; i < kRegisterKinds; ++i) definitions.addSource("register");
    definitions.readText(std::move(text.text), std::move(text.origins), Definitions::Overlay::kRefuse);
    definitions.check();
    return definitions;
  }

 private:
  Registers registers_;
};

}  // namespace Vantor::XMLUtils
