// kdhost as a user runs it: the built program started as a separate process on the sample road
// and on the shared LandXML files, its outputs checked by independent readers (landxml/ for
// design.xml, pugixml for the pictures, ezdxf's audit for the drawing, rsvg-convert for
// rendering), and its failures checked for their message, status and leftovers.
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <pugixml.hpp>

#include <fcntl.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <numbers>
#include <optional>
#include <sstream>

#include "landxml/LandXml.h"
#include "tests/host/PlanTestUtil.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using plantest::CKdPlanElement;
using plantest::CKdPlanPoint;
using plantest::Dist;
using plantest::DistanceToElement;
using std::numbers::pi;

struct CProcess {
  int status = -1;
  std::string out, err;
};

std::string ReadFile(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// Runs a program with its output streams caught in files beside `scratch`.
CProcess Spawn(const std::vector<std::string>& args, const fs::path& scratch) {
  const std::string outPath = (scratch / "stdout.txt").string(), errPath = (scratch / "stderr.txt").string();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  std::vector<char*> argv;
  for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  pid_t pid = 0;
  CProcess result;
  if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ) == 0) {
    int status = 0;
    waitpid(pid, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  posix_spawn_file_actions_destroy(&actions);
  result.out = ReadFile(outPath);
  result.err = ReadFile(errPath);
  return result;
}

bool HaveEzdxf() {
  static const bool have = std::system("/usr/bin/python3 -c 'import ezdxf' >/dev/null 2>&1") == 0;
  return have;
}

bool HaveRsvg() {
  static const bool have = std::system("rsvg-convert --version >/dev/null 2>&1") == 0;
  return have;
}

class KdhostRun : public ::testing::Test {
protected:
  void SetUp() override {
    scratch = fs::temp_directory_path() /
              ("kdhost-run-test-" + std::to_string(::getpid()) + "-" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(scratch);
    fs::create_directories(scratch);
  }
  void TearDown() override {
    if (!HasFailure()) fs::remove_all(scratch);
  }
  CProcess Kdhost(std::vector<std::string> args) {
    args.insert(args.begin(), KD_HOST_PATH);
    return Spawn(args, scratch);
  }
  // Runs and checks everything run promises about its outputs.
  void RunAndCheck(const fs::path& input, double tolerance);

  fs::path scratch;
};

// ------------------------------------------------------------------------------------------
// The input's geometry, and the read-back's, as the tests see them.

double Heading(double azimuth) { return pi / 2 - azimuth; }

CKdPlanElement FromLine(const landxml::CLine& l) {
  CKdPlanElement e;
  e.start = {l.start.x, l.start.y};
  e.end = {l.end.x, l.end.y};
  return e;
}

CKdPlanElement FromCurve(const landxml::CCurve& c) {
  CKdPlanElement e;
  e.isLine = false;
  e.start = {c.start.x, c.start.y};
  e.end = {c.end.x, c.end.y};
  e.centre = {c.center.x, c.center.y};
  e.radius = c.radius;
  e.startAngle = std::atan2(c.start.y - c.center.y, c.start.x - c.center.x);
  double turn = std::atan2(c.end.y - c.center.y, c.end.x - c.center.x) - e.startAngle;
  const bool ccw = c.rot == landxml::Rotation::CounterClockwise;
  turn = std::fmod(ccw ? turn : -turn, 2 * pi);
  if (turn <= 0) turn += 2 * pi;
  e.sweep = ccw ? turn : -turn;
  return e;
}

struct CInputElement {
  bool spiral = false;
  std::optional<CKdPlanElement> exact;  // a line or an arc as the file gives it
  std::vector<CKdPlanPoint> points;     // along it, both ends included; a spiral's close enough
                                        // that its chords stay within 1e-6 of it
};

// The input's elements (a spiral by the test's Simpson rule from its file direction), and the
// input's own closure: gaps small enough to be closed by moving a start, arcs whose radius
// disagrees with their points, spirals ending away from their stated end.
std::vector<CInputElement> InputElements(const landxml::CAlignment& a, double tolerance, double& closure,
                                         std::vector<std::pair<CKdPlanPoint, CKdPlanPoint>>& gaps) {
  std::vector<CInputElement> out;
  constexpr int kPoints = 24;
  for (const landxml::CGeometry& g : a.geometry) {
    CInputElement element;
    if (const auto* line = std::get_if<landxml::CLine>(&g)) {
      element.exact = FromLine(*line);
    } else if (const auto* curve = std::get_if<landxml::CCurve>(&g)) {
      element.exact = FromCurve(*curve);
      const CKdPlanElement& e = *element.exact;
      closure = std::max({closure, std::fabs(Dist(e.start, e.centre) - e.radius), std::fabs(Dist(e.end, e.centre) - e.radius)});
    } else {
      const auto& s = std::get<landxml::CSpiral>(g);
      EXPECT_TRUE(s.dirStart.has_value()) << "these files give every spiral's direction";
      const double side = s.rot == landxml::Rotation::CounterClockwise ? 1.0 : -1.0;
      const double k0 = std::isfinite(s.radiusStart) ? side / s.radiusStart : 0.0;
      const double k1 = std::isfinite(s.radiusEnd) ? side / s.radiusEnd : 0.0;
      // A chord of length l on curvature k lies l^2 k / 8 inside the curve.
      const double chord = std::sqrt(8e-6 / std::fmax(std::fabs(k0), std::fabs(k1)));
      const int count = std::max(4 * kPoints, static_cast<int>(std::ceil(s.length / chord)));
      element.spiral = true;
      element.points = plantest::SimpsonPoints({s.start.x, s.start.y}, Heading(s.dirStart.value_or(0.0)), k0,
                                               (k1 - k0) / s.length, s.length, count);
      closure = std::max(closure, Dist(element.points.back(), {s.end.x, s.end.y}));
    }
    if (element.exact)
      for (int k = 0; k <= kPoints; ++k) element.points.push_back(plantest::PointOf(*element.exact, double(k) / kPoints));
    if (!out.empty()) {
      const double gap = Dist(out.back().points.back(), element.points.front());
      if (gap <= std::max(tolerance, 1e-6)) {
        closure = std::max(closure, gap);
      } else {
        gaps.emplace_back(out.back().points.back(), element.points.front());
      }
    }
    out.push_back(std::move(element));
  }
  return out;
}

std::vector<CKdPlanElement> ReadBackElements(const landxml::CAlignment& a) {
  std::vector<CKdPlanElement> out;
  for (const landxml::CGeometry& g : a.geometry) {
    if (const auto* line = std::get_if<landxml::CLine>(&g)) out.push_back(FromLine(*line));
    if (const auto* curve = std::get_if<landxml::CCurve>(&g)) out.push_back(FromCurve(*curve));
    EXPECT_FALSE(std::holds_alternative<landxml::CSpiral>(g)) << "the interface carries no spirals";
  }
  return out;
}

double NearestElement(const std::vector<CKdPlanElement>& chain, CKdPlanPoint p) {
  double nearest = std::numeric_limits<double>::infinity();
  for (const CKdPlanElement& e : chain) nearest = std::fmin(nearest, DistanceToElement(e, p));
  return nearest;
}

void CheckAlignment(const landxml::CAlignment& input, const landxml::CAlignment& back, double tolerance) {
  SCOPED_TRACE("alignment \"" + input.name + "\"");
  double closure = 0.0;
  std::vector<std::pair<CKdPlanPoint, CKdPlanPoint>> gaps;
  const std::vector<CInputElement> elements = InputElements(input, tolerance, closure, gaps);
  const std::vector<CKdPlanElement> chain = ReadBackElements(back);
  ASSERT_FALSE(chain.empty());

  // Input to read-back: lines and arcs within 1e-6, spirals within the tolerance, both beyond
  // what the input itself leaves open.
  double linesArcs = 0.0, spirals = 0.0;
  for (const CInputElement& e : elements)
    for (const CKdPlanPoint& p : e.points) (e.spiral ? spirals : linesArcs) = std::fmax(e.spiral ? spirals : linesArcs, NearestElement(chain, p));
  EXPECT_LT(linesArcs, 1e-6 + closure) << "closure " << closure;
  EXPECT_LE(spirals, tolerance + closure) << "closure " << closure;

  // Read-back to input: nothing strays, except tangents across the input's gaps.
  std::vector<CKdPlanElement> inputChain;
  for (const CInputElement& e : elements) {
    if (e.exact) {
      inputChain.push_back(*e.exact);
    } else {
      for (std::size_t k = 1; k < e.points.size(); ++k)
        inputChain.push_back(plantest::Segment(e.points[k - 1], e.points[k]));
    }
  }
  for (const auto& [from, to] : gaps) inputChain.push_back(plantest::Segment(from, to));
  double worst = 0.0;
  for (const CKdPlanElement& e : chain)
    for (int k = 0; k <= 8; ++k) worst = std::fmax(worst, NearestElement(inputChain, plantest::PointOf(e, k / 8.0)));
  EXPECT_LE(worst, tolerance + closure + 1e-6);

  // Stations: where the file's first element says, else the alignment's start.
  const std::optional<double> first =
      input.geometry.empty() ? std::nullopt : std::visit([](const auto& g) { return g.staStart; }, input.geometry[0]);
  EXPECT_NEAR(back.staStart, first.value_or(input.staStart), 1e-9);

  // Profiles: every layout profile of two PVIs or more, PVIs where the file has them, except
  // end PVIs the module moved onto the alignment's ends.
  std::vector<const landxml::CProfAlign*> layouts, backLayouts;
  for (const landxml::CProfile& p : input.profiles)
    for (const landxml::CProfAlign& l : p.layouts)
      if (l.vertices.size() >= 2) layouts.push_back(&l);
  for (const landxml::CProfile& p : back.profiles)
    for (const landxml::CProfAlign& l : p.layouts) backLayouts.push_back(&l);
  ASSERT_EQ(backLayouts.size(), layouts.size());
  const double startStation = back.staStart, endStation = back.staStart + back.length.value_or(0.0);
  for (std::size_t i = 0; i < layouts.size(); ++i) {
    const auto& v = layouts[i]->vertices;
    const auto& w = backLayouts[i]->vertices;
    ASSERT_EQ(w.size(), v.size()) << layouts[i]->name;
    for (std::size_t k = 0; k < v.size(); ++k) {
      SCOPED_TRACE("profile \"" + layouts[i]->name + "\" PVI " + std::to_string(k + 1));
      const bool end = k == 0 || k + 1 == v.size();
      const double beyond = std::fmax(0.0, std::fmax(startStation - v[k].station, v[k].station - endStation));
      EXPECT_NEAR(w[k].station, v[k].station, end ? 0.001 + beyond : 1e-6);
      EXPECT_NEAR(w[k].elevation, v[k].elevation, 1e-9);
      if (end) continue;
      EXPECT_EQ(w[k].curve, v[k].curve);
      if (v[k].curve == landxml::VerticalCurve::Parabolic) {
        EXPECT_NEAR(w[k].length, v[k].length, 1e-9);
      } else if (v[k].curve == landxml::VerticalCurve::Circular) {
        EXPECT_NEAR(w[k].radius, std::fabs(v[k].radius), 1e-9);
      }
    }
  }
}

std::vector<pugi::xml_node> WithClass(const pugi::xml_node& root, const std::string& name, const std::string& cssClass) {
  std::vector<pugi::xml_node> found;
  for (const pugi::xpath_node& n : root.select_nodes((".//" + name).c_str())) {
    const std::string classes = n.node().attribute("class").value();
    if ((" " + classes + " ").find(" " + cssClass + " ") != std::string::npos) found.push_back(n.node());
  }
  return found;
}

void KdhostRun::RunAndCheck(const fs::path& input, double tolerance) {
  SCOPED_TRACE(input.string());
  const landxml::CReadResult in = landxml::ReadLandXml(input);
  ASSERT_TRUE(in) << in.error;
  const fs::path out = scratch / "out";
  fs::remove_all(out);
  const CProcess run = Kdhost({"run", input.string(), "--out", out.string(), "--spiral-tolerance", std::to_string(tolerance)});
  // 1 when something could not be carried: then it says so.
  ASSERT_TRUE(run.status == 0 || run.status == 1) << run.status << "\n" << run.err;
  if (run.status == 1) {
    EXPECT_NE(run.err.find("could not be carried"), std::string::npos);
  } else {
    EXPECT_EQ(run.err, "");  // quiet when not on a terminal
  }
  EXPECT_EQ(run.out, "");

  // The outputs and nothing else: no staging folder left behind.
  std::size_t layouts = 0;
  for (const landxml::CAlignment& a : in.model->alignments)
    for (const landxml::CProfile& p : a.profiles)
      for (const landxml::CProfAlign& l : p.layouts) layouts += l.vertices.size() >= 2 ? 1 : 0;
  std::vector<std::string> profilePictures;
  std::size_t files = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(out)) {
    ++files;
    const std::string name = entry.path().filename().string();
    if (name.rfind("profile-", 0) == 0) profilePictures.push_back(name);
    EXPECT_NE(name.front(), '.') << name;
  }
  EXPECT_EQ(profilePictures.size(), layouts);
  EXPECT_EQ(files, 4 + layouts);

  // design.xml, read by landxml/, holds the same geometry.
  const landxml::CReadResult back = landxml::ReadLandXml(out / "design.xml");
  ASSERT_TRUE(back) << back.error;
  EXPECT_EQ(back.model->units.linear, in.model->units.linear);
  ASSERT_EQ(back.model->alignments.size(), in.model->alignments.size());
  for (std::size_t i = 0; i < in.model->alignments.size(); ++i) {
    EXPECT_EQ(back.model->alignments[i].name, in.model->alignments[i].name);
    CheckAlignment(in.model->alignments[i], back.model->alignments[i], tolerance);
  }

  // The pictures are XML with what they should show.
  pugi::xml_document plan;
  ASSERT_TRUE(plan.load_file((out / "plan.svg").c_str()));
  const std::vector<pugi::xml_node> groups = WithClass(plan, "g", "alignment");
  ASSERT_EQ(groups.size(), back.model->alignments.size());
  for (std::size_t i = 0; i < groups.size(); ++i)
    EXPECT_EQ(groups[i].select_nodes("path").size(), back.model->alignments[i].geometry.size());
  EXPECT_EQ(WithClass(plan, "g", "scale-bar").size(), 1u);
  EXPECT_EQ(WithClass(plan, "g", "north-arrow").size(), 1u);
  for (const std::string& name : profilePictures) {
    pugi::xml_document profile;
    ASSERT_TRUE(profile.load_file((out / name).c_str())) << name;
    EXPECT_GE(WithClass(profile, "circle", "pvi").size(), 2u) << name;
    EXPECT_EQ(WithClass(profile, "text", "exaggeration").size(), 1u) << name;
  }
  if (HaveRsvg()) {
    const CProcess png = Spawn({"/usr/bin/rsvg-convert", (out / "plan.svg").string(), "-o", (scratch / "plan.png").string()}, scratch);
    EXPECT_EQ(png.status, 0) << png.err;
    EXPECT_GT(fs::file_size(scratch / "plan.png"), 1000u);
  }

  // The drawing passes ezdxf's audit and shows each alignment as the polyline it drew of itself:
  // ezdxf prints each polyline's vertex count, first and last vertex.
  if (HaveEzdxf()) {
    const CProcess audit = Spawn({"/usr/bin/python3", "-c",
                                  "import sys, ezdxf\n"
                                  "doc = ezdxf.readfile(sys.argv[1])\n"
                                  "auditor = doc.audit()\n"
                                  "for e in auditor.errors: print('error', e)\n"
                                  "for p in doc.modelspace().query('LWPOLYLINE'):\n"
                                  "    v = p.get_points('xy')\n"
                                  "    print(len(v), repr(v[0][0]), repr(v[0][1]), repr(v[-1][0]), repr(v[-1][1]))\n"
                                  "sys.exit(1 if auditor.has_errors else 0)\n",
                                  (out / "drawing.dxf").string()},
                                 scratch);
    EXPECT_EQ(audit.status, 0) << audit.out << audit.err;
    std::istringstream lines(audit.out);
    for (const landxml::CAlignment& a : back.model->alignments) {
      const std::vector<CKdPlanElement> chain = ReadBackElements(a);
      std::size_t count = 0;
      double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
      ASSERT_TRUE(lines >> count >> x0 >> y0 >> x1 >> y1) << "no polyline for " << a.name << "\n" << audit.out;
      EXPECT_EQ(count, chain.size() + 1) << a.name;
      EXPECT_LT(Dist({x0, y0}, chain.front().start), 1e-6) << a.name;
      EXPECT_LT(Dist({x1, y1}, chain.back().end), 1e-6) << a.name;
    }
  }

  // The report counts the spirals it replaced.
  const std::string report = ReadFile(out / "report.md");
  for (const landxml::CAlignment& a : in.model->alignments) {
    std::size_t spirals = 0;
    for (const landxml::CGeometry& g : a.geometry) spirals += std::holds_alternative<landxml::CSpiral>(g) ? 1 : 0;
    EXPECT_NE(report.find("## Alignment \"" + a.name + "\""), std::string::npos);
    EXPECT_NE(report.find("- Spirals replaced: " + std::to_string(spirals)), std::string::npos) << a.name;
  }
}

// ------------------------------------------------------------------------------------------

TEST_F(KdhostRun, CarriesTheSampleRoad) {
  RunAndCheck(fs::path(KD_SOURCE_DIR) / "data" / "sample-road.xml", 0.001);
  RunAndCheck(fs::path(KD_SOURCE_DIR) / "data" / "sample-road.xml", 0.0001);
}

TEST_F(KdhostRun, CarriesEverySharedFileWithAlignments) {
  const char* shared = std::getenv("KD_SHARED_DIR");
  if (shared == nullptr) GTEST_SKIP() << "KD_SHARED_DIR is not set";
  const fs::path folder = fs::path(shared) / "data" / "landxml";
  if (!fs::is_directory(folder)) GTEST_SKIP() << folder << " is absent";
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() != ".xml") continue;
    const landxml::CReadResult read = landxml::ReadLandXml(entry.path());
    if (read && !read.model->alignments.empty()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  ASSERT_FALSE(files.empty()) << "no file with alignments in " << folder;
  for (const fs::path& file : files) RunAndCheck(file, 0.001);
  std::printf("ran %zu shared files with alignments\n", files.size());
}

// ------------------------------------------------------------------------------------------
// Failures: one clear message, the status --help lists, no outputs.

TEST_F(KdhostRun, ABadInputNamesFileLineAndElementAndLeavesNothing) {
  const fs::path input = scratch / "bad.xml";
  std::ofstream(input) << "<?xml version=\"1.0\"?>\n"
                          "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\" version=\"1.2\">\n"
                          "  <Units><Metric linearUnit=\"meter\"/></Units>\n"
                          "  <Alignments>\n"
                          "    <Alignment name=\"A\" staStart=\"0\">\n"
                          "      <CoordGeom>\n"
                          "        <Line><Start>0 0</Start><End>0 100</End></Line>\n"
                          "        <Curve radius=\"50\"><Start>0 100</Start><Center>50 100</Center><End>50 150</End></Curve>\n"
                          "      </CoordGeom>\n"
                          "    </Alignment>\n"
                          "  </Alignments>\n"
                          "</LandXML>\n";
  const CProcess run = Kdhost({"run", input.string(), "--out", (scratch / "out").string()});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.err, "kdhost: " + input.string() + ": line 8: <Curve>: has no rot (cw or ccw)\n");
  EXPECT_FALSE(fs::exists(scratch / "out"));

  const CProcess inspect = Kdhost({"inspect", input.string()});
  EXPECT_EQ(inspect.status, 3);
  EXPECT_EQ(inspect.err, run.err);
}

TEST_F(KdhostRun, InputThatIsNotThereOrNotLandXmlOrHasNoAlignments) {
  const CProcess missing = Kdhost({"run", (scratch / "nothing.xml").string(), "--out", (scratch / "out").string()});
  EXPECT_EQ(missing.status, 3);
  EXPECT_NE(missing.err.find((scratch / "nothing.xml").string()), std::string::npos);

  std::ofstream(scratch / "broken.xml") << "<LandXML>\n  <Alignments>\n</LandXML>\n";
  const CProcess broken = Kdhost({"run", (scratch / "broken.xml").string(), "--out", (scratch / "out").string()});
  EXPECT_EQ(broken.status, 3);
  EXPECT_NE(broken.err.find("broken.xml: line 3"), std::string::npos) << broken.err;

  std::ofstream(scratch / "empty.xml") << "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\"/>\n";
  const CProcess empty = Kdhost({"run", (scratch / "empty.xml").string(), "--out", (scratch / "out").string()});
  EXPECT_EQ(empty.status, 3);
  EXPECT_NE(empty.err.find("holds no alignments"), std::string::npos);
  EXPECT_FALSE(fs::exists(scratch / "out"));
}

TEST_F(KdhostRun, AWrongCommandLineIsStatusTwo) {
  const std::string sample = (fs::path(KD_SOURCE_DIR) / "data" / "sample-road.xml").string();
  const std::string out = (scratch / "out").string();
  EXPECT_EQ(Kdhost({"run", sample}).status, 2);  // no --out
  const CProcess tolerance = Kdhost({"run", sample, "--out", out, "--spiral-tolerance", "0"});
  EXPECT_EQ(tolerance.status, 2);
  EXPECT_NE(tolerance.err.find("--spiral-tolerance"), std::string::npos);
  EXPECT_EQ(Kdhost({"run", sample, "--out", out, "--step", "-1"}).status, 2);
  EXPECT_EQ(Kdhost({"run", sample, "--out", out, "--step", "1e-9"}).status, 2);  // a billion samples
  EXPECT_EQ(Kdhost({"run", sample, "--out", out, "--colour", "red"}).status, 2);
  EXPECT_EQ(Kdhost({}).status, 2);
  EXPECT_FALSE(fs::exists(out));
}

TEST_F(KdhostRun, AModuleThatDoesNotLoadLeavesTheFolderAsItWas) {
  const fs::path out = scratch / "out";
  fs::create_directories(out);
  std::ofstream(out / "report.md") << "an earlier run";
  const CProcess run = Kdhost({"run", (fs::path(KD_SOURCE_DIR) / "data" / "sample-road.xml").string(), "--out", out.string(),
                               "--module", (scratch / "libNothing.so").string()});
  EXPECT_EQ(run.status, 4);
  EXPECT_NE(run.err.find("libNothing.so"), std::string::npos);
  EXPECT_EQ(ReadFile(out / "report.md"), "an earlier run");
  EXPECT_EQ(std::distance(fs::directory_iterator(out), fs::directory_iterator()), 1);
}

TEST_F(KdhostRun, AnOutputFolderThatIsAFileIsStatusSeven) {
  std::ofstream(scratch / "taken") << "x";
  const CProcess run = Kdhost({"run", (fs::path(KD_SOURCE_DIR) / "data" / "sample-road.xml").string(), "--out",
                               (scratch / "taken").string()});
  EXPECT_EQ(run.status, 7);
  EXPECT_NE(run.err.find("taken"), std::string::npos);
}

TEST_F(KdhostRun, HelpExplainsCommandsOptionsAndStatuses) {
  const CProcess help = Kdhost({"--help"});
  EXPECT_EQ(help.status, 0);
  for (const char* word : {"run", "inspect", "check", "Example: kdhost run", "Exit status:", "6  the module refused"})
    EXPECT_NE(help.out.find(word), std::string::npos) << word;
  const CProcess runHelp = Kdhost({"run", "--help"});
  for (const char* word : {"--out", "--spiral-tolerance", "--step", "--module", "Example:"})
    EXPECT_NE(runHelp.out.find(word), std::string::npos) << word;
}

TEST_F(KdhostRun, InspectNeedsNoModule) {
  const CProcess inspect = Kdhost({"inspect", (fs::path(KD_SOURCE_DIR) / "data" / "sample-road.xml").string()});
  EXPECT_EQ(inspect.status, 0) << inspect.err;
  EXPECT_NE(inspect.out.find("Alignments: 2"), std::string::npos);
  EXPECT_NE(inspect.out.find("\"Side Road\": starts at 1+000.000"), std::string::npos) << inspect.out;
}

}  // namespace
