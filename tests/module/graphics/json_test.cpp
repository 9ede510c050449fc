// The JSON form: every kind written, turned to text, parsed and read back; the exact documents
// the writer produces; the reading rules kept on purpose; wide text; and documents that try to
// break the readers.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "module/graphics/GrElementFactory.h"
#include "module/graphics/GrElementVector.h"
#include "module/graphics/GrJson.h"
#include "tests/module/graphics/GraphicsTestUtil.h"

namespace {

using GrJson::Value;

// A fresh element of the kind, for the kinds the factory leaves out as well.
std::unique_ptr<CGrElement> Fresh(int type) {
  switch (type) {
    case grkind::kVertexPolyline: return std::make_unique<CGrVertexPolyline>();
    case grkind::kTable: return std::make_unique<CGrTable>();
    case grkind::kCylinder: return std::make_unique<CGrCylinder>();
    case grkind::kShallow: return std::make_unique<CGrShallowElement>();
    default: return std::unique_ptr<CGrElement>(CGrElementFactory::Make(type));
  }
}

Value Parsed(const std::string& text) {
  Value root;
  EXPECT_TRUE(grjson::Parse(text, root)) << text;
  return root;
}

// The element read from `text` into a fresh element of `type`.
template <class T = CGrElement>
std::unique_ptr<T> ReadAs(int type, const std::string& text) {
  auto element = Fresh(type);
  element->ReadJson(Parsed(text));
  return std::unique_ptr<T>(static_cast<T*>(element.release()));
}

// One per kind, in the order of grtest::SampleElements: the exact text of each written alone
// as an element document.
const char* const kGolden[] = {
    R"([{"color":{"indClr":2,"rgbClr":0,"uindClr":1},"ht":2.25,"idTag":1001,"justification":4,"layer":"C-TOPO-1","lineTp":1,"ltScale":0.75,"msg":"Station 0+100","pos":[1.5,2.5,3.5],"rot":0.75,"styleNm":"Romans","tag":"tag-1","type":1}])",
    R"([{"color":3368603,"ctr":[10.0,-20.0,5.0],"idTag":1002,"layer":"C-TOPO-2","lineTp":2,"ltScale":1.0,"rad":7.5,"tag":"tag-2","type":2}])",
    R"([{"color":{"indClr":4,"rgbClr":0,"uindClr":1},"endPt":[-4.0,5000000.0,-6.0],"idTag":1003,"layer":"C-TOPO-3","lineTp":3,"ltScale":1.25,"startPt":[0.10000000000000001,0.20000000000000001,0.29999999999999999],"tag":"tag-3","type":3}])",
    R"([{"closed":true,"color":3368605,"curves":[{"color":3368605,"endPt":[13.0,0.0,1.0],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"startPt":[3.0,0.0,1.0],"type":3},{"color":3368605,"ctr":[13.0,5.0,1.0],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"rad":5.0,"sa":-1.5707963267948966,"swp":3.1415926535897931,"type":16},{"color":3368605,"endPt":[3.0,0.0,1.0],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"startPt":[13.0,10.0,1.0],"type":3}],"idTag":1004,"layer":"C-TOPO-4","lineTp":4,"ltScale":1.5,"tag":"tag-4","type":4}])",
    R"([{"color":{"indClr":6,"rgbClr":0,"uindClr":1},"elements":[{"color":{"indClr":0,"rgbClr":0,"uindClr":0},"ctr":[0.0,0.0,0.0],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"rad":1.0,"type":2},{"color":{"indClr":0,"rgbClr":0,"uindClr":0},"endPt":[1.0,0.0,0.0],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"startPt":[-1.0,0.0,0.0],"type":3}],"idTag":1005,"label":"Manhole","layer":"C-TOPO-5","lineTp":0,"ltScale":1.75,"pos":[100.0,200.0,0.0],"rot":0.5,"scale":[2.0,3.0,1.0],"tag":"tag-5","type":5}])",
    R"([{"color":3368607,"elements":[{"color":{"indClr":0,"rgbClr":0,"uindClr":0},"ht":1.0,"idTag":0,"justification":0,"layer":"","lineTp":0,"ltScale":1.0,"msg":"BH1","pos":[0.0,0.0,0.0],"rot":0.0,"styleNm":"KDText","type":1},{"closed":true,"color":{"indClr":0,"rgbClr":0,"uindClr":0},"curves":[{"color":{"indClr":0,"rgbClr":0,"uindClr":0},"endPt":[17.0,0.0,1.0],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"startPt":[7.0,0.0,1.0],"type":3},{"color":{"indClr":0,"rgbClr":0,"uindClr":0},"ctr":[17.0,5.0,1.0],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"rad":5.0,"sa":-1.5707963267948966,"swp":3.1415926535897931,"type":16},{"color":{"indClr":0,"rgbClr":0,"uindClr":0},"endPt":[7.0,0.0,1.0],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"startPt":[17.0,10.0,1.0],"type":3}],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"type":4}],"idTag":1006,"layer":"C-TOPO-6","lineTp":1,"ltScale":2.0,"name":"Borehole logs","tag":"tag-6","type":6}])",
    R"([{"borders":[{"closed":true,"color":{"indClr":0,"rgbClr":0,"uindClr":0},"curves":[{"color":{"indClr":0,"rgbClr":0,"uindClr":0},"endPt":[21.0,0.0,1.0],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"startPt":[11.0,0.0,1.0],"type":3},{"color":{"indClr":0,"rgbClr":0,"uindClr":0},"ctr":[21.0,5.0,1.0],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"rad":5.0,"sa":-1.5707963267948966,"swp":3.1415926535897931,"type":16},{"color":{"indClr":0,"rgbClr":0,"uindClr":0},"endPt":[11.0,0.0,1.0],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"startPt":[21.0,10.0,1.0],"type":3}],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"type":4},{"color":{"indClr":0,"rgbClr":0,"uindClr":0},"ctr":[14.0,4.0,1.0],"idTag":0,"layer":"","lineTp":0,"ltScale":1.0,"rad":1.0,"type":2}],"color":{"indClr":8,"rgbClr":0,"uindClr":1},"idTag":1007,"layer":"C-TOPO-7","lineTp":2,"ltScale":2.25,"tag":"tag-7","type":7}])",
    R"([{"color":3368609,"idTag":1008,"layer":"C-TOPO-8","lineTp":3,"ltScale":2.5,"tag":"tag-8","type":8,"v1":[0.0,0.0,1.0],"v2":[4.0,0.0,2.0],"v3":[4.0,3.0,3.0],"v4":[0.0,3.0,4.0]}])",
    R"([{"color":{"indClr":10,"rgbClr":0,"uindClr":1},"idTag":1009,"layer":"C-TOPO-9","lineTp":4,"ltScale":2.75,"tag":"tag-9","type":9,"v1":[0.0,0.0,0.0],"v2":[2.0,0.0,1.0],"v3":[1.0,2.0,2.0]}])",
    R"([{"closed":true,"color":3368611,"idTag":1010,"indices":[[0.0,0.0,0.0],[1.0,1.0,1.0],[2.0,0.0,2.0],[3.0,1.0,3.0]],"layer":"C-TOPO-10","lineTp":0,"ltScale":3.0,"tag":"tag-10","type":10}])",
    R"([{"CTS":[],"LOC":[5.0,6.0,7.0],"TL":"Volumes","color":{"indClr":12,"rgbClr":0,"uindClr":1},"idTag":1011,"layer":"C-TOPO-11","lineTp":1,"ltScale":3.25,"tag":"tag-11","type":11}])",
    R"([{"CTS":[],"EP":[0.0,0.0,8.0],"GM":true,"SP":[0.0,0.0,-2.0],"TL":"Pile P1","color":3368613,"idTag":1012,"layer":"C-TOPO-12","lineTp":2,"ltScale":3.5,"tag":"tag-12","type":12}])",
    R"([{"center":[3.0,4.0,5.0],"color":{"indClr":14,"rgbClr":0,"uindClr":1},"endAngle":4.5,"idTag":1013,"layer":"C-TOPO-13","lineTp":3,"ltScale":3.75,"majorAxis":[6.0,0.0,0.0],"minorAxis":[0.0,2.0,0.0],"startAngle":0.25,"tag":"tag-13","type":15}])",
    R"([{"color":3368615,"ctr":[-3.0,4.0,2.0],"idTag":1014,"layer":"C-TOPO-14","lineTp":4,"ltScale":4.0,"rad":12.5,"sa":1.25,"swp":-2.5,"tag":"tag-14","type":16}])",
    R"([{"color":{"indClr":16,"rgbClr":0,"uindClr":1},"idTag":1015,"layer":"C-TOPO-15","lineTp":0,"ltScale":4.25,"meshFaces":[0,1,2,0,2,3],"meshMaterials":[{"indClr":3,"materialName":"Grass","materialTransparency":0.25,"rgbClr":0,"uindClr":1},{"indClr":0,"materialName":"Water","materialTransparency":0.5,"rgbClr":16744448,"uindClr":2}],"meshVertices":[0.0,0.0,0.0,10.0,0.0,1.0,10.0,10.0,2.0,0.0,10.0,3.0],"tag":"tag-15","type":105}])",
    R"([{"color":3368617,"idTag":1016,"layer":"C-TOPO-16","lineTp":1,"ltScale":4.5,"tag":"tag-16","type":99}])",
};

class GrJsonEveryKind : public testing::TestWithParam<std::size_t> {
protected:
  std::vector<std::unique_ptr<CGrElement>> samples = grtest::SampleElements();
  const CGrElement& Sample() const { return *samples.at(GetParam()); }
};

TEST_P(GrJsonEveryKind, SurvivesWritingToTextParsingAndReadingBack) {
  Value object(GrJson::objectValue);
  Sample().WriteJson(object);
  const auto copy = ReadAs(Sample().Type(), grjson::Write(object, grjson::Style::kStyled));
  EXPECT_TRUE(grtest::SameElement(*copy, Sample()));
  // Without the text in between the colour stays an unsigned number, and still reads as one.
  auto direct = Fresh(Sample().Type());
  direct->ReadJson(object);
  EXPECT_TRUE(grtest::SameElement(*direct, Sample()));
}

TEST_P(GrJsonEveryKind, WritesExactlyTheGoldenDocument) {
  CGrElementVector one;
  one.Add(Sample().Clone());
  EXPECT_EQ(grjson::WriteElements(one), kGolden[GetParam()]);
}

TEST_P(GrJsonEveryKind, ReadsTheGoldenDocumentWhenTheFactoryMakesTheKind) {
  CGrElementVector read;
  ASSERT_TRUE(grjson::ReadElements(kGolden[GetParam()], read));
  if (std::unique_ptr<CGrElement>(CGrElementFactory::Make(Sample().Type())) == nullptr) {
    EXPECT_EQ(read.Size(), 0u) << "a kind the factory does not make is skipped";
    return;
  }
  ASSERT_EQ(read.Size(), 1u);
  EXPECT_TRUE(grtest::SameElement(*read.At(0), Sample()));
}

INSTANTIATE_TEST_SUITE_P(AllKinds, GrJsonEveryKind, testing::Range<std::size_t>(0, std::size(kGolden)),
                         [](const testing::TestParamInfo<std::size_t>& info) {
                           return "type" + std::to_string(grtest::SampleElements().at(info.param)->Type());
                         });

TEST(GrJsonDocument, AWholeDocumentOfEveryKindRoundTripsInOrder) {
  CGrElementVector all;
  for (auto& element : grtest::SampleElements()) {
    if (std::unique_ptr<CGrElement>(CGrElementFactory::Make(element->Type()))) all.Add(element.release());
  }
  // The one-line writer goes element by element; its text is the whole list's.
  Value list(GrJson::arrayValue);
  all.WriteJson(list);
  EXPECT_EQ(grjson::WriteElements(all), grjson::Write(list));
  EXPECT_EQ(grjson::WriteElements(all, grjson::Style::kStyled), grjson::Write(list, grjson::Style::kStyled));
  CGrElementVector read;
  ASSERT_TRUE(grjson::ReadElements(grjson::WriteElements(all, grjson::Style::kStyled), read));
  ASSERT_EQ(read.Size(), all.Size());
  for (std::size_t i = 0; i < all.Size(); ++i) EXPECT_TRUE(grtest::SameElement(*read.At(i), *all.At(i))) << i;
}

TEST(GrJsonDocument, ALineArcReadsBackAsAnArc) {
  CGrElementVector one;
  one.Add(new CGrLineArc(CKdPoint(1, 2, 3), 4, 0.5, 1.5));
  CGrElementVector read;
  ASSERT_TRUE(grjson::ReadElements(grjson::WriteElements(one), read));
  ASSERT_EQ(read.Size(), 1u);
  EXPECT_EQ(typeid(*read.At(0)), typeid(CGrArc));
  EXPECT_TRUE(CGrArc(CKdPoint(1, 2, 3), 4, 0.5, 1.5).AttributesEqual(*read.At(0)));
}

TEST(GrJsonCommonKeys, AnElementWithoutATagWritesNoTagKey) {
  Value object(GrJson::objectValue);
  CGrLine().WriteJson(object);
  EXPECT_FALSE(object.isMember("tag"));
  EXPECT_EQ(object.getMemberNames(), (std::vector<std::string>{"color", "endPt", "idTag", "layer", "lineTp", "ltScale", "startPt"}));
}

TEST(GrJsonCommonKeys, AMissingOrEmptyTagLeavesTheTag) {
  CGrLine line;
  line.SetTag(L"kept");
  line.ReadJson(Parsed(R"({"tag": ""})"));
  line.ReadJson(Parsed(R"({"layer": "L"})"));
  ASSERT_NE(line.Tag(), nullptr);
  EXPECT_EQ(*line.Tag(), L"kept");
  line.ReadJson(Parsed(R"({"tag": "new"})"));
  EXPECT_EQ(*line.Tag(), L"new");
}

TEST(GrJsonCommonKeys, MissingKeysLeaveEveryFieldAsItWas) {
  for (const auto& sample : grtest::SampleElements()) {
    const std::unique_ptr<CGrElement> element(sample->Clone());
    element->ReadJson(Parsed("{}"));
    element->ReadJson(Parsed("[1, 2, 3]"));
    if (sample->Type() == grkind::kVertexPolyline) continue;  // its reader clears the vertices first
    EXPECT_TRUE(grtest::SameElement(*element, *sample)) << "type " << sample->Type();
  }
}

TEST(GrJsonColour, ABareNumberIsATrueColour) {
  CGrLine line;
  line.SetColor(CGrColor(9u, 0x00ABCDEFu));
  line.ReadJson(Parsed(R"({"color": 255})"));
  EXPECT_EQ(line.Color(), CGrColor(255u));
  EXPECT_EQ(line.Color().StoredIndex(), 0u);
  EXPECT_EQ(line.Color().Method(), grcolor::kMethodRgb);
  // In memory the writer's unsigned kind; past 31 bits the reader's unsigned kind too.
  line.ReadJson([] { Value object; object["color"] = Value(GrJson::UInt(0x00102030u)); return object; }());
  EXPECT_EQ(line.Color(), CGrColor(0x00102030u));
  line.ReadJson(Parsed(R"({"color": 4294967295})"));
  EXPECT_EQ(line.Color(), CGrColor(0xFFFFFFFFu));
}

TEST(GrJsonColour, TheObjectFormKeepsWhatItLacks) {
  CGrLine line;
  line.SetColor(CGrColor(9u, 0x00ABCDEFu));
  line.ReadJson(Parsed(R"({"color": {"indClr": 3, "uindClr": 1}})"));
  EXPECT_EQ(line.Color().StoredIndex(), 3u);
  EXPECT_EQ(line.Color().StoredRgb(), 0x00ABCDEFu) << "the previous RGB stays";
  EXPECT_EQ(line.Color().Method(), grcolor::kMethodByIndex);
  // Not an integer: read as the object form, which it is not, so nothing changes.
  for (const char* other : {R"({"color": 255.0})", R"({"color": "red"})", R"({"color": [1, 2, 3]})", R"({"color": null})"}) {
    line.ReadJson(Parsed(other));
    EXPECT_EQ(line.Color().StoredIndex(), 3u) << other;
    EXPECT_EQ(line.Color().StoredRgb(), 0x00ABCDEFu) << other;
  }
}

TEST(GrJsonColour, ATrueColourIsWrittenBareAndEveryOtherColourAsAnObject) {
  Value object(GrJson::objectValue);
  CGrLine line;
  line.SetColor(CGrColor(0x00FF0000u));
  line.WriteJson(object);
  EXPECT_TRUE(object["color"].isUInt());
  EXPECT_EQ(object["color"].asUInt(), 0x00FF0000u);
  line.SetColor(CGrColor(7u, 0x00FF0000u));
  line.WriteJson(object);
  EXPECT_EQ(grjson::Write(object["color"]), R"({"indClr":7,"rgbClr":16711680,"uindClr":3})");
}

TEST(GrJsonPoints, TheArrayAndObjectFormsAndWhatFallsBackToTheOrigin) {
  const auto line = [](const char* start) {
    return ReadAs<CGrLine>(grkind::kLine, std::string(R"({"startPt": )") + start + "}")->Start();
  };
  EXPECT_EQ(line("[1, 2, 3]"), CKdPoint(1, 2, 3));
  EXPECT_EQ(line(R"({"x": 1, "y": 2, "z": 3})"), CKdPoint(1, 2, 3));
  EXPECT_EQ(line(R"({"z": 3, "x": 1, "q": 2})"), CKdPoint(1, 0, 3)) << "three members, one of them not a coordinate";
  EXPECT_EQ(line("[1, 2]"), CKdPoint(0, 0, 0));
  EXPECT_EQ(line("[1, 2, 3, 4]"), CKdPoint(0, 0, 0));
  EXPECT_EQ(line(R"({"x": 1, "y": 2})"), CKdPoint(0, 0, 0));
  EXPECT_EQ(line("7"), CKdPoint(0, 0, 0));
  EXPECT_EQ(line(R"([1, "two", 3])"), CKdPoint(1, 0, 3));

  // The block scale and the ellipse axes take the array form only.
  EXPECT_EQ(ReadAs<CGrElementBlock>(grkind::kElementBlock, R"({"scale": {"x": 1, "y": 2, "z": 3}})")->ScaleFactors(),
            CKdVector(0, 0, 0));
  EXPECT_EQ(ReadAs<CGrElementBlock>(grkind::kElementBlock, R"({"scale": [1, 2, 3]})")->ScaleFactors(), CKdVector(1, 2, 3));
  const auto ellipse = ReadAs<CGrEllipse>(
      grkind::kEllipse, R"({"center": {"x": 1, "y": 2, "z": 3}, "majorAxis": {"x": 1, "y": 2, "z": 3}, "minorAxis": [0, 1, 0]})");
  EXPECT_EQ(ellipse->Center(), CKdPoint(1, 2, 3));
  EXPECT_EQ(ellipse->MajorAxis(), CKdVector(0, 0, 0));
  EXPECT_EQ(ellipse->MinorAxis(), CKdVector(0, 1, 0));
}

TEST(GrJsonLists, AnEntryWithoutATypeTakesThePreviousEntrysType) {
  const auto polyline = ReadAs<CGrPolyline>(grkind::kPolyline, R"({"curves": [
      {"type": 3, "startPt": [0, 0, 0], "endPt": [1, 0, 0]},
      {"startPt": [1, 0, 0], "endPt": [1, 1, 0]},
      {"type": 16, "ctr": [0, 1, 0], "rad": 1, "sa": 0, "swp": 1.5},
      {"ctr": [5, 5, 0], "rad": 2}]})");
  ASSERT_EQ(polyline->CurveCount(), 4u);
  EXPECT_EQ(polyline->Curve(1)->CurveElement()->Type(), grkind::kLine);
  EXPECT_EQ(polyline->Curve(1)->CurveEnd(), CKdPoint(1, 1, 0));
  EXPECT_EQ(polyline->Curve(3)->CurveElement()->Type(), grkind::kArc);
}

TEST(GrJsonLists, EntriesThatMakeNoElementAreSkipped) {
  const auto group = ReadAs<CGrGroup>(grkind::kGroup, R"({"elements": [
      {"startPt": [9, 9, 9]},
      {"type": 10, "indices": [[0, 0, 0]]},
      {"type": 99},
      {"type": "3"},
      5, "text", null, [3],
      {"type": 3, "startPt": [1, 2, 3]},
      {"type": 11},
      {"endPt": [4, 5, 6]}]})");
  // The first entry has no type before it; 10, 11 and 99 are not made, "3" is no integer (the
  // 99 before it carries over), and the last entry carries over the 11 of the entry before it.
  ASSERT_EQ(group->Elements().Size(), 1u);
  EXPECT_EQ(static_cast<const CGrLine*>(group->Elements().At(0))->Start(), CKdPoint(1, 2, 3));
}

TEST(GrJsonLists, APolylineKeepsOnlyCurvesAndWritesNoCurvesWhenItHasNone) {
  const auto polyline = ReadAs<CGrPolyline>(grkind::kPolyline, R"({"closed": true, "curves": [
      {"type": 2, "ctr": [0, 0, 0], "rad": 1},
      {"type": 3, "endPt": [1, 0, 0]},
      {"type": 1, "msg": "not a curve"}]})");
  EXPECT_TRUE(polyline->IsClosed());
  ASSERT_EQ(polyline->CurveCount(), 1u);
  EXPECT_EQ(polyline->Curve(0)->CurveElement()->Type(), grkind::kLine);

  Value object(GrJson::objectValue);
  CGrPolyline().WriteJson(object);
  EXPECT_FALSE(object.isMember("curves"));
  Value group(GrJson::objectValue);
  CGrGroup().WriteJson(group);
  EXPECT_TRUE(group["elements"].isArray()) << "other lists are written even when empty";
}

TEST(GrJsonLists, ReadingAppendsToTheChildrenAlreadyThere) {
  CGrGroup group;
  group.Add(new CGrLine());
  group.ReadJson(Parsed(R"({"elements": [{"type": 2}]})"));
  ASSERT_EQ(group.Elements().Size(), 2u);
  EXPECT_EQ(group.Elements().At(1)->Type(), grkind::kCircle);
}

TEST(GrJsonMesh, VerticesComeInThreesMaterialsCarryTheirMethodAndFacesToo) {
  const auto mesh = ReadAs<CGrMesh>(grkind::kMesh, R"({
      "meshVertices": [0, 0, 0, 1, 0, 0, 1, 1, 5, 8],
      "meshMaterials": [{"materialName": "A", "indClr": 4, "uindClr": 1},
                        {"materialName": "B", "rgbClr": 255},
                        {"materialTransparency": 0.5, "uindClr": 2},
                        {}],
      "meshFaces": [0, 1, 2, 2, 1]})");
  ASSERT_EQ(mesh->Vertices().size(), 3u);
  EXPECT_EQ(mesh->Vertices()[2], CKdPoint(1, 1, 5));
  ASSERT_EQ(mesh->Materials().size(), 4u);
  EXPECT_EQ(mesh->Materials()[0].color, CGrColor::FromIndex(4));
  EXPECT_EQ(mesh->Materials()[1].name, L"B");
  EXPECT_EQ(mesh->Materials()[1].color.StoredRgb(), 255u);
  EXPECT_EQ(mesh->Materials()[1].color.Method(), grcolor::kMethodByIndex) << "the method of the material before it";
  EXPECT_EQ(mesh->Materials()[2].name, L"Ostrevan Default Material");
  EXPECT_EQ(mesh->Materials()[2].transparency, 0.5);
  EXPECT_EQ(mesh->Materials()[3].color.Method(), grcolor::kMethodRgb);
  ASSERT_EQ(mesh->Faces().size(), 1u);
  EXPECT_EQ(mesh->Faces()[0], (CGrMesh::Face{0, 1, 2}));
}

TEST(GrJsonTables, ATableWrittenWithCellsReadsBackWithoutThem) {
  CGrTable table;
  table.SetRows({{L"Cut", L"12.5"}, {L"Fill", L"3.25"}});
  Value object(GrJson::objectValue);
  table.WriteJson(object);
  EXPECT_EQ(grjson::Write(object["CTS"]), R"([["Cut","12.5"],["Fill","3.25"]])");
  const auto copy = ReadAs<CGrTable>(grkind::kTable, grjson::Write(object));
  EXPECT_TRUE(copy->Rows().empty());
}

TEST(GrJsonTables, CellsAreReadFromPointsOnlyWhenCtsIsPresent) {
  const auto withBoth = ReadAs<CGrTable>(grkind::kTable, R"({"CTS": [], "Points": [["a", "b"], "not a row", [1, true]]})");
  EXPECT_EQ(withBoth->Rows(), (CGrCellRows{{L"a", L"b"}, {}, {L"1", L"true"}}));
  CGrTable table;
  table.SetRows({{L"kept"}});
  table.ReadJson(Parsed(R"({"Points": [["ignored"]]})"));
  EXPECT_EQ(table.Rows(), (CGrCellRows{{L"kept"}}));
  const auto cylinder = ReadAs<CGrCylinder>(grkind::kCylinder, R"({"CTS": [["x"]], "Points": [["from Points"]]})");
  EXPECT_EQ(cylinder->Rows(), (CGrCellRows{{L"from Points"}}));
}

TEST(GrJsonTables, OnlyAGeometryFlagOfTrueReplacesTheCylinderAxis) {
  CGrCylinder cylinder;
  cylinder.SetAxis(CKdPoint(1, 1, 1), CKdPoint(2, 2, 2));
  cylinder.ReadJson(Parsed(R"({"GM": false, "SP": [9, 9, 9], "EP": [9, 9, 10]})"));
  ASSERT_NE(cylinder.Axis(), nullptr);
  EXPECT_EQ(cylinder.Axis()->StartPoint(), CKdPoint(1, 1, 1));
  cylinder.ReadJson(Parsed(R"({"GM": true, "SP": [9, 9, 9]})"));
  EXPECT_EQ(cylinder.Axis()->StartPoint(), CKdPoint(9, 9, 9));
  EXPECT_EQ(cylinder.Axis()->EndPoint(), CKdPoint(0, 0, 0));
  Value object(GrJson::objectValue);
  CGrCylinder().WriteJson(object);
  EXPECT_FALSE(object["GM"].asBool());
  EXPECT_FALSE(object.isMember("SP"));
}

TEST(GrJsonVertexPolyline, ClearsItsVerticesAndSkipsEntriesThatAreNotThreeNumbers) {
  CGrVertexPolyline polyline({{7, 7, 7}}, false);
  polyline.ReadJson(Parsed(R"({"closed": true, "indices": [[1, 2, 3], [1, 2], [4, 5, 6, 7], [1, "2", 3], 5, [7, 8, 9]]})"));
  EXPECT_TRUE(polyline.IsClosed());
  EXPECT_EQ(polyline.Vertices(), (std::vector<CKdPoint>{{1, 2, 3}, {7, 8, 9}}));
}

TEST(GrJsonWrongKinds, TheLibrarysConversionsApplyAndWhatItRefusesStays) {
  CGrCircle circle(CKdPoint(1, 1, 1), 5);
  circle.SetIdTag(8);
  circle.ReadJson(Parsed(R"({"rad": "five", "lineTp": 3.7, "idTag": -5, "layer": 12, "ltScale": true})"));
  EXPECT_EQ(circle.Radius(), 5.0);
  EXPECT_EQ(circle.LineType(), 3);
  EXPECT_EQ(circle.IdTag(), 8u);
  EXPECT_EQ(circle.LayerName(), L"12");
  EXPECT_EQ(circle.LineTypeScale(), 1.0);
  const auto polyline = ReadAs<CGrPolyline>(grkind::kPolyline, R"({"closed": "yes", "curves": {"type": 3}})");
  EXPECT_FALSE(polyline->IsClosed());
  EXPECT_EQ(polyline->CurveCount(), 0u);
}

// Every key of every kind given every kind of value: nothing throws, nothing crashes.
TEST(GrJsonWrongKinds, EveryKeyOfEveryKindTakesEveryKindOfValue) {
  const std::vector<Value> odd = {
      Value(), Value(true), Value(-1), Value(GrJson::UInt64(1) << 40), Value(-1e308), Value(1.5), Value("s"),
      Parsed("[]"), Parsed("[1, 2, 3]"), Parsed("[[1, 2, 3], [4]]"), Parsed("{}"), Parsed(R"({"x": 1, "y": 2, "z": 3})"),
      Parsed(R"([{"type": 3}, {"type": 4, "curves": [{"type": 16}]}])")};
  std::size_t reads = 0;
  for (const auto& sample : grtest::SampleElements()) {
    Value written(GrJson::objectValue);
    sample->WriteJson(written);
    for (const std::string& key : written.getMemberNames()) {
      for (const Value& value : odd) {
        Value changed = written;
        changed[key] = value;
        auto element = Fresh(sample->Type());
        element->ReadJson(changed);
        element->BoundingRect();
        ++reads;
      }
    }
  }
  EXPECT_GT(reads, 1000u);
}

TEST(GrJsonText, NonAsciiTextSurvivesAWriteAndARead) {
  const std::wstring message = L"Se\u00F1al \u00E0 c\u00F4t\u00E9 \u6E2C\u91CF\u70B9 \U0001F4CD end";
  CGrText text(CKdPoint(0, 0), 1, message);
  text.SetTag(L"\u00C9tiquette-\u6807\u7B7E");
  text.SetLayerName(L"\U0001D4AE-layer");
  Value object(GrJson::objectValue);
  text.WriteJson(object);
  const std::string written = grjson::Write(object);
  EXPECT_NE(written.find("\xF0\x9F\x93\x8D"), std::string::npos) << "UTF-8 inside the document";
  EXPECT_NE(written.find("\xE6\xB8\xAC"), std::string::npos);
  const auto copy = ReadAs<CGrText>(grkind::kText, written);
  EXPECT_EQ(copy->Message(), message);
  EXPECT_EQ(*copy->Tag(), *text.Tag());
  EXPECT_EQ(copy->LayerName(), text.LayerName());
  // Escaped forms read the same.
  EXPECT_EQ(ReadAs<CGrText>(grkind::kText, R"({"msg": "\u00f1\ud83d\udccd"})")->Message(), L"\u00F1\U0001F4CD");
}

TEST(GrJsonText, WideKeysAndValuesAtTheApi) {
  Value object(GrJson::objectValue);
  grjson::SetMember(object, L"cl\u00E9", grjson::MakeString(L"\u6E2C"));
  ASSERT_NE(grjson::Member(object, L"cl\u00E9"), nullptr);
  EXPECT_EQ(grjson::AsWide(*grjson::Member(object, L"cl\u00E9")), L"\u6E2C");
  EXPECT_EQ(grjson::Member(object, L"cle"), nullptr);
  EXPECT_EQ(grjson::Member(Value(3), L"cl\u00E9"), nullptr);
  EXPECT_EQ(grjson::AsWide(Value(2.5)), L"2.5");
  EXPECT_EQ(grjson::AsWide(Parsed("[1]")), L"");
}

TEST(GrJsonText, MalformedUtf8AndLoneSurrogatesBecomeReplacementCharacters) {
  EXPECT_EQ(grjson::WideFromUtf8("a\xC3"), L"a\uFFFD");
  EXPECT_EQ(grjson::WideFromUtf8("\xE6\xB8z"), L"\uFFFDz");
  EXPECT_EQ(grjson::WideFromUtf8("\xC0\xAF"), L"\uFFFD") << "an overlong form is not a slash";
  EXPECT_EQ(grjson::WideFromUtf8("\xED\xA0\x80"), L"\uFFFD") << "an encoded surrogate";
  EXPECT_EQ(grjson::WideFromUtf8("\xFF"), L"\uFFFD");
  if constexpr (sizeof(wchar_t) == 4) {
    EXPECT_EQ(grjson::Utf8FromWide(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
    EXPECT_EQ(grjson::Utf8FromWide(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
  }
  EXPECT_EQ(grjson::Utf8FromWide(L"\u00E9\U0001F4CD"), "\xC3\xA9\xF0\x9F\x93\x8D");
}

TEST(GrJsonHostile, TextThatIsNotJsonOrNestsTooDeepFailsToParse) {
  Value root(7);
  for (const std::string text : {"", "{", "[1, 2", R"({"a" 1})", "nul", "\"unterminated", "[1] x"}) {
    EXPECT_FALSE(grjson::Parse(text, root)) << text;
    EXPECT_TRUE(root.isNull());
  }
  EXPECT_FALSE(grjson::Parse(std::string(200000, '['), root));
  EXPECT_FALSE(grjson::Parse(std::string(grjson::kMaxParseDepth + 1, '[') + std::string(grjson::kMaxParseDepth + 1, ']'), root));
  EXPECT_TRUE(grjson::Parse(std::string(500, '[') + std::string(500, ']'), root));
  CGrElementVector none;
  EXPECT_FALSE(grjson::ReadElements("[{]", none));
  EXPECT_TRUE(grjson::ReadElements(R"({"type": 3})", none));
  EXPECT_EQ(none.Size(), 0u) << "a root that is not a list holds no elements";
}

TEST(GrJsonHostile, NonFiniteNumbersRoundTrip) {
  CGrCircle circle(CKdPoint(std::numeric_limits<double>::infinity(), 0, 0), std::numeric_limits<double>::quiet_NaN());
  Value object(GrJson::objectValue);
  circle.WriteJson(object);
  const auto copy = ReadAs<CGrCircle>(grkind::kCircle, grjson::Write(object));
  EXPECT_EQ(copy->Center().x, std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(copy->Radius()));
}

TEST(GrJsonHostile, ElementListsNestedPastTheLimitReadAsEmpty) {
  // 450 groups deep: within the parser's nesting, past the reader's.
  std::string text;
  const int depth = 450;
  for (int i = 0; i < depth; ++i) text += R"({"type": 6, "elements": [)";
  text += R"({"type": 3})";
  for (int i = 0; i < depth; ++i) text += "]}";
  Value root;
  ASSERT_TRUE(grjson::Parse("[" + text + "]", root));
  CGrElementVector read;
  read.ReadJson(root);
  int levels = 0;
  for (const CGrElement* e = read.At(0); e != nullptr && e->Type() == grkind::kGroup;
       e = static_cast<const CGrGroup*>(e)->Elements().At(0)) {
    ++levels;
  }
  EXPECT_EQ(levels, grjson::kMaxListDepth);
  EXPECT_FALSE(grjson::WriteElements(read).empty());
}

TEST(GrJsonHostile, HugeArraysAreReadInFull) {
  std::string numbers;
  const int count = 300001;
  numbers.reserve(count * 4);
  for (int i = 0; i < count; ++i) numbers += (i ? ",1.5" : "1.5");
  const auto mesh = ReadAs<CGrMesh>(grkind::kMesh, R"({"meshVertices": [)" + numbers + "]}");
  EXPECT_EQ(mesh->Vertices().size(), static_cast<std::size_t>(count / 3));
}

TEST(GrJsonHostile, MutatedDocumentsNeverBreakTheReaders) {
  std::mt19937 random(20240611);
  const std::string source = std::string(kGolden[3]).substr(0, std::string(kGolden[3]).size() - 1) + "," +
                             std::string(kGolden[14]).substr(1);
  int parsed = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string text = source;
    const int edits = 1 + static_cast<int>(random() % 4);
    for (int e = 0; e < edits; ++e) {
      const std::size_t at = random() % text.size();
      switch (random() % 3) {
        case 0: text[at] = "[]{}:,\"0123456789.-etaflnu \\"[random() % 29]; break;
        case 1: text.erase(at, 1 + random() % 8); break;
        default: text.insert(at, text.substr(random() % text.size(), random() % 16)); break;
      }
      if (text.empty()) text = "[";
    }
    CGrElementVector read;
    if (grjson::ReadElements(text, read)) {
      ++parsed;
      for (const auto& element : read) element->BoundingRect();
      grjson::WriteElements(read);
    }
  }
  EXPECT_GT(parsed, 100) << "enough mutations still parse to exercise the element readers";
}

}  // namespace
