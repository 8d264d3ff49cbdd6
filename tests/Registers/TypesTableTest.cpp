#include "Registers/TypesTable.h"

#include <gtest/gtest.h>

#include "PublishedRegisters.h"
#include "Registers/RegisterTypes.h"
#include "SomeRegisters.h"

namespace Vantor::Registers {
namespace {

std::string tableOf(const Templates::vector<TypeEntry>& types) {
  Entries entries;
  entries.types = types;
  return tableOfTypes(entries);
}

TEST(TypesTable, IsReadAsTheTypesThatItWasMadeOf) {
  SomeRegisters registers;
  registers.integer(0x0101070000000000, "Int32", 4, true);
  registers.type(0x0101200100000000, "PositionType", TypeKind::kRename, 0x0101070000000000);
  registers.type(0x0410020000000000, "Stream", TypeKind::kStream);
  const std::string table =
      "# Made from the SMPTE metadata register Types (ST 2003).\n"
      "060e2b34.01040101.01010700.00000000 Int32 Integer s4 -\n"
      "060e2b34.01040101.01012001.00000000 PositionType Rename - 060e2b34.01040101.01010700.00000000\n"
      "060e2b34.01040101.04100200.00000000 Stream Stream - -\n";
  EXPECT_EQ(tableOfTypes(registers), table);
  EXPECT_EQ(tableOf(typesOfTable(table)), table);
}

TEST(TypesTable, InTheLibraryLeadsEveryTypeToACoreType) {
  Entries entries;
  entries.types = registeredTypes();
  ASSERT_EQ(entries.types.size(), 496u);
  const RegisterTypes types(entries);
  for (const auto& type : entries.types) EXPECT_TRUE(types.find(type.key)) << type.symbol;
}

TEST_F(PublishedRegisters, MakeTheTableOfTypesInTheLibrary) {
  EXPECT_EQ(tableOf(registeredTypes()), tableOfTypes(registers()));
}

}  // namespace
}  // namespace Vantor::Registers
