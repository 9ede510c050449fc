// The contract's slots under the Microsoft ABI, read from the vtable layouts that clang prints
// when it compiles the interface headers for x86_64-pc-windows-msvc (see CMakeLists.txt).
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "tests/abi/SlotTables.h"

namespace {

struct Entry {
  std::string name;
  int arity = 0;
};

struct Layout {
  int declaredEntries = 0;
  std::map<int, Entry> entries;
};

int CountParameters(const std::string& list) {
  if (list.find_first_not_of(' ') == std::string::npos) return 0;
  int depth = 0, commas = 0;
  for (char ch : list) {
    if (ch == '(' || ch == '<') ++depth;
    if (ch == ')' || ch == '>') --depth;
    if (ch == ',' && depth == 0) ++commas;
  }
  return commas + 1;
}

// Parses the "VFTable for 'X' (N entries)." blocks; entries read "  7 | bool X::Name(args) ...".
std::map<std::string, Layout> ParseLayouts(std::istream& in) {
  static const std::regex header(R"(^VFTable for '([A-Za-z0-9_]+)' \((\d+) entr(y|ies)\)\.$)");
  static const std::regex entry(R"(^\s*(\d+) \| .*?([A-Za-z0-9_]+)::(~?[A-Za-z0-9_]+|operator[^(]+)\((.*)\).*$)");
  std::map<std::string, Layout> layouts;
  Layout* current = nullptr;
  std::string line;
  while (std::getline(in, line)) {
    std::smatch m;
    if (std::regex_match(line, m, header)) {
      current = &layouts[m[1]];
      current->declaredEntries = std::stoi(m[2]);
    } else if (line.empty()) {
      current = nullptr;
    } else if (current != nullptr && std::regex_match(line, m, entry)) {
      std::string name = m[3];
      if (name.front() == '~') name = "~";
      current->entries[std::stoi(m[1])] = Entry{name, CountParameters(m[4])};
    }
  }
  return layouts;
}

class MsvcSlots : public ::testing::Test {
protected:
  void SetUp() override {
    std::ifstream in(KD_MSVC_VTABLE_DUMP);
    ASSERT_TRUE(in) << "no vtable dump at " << KD_MSVC_VTABLE_DUMP;
    layouts = ParseLayouts(in);
  }
  std::map<std::string, Layout> layouts;
};

TEST_F(MsvcSlots, EverySlotOfEveryInterfaceMatchesTheContract) {
  const auto tables = slots::ContractTables();
  ASSERT_EQ(tables.size(), 8u);
  for (const auto& table : tables) {
    SCOPED_TRACE(table.name);
    auto found = layouts.find(table.name);
    ASSERT_NE(found, layouts.end()) << "clang printed no vftable for " << table.name;
    const Layout& layout = found->second;
    EXPECT_EQ(layout.declaredEntries, table.entries);
    EXPECT_EQ(layout.entries.size(), table.rows.size());
    for (const auto& row : table.rows) {
      auto at = layout.entries.find(row.slot);
      ASSERT_NE(at, layout.entries.end()) << "no entry at slot " << row.slot;
      EXPECT_EQ(at->second.name, row.name) << "slot " << row.slot;
      EXPECT_EQ(at->second.arity, row.arity) << "slot " << row.slot << " " << row.name;
    }
  }
}

TEST_F(MsvcSlots, OverloadPairsKeepTheirOrder) {
  const auto& session = layouts.at("ICivil3dObject").entries;
  EXPECT_EQ(session.at(19).arity, 6);
  EXPECT_EQ(session.at(20).arity, 4);
  EXPECT_EQ(session.at(27).arity, 7);
  EXPECT_EQ(session.at(28).arity, 9);
  EXPECT_EQ(session.at(29).arity, 2);
  EXPECT_EQ(session.at(30).arity, 1);
}

TEST(MsvcSlotParser, ReadsEntriesAndCountsParameters) {
  std::istringstream dump(
      "VFTable for 'ICivil3dProfile' (2 entries).\n"
      "   0 | ICivil3dProfile::~ICivil3dProfile() [scalar deleting]\n"
      "   1 | bool ICivil3dProfile::GetStrokedProfile(const double &, CC3dProfilePoint **, int *) [pure]\n"
      "\n"
      "VFTable for 'CC3dPoint' (1 entry).\n"
      "   0 | bool CC3dPoint::operator==(const CC3dPoint &) const\n");
  const auto layouts = ParseLayouts(dump);
  ASSERT_EQ(layouts.size(), 2u);
  EXPECT_EQ(layouts.at("ICivil3dProfile").entries.at(0).name, "~");
  EXPECT_EQ(layouts.at("ICivil3dProfile").entries.at(1).name, "GetStrokedProfile");
  EXPECT_EQ(layouts.at("ICivil3dProfile").entries.at(1).arity, 3);
  EXPECT_EQ(layouts.at("CC3dPoint").entries.at(0).name, "operator==");
  EXPECT_EQ(layouts.at("CC3dPoint").entries.at(0).arity, 1);
}

}  // namespace
