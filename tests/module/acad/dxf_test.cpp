// Drawings saved as DXF: read by an independent reader (ezdxf under Debian's own Python), which
// must load them, audit them without errors and find what was drawn; and reopened through
// HeadlessOpenDxf with the same entities, handles and tags.
#include <gtest/gtest.h>
#include <json/json.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include <unistd.h>

#include "DrawingTestUtil.h"
#include "EveryKind.h"

namespace {

namespace fs = std::filesystem;
using acadtest::ADrawing;

constexpr const char* kPython = "/usr/bin/python3";

std::string Narrow(const std::wstring& w) { return std::string(w.begin(), w.end()); }

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// What ezdxf makes of a file, or a skip reason.
bool Inspect(const fs::path& file, Json::Value& out, std::string& why) {
  if (!fs::exists(kPython) || std::system((std::string(kPython) + " -c 'import ezdxf' 2>/dev/null").c_str()) != 0) {
    why = "Debian's python3-ezdxf is not installed";
    return false;
  }
  const fs::path json = file.string() + ".json";
  const std::string command = std::string(kPython) + " " + KD_DXF_CHECK + " " + file.string() + " > " + json.string();
  if (std::system(command.c_str()) != 0) {
    why = "ezdxf could not read " + file.string();
    return true;  // a failure of the file, not of the machine: the caller fails
  }
  Json::CharReaderBuilder builder;
  std::string errors;
  std::istringstream in(ReadFile(json));
  if (!Json::parseFromStream(builder, in, &out, &errors)) why = "bad report: " + errors;
  return true;
}

class ASavedDrawing : public ADrawing {
protected:
  void SetUp() override {
    ADrawing::SetUp();
    folder = fs::temp_directory_path() / ("kd-dxf-" + std::to_string(::getpid()) + "-" +
                                          ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::create_directories(folder);
  }
  void TearDown() override {
    fs::remove_all(folder);
    ADrawing::TearDown();
  }

  // Every kind, decorated, each with its own tag; the elements stay for comparison.
  void DrawEveryKind() {
    int seed = 2;
    for (const acadtest::Sample& sample : acadtest::Samples()) {
      elements.push_back(sample.make());
      grtest::Decorate(*elements.back(), seed += 2);
    }
    auto group = std::make_unique<CGrGroup>(L"Survey");
    auto* member = new CGrLine(CKdPoint(0, 0, 0), CKdPoint(0.1, 0.2, 0.30000000000000004));
    grtest::Decorate(*member, 100);
    group->Add(member);
    group->SetTag(L"group-tag");
    elements.push_back(std::move(group));
    for (auto& element : elements) ASSERT_EQ(context.Draw(element.get()), 0) << element->Type();
    table = std::make_unique<CGrTable>();
    table->SetLocation(CKdPoint(40, 40, 0));
    table->SetTitle(L"Quantities \u00e9t\u00e9");
    table->SetRows({{L"Cut", L"12.5"}, {L"Fill", L"8.25"}});
    table->SetTag(L"table-tag");
    table->SetLayerName(L"C-ANNO");
    ASSERT_EQ(context.Draw(table.get()), 0);
    cylinder = std::make_unique<CGrCylinder>();
    cylinder->SetAxis(CKdPoint(1, 2, -2), CKdPoint(4, 6, 8));
    cylinder->SetTitle(L"Pile");
    cylinder->SetRows({{L"Radius", L"0.75"}});
    cylinder->SetTag(L"pile-tag");
    cylinder->SetLayerName(L"C-PILE");
    ASSERT_EQ(context.Draw(cylinder.get()), 0);
  }

  // Opens the file as the active drawing, which the module then locks.
  void Reopen(const fs::path& path) {
    ASSERT_EQ(HeadlessOpenDxf(app, path.c_str()), 0) << HeadlessLastError(app);
    ASSERT_EQ(acadtest::Lock().Lock(false), 0);
  }

  fs::path Save(const char* name) {
    const fs::path path = folder / name;
    EXPECT_EQ(HeadlessSaveDxf(app, path.c_str()), 0) << HeadlessLastError(app);
    return path;
  }

  fs::path folder;
  std::vector<std::unique_ptr<CGrElement>> elements;
  std::unique_ptr<CGrTable> table;
  std::unique_ptr<CGrCylinder> cylinder;
};

std::string HexHandle(std::int64_t handle) {
  char buf[24];
  std::snprintf(buf, sizeof buf, "%llX", static_cast<unsigned long long>(handle));
  return buf;
}

TEST_F(ASavedDrawing, EzdxfLoadsItAuditsCleanAndFindsWhatWasDrawn) {
  DrawEveryKind();
  const fs::path path = Save("every-kind.dxf");
  Json::Value report;
  std::string why;
  if (!Inspect(path, report, why)) GTEST_SKIP() << why;
  ASSERT_TRUE(why.empty()) << why;
  EXPECT_EQ(report["version"].asString(), "AC1018");
  EXPECT_EQ(report["errors"].size(), 0u) << report["errors"].toStyledString();

  std::map<std::string, const Json::Value*> byHandle;
  std::map<std::string, int> counts;
  for (const Json::Value& e : report["entities"]) {
    byHandle[e["handle"].asString()] = &e;
    if (e["space"].asString() == "*Model_Space") ++counts[e["type"].asString()];
  }
  const std::map<std::string, int> expected = {
      {"LINE", 2},      {"ARC", 2},     {"CIRCLE", 1},  {"ELLIPSE", 2}, {"LWPOLYLINE", 2},    {"POLYLINE", 3},
      {"TEXT", 1},      {"HATCH", 1},   {"3DFACE", 2},  {"INSERT", 2},  {"ACAD_TABLE", 1},    {"3DSOLID", 1}};
  EXPECT_EQ(counts, expected);

  // Every element's entity is there under its handle, with its layer, colour and tag.
  for (const auto& element : elements) {
    if (element->Type() == grkind::kGroup) continue;
    const auto found = byHandle.find(HexHandle(element->Handle()));
    ASSERT_NE(found, byHandle.end()) << element->Type();
    const Json::Value& e = *found->second;
    EXPECT_EQ(e["layer"].asString(), Narrow(element->LayerName()));
    EXPECT_EQ(e["tag"].asString(), Narrow(*element->Tag()));
    if (element->Color().Method() == grcolor::kMethodRgb) {
      const std::uint32_t rgb = element->Color().StoredRgb();
      EXPECT_EQ(e["true_color"].asUInt(), ((rgb & 0xFFu) << 16) | (rgb & 0xFF00u) | ((rgb >> 16) & 0xFFu));
    } else {
      EXPECT_EQ(e["color"].asUInt(), element->Color().StoredIndex());
    }
  }
  EXPECT_EQ((*byHandle.at(HexHandle(table->Handle())))["tag"].asString(), "table-tag");
  const Json::Value& pile = *byHandle.at(HexHandle(cylinder->Handle()));
  EXPECT_EQ(pile["tag"].asString(), "pile-tag");
  EXPECT_EQ(pile["acis_faces"].asInt(), 32 + 2) << "a faceted body: sides and two ends";
  EXPECT_EQ(pile["acis_vertices"].asInt(), 2 * 32);

  // Coordinates keep every bit: 17 significant digits.
  const Json::Value& line = *byHandle.at(HexHandle(elements[0]->Handle()));
  EXPECT_EQ(line["start"][2].asDouble(), 0.3);
  EXPECT_EQ(line["end"][1].asDouble(), 5e6);
  const auto& group = static_cast<const CGrGroup&>(*elements.back());
  const Json::Value& member = *byHandle.at(HexHandle(group.Elements().At(0)->Handle()));
  EXPECT_EQ(member["end"][2].asDouble(), 0.30000000000000004);

  ASSERT_TRUE(report["groups"].isMember("Survey"));
  EXPECT_EQ(report["groups"]["Survey"][0].asString(), HexHandle(group.Elements().At(0)->Handle()));
  for (const char* layer : {"0", "C-TOPO-4", "C-TOPO-100"}) {
    bool present = false;
    for (const Json::Value& name : report["layers"]) present = present || name.asString() == layer;
    EXPECT_TRUE(present) << layer;
  }
  // The block's children are in its definition.
  const Json::Value& insert = *byHandle.at(HexHandle(elements[15]->Handle()));
  EXPECT_EQ(insert["name"].asString(), "Manhole");
  int inManhole = 0;
  for (const Json::Value& e : report["entities"]) inManhole += e["space"].asString() == "Manhole" ? 1 : 0;
  EXPECT_EQ(inManhole, 2);
}

TEST_F(ASavedDrawing, ReopensWithTheSameEntitiesHandlesAndTags) {
  DrawEveryKind();
  const fs::path path = Save("reopen.dxf");
  Reopen(path);
  AcDbDatabase* reopened = acadtest::Db();
  ASSERT_NE(reopened, nullptr);
  CGrAcadGraphicsContext fresh;
  for (const auto& element : elements) {
    std::unique_ptr<CGrElement> read(fresh.MakeElementFromHandle(element->Handle()));
    ASSERT_NE(read, nullptr) << element->Type();
    EXPECT_TRUE(grtest::SameElement(*read, *element)) << element->Type();
    EXPECT_EQ(read->Handle(), element->Handle());
  }
  std::unique_ptr<CGrElement> pile;
  {
    CGrAcadOpened<AcDbEntity> solid(CGrAcadDb::IdFromHandle(cylinder->Handle()), AcDb::kForRead);
    ASSERT_TRUE(solid);
    pile.reset(fresh.DcForKind(grkind::kCylinder)->MakeElement(solid.get()));
    AcDbExtents box;
    ASSERT_EQ(solid->getGeomExtents(box), Acad::eOk);
  }
  ASSERT_NE(pile, nullptr);
  EXPECT_TRUE(grtest::SameElement(*pile, *cylinder));
  {
    CGrAcadOpened<AcDbEntity> entity(CGrAcadDb::IdFromHandle(table->Handle()), AcDb::kForRead);
    ASSERT_TRUE(entity);
    std::unique_ptr<CGrElement> read(fresh.DcForKind(grkind::kTable)->MakeElement(entity.get()));
    ASSERT_NE(read, nullptr);
    EXPECT_TRUE(grtest::SameElement(*read, *table));
  }
}

TEST_F(ASavedDrawing, ASecondSaveOfTheReopenedDrawingIsTheSameFile) {
  for (const acadtest::Sample& sample : acadtest::Samples()) {
    elements.push_back(sample.make());
    grtest::Decorate(*elements.back(), 5);
    ASSERT_EQ(context.Draw(elements.back().get()), 0);
  }
  const fs::path first = Save("first.dxf");
  Reopen(first);
  const fs::path second = Save("second.dxf");
  EXPECT_EQ(ReadFile(first), ReadFile(second));
}

TEST_F(ASavedDrawing, AFailedSaveLeavesNoFileAndSaysWhy) {
  const fs::path blocked = folder / "not-a-folder";
  std::ofstream(blocked) << "a file where a folder should be";
  const fs::path path = blocked / "drawing.dxf";
  EXPECT_NE(HeadlessSaveDxf(app, path.c_str()), 0);
  const std::string error = HeadlessLastError(app);
  EXPECT_NE(error.find(path.string()), std::string::npos) << error;
  EXPECT_NE(error.find("Not a directory"), std::string::npos) << error;
  const fs::path missing = folder / "no-such-folder" / "drawing.dxf";
  EXPECT_NE(HeadlessSaveDxf(app, missing.c_str()), 0);
  EXPECT_FALSE(fs::exists(missing));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1) << "no temporary left";
  EXPECT_NE(HeadlessSaveDxf(app, ""), 0);
  EXPECT_NE(HeadlessSaveDxf(nullptr, "x.dxf"), 0);
  // A good save clears the message.
  EXPECT_EQ(HeadlessSaveDxf(app, (folder / "ok.dxf").c_str()), 0);
  EXPECT_STREQ(HeadlessLastError(app), "");
}

TEST_F(ASavedDrawing, OpeningWhatIsNoDrawingFails) {
  const fs::path missing = folder / "missing.dxf";
  EXPECT_NE(HeadlessOpenDxf(app, missing.c_str()), 0);
  EXPECT_NE(std::string(HeadlessLastError(app)).find("missing.dxf"), std::string::npos);
  const fs::path garbage = folder / "garbage.dxf";
  std::ofstream(garbage) << "this is\nnot a drawing\n";
  EXPECT_NE(HeadlessOpenDxf(app, garbage.c_str()), 0);
  EXPECT_NE(std::string(HeadlessLastError(app)), "");
  const fs::path cut = folder / "cut.dxf";
  std::ofstream(cut) << "  0\nSECTION\n  2\n";
  EXPECT_NE(HeadlessOpenDxf(app, cut.c_str()), 0);
  EXPECT_NE(HeadlessOpenDxf(app, nullptr), 0);
}

}  // namespace
