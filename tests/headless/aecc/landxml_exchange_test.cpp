// LandXML import and export of a drawing through the C API, read back through the Civil 3D faces:
// the project's sample road, spiral groups of every kind, names already present, the site option,
// malformed input, and the real files of the shared data imported, exported and imported again.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <limits>
#include <string>

#include "LandXmlFixture.h"

namespace {

using kdtest::As;
using kdtest::Chain;
using kdtest::CivilDrawing;
using kdtest::Index;
using kdtest::Name;
using kdtest::TempFile;

constexpr double kInf = std::numeric_limits<double>::infinity();

class Exchange : public CivilDrawing {
protected:
  int Import(const std::string& path, const char* options = nullptr) {
    return HeadlessImportLandXml(app, path.c_str(), options);
  }
  std::string LastError() { return HeadlessLastError(app); }
  LONG SitelessCount() {
    LONG count = -1;
    Siteless()->get_Count(&count);
    return count;
  }
};

TEST_F(Exchange, TheSampleRoadImportsWithItsSpiralCurveSpiralAsAGroup) {
  ASSERT_EQ(Import(KD_SAMPLE_ROAD), 0) << LastError();
  const std::vector<kdtest::AlignmentSnapshot> drawing = kdtest::Snapshot(document);
  ASSERT_EQ(drawing.size(), 2u);
  const kdtest::AlignmentSnapshot& main = drawing[0];
  EXPECT_EQ(main.name, L"Main Road");
  EXPECT_EQ(main.types, (std::vector<AeccAlignmentEntityType>{aeccTangent, aeccArc, aeccTangent,
                                                               aeccSpiralCurveSpiralGroup, aeccTangent, aeccArc,
                                                               aeccTangent}));
  EXPECT_NEAR(main.stationing[2], 860.0, 1e-5);
  EXPECT_NEAR(drawing[1].stationing[0], 1000.0, 1e-12) << "Side Road's staStart";

  // The group's parts, read through the group's own properties. The file's coordinates come from
  // an independent computation, carry six decimals and are written northing first.
  CComPtr<IAeccAlignmentEntity> entity;
  ASSERT_EQ(EntitiesOf(FindAlignment(L"Main Road"))->Item(3, &entity), S_OK);
  CComPtr<IAeccAlignmentSCSGroup> group = As<IAeccAlignmentSCSGroup>(entity);
  ASSERT_NE(group, nullptr);
  CComPtr<IAeccAlignmentSpiral> in;
  CComPtr<IAeccAlignmentArc> arc;
  ASSERT_EQ(group->get_SpiralIn(&in), S_OK);
  ASSERT_EQ(group->get_Arc(&arc), S_OK);
  double x = 0, y = 0, radiusIn = -1, radiusOut = 0, a = 0, radius = 0;
  in->get_EndEasting(&x);
  in->get_EndNorthing(&y);
  EXPECT_NEAR(x, 1317.569936, 2e-6);
  EXPECT_NEAR(y, 2280.051493, 2e-6);
  in->get_RadiusIn(&radiusIn);
  in->get_RadiusOut(&radiusOut);
  in->get_A(&a);
  EXPECT_EQ(radiusIn, 0.0) << "the tangent end";
  EXPECT_NEAR(radiusOut, 250, 1e-9);
  EXPECT_NEAR(a, std::sqrt(250.0 * 60.0), 1e-9);
  AeccAlignmentSpiralDirectionType side{};
  in->get_Direction(&side);
  EXPECT_EQ(side, aeccAlignmentSpiralDirectionRight);
  arc->get_Radius(&radius);
  EXPECT_NEAR(radius, 250, 1e-5);
  LONG groupId = 0, partId = 0;
  entity->get_Id(&groupId);
  in->get_Id(&partId);
  EXPECT_EQ(partId, groupId) << "a part answers its group's id";

  // The profile: PVI 200 (104) between grades +2 % and -1.5 %, a parabola 100 long, middle
  // ordinate 100 * (-0.035) / 8: 103.5625 at the PVI.
  ASSERT_EQ(main.profileNames, (std::vector<std::wstring>{L"Main Road FG"}));
  ASSERT_EQ(main.pvis.size(), 5u);
  EXPECT_EQ(main.pvis[1][2], aeccParabola);
  EXPECT_EQ(main.pvis[2][2], aeccAsymmetricParabola);
  EXPECT_EQ(main.pvis[3][2], aeccCircular);
  EXPECT_EQ(main.pvis[3][3], 3000.0);
  CComPtr<IAeccProfiles> profiles;
  FindAlignment(L"Main Road")->get_Profiles(&profiles);
  CComPtr<IAeccProfile> profile;
  ASSERT_EQ(profiles->Item(Index(0), &profile), S_OK);
  double z = 0;
  ASSERT_EQ(profile->ElevationAt(200, &z), S_OK);
  EXPECT_NEAR(z, 103.5625, 1e-9);
}

TEST_F(Exchange, NamesAlreadyInTheDrawingGetACounter) {
  ASSERT_EQ(Import(KD_SAMPLE_ROAD), 0) << LastError();
  ASSERT_EQ(Import(KD_SAMPLE_ROAD), 0) << LastError();
  std::vector<std::wstring> names;
  for (const auto& a : kdtest::Snapshot(document)) names.push_back(a.name);
  EXPECT_EQ(names, (std::vector<std::wstring>{L"Main Road", L"Side Road", L"Main Road (1)", L"Side Road (1)"}));
}

TEST_F(Exchange, TheSiteOptionPutsAlignmentsIntoThatSite) {
  ASSERT_EQ(Import(KD_SAMPLE_ROAD, "site=Roads"), 0) << LastError();
  ASSERT_EQ(Import(KD_SAMPLE_ROAD, " site=ROADS "), 0) << LastError();
  EXPECT_EQ(SitelessCount(), 0);
  CComPtr<IAeccSites> sites;
  document->get_Sites(&sites);
  LONG siteCount = 0;
  sites->get_Count(&siteCount);
  ASSERT_EQ(siteCount, 1) << "the second import found the site the first made";
  CComPtr<IAeccSite> site;
  sites->Item(Index(0), &site);
  CComPtr<IAeccAlignments> alignments;
  site->get_Alignments(&alignments);
  LONG count = 0;
  alignments->get_Count(&count);
  EXPECT_EQ(count, 4);

  EXPECT_NE(Import(KD_SAMPLE_ROAD, "layer=X"), 0);
  EXPECT_NE(LastError().find("layer=X"), std::string::npos) << LastError();
}

TEST_F(Exchange, MalformedInputNamesTheFaultAndLeavesTheDrawingAsItWas) {
  ASSERT_EQ(Import(KD_SAMPLE_ROAD), 0) << LastError();
  const auto before = kdtest::Snapshot(document);
  // A good alignment first, then one whose curve has no rotation (line 12 of the text).
  const std::string good = Chain(0, 0, 0).Line(100).Xml();
  TempFile file(kdtest::LandXml({{"Good", good},
                                 {"Bad", "<Curve radius=\"10\"><Start>0 0</Start><Center>0 10</Center>"
                                         "<End>10 10</End></Curve>\n"}}));
  EXPECT_NE(Import(file.Path()), 0);
  const std::string message = LastError();
  EXPECT_NE(message.find(file.Path()), std::string::npos) << message;
  EXPECT_NE(message.find("line 12"), std::string::npos) << message;
  EXPECT_NE(message.find("Curve"), std::string::npos) << message;
  kdtest::ExpectSameDrawing(before, kdtest::Snapshot(document), 0.0);

  // Geometry the import cannot compute is refused as a whole too.
  TempFile cubic(kdtest::LandXml(
      {{"Good", good},
       {"Cubic", "<Spiral length=\"10\" radiusStart=\"INF\" radiusEnd=\"100\" rot=\"cw\" spiType=\"cubic\">"
                 "<Start>0 0</Start><End>0 10</End></Spiral>\n"}}));
  EXPECT_NE(Import(cubic.Path()), 0);
  EXPECT_NE(LastError().find("\"Cubic\""), std::string::npos) << LastError();
  EXPECT_NE(LastError().find("clothoid"), std::string::npos) << LastError();
  EXPECT_EQ(SitelessCount(), 2);

  EXPECT_NE(Import("/nonexistent/road.xml"), 0);
  EXPECT_NE(LastError().find("/nonexistent/road.xml"), std::string::npos) << LastError();
  EXPECT_NE(HeadlessImportLandXml(app, nullptr, nullptr), 0);
  EXPECT_NE(HeadlessImportLandXml(nullptr, KD_SAMPLE_ROAD, nullptr), 0);
}

TEST_F(Exchange, ExportAndImportAgainGiveTheSameDrawing) {
  ASSERT_EQ(Import(KD_SAMPLE_ROAD, "site=Roads"), 0) << LastError();
  CComPtr<IAeccAlignment> extra = AddAlignment(L"Stationed");
  CComPtr<IAeccAlignmentTangent> line;
  EntitiesOf(extra)->AddFixedLine1(kdtest::Point(5, 5), kdtest::Point(105, 5), &line);
  extra->put_ReferencePointStation(250);
  TempFile out;
  ASSERT_EQ(HeadlessExportLandXml(app, out.Path().c_str()), 0) << LastError();

  HeadlessApp* other = HeadlessStart(nullptr);
  ASSERT_EQ(HeadlessImportLandXml(other, out.Path().c_str(), nullptr), 0) << HeadlessLastError(other);
  {
    CComPtr<IAcadApplication> otherAcad;
    static_cast<CWinApp*>(HeadlessGetWinApp(other))
        ->GetIDispatch(FALSE)
        ->QueryInterface(__uuidof(IAcadApplication), reinterpret_cast<void**>(&otherAcad));
    CComPtr<IAcadDocument> active;
    otherAcad->get_ActiveDocument(&active);
    // The export writes the siteless alignment, then the site's; the re-import makes them all
    // siteless, in that order.
    kdtest::ExpectSameDrawing(kdtest::Snapshot(document), kdtest::Snapshot(As<IAeccDocument>(active)), 1e-12);
  }
  HeadlessStop(other);
}

// --- every group kind ---------------------------------------------------------------------------

struct GroupRow {
  const char* name;
  Chain chain;
  std::vector<AeccAlignmentEntityType> expected;
};

std::ostream& operator<<(std::ostream& out, const GroupRow& row) { return out << row.name; }

std::vector<GroupRow> GroupRows() {
  const double x = 500000, y = 6700000;  // large coordinates, as real projects have
  return {
      {"scs", Chain(x, y, 0.3).Line(50).Spiral(60, kInf, 300, true).Arc(300, 80, true).Spiral(60, 300, kInf, true).Line(50),
       {aeccTangent, aeccSpiralCurveSpiralGroup, aeccTangent}},
      {"sts", Chain(x, y, 1.0).Spiral(40, 200, kInf, false).Line(30).Spiral(40, kInf, 200, false),
       {aeccSpiralTangentSpiralGroup}},
      {"st", Chain(x, y, 2.0).Spiral(40, 200, kInf, true).Line(30), {aeccSpiralTangentGroup}},
      {"ts", Chain(x, y, 2.5).Line(30).Spiral(40, kInf, 200, true), {aeccTangentSpiralGroup}},
      {"sc", Chain(x, y, 0.0).Line(20).Spiral(40, kInf, 200, false).Arc(200, 30, false).Line(20),
       {aeccTangent, aeccSpiralCurveGroup, aeccTangent}},
      {"cs", Chain(x, y, 0.0).Line(20).Arc(200, 30, true).Spiral(40, 200, kInf, true).Line(20),
       {aeccTangent, aeccCurveSpiralGroup, aeccTangent}},
      {"ssc", Chain(x, y, 4.0).Line(20).Spiral(30, kInf, 600, true).Spiral(30, 600, 300, true).Arc(300, 40, true).Line(20),
       {aeccTangent, aeccSpiralSpiralCurveGroup, aeccTangent}},
      {"css", Chain(x, y, 4.0).Line(20).Arc(300, 40, false).Spiral(30, 300, 600, false).Spiral(30, 600, kInf, false).Line(20),
       {aeccTangent, aeccCurveSpiralSpiralGroup, aeccTangent}},
      {"scscs",
       Chain(x, y, 1.0).Line(20).Spiral(40, kInf, 400, true).Arc(400, 50, true).Spiral(30, 400, 250, true).Arc(250, 40, true)
           .Spiral(40, 250, kInf, true).Line(20),
       {aeccTangent, aeccSpiralCurveSpiralCurveSpiralGroup, aeccTangent}},
      {"scsscs",
       Chain(x, y, 1.0).Line(20).Spiral(40, kInf, 300, true).Arc(300, 50, true).Spiral(40, 300, kInf, true)
           .Spiral(40, kInf, 300, false).Arc(300, 50, false).Spiral(40, 300, kInf, false).Line(20),
       {aeccTangent, aeccSpiralCurveSpiralSpiralCurveSpiralGroup, aeccTangent}},
      {"ss", Chain(x, y, 3.0).Line(20).Spiral(40, kInf, 300, true).Spiral(40, 300, kInf, true).Line(20),
       {aeccTangent, aeccSpiralSpiralGroup, aeccTangent}},
      {"a lone spiral", Chain(x, y, 3.0).Spiral(40, kInf, 300, true), {aeccSpiral}},
      {"a gap keeps a spiral apart", Chain(x, y, 3.0).Spiral(40, kInf, 300, true).Skip(0.5, 0).Arc(300, 30, true),
       {aeccSpiral, aeccArc}},
  };
}

class GroupKinds : public Exchange, public ::testing::WithParamInterface<GroupRow> {};

TEST_P(GroupKinds, ImportFormsTheGroupAndAnExportImportsBackTheSame) {
  const GroupRow& row = GetParam();
  TempFile file(kdtest::LandXml({{"Chain", row.chain.Xml()}}));
  ASSERT_EQ(Import(file.Path()), 0) << LastError();
  const auto first = kdtest::Snapshot(document);
  ASSERT_EQ(first.size(), 1u);
  EXPECT_EQ(first[0].types, row.expected);

  TempFile out;
  ASSERT_EQ(HeadlessExportLandXml(app, out.Path().c_str()), 0) << LastError();
  ASSERT_EQ(Siteless()->Remove(Index(0)), S_OK);
  ASSERT_EQ(Import(out.Path()), 0) << LastError();
  kdtest::ExpectSameDrawing(first, kdtest::Snapshot(document), 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Rows, GroupKinds, ::testing::ValuesIn(GroupRows()), [](const auto& info) {
  std::string name = info.param.name;
  for (char& c : name)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  return name;
});

// --- the shared real files ----------------------------------------------------------------------

struct SharedFile {
  const char* file;
  size_t alignments;
  size_t profiles;
};

std::ostream& operator<<(std::ostream& out, const SharedFile& f) { return out << f.file; }

class SharedFiles : public CivilDrawing, public ::testing::WithParamInterface<SharedFile> {};

TEST_P(SharedFiles, ImportExportAndImportAgainKeepTheGeometry) {
  const char* shared = std::getenv("KD_SHARED_DIR");
  if (shared == nullptr) GTEST_SKIP() << "KD_SHARED_DIR is not set";
  const std::filesystem::path path = std::filesystem::path(shared) / "data" / "landxml" / GetParam().file;
  if (!std::filesystem::exists(path)) GTEST_SKIP() << path << " is absent";

  ASSERT_EQ(HeadlessImportLandXml(app, path.string().c_str(), nullptr), 0) << HeadlessLastError(app);
  const auto first = kdtest::Snapshot(document);
  ASSERT_EQ(first.size(), GetParam().alignments);
  size_t profiles = 0;
  for (const auto& a : first) profiles += a.profileNames.size();
  EXPECT_EQ(profiles, GetParam().profiles);

  TempFile out;
  ASSERT_EQ(HeadlessExportLandXml(app, out.Path().c_str()), 0) << HeadlessLastError(app);
  HeadlessApp* other = HeadlessStart(nullptr);
  ASSERT_EQ(HeadlessImportLandXml(other, out.Path().c_str(), nullptr), 0) << HeadlessLastError(other);
  {
    CComPtr<IAcadApplication> otherAcad;
    static_cast<CWinApp*>(HeadlessGetWinApp(other))
        ->GetIDispatch(FALSE)
        ->QueryInterface(__uuidof(IAcadApplication), reinterpret_cast<void**>(&otherAcad));
    CComPtr<IAcadDocument> active;
    otherAcad->get_ActiveDocument(&active);
    kdtest::ExpectSameDrawing(first, kdtest::Snapshot(As<IAeccDocument>(active)), 1e-9);
  }
  HeadlessStop(other);
}

// Every shared file with alignments (SOURCES.md): alignments and layout profiles each holds.
INSTANTIATE_TEST_SUITE_P(Files, SharedFiles,
                         ::testing::Values(SharedFile{"aplitop_mdt80_spirals_profile.xml", 1, 1},
                                           SharedFile{"aplitop_mdt80_spiral_between_arcs.xml", 1, 0},
                                           SharedFile{"aplitop_mdt85_v10_profile_xsects.xml", 1, 1},
                                           SharedFile{"novapoint_im_alignment_circcurve.xml", 1, 1},
                                           SharedFile{"inframodel_3dwin_y11_alignment_circcurve.xml", 1, 1},
                                           SharedFile{"ldt2005_subdivision_v11_ft.xml", 6, 6},
                                           SharedFile{"freecad_sugargrove_pi_curves_staeq_ft.xml", 3, 0}),
                         [](const auto& info) {
                           std::string name = info.param.file;
                           for (char& c : name)
                             if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                           return name;
                         });

}  // namespace
