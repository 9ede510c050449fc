// What run writes, made from hand-built read-backs: the plan and profile pictures read as XML,
// the report, design.xml read back with landxml/, the staging of output files, and the text
// helpers they share.
#include <gtest/gtest.h>

#include <pugixml.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <regex>
#include <sstream>

#include "host/DesignXml.h"
#include "host/HostText.h"
#include "host/LandXmlSummary.h"
#include "host/OutputFolder.h"
#include "host/Report.h"
#include "host/SvgPlan.h"
#include "host/SvgProfile.h"
#include "landxml/LandXml.h"

namespace {

namespace fs = std::filesystem;
using host::CKdPlanElement;
using std::numbers::pi;

std::vector<pugi::xml_node> WithClass(const pugi::xml_node& root, const std::string& name, const std::string& cssClass) {
  std::vector<pugi::xml_node> found;
  for (const pugi::xpath_node& n : root.select_nodes((".//" + name).c_str())) {
    const std::string classes = n.node().attribute("class").value();
    if ((" " + classes + " ").find(" " + cssClass + " ") != std::string::npos) found.push_back(n.node());
  }
  return found;
}

// A 1000 m road: a tangent, a left arc, a tangent; and a 100 m spur starting at station 2000.
std::vector<host::CPlanAlignment> Roads() {
  host::CPlanAlignment road{"Road <A&B>", 0.0, {}};
  road.elements.push_back(CKdPlanElement::Line({0, 0}, {400, 0}));
  road.elements.push_back(CKdPlanElement::Arc({400, 200}, 200, 3 * pi / 2, 1.0));
  const CKdPlanElement& arc = road.elements.back();
  const double h = arc.EndHeading();
  const double rest = 1000.0 - 400.0 - 200.0;
  road.elements.push_back(CKdPlanElement::Line(arc.end, {arc.end.x + rest * std::cos(h), arc.end.y + rest * std::sin(h)}));
  // The spur runs south, then turns right (clockwise) towards the west.
  host::CPlanAlignment spur{"Spur", 2000.0, {CKdPlanElement::Line({0, 0}, {0, -100})}};
  spur.elements.push_back(CKdPlanElement::Arc({-50, -100}, 50, 0.0, -pi / 2));
  return {road, spur};
}

TEST(PlanPicture, DrawsEveryElementWithTicksScaleBarAndNorthArrow) {
  host::CPlanPicture picture;
  picture.title = "Plan: roads";
  const std::string svg = host::PlanSvg(Roads(), picture);
  pugi::xml_document doc;
  ASSERT_TRUE(doc.load_string(svg.c_str())) << svg.substr(0, 400);
  const pugi::xml_node root = doc.child("svg");
  ASSERT_TRUE(root);
  EXPECT_EQ(root.attribute("width").as_double(), 1200.0);

  const std::vector<pugi::xml_node> alignments = WithClass(root, "g", "alignment");
  ASSERT_EQ(alignments.size(), 2u);
  EXPECT_STREQ(alignments[0].child_value("title"), "Road <A&B>");
  EXPECT_EQ(WithClass(alignments[0], "path", "tangent").size(), 2u);
  EXPECT_EQ(WithClass(alignments[0], "path", "curve").size(), 1u);
  EXPECT_EQ(WithClass(alignments[1], "path", "tangent").size(), 1u);
  // The picture is a map, north up: the road's left turn looks anticlockwise and the spur's
  // right turn clockwise, which SVG writes as sweep flags 0 and 1 ("A rx ry rotation large sweep x y").
  const auto sweepFlag = [](const pugi::xml_node& path) {
    std::smatch found;
    const std::string d = path.attribute("d").value();
    return std::regex_search(d, found, std::regex("A [-0-9.]+ [-0-9.]+ 0 [01] ([01]) ")) ? found[1].str() : "?";
  };
  EXPECT_EQ(sweepFlag(WithClass(alignments[0], "path", "curve").at(0)), "0");
  EXPECT_EQ(sweepFlag(WithClass(alignments[1], "path", "curve").at(0)), "1");

  // The legend says the intervals; ticks and labels follow them along the whole road.
  std::smatch m;
  const std::string legend = svg;
  ASSERT_TRUE(std::regex_search(legend, m, std::regex("ticks every ([0-9.]+) m, labels every ([0-9.]+) m")));
  const double tick = std::stod(m[1]), label = std::stod(m[2]);
  EXPECT_EQ(std::fmod(label, tick), 0.0);
  EXPECT_EQ(WithClass(alignments[0], "line", "station-tick").size(), static_cast<std::size_t>(1000 / tick) + 1);
  const std::vector<pugi::xml_node> labels = WithClass(alignments[0], "text", "station-label");
  ASSERT_EQ(labels.size(), static_cast<std::size_t>(1000 / label) + 1);
  EXPECT_STREQ(labels.front().child_value(), "0+000");
  EXPECT_STREQ(labels.back().child_value(), "1+000");
  const std::vector<pugi::xml_node> spurLabels = WithClass(alignments[1], "text", "station-label");
  ASSERT_FALSE(spurLabels.empty());
  EXPECT_STREQ(spurLabels.front().child_value(), "2+000");

  const std::vector<pugi::xml_node> scale = WithClass(root, "g", "scale-bar");
  ASSERT_EQ(scale.size(), 1u);
  EXPECT_EQ(scale[0].select_nodes("rect").size(), 4u);
  EXPECT_NE(std::string(scale[0].last_child().child_value()).find(" m"), std::string::npos);
  const std::vector<pugi::xml_node> north = WithClass(root, "g", "north-arrow");
  ASSERT_EQ(north.size(), 1u);
  EXPECT_TRUE(north[0].child("polygon"));
  EXPECT_STREQ(north[0].child_value("text"), "N");
}

TEST(PlanPicture, AnEmptyDrawingIsStillAPicture) {
  pugi::xml_document doc;
  EXPECT_TRUE(doc.load_string(host::PlanSvg({}, {}).c_str()));
  EXPECT_TRUE(doc.child("svg"));
}

std::vector<CC3dProfilePVI> SampleProfile() {
  std::vector<CC3dProfilePVI> pvis(5);
  const double stations[] = {0, 200, 420, 620, 860}, elevations[] = {100, 104, 100.7, 104.3, 103.1};
  for (int i = 0; i < 5; ++i) {
    pvis[i].SetStation(stations[i]);
    pvis[i].SetElevation(elevations[i]);
  }
  pvis[1].SetCurveType(CC3dProfilePVI::ParabolicCurve);
  pvis[1].SetCurveLength(100);
  pvis[2].SetCurveType(CC3dProfilePVI::AsymmetricParabolicCurve);
  pvis[2].SetLength1(60);
  pvis[2].SetLength2(90);
  pvis[3].SetCurveType(CC3dProfilePVI::CircularCurve);
  pvis[3].SetRadius(3000);
  return pvis;
}

std::vector<CC3dProfilePoint> Samples(const std::vector<CC3dProfilePVI>& pvis, double step) {
  std::vector<CC3dProfilePoint> samples;
  for (double s = pvis.front().GetStation(); s <= pvis.back().GetStation() + 1e-9; s += step) {
    CC3dProfilePoint p;
    p.SetStation(s);
    p.SetElevation(host::ProfileElevation(pvis, s));
    samples.push_back(p);
  }
  return samples;
}

TEST(ProfilePicture, ShowsGridTangentsCurvesAndLabelledPvis) {
  const std::vector<CC3dProfilePVI> pvis = SampleProfile();
  const std::vector<CC3dProfilePoint> samples = Samples(pvis, 5.0);
  host::CProfilePicture picture;
  picture.title = "Profile \"FG\"";
  const std::string svg = host::ProfileSvg(pvis, samples, picture);
  pugi::xml_document doc;
  ASSERT_TRUE(doc.load_string(svg.c_str()));
  const pugi::xml_node root = doc.child("svg");

  const std::vector<pugi::xml_node> exaggeration = WithClass(root, "text", "exaggeration");
  ASSERT_EQ(exaggeration.size(), 1u);
  std::smatch m;
  const std::string said = exaggeration[0].child_value();
  ASSERT_TRUE(std::regex_search(said, m, std::regex("^Vertical exaggeration ([0-9]+)")));
  // 860 m across 1070 units and 4.3 m of rise in 70 % of 500: 50 fits, 100 would not.
  EXPECT_EQ(std::stoi(m[1]), 50);

  EXPECT_EQ(WithClass(root, "circle", "pvi").size(), 5u);
  const std::vector<pugi::xml_node> labels = WithClass(root, "text", "pvi-label");
  ASSERT_EQ(labels.size(), 5u);
  EXPECT_STREQ(labels[2].first_child().child_value(), "PVI 3");
  EXPECT_STREQ(labels[2].first_child().next_sibling().child_value(), "0+420.00");
  EXPECT_STREQ(labels[2].last_child().child_value(), "asymmetric 60/90");
  EXPECT_EQ(WithClass(root, "polyline", "vertical-curve").size(), 3u);
  EXPECT_EQ(WithClass(root, "polyline", "tangent").size(), 1u);
  const std::vector<pugi::xml_node> profile = WithClass(root, "polyline", "profile");
  ASSERT_EQ(profile.size(), 1u);
  const std::string points = profile[0].attribute("points").value();
  EXPECT_EQ(static_cast<std::size_t>(std::count(points.begin(), points.end(), ',')), samples.size());
  EXPECT_GE(WithClass(root, "line", "grid").size(), 10u);
}

TEST(ProfilePicture, LeavesOutSamplesTheModuleHadNoElevationFor) {
  const std::vector<CC3dProfilePVI> pvis = SampleProfile();
  std::vector<CC3dProfilePoint> samples = Samples(pvis, 10.0);
  for (std::size_t i = 40; i < 45; ++i) samples[i].SetElevation(0.0);
  pugi::xml_document doc;
  ASSERT_TRUE(doc.load_string(host::ProfileSvg(pvis, samples, {}).c_str()));
  const std::vector<pugi::xml_node> pieces = WithClass(doc, "polyline", "profile");
  ASSERT_EQ(pieces.size(), 2u);
  std::size_t drawn = 0;
  for (const pugi::xml_node& piece : pieces) {
    std::istringstream points(piece.attribute("points").value());
    double x = 0, y = 0;
    char comma = 0;
    while (points >> x >> comma >> y) {
      ++drawn;
      EXPECT_GT(y, 0.0);
      EXPECT_LT(y, 640.0);  // elevation 0 would lie far below the picture
    }
  }
  EXPECT_EQ(drawn, samples.size() - 5);
  const std::vector<pugi::xml_node> notes = WithClass(doc, "text", "note");
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_NE(std::string(notes[0].child_value()).find("no elevation at 5 samples"), std::string::npos);
}

TEST(ProfilePicture, ExaggerationStaysWithinItsSteps) {
  EXPECT_EQ(host::VerticalExaggeration(860, 4.3, 1070, 500), 50.0);
  EXPECT_EQ(host::VerticalExaggeration(100, 60, 1000, 500), 1.0);   // steeper than the plot: 1
  EXPECT_EQ(host::VerticalExaggeration(10000, 0.1, 1000, 500), 1000.0);
  EXPECT_EQ(host::VerticalExaggeration(100, 0, 1000, 500), 10.0);    // flat: a default
}

// A run of one alignment and one profile, as the run command fills it.
host::CRunResult SmallRun(const landxml::CAlignment& input) {
  host::CRunResult run;
  run.inputFile = "data/road.xml";
  run.modulePath = "/lib/libKdCivil3d.so";
  run.landXmlVersion = "1.2";
  run.units.linear = landxml::LinearUnit::Foot;
  run.units.angular = run.units.direction = landxml::AngularUnit::Degrees;
  host::CAlignmentRun a;
  a.name = "Road";
  a.description = "a road";
  a.input = &input;
  a.plan = host::PlanAlignment(input, 0.001);
  for (const host::CPlannedCurve& c : a.plan.curves) a.readBack.push_back(c.element);
  a.startStation = a.plan.startStation;
  a.comparison = host::CompareAlignment(a.plan, a.readBack, a.startStation);
  a.notCarried.push_back("station equation back 10.000 ahead 20.000: the interface carries no station equations");
  host::CProfileRun p;
  p.name = "FG";
  p.plan.pvis = SampleProfile();
  p.readBack = p.plan.pvis;
  p.readBack[2].SetLength2(60);
  p.samples = Samples(p.plan.pvis, 10);
  p.comparison = host::CompareProfile(p.plan.pvis, p.readBack, p.samples);
  p.pictureFile = "profile-FG.svg";
  a.profiles.push_back(p);
  run.alignments.push_back(a);
  run.notCarried.push_back("surface \"EG\" (12 points): run does not carry surfaces");
  run.outputFiles = {"drawing.dxf", "design.xml", "plan.svg", "profile-FG.svg", "report.md"};
  return run;
}

landxml::CAlignment SpiralRoad() {
  landxml::CAlignment a;
  a.name = "Road";
  a.staStart = 100.0;
  landxml::CLine line;
  line.end.x = 100.0;
  a.geometry.emplace_back(line);
  landxml::CSpiral spiral;
  spiral.start.x = 100.0;
  spiral.length = 60.0;
  spiral.radiusEnd = 250.0;
  spiral.rot = landxml::Rotation::Clockwise;
  spiral.dirStart = pi / 2;  // east
  a.geometry.emplace_back(spiral);
  return a;
}

TEST(Report, TellsLengthsStationsCountsSpiralsAndWhatWasLeftOut) {
  const landxml::CAlignment input = SpiralRoad();
  const host::CRunResult run = SmallRun(input);
  const std::string report = host::ReportMarkdown(run);
  const host::CAlignmentRun& a = run.alignments[0];
  const std::string arcs = std::to_string(a.plan.arcsForSpirals);
  EXPECT_NE(report.find("# kdhost run: road.xml"), std::string::npos);
  EXPECT_NE(report.find("| Road | " + host::Fixed(a.Length(), 3) + " | 1+00.000 | "), std::string::npos) << report;
  EXPECT_NE(report.find("- Spirals replaced: 1 by " + arcs + " arcs"), std::string::npos) << report;
  EXPECT_NE(report.find("- Entities written: " + std::to_string(a.plan.curves.size()) + " (1 line, 0 arcs, " + arcs +
                        " arcs for spirals)"),
            std::string::npos)
      << report;
  EXPECT_NE(report.find("station equation back 10.000"), std::string::npos);
  EXPECT_NE(report.find("surface \"EG\""), std::string::npos);
  EXPECT_NE(report.find("### Profile \"FG\""), std::string::npos);
  EXPECT_NE(report.find("- PVIs written: 5; read back: 5 (3 with vertical curves)"), std::string::npos);
  EXPECT_NE(report.find("asymmetric 60/90 came back as asymmetric 60/60"), std::string::npos);
  EXPECT_NE(report.find("[profile-FG.svg](profile-FG.svg)"), std::string::npos);
  EXPECT_NE(report.find(" ft"), std::string::npos);
}

TEST(DesignXml, ReadsBackAsTheSameGeometry) {
  const landxml::CAlignment input = SpiralRoad();
  const host::CRunResult run = SmallRun(input);
  std::string text;
  ASSERT_TRUE(landxml::WriteLandXmlText(host::DesignModel(run), text));
  const landxml::CReadResult read = landxml::ReadLandXmlText(text, "design.xml");
  ASSERT_TRUE(read) << read.error;
  EXPECT_EQ(read.model->units.linear, landxml::LinearUnit::Foot);
  ASSERT_EQ(read.model->alignments.size(), 1u);
  const landxml::CAlignment& back = read.model->alignments[0];
  const host::CAlignmentRun& a = run.alignments[0];
  EXPECT_EQ(back.staStart, 100.0);
  ASSERT_EQ(back.geometry.size(), a.readBack.size());
  double station = a.startStation;
  for (std::size_t i = 0; i < a.readBack.size(); ++i) {
    const CKdPlanElement& e = a.readBack[i];
    if (e.isLine) {
      const auto& line = std::get<landxml::CLine>(back.geometry[i]);
      EXPECT_NEAR(line.end.x, e.end.x, 1e-9);
      EXPECT_NEAR(line.end.y, e.end.y, 1e-9);
    } else {
      const auto& curve = std::get<landxml::CCurve>(back.geometry[i]);
      EXPECT_NEAR(curve.center.x, e.centre.x, 1e-9);
      EXPECT_NEAR(curve.center.y, e.centre.y, 1e-9);
      EXPECT_NEAR(curve.radius, e.radius, 1e-9);
      EXPECT_EQ(curve.rot, landxml::Rotation::Clockwise);
      EXPECT_NEAR(curve.length, e.Length(), 1e-9);
      EXPECT_NEAR(*curve.staStart, station, 1e-9);
    }
    station += e.Length();
  }
  ASSERT_EQ(back.profiles.size(), 1u);
  ASSERT_EQ(back.profiles[0].layouts.size(), 1u);
  const std::vector<landxml::CProfileVertex>& v = back.profiles[0].layouts[0].vertices;
  ASSERT_EQ(v.size(), 5u);
  EXPECT_EQ(v[1].curve, landxml::VerticalCurve::Parabolic);
  EXPECT_EQ(v[1].length, 100.0);
  EXPECT_EQ(v[2].curve, landxml::VerticalCurve::AsymmetricParabolic);
  EXPECT_EQ(v[2].lengthOut, 60.0);  // as read back
  EXPECT_EQ(v[3].curve, landxml::VerticalCurve::Circular);
  EXPECT_EQ(v[3].radius, 3000.0);
  EXPECT_NEAR(v[3].length, 3000.0 * (std::atan(0.018) - std::atan(-0.005)), 1e-9);
}

class OutputFolder : public ::testing::Test {
protected:
  void SetUp() override {
    base = fs::temp_directory_path() / ("kdhost-output-test-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                                        "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(base);
  }
  void TearDown() override { fs::remove_all(base); }
  static std::string Read(const fs::path& p) {
    std::ifstream in(p);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  fs::path base;
};

TEST_F(OutputFolder, AnAbandonedRunLeavesNothingBehind) {
  {
    host::COutputFolder folder;
    std::string error;
    ASSERT_TRUE(folder.Open(base / "a" / "b", error)) << error;
    ASSERT_TRUE(folder.Write("report.md", "half", error));
  }
  EXPECT_FALSE(fs::exists(base / "a"));

  fs::create_directories(base);
  { std::ofstream(base / "report.md") << "older"; }
  {
    host::COutputFolder folder;
    std::string error;
    ASSERT_TRUE(folder.Open(base, error));
    ASSERT_TRUE(folder.Write("report.md", "half", error));
    ASSERT_TRUE(folder.Write("plan.svg", "half", error));
  }
  EXPECT_EQ(Read(base / "report.md"), "older");
  EXPECT_EQ(std::distance(fs::directory_iterator(base), fs::directory_iterator()), 1);
}

TEST_F(OutputFolder, ACommittedRunReplacesFilesAndLeavesNoStaging) {
  fs::create_directories(base);
  { std::ofstream(base / "report.md") << "older"; }
  host::COutputFolder folder;
  std::string error;
  ASSERT_TRUE(folder.Open(base, error));
  ASSERT_TRUE(folder.Write("report.md", "new", error));
  ASSERT_TRUE(folder.Write("plan.svg", "<svg/>", error));
  ASSERT_TRUE(folder.Commit(error)) << error;
  EXPECT_EQ(Read(base / "report.md"), "new");
  EXPECT_EQ(Read(base / "plan.svg"), "<svg/>");
  EXPECT_EQ(std::distance(fs::directory_iterator(base), fs::directory_iterator()), 2);
}

TEST_F(OutputFolder, RefusesAFileWhereTheFolderShouldBe) {
  fs::create_directories(base);
  { std::ofstream(base / "taken") << "x"; }
  host::COutputFolder folder;
  std::string error;
  EXPECT_FALSE(folder.Open(base / "taken", error));
  EXPECT_NE(error.find("taken"), std::string::npos);
}

TEST(HostText, WideTextStationsAndFileNames) {
  const std::string text = "Stra\xC3\x9F" "e \xCE\xA9 \xF0\x9D\x84\x9E";  // Straße Ω and a G clef
  EXPECT_EQ(host::Narrow(host::Widen(text)), text);
  EXPECT_EQ(host::Widen(text).size(), sizeof(wchar_t) == 2 ? 11u : 10u);  // the clef takes two UTF-16 units
  EXPECT_EQ(host::Narrow(host::Widen("a\xFF" "b")), "a\xEF\xBF\xBD" "b");  // a stray byte becomes U+FFFD

  EXPECT_EQ(host::StationText(1234.5, false, 2), "1+234.50");
  EXPECT_EQ(host::StationText(1234.5, true, 2), "12+34.50");
  EXPECT_EQ(host::StationText(999.9996, false, 3), "1+000.000");
  EXPECT_EQ(host::StationText(5.0, false, 0), "0+005");
  EXPECT_EQ(host::StationText(-20.0, false, 1), "-0+020.0");

  EXPECT_EQ(host::FileSafe("Main Road/FG"), "Main_Road_FG");
  EXPECT_EQ(host::FileSafe("..\\x"), "_._x");  // never a leading dot
  EXPECT_EQ(host::FileSafe("Stra\xC3\x9F" "e"), "Stra_e");
  EXPECT_EQ(host::FileSafe(""), "unnamed");
}

TEST(Inspect, SummarisesTheSampleRoad) {
  std::string text;
  ASSERT_TRUE(host::InspectSummary("../../data/sample-road.xml", text)) << text;
  EXPECT_NE(text.find("LandXML 1.2"), std::string::npos);
  EXPECT_NE(text.find("Units: lengths meter, angles decimal degrees, directions decimal degrees"), std::string::npos);
  EXPECT_NE(text.find("Alignments: 2"), std::string::npos);
  EXPECT_NE(text.find("\"Main Road\": starts at 0+000.000, 9 elements (4 lines, 3 curves, 2 spirals: 2 clothoid)"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("layout profile \"Main Road FG\": 5 PVIs, stations 0.000 to 860.000, 1 parabolic, 1 asymmetric, 1 circular"),
            std::string::npos);
  EXPECT_NE(text.find("Problems: none"), std::string::npos) << text;

  EXPECT_FALSE(host::InspectSummary("no-such-file.xml", text));
  EXPECT_NE(text.find("no-such-file.xml"), std::string::npos);
}

}  // namespace
