// The contract's slots under the Itanium ABI of this build (GCC and Clang on Linux).
//
// How the two ABIs map: Microsoft's gives a virtual destructor one slot (the scalar deleting
// destructor); Itanium gives it two adjacent entries (complete, then deleting). So a slot that
// the contract numbers after the destructor sits one entry further on here, and every other
// slot keeps its number.
#include <gtest/gtest.h>

#include "module/civil/Civil3dObject.h"
#include "tests/abi/SlotTables.h"

namespace {

std::ptrdiff_t ExpectedItaniumIndex(const slots::InterfaceTable& table, int slot) {
  return slot + (slot > table.destructorSlot ? 1 : 0);
}

TEST(ItaniumSlots, EveryNamedSlotSitsWhereTheContractPutsIt) {
  int checked = 0;
  for (const auto& table : slots::ContractTables()) {
    for (const auto& row : table.rows) {
      if (row.name == "~") continue;
      EXPECT_EQ(row.itanium, ExpectedItaniumIndex(table, row.slot))
          << table.name << "::" << row.name << " (arity " << row.arity << ") slot " << row.slot;
      ++checked;
    }
  }
  EXPECT_EQ(checked, 36 + 13 + 6 + 17 + 4 + 2);
}

// A virtual added by a derived class lands right after the base's last entry, so its index is
// the base's entry count: it proves the destructor takes exactly two entries where expected.
struct SessionProbe : ICivil3dObject {
  virtual void After() = 0;
};
struct AlignmentProbe : ICivil3dAlignment {
  virtual void After() = 0;
};
struct ProfileProbe : ICivil3dProfile {
  virtual void After() = 0;
};
struct SurfaceProbe : ICivil3dSurface {
  virtual void After() = 0;
};
struct CorridorProbe : ICivil3dCorridor {
  virtual void After() = 0;
};

TEST(ItaniumSlots, DestructorTakesTwoEntriesAtItsPlace) {
  EXPECT_EQ(slots::ItaniumIndex(&SessionProbe::After), 36 + 2);
  EXPECT_EQ(slots::ItaniumIndex(&AlignmentProbe::After), 14 + 1);
  EXPECT_EQ(slots::ItaniumIndex(&ProfileProbe::After), 7 + 1);
  EXPECT_EQ(slots::ItaniumIndex(&SurfaceProbe::After), 18 + 1);
  EXPECT_EQ(slots::ItaniumIndex(&CorridorProbe::After), 5 + 1);
}

// The session class extends the table with its two assembly-handler slots (37 and 38 for the
// host's compiler).
TEST(ItaniumSlots, SessionClassAppendsAssemblyHandlerSlots) {
  EXPECT_EQ(slots::ItaniumIndex(&CCivil3dObject::AddAssemblyHandlers), 37 + 1);
  EXPECT_EQ(slots::ItaniumIndex(&CCivil3dObject::RemoveAssemblyHandlers), 38 + 1);
}

}  // namespace
