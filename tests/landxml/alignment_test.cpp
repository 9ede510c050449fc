// Alignments from hand-built documents: lines, curves in both rotations and in their PI form,
// spirals, station equations and every profile form, checked against hand-worked values, and
// carried through the writer unchanged.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

#include "tests/landxml/LandXmlTestUtil.h"

namespace {

using ::testing::HasSubstr;
using namespace landxml;
using lxtest::AlignmentDocument;
using lxtest::Close;
using lxtest::MustFail;
using lxtest::MustRead;
using std::numbers::pi;

const CGeometry& OnlyElement(const CModel& model) {
  static const CGeometry kNone;
  if (model.alignments.size() != 1 || model.alignments[0].geometry.size() != 1) {
    ADD_FAILURE() << "expected one alignment with one element";
    return kNone;
  }
  return model.alignments[0].geometry[0];
}

CPoint Xy(double x, double y) { return {x, y, 0.0, false}; }

TEST(AlignmentLines, PointsAreNorthingEastingElevation) {
  const CModel model =
      MustRead(AlignmentDocument("<CoordGeom><Line staStart=\"5\" length=\"10\" dir=\"90\"><Start>100 200 "
                                 "3</Start><End>100 210</End></Line></CoordGeom>"));
  const CLine& line = std::get<CLine>(OnlyElement(model));
  EXPECT_EQ(line.start, (CPoint{200.0, 100.0, 3.0, true}));
  EXPECT_EQ(line.end, Xy(210.0, 100.0));
  EXPECT_DOUBLE_EQ(*line.staStart, 5.0);
  // Azimuths: 90 degrees is east, and east is +x.
  EXPECT_NEAR(*line.direction, pi / 2, 1e-15);
  EXPECT_NEAR(AzimuthBetween(line.start, line.end), *line.direction, 1e-15);
}

// Radius 100 around (E 0, N 100), from the origin to (E 100, N 100): counter-clockwise that is a
// quarter circle, clockwise the other way round three quarters.
TEST(AlignmentCurves, BothRotationsFromTheirThreePoints) {
  const std::string points = "<Start>0 0</Start><Center>100 0</Center><End>100 100</End>";
  const CCurve cw = std::get<CCurve>(
      OnlyElement(MustRead(AlignmentDocument("<CoordGeom><Curve rot=\"cw\">" + points + "</Curve></CoordGeom>"))));
  EXPECT_EQ(cw.rot, Rotation::Clockwise);
  EXPECT_DOUBLE_EQ(cw.radius, 100.0);
  EXPECT_NEAR(cw.length, 100.0 * 3 * pi / 2, 1e-12);
  EXPECT_EQ(cw.center, Xy(0.0, 100.0));
  const CCurve ccw = std::get<CCurve>(
      OnlyElement(MustRead(AlignmentDocument("<CoordGeom><Curve rot=\"ccw\">" + points + "</Curve></CoordGeom>"))));
  EXPECT_EQ(ccw.rot, Rotation::CounterClockwise);
  EXPECT_NEAR(ccw.length, 100.0 * pi / 2, 1e-12);
  // What the file gives wins over what could be computed.
  const CCurve given = std::get<CCurve>(OnlyElement(MustRead(AlignmentDocument(
      "<CoordGeom><Curve rot=\"cw\" radius=\"100.001\" length=\"157.1\">" + points + "</Curve></CoordGeom>"))));
  EXPECT_DOUBLE_EQ(given.radius, 100.001);
  EXPECT_DOUBLE_EQ(given.length, 157.1);
}

// PI at (E 0, N 100), coming in northwards, radius 50, turning 90 degrees: the tangent length is
// 50 * tan(45 deg) = 50.
TEST(AlignmentCurves, PiFormIsCompletedInBothRotations) {
  auto read = [](const std::string& rot, const std::string& dirEnd) {
    return std::get<CCurve>(OnlyElement(
        MustRead(AlignmentDocument("<CoordGeom><Curve rot=\"" + rot + "\" radius=\"50\" dirStart=\"0\" dirEnd=\"" +
                                   dirEnd + "\"><PI>100 0 7</PI></Curve></CoordGeom>"))));
  };
  const CCurve right = read("cw", "90");
  EXPECT_TRUE(Close(right.start, {0.0, 50.0, 7.0, true}));
  EXPECT_TRUE(Close(right.end, {50.0, 100.0, 7.0, true}));
  EXPECT_TRUE(Close(right.center, {50.0, 50.0, 7.0, true}));
  EXPECT_NEAR(right.length, 50.0 * pi / 2, 1e-12);
  const CCurve left = read("ccw", "270");
  EXPECT_TRUE(Close(left.end, {-50.0, 100.0, 7.0, true}));
  EXPECT_TRUE(Close(left.center, {-50.0, 50.0, 7.0, true}));
  // Without rot, the turn of the directions decides.
  const CCurve inferred = std::get<CCurve>(OnlyElement(MustRead(AlignmentDocument(
      "<CoordGeom><Curve radius=\"50\" dirStart=\"0\" dirEnd=\"270\"><PI>100 0</PI></Curve></CoordGeom>"))));
  EXPECT_EQ(inferred.rot, Rotation::CounterClockwise);

  EXPECT_THAT(
      MustFail(AlignmentDocument("<CoordGeom>\n<Curve rot=\"cw\" radius=\"50\"><PI>100 0</PI></Curve></CoordGeom>")),
      HasSubstr("line 6: <Curve>: needs <Start>, <Center> and <End>, or a <PI> with radius, dirStart and dirEnd"));
  EXPECT_THAT(MustFail(AlignmentDocument("<CoordGeom><Curve rot=\"left\"><Start>0 0</Start></Curve></CoordGeom>")),
              HasSubstr("<Curve>: rot=\"left\" is neither cw nor ccw"));
  EXPECT_THAT(MustFail(AlignmentDocument(
                  "<CoordGeom><Curve><Start>0 0</Start><Center>0 1</Center><End>1 1</End></Curve></CoordGeom>")),
              HasSubstr("<Curve>: has no rot"));
}

// Some writers (3D-Win among them) count directions counter-clockwise from north, as LandXML's
// own documentation has it; the lines' coordinates give them away.
TEST(AlignmentCurves, CounterClockwiseDirectionsAreTurnedIntoAzimuths) {
  const CReadResult read =
      ReadLandXmlText(AlignmentDocument("<CoordGeom><Line dir=\"270\"><Start>0 0</Start><End>0 100</End></Line>"
                                        "<Curve rot=\"ccw\" dirStart=\"270\" dirEnd=\"330\"><Start>0 "
                                        "100</Start><Center>50 100</Center><End>25 143.30127</End></Curve>"
                                        "</CoordGeom>"));
  ASSERT_TRUE(read) << read.error;
  EXPECT_NEAR(*std::get<CLine>(read.model->alignments[0].geometry[0]).direction, pi / 2, 1e-12);  // east
  const CCurve& curve = std::get<CCurve>(read.model->alignments[0].geometry[1]);
  EXPECT_NEAR(*curve.dirStart, pi / 2, 1e-12);
  EXPECT_NEAR(*curve.dirEnd, pi / 6, 1e-12);  // 60 degrees left of east: azimuth 30 degrees
  ASSERT_EQ(read.notes.size(), 1u);
  EXPECT_THAT(read.notes[0], HasSubstr("counter-clockwise from north"));
  // Written back they are clockwise azimuths, and read back the same.
  lxtest::ExpectSameGeometry(*read.model, lxtest::WriteAndReread(*read.model));
}

TEST(AlignmentSpirals, KeepWhatAClothoidNeedsAndTakeDirectionsFromThePi) {
  const CModel model = MustRead(AlignmentDocument(
      "<CoordGeom><Spiral length=\"40\" radiusStart=\"INF\" radiusEnd=\"200\" rot=\"cw\" spiType=\"clothoid\" "
      "staStart=\"12\" tanLong=\"26.7\" tanShort=\"13.3\" theta=\"5.7295779513082321\">"
      "<Start>0 0</Start><PI>26.7 0</PI><End>39.9 1.33</End></Spiral>"
      "<Spiral length=\"30\" radiusStart=\"300\" radiusEnd=\"150\" rot=\"ccw\">"
      "<Start>39.9 1.33</Start><End>60 5</End></Spiral></CoordGeom>"));
  const auto& elements = model.alignments.at(0).geometry;
  ASSERT_EQ(elements.size(), 2u);
  const CSpiral& entry = std::get<CSpiral>(elements[0]);
  EXPECT_TRUE(entry.IsClothoid());
  EXPECT_EQ(entry.rot, Rotation::Clockwise);
  EXPECT_TRUE(std::isinf(entry.radiusStart));
  EXPECT_DOUBLE_EQ(entry.radiusEnd, 200.0);
  EXPECT_DOUBLE_EQ(entry.length, 40.0);
  EXPECT_NEAR(*entry.theta, 0.1, 1e-15);     // 5.7296 degrees
  EXPECT_NEAR(*entry.dirStart, 0.0, 1e-15);  // start -> PI runs north
  EXPECT_NEAR(*entry.dirEnd, std::atan2(1.33, 39.9 - 26.7), 1e-12);
  // Between two arcs: both radii finite; no PI, so no directions either.
  const CSpiral& between = std::get<CSpiral>(elements[1]);
  EXPECT_EQ(between.rot, Rotation::CounterClockwise);
  EXPECT_DOUBLE_EQ(between.radiusStart, 300.0);
  EXPECT_EQ(between.spiType, "clothoid");  // the schema's default
  EXPECT_FALSE(between.dirStart.has_value());

  EXPECT_THAT(MustFail(AlignmentDocument("<CoordGeom><Spiral length=\"1\" radiusStart=\"INF\" rot=\"cw\"><Start>0 "
                                         "0</Start><End>1 0</End></Spiral></CoordGeom>")),
              HasSubstr("<Spiral>: has no radiusEnd"));
  EXPECT_THAT(MustFail(AlignmentDocument("<CoordGeom><Spiral length=\"1\" radiusStart=\"0\" radiusEnd=\"INF\" "
                                         "rot=\"cw\"><Start>0 0</Start><End>1 0</End></Spiral></CoordGeom>")),
              HasSubstr("has a radius that is not positive"));
}

TEST(AlignmentStations, StartAndEquations) {
  const CModel model = MustRead(lxtest::Document(
      "<Alignments><Alignment name=\"Main\" staStart=\"1000\" length=\"10\">"
      "<StaEquation staBack=\"1005\" staAhead=\"2000\" staInternal=\"1005\" desc=\"new chainage\"/>"
      "<StaEquation staBack=\"2003\" staAhead=\"3000\" staIncrement=\"decreasing\"/>"
      "<CoordGeom><Line><Start>0 0</Start><End>10 0</End></Line></CoordGeom></Alignment></Alignments>"));
  const CAlignment& a = model.alignments.at(0);
  EXPECT_DOUBLE_EQ(a.staStart, 1000.0);
  ASSERT_EQ(a.stationEquations.size(), 2u);
  EXPECT_DOUBLE_EQ(*a.stationEquations[0].staBack, 1005.0);
  EXPECT_DOUBLE_EQ(a.stationEquations[0].staAhead, 2000.0);
  EXPECT_DOUBLE_EQ(*a.stationEquations[0].staInternal, 1005.0);
  EXPECT_FALSE(a.stationEquations[0].decreasing);
  EXPECT_TRUE(a.stationEquations[1].decreasing);
  EXPECT_FALSE(a.stationEquations[1].staInternal.has_value());

  EXPECT_THAT(MustFail(AlignmentDocument("<StaEquation staBack=\"1\"/>")), HasSubstr("<StaEquation>: has no staAhead"));
  const CReadResult noStart = ReadLandXmlText(lxtest::Document("<Alignments><Alignment name=\"N\"/></Alignments>"));
  ASSERT_TRUE(noStart);
  EXPECT_DOUBLE_EQ(noStart.model->alignments[0].staStart, 0.0);
  EXPECT_EQ(noStart.notes.size(), 1u);
}

TEST(AlignmentProfiles, EveryVerticalFormAndSurfaceProfile) {
  const CModel model = MustRead(AlignmentDocument(
      "<Profile name=\"P\" staStart=\"0\"><ProfSurf name=\"EG\"><PntList2D>0 10 50 11.5 100 12</PntList2D></ProfSurf>"
      "<ProfAlign name=\"FG\"><PVI>0 10</PVI><ParaCurve length=\"40\">100 12</ParaCurve>"
      "<UnsymParaCurve lengthIn=\"20\" lengthOut=\"30\">200 9</UnsymParaCurve>"
      "<CircCurve length=\"25\" radius=\"-2000\">300 11</CircCurve><PVI>400 10</PVI></ProfAlign></Profile>"));
  const CProfile& profile = model.alignments.at(0).profiles.at(0);
  ASSERT_EQ(profile.surfaceProfiles.size(), 1u);
  EXPECT_EQ(profile.surfaceProfiles[0].points, (std::vector<CStationElevation>{{0, 10}, {50, 11.5}, {100, 12}}));
  const auto& v = profile.layouts.at(0).vertices;
  ASSERT_EQ(v.size(), 5u);
  EXPECT_EQ(v[0].curve, VerticalCurve::None);
  EXPECT_EQ(v[1].curve, VerticalCurve::Parabolic);
  EXPECT_DOUBLE_EQ(v[1].length, 40.0);
  EXPECT_DOUBLE_EQ(v[1].station, 100.0);
  EXPECT_DOUBLE_EQ(v[1].elevation, 12.0);
  EXPECT_EQ(v[2].curve, VerticalCurve::AsymmetricParabolic);
  EXPECT_DOUBLE_EQ(v[2].lengthIn, 20.0);
  EXPECT_DOUBLE_EQ(v[2].lengthOut, 30.0);
  EXPECT_EQ(v[3].curve, VerticalCurve::Circular);
  EXPECT_DOUBLE_EQ(v[3].radius, -2000.0);  // sign kept as written
  EXPECT_DOUBLE_EQ(v[4].station, 400.0);

  EXPECT_THAT(MustFail(AlignmentDocument("<Profile><ProfAlign><ParaCurve>1 2</ParaCurve></ProfAlign></Profile>")),
              HasSubstr("<ParaCurve>: has no length"));
  EXPECT_THAT(MustFail(AlignmentDocument("<Profile><ProfAlign><PVI>1</PVI></ProfAlign></Profile>")),
              HasSubstr("<PVI>: expects \"station elevation\""));
}

TEST(AlignmentRoundTrip, EveryElementKindComesBackFromTheWriter) {
  const std::string units = "linearUnit=\"meter\" angularUnit=\"grads\" directionUnit=\"grads\"";
  const CModel model = MustRead(AlignmentDocument(
      "<StaEquation staBack=\"50\" staAhead=\"70\"/>"
      "<CoordGeom><Line dir=\"100\" length=\"100\"><Start>0 0</Start><End>0 100</End></Line>"
      "<Spiral length=\"20\" radiusStart=\"INF\" radiusEnd=\"100\" rot=\"ccw\"><Start>0 100</Start><PI>0 "
      "113.3</PI><End>0.66 119.9</End></Spiral>"
      "<Curve rot=\"ccw\" delta=\"-12.3\"><Start>0.66 119.9</Start><Center>100.5 110</Center><End>10 150</End></Curve>"
      "<Spiral length=\"20\" radiusStart=\"100\" radiusEnd=\"INF\" rot=\"ccw\"><Start>10 150</Start><PI>12 "
      "160</PI><End>20 170</End></Spiral>"
      "<Curve rot=\"cw\" radius=\"300\" dirStart=\"50\" dirEnd=\"80\"><PI>100 260</PI></Curve></CoordGeom>"
      "<Profile><ProfAlign><PVI>0 1</PVI><UnsymParaCurve lengthIn=\"5\" lengthOut=\"7\">60 3</UnsymParaCurve>"
      "<CircCurve length=\"9\" radius=\"500\">120 2</CircCurve><PVI>200 2.5</PVI></ProfAlign></Profile>",
      units));
  const CModel back = lxtest::WriteAndReread(model);
  lxtest::ExpectSameGeometry(model, back);
  EXPECT_EQ(back.units.direction, AngularUnit::Grads);
}

TEST(AlignmentOddContent, IrregularLinesAreLeftOutWithANote) {
  const CReadResult read = ReadLandXmlText(AlignmentDocument(
      "<CoordGeom><Line><Start>0 0</Start><End>0 1</End></Line>"
      "<IrregularLine><Start>0 1</Start><End>0 2</End><PntList2D>0 1 0 2</PntList2D></IrregularLine></CoordGeom>"));
  ASSERT_TRUE(read) << read.error;
  EXPECT_EQ(read.model->alignments[0].geometry.size(), 1u);
  ASSERT_EQ(read.notes.size(), 1u);
  EXPECT_THAT(read.notes[0], HasSubstr("<IrregularLine> at line 5 in alignment \"A\" is not read"));
}

}  // namespace
