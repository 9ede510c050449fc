// The real files of the shared data: each reads with the element counts its source list gives,
// writes, and reads back to the same geometry; their own redundant values (directions, radii,
// chord lengths) agree with the geometry read; the malformed one fails with a located message.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <numbers>

#include "tests/landxml/LandXmlTestUtil.h"

namespace {

using ::testing::HasSubstr;
using namespace landxml;

struct CExpected {
  const char* file;
  const char* version;
  std::size_t alignments = 0, lines = 0, curves = 0, curvesCw = 0, spirals = 0, spiralsCw = 0;
  std::size_t equations = 0, pvis = 0, paraCurves = 0, circCurves = 0, profSurfs = 0;
  std::size_t surfaces = 0, points = 0, faces = 0, invisible = 0, breaklines = 0, boundaries = 0, voids = 0;
  // The curves are given by PI and directions, and their length attributes disagree with the
  // directions by up to 0.9 ft (a hand-made test file): no chord check against the length.
  bool curvesByPi = false;
};

// Counts as the shared data's SOURCES.md gives them.
const CExpected kFiles[] = {
    {.file = "aplitop_mdt80_spirals_profile.xml",
     .version = "1.2",
     .alignments = 1,
     .lines = 4,
     .curves = 4,
     .curvesCw = 2,
     .spirals = 7,
     .spiralsCw = 4,
     .pvis = 2,
     .paraCurves = 2},
    {.file = "aplitop_mdt80_spiral_between_arcs.xml",
     .version = "1.2",
     .alignments = 1,
     .lines = 2,
     .curves = 2,
     .spirals = 5,
     .spiralsCw = 2},
    {.file = "aplitop_mdt85_v10_profile_xsects.xml",
     .version = "1.0",
     .alignments = 1,
     .lines = 2,
     .curves = 1,
     .pvis = 2,
     .paraCurves = 1,
     .profSurfs = 1},
    {.file = "novapoint_im_alignment_circcurve.xml",
     .version = "1.2",
     .alignments = 1,
     .lines = 4,
     .curves = 3,
     .curvesCw = 2,
     .pvis = 4,
     .circCurves = 4},
    {.file = "inframodel_3dwin_y11_alignment_circcurve.xml",
     .version = "1.2",
     .alignments = 1,
     .lines = 3,
     .curves = 2,
     .curvesCw = 1,
     .pvis = 3,
     .circCurves = 2},
    {.file = "ldt2005_subdivision_v11_ft.xml",
     .version = "1.1",
     .alignments = 6,
     .lines = 18,
     .curves = 11,
     .curvesCw = 9,
     .pvis = 20,
     .paraCurves = 11,
     .profSurfs = 6,
     .surfaces = 2,
     .points = 713 + 2716,
     .faces = 1284 + 5241},
    {.file = "freecad_sugargrove_pi_curves_staeq_ft.xml",
     .version = "1.2",
     .alignments = 3,
     .curves = 5,
     .curvesCw = 2,
     .equations = 2,
     .curvesByPi = true},
    {.file = "inframodel_3dwin_m3_terrain_breaklines.xml",
     .version = "1.2",
     .surfaces = 1,
     .points = 19872,
     .faces = 36067,
     .breaklines = 175},
    {.file = "inframodel_3dwin_y10_highest_breaklines.xml",
     .version = "1.2",
     .surfaces = 1,
     .points = 307,
     .faces = 547,
     .breaklines = 13},
    {.file = "novapoint_im_drainage_tin_radians.xml",
     .version = "1.2",
     .surfaces = 1,
     .points = 2309,
     .faces = 4068,
     .breaklines = 38},
    {.file = "c3d2014_survey_tin_breaklines_voids.xml",
     .version = "1.2",
     .surfaces = 1,
     .points = 224,
     .faces = 430,
     .invisible = 69,
     .breaklines = 16,
     .boundaries = 4,
     .voids = 3},
    {.file = "c3d2023_skyfall_tin.xml",
     .version = "1.2",
     .surfaces = 1,
     .points = 3330,
     .faces = 6609,
     .invisible = 161},
    {.file = "c3d2021_topo_tiny_breakline.xml",
     .version = "1.2",
     .surfaces = 1,
     .points = 7,
     .faces = 8,
     .breaklines = 1},
    {.file = "ord1011_tiny_tin.xml", .version = "1.2", .surfaces = 1, .points = 4, .faces = 3},
    {.file = "landmark_nsw_cadastral_ver10_ns12.xml", .version = "1.2"},
};

CExpected Count(const CModel& model) {
  CExpected n{.file = "", .version = ""};
  n.alignments = model.alignments.size();
  for (const CAlignment& a : model.alignments) {
    n.equations += a.stationEquations.size();
    for (const CGeometry& g : a.geometry) {
      if (std::holds_alternative<CLine>(g)) ++n.lines;
      if (const auto* c = std::get_if<CCurve>(&g)) ++n.curves, n.curvesCw += c->rot == Rotation::Clockwise;
      if (const auto* s = std::get_if<CSpiral>(&g)) ++n.spirals, n.spiralsCw += s->rot == Rotation::Clockwise;
    }
    for (const CProfile& p : a.profiles) {
      n.profSurfs += p.surfaceProfiles.size();
      for (const CProfAlign& layout : p.layouts) {
        for (const CProfileVertex& v : layout.vertices) {
          n.pvis += v.curve == VerticalCurve::None;
          n.paraCurves += v.curve == VerticalCurve::Parabolic;
          n.circCurves += v.curve == VerticalCurve::Circular;
        }
      }
    }
  }
  n.surfaces = model.surfaces.size();
  for (const CSurface& s : model.surfaces) {
    n.points += s.points.size();
    n.faces += s.faces.size();
    for (const CFace& f : s.faces) n.invisible += f.invisible;
    n.breaklines += s.breaklines.size();
    n.boundaries += s.boundaries.size();
    for (const CBoundary& b : s.boundaries) n.voids += b.bndType == "void";
  }
  return n;
}

class SharedLandXmlFile : public ::testing::TestWithParam<CExpected> {
protected:
  void SetUp() override {
    const auto path = lxtest::SharedFile(GetParam().file);
    if (!path) GTEST_SKIP() << GetParam().file << " is not there (KD_SHARED_DIR unset or the file absent)";
    path_ = *path;
  }
  std::filesystem::path path_;
};

TEST_P(SharedLandXmlFile, ReadsWithTheListedCountsAndReadsBackTheSame) {
  const CExpected& want = GetParam();
  CReadResult read = ReadLandXml(path_);
  ASSERT_TRUE(read) << read.error;
  const CModel& model = *read.model;
  EXPECT_EQ(model.version, want.version);
  const CExpected got = Count(model);
  EXPECT_EQ(got.alignments, want.alignments);
  EXPECT_EQ(got.lines, want.lines);
  EXPECT_EQ(got.curves, want.curves);
  EXPECT_EQ(got.curvesCw, want.curvesCw);
  EXPECT_EQ(got.spirals, want.spirals);
  EXPECT_EQ(got.spiralsCw, want.spiralsCw);
  EXPECT_EQ(got.equations, want.equations);
  EXPECT_EQ(got.pvis, want.pvis);
  EXPECT_EQ(got.paraCurves, want.paraCurves);
  EXPECT_EQ(got.circCurves, want.circCurves);
  EXPECT_EQ(got.profSurfs, want.profSurfs);
  EXPECT_EQ(got.surfaces, want.surfaces);
  EXPECT_EQ(got.points, want.points);
  EXPECT_EQ(got.faces, want.faces);
  EXPECT_EQ(got.invisible, want.invisible);
  EXPECT_EQ(got.breaklines, want.breaklines);
  EXPECT_EQ(got.boundaries, want.boundaries);
  EXPECT_EQ(got.voids, want.voids);

  const std::filesystem::path copy = std::filesystem::temp_directory_path() / ("lx_" + std::string(want.file));
  const CWriteResult written = WriteLandXml(model, copy);
  ASSERT_TRUE(written) << written.error;
  const CReadResult reread = ReadLandXml(copy);
  std::filesystem::remove(copy);
  ASSERT_TRUE(reread) << reread.error;
  EXPECT_EQ(reread.model->units.angular, model.units.angular);
  EXPECT_EQ(reread.model->units.direction, model.units.direction);
  lxtest::ExpectSameGeometry(model, *reread.model);
}

// Redundant values the writers put in the files agree with the geometry as read: a wrong axis
// order, azimuth convention or angular unit would show here.
TEST_P(SharedLandXmlFile, RedundantValuesAgreeWithTheGeometry) {
  const CReadResult read = ReadLandXml(path_);
  ASSERT_TRUE(read) << read.error;
  constexpr double kDirectionTolerance = 1e-5;  // coordinates are rounded to 1e-6 or 1e-8 units
  auto angleGap = [](double a, double b) { return std::fabs(std::remainder(a - b, 2.0 * std::numbers::pi)); };
  for (const CAlignment& a : read.model->alignments) {
    for (std::size_t i = 0; i < a.geometry.size(); ++i) {
      if (const auto* line = std::get_if<CLine>(&a.geometry[i]); line && line->direction) {
        EXPECT_LT(angleGap(AzimuthBetween(line->start, line->end), *line->direction), kDirectionTolerance)
            << a.name << " " << i;
      }
      if (const auto* curve = std::get_if<CCurve>(&a.geometry[i])) {
        const double toStart = std::hypot(curve->start.x - curve->center.x, curve->start.y - curve->center.y);
        const double toEnd = std::hypot(curve->end.x - curve->center.x, curve->end.y - curve->center.y);
        EXPECT_NEAR(toStart, curve->radius, 1e-4 * curve->radius) << a.name << " " << i;
        EXPECT_NEAR(toEnd, curve->radius, 1e-4 * curve->radius) << a.name << " " << i;
        const double chord = std::hypot(curve->end.x - curve->start.x, curve->end.y - curve->start.y);
        if (!GetParam().curvesByPi) {
          EXPECT_NEAR(chord, 2.0 * curve->radius * std::sin(curve->length / (2.0 * curve->radius)), 1e-3)
              << a.name << " " << i;
        }
      }
      // A spiral's start direction, taken from its PI, is the direction the element before ends in.
      const auto* spiral = std::get_if<CSpiral>(&a.geometry[i]);
      if (!spiral || i == 0 || !spiral->dirStart) continue;
      if (const auto* before = std::get_if<CCurve>(&a.geometry[i - 1]); before && before->dirEnd) {
        EXPECT_LT(angleGap(*spiral->dirStart, *before->dirEnd), kDirectionTolerance) << a.name << " " << i;
      }
      if (const auto* before = std::get_if<CLine>(&a.geometry[i - 1])) {
        EXPECT_LT(angleGap(*spiral->dirStart, AzimuthBetween(before->start, before->end)), kDirectionTolerance);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Files, SharedLandXmlFile, ::testing::ValuesIn(kFiles), [](const auto& info) {
  std::string name = info.param.file;
  for (char& c : name)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  return name;
});

TEST(SharedFileDetails, MalformedSurfaceFailsNamingFileLineAndElement) {
  const auto path = lxtest::SharedFile("c3d2023_empty_surface_malformed.xml");
  if (!path) GTEST_SKIP() << "shared data not there";
  const CReadResult read = ReadLandXml(*path);
  EXPECT_FALSE(read.model.has_value());
  EXPECT_THAT(read.error, HasSubstr("c3d2023_empty_surface_malformed.xml: line 10: <Definition>: has no surfType"))
      << read.error;
}

// A file cut off anywhere before its end fails with a located message: it never crashes and never
// hands out part of a model.
TEST(SharedFileDetails, CutOffCopiesFailWithALocatedMessage) {
  const auto path = lxtest::SharedFile("aplitop_mdt80_spirals_profile.xml");
  if (!path) GTEST_SKIP() << "shared data not there";
  std::ifstream in(*path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  ASSERT_GT(bytes.size(), 5000u);
  for (std::size_t size = 0; size < bytes.size(); size += 23) {
    const CReadResult read = ReadLandXmlText(std::string_view(bytes).substr(0, size), "cut.xml");
    ASSERT_FALSE(read.model.has_value()) << size;
    ASSERT_EQ(read.error.rfind("cut.xml: line ", 0), 0u) << read.error;
  }
}

TEST(SharedFileDetails, UnitsAndStationsAsTheFilesSayThem) {
  const auto feet = lxtest::SharedFile("freecad_sugargrove_pi_curves_staeq_ft.xml");
  const auto radians = lxtest::SharedFile("novapoint_im_drainage_tin_radians.xml");
  const auto noAngles = lxtest::SharedFile("ord1011_tiny_tin.xml");
  const auto dms = lxtest::SharedFile("landmark_nsw_cadastral_ver10_ns12.xml");
  if (!feet || !radians || !noAngles || !dms) GTEST_SKIP() << "shared data not there";

  const CModel road = *ReadLandXml(*feet).model;
  EXPECT_EQ(road.units.linear, LinearUnit::Foot);
  EXPECT_EQ(road.units.direction, AngularUnit::Degrees);
  EXPECT_DOUBLE_EQ(road.alignments[0].staStart, 50000.0);
  ASSERT_EQ(road.alignments[1].stationEquations.size(), 1u);
  EXPECT_DOUBLE_EQ(*road.alignments[1].stationEquations[0].staBack, 50909.0);
  EXPECT_DOUBLE_EQ(road.alignments[1].stationEquations[0].staAhead, 1000.0);
  // The curves are given by their PI alone: the tangent points lie R*tan(delta/2) from it, with
  // delta = 139.3986 - 89.0825 degrees.
  const CCurve& first = std::get<CCurve>(road.alignments[0].geometry[0]);
  const double tangent = 670.0 * std::tan((139.3986 - 89.0825) * std::numbers::pi / 180.0 / 2.0);
  EXPECT_NEAR(std::hypot(first.start.x - first.pi->x, first.start.y - first.pi->y), tangent, 1e-3);
  EXPECT_NEAR(std::hypot(first.end.x - first.pi->x, first.end.y - first.pi->y), tangent, 1e-3);
  EXPECT_DOUBLE_EQ(first.pi->x, 605.2372);  // "-706.1075 605.2372": northing first
  EXPECT_DOUBLE_EQ(first.pi->y, -706.1075);

  const CModel inMetres = *ReadLandXml(*feet, {.linearUnit = LinearUnit::Metre}).model;
  EXPECT_EQ(inMetres.units.fileLinear, LinearUnit::Foot);
  EXPECT_NEAR(inMetres.alignments[0].staStart, 50000.0 * 0.3048, 1e-9);
  EXPECT_NEAR(std::get<CCurve>(inMetres.alignments[0].geometry[0]).radius, 670.0 * 0.3048, 1e-9);

  const CModel drainage = *ReadLandXml(*radians).model;
  EXPECT_EQ(drainage.units.angular, AngularUnit::Radians);
  EXPECT_FALSE(drainage.units.angularDefaulted);
  EXPECT_EQ(drainage.surfaces[0].name, "Ylin yhdistelm\xC3\xA4pinta");  // Latin-1 in the file, UTF-8 here

  const CReadResult tiny = ReadLandXml(*noAngles);
  EXPECT_TRUE(tiny.model->units.angularDefaulted);
  EXPECT_TRUE(tiny.model->units.directionDefaulted);
  EXPECT_EQ(tiny.notes.size(), 2u);

  const CReadResult cadastral = ReadLandXml(*dms);
  EXPECT_EQ(cadastral.model->units.direction, AngularUnit::DegMinSec);
  ASSERT_EQ(cadastral.notes.size(), 1u);
  EXPECT_THAT(cadastral.notes[0], HasSubstr("version=\"1.0\""));
}

}  // namespace
