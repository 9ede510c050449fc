// Units: each linear unit and angle form read from a hand-built document against hand-worked
// values, the schema's defaults when a unit is missing, and writing back in the file's units.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

#include "tests/landxml/LandXmlTestUtil.h"

namespace {

using ::testing::HasSubstr;
using namespace landxml;
using lxtest::AlignmentDocument;
using lxtest::MustFail;
using lxtest::MustRead;
using std::numbers::pi;

std::string LineWithDirection(const std::string& dir) {
  return "<CoordGeom><Line dir=\"" + dir + "\"><Start>0 0</Start><End>0 10</End></Line></CoordGeom>";
}

double DirectionRead(const std::string& unit, const std::string& dir) {
  const CModel model = MustRead(AlignmentDocument(
      LineWithDirection(dir), "linearUnit=\"meter\" angularUnit=\"" + unit + "\" directionUnit=\"" + unit + "\""));
  return model.alignments.at(0).geometry.size() == 1 ? *std::get<CLine>(model.alignments[0].geometry[0]).direction
                                                     : -1.0;
}

TEST(AngleForms, EachUnitReadsTheSameEastDirection) {
  EXPECT_NEAR(DirectionRead("radians", "1.5707963267948966"), pi / 2, 1e-15);
  EXPECT_NEAR(DirectionRead("decimal degrees", "90"), pi / 2, 1e-15);
  EXPECT_NEAR(DirectionRead("grads", "100"), pi / 2, 1e-15);
  EXPECT_NEAR(DirectionRead("decimal dd.mm.ss", "90.0000"), pi / 2, 1e-15);
}

TEST(AngleForms, DegreesMinutesSecondsPacksMinutesAndSecondsInTheFraction) {
  // 45.3025 is 45 degrees 30 minutes 25 seconds: 45 + 30/60 + 25/3600 degrees.
  const double expected = (45.0 + 30.0 / 60.0 + 25.0 / 3600.0) * pi / 180.0;
  EXPECT_NEAR(*AngleToRadians(45.3025, AngularUnit::DegMinSec), expected, 1e-14);
  EXPECT_NEAR(*AngleToRadians(-45.3025, AngularUnit::DegMinSec), -expected, 1e-14);
  // 12.3 is 12 degrees 30 minutes, although the double nearest 12.3 sits just below it.
  EXPECT_NEAR(*AngleToRadians(12.3, AngularUnit::DegMinSec), 12.5 * pi / 180.0, 1e-14);
  EXPECT_NEAR(DirectionRead("decimal dd.mm.ss", "45.3025"), expected, 1e-14);
  // Sixty minutes or seconds is not a dd.mmss value.
  EXPECT_FALSE(AngleToRadians(12.60, AngularUnit::DegMinSec));
  EXPECT_FALSE(AngleToRadians(12.5960, AngularUnit::DegMinSec));
  EXPECT_THAT(MustFail(AlignmentDocument(
                  LineWithDirection("12.60"),
                  "linearUnit=\"meter\" angularUnit=\"decimal dd.mm.ss\" directionUnit=\"decimal dd.mm.ss\"")),
              HasSubstr("line 5: <Line>: dir=\"12.60\" is not a direction in decimal dd.mm.ss"));
}

TEST(AngleForms, WritingGivesBackTheValueRead) {
  for (AngularUnit unit : {AngularUnit::Radians, AngularUnit::Degrees, AngularUnit::Grads, AngularUnit::DegMinSec}) {
    for (double value : {0.0, 12.3, 45.3025, 89.5959999, 359.5959, -17.0503}) {
      const std::optional<double> radians = AngleToRadians(value, unit);
      ASSERT_TRUE(radians) << value;
      EXPECT_NEAR(AngleFromRadians(*radians, unit), value, 1e-12 * std::max(1.0, std::fabs(value))) << value;
    }
  }
  // Just below a whole degree no field may reach 60, however the seconds round.
  for (int k = 1; k <= 2000; ++k) {
    const double radians = (10.0 - k * 1e-13) * pi / 180.0;
    const double written = AngleFromRadians(radians, AngularUnit::DegMinSec);
    const std::optional<double> back = AngleToRadians(written, AngularUnit::DegMinSec);
    ASSERT_TRUE(back) << written;
    EXPECT_NEAR(*back, radians, 1e-14);
  }
}

TEST(LinearUnits, FeetAndSurveyFeetKeepTheirUnitOrConvertOnRequest) {
  const std::string line = "<CoordGeom><Line><Start>3937 0</Start><End>3937 1000</End></Line></CoordGeom>";
  const std::string ft = "linearUnit=\"foot\" angularUnit=\"radians\" directionUnit=\"radians\"";
  const std::string us = "linearUnit=\"USSurveyFoot\" angularUnit=\"radians\" directionUnit=\"radians\"";

  const CModel kept = MustRead(AlignmentDocument(line, ft));
  EXPECT_EQ(kept.units.linear, LinearUnit::Foot);
  EXPECT_DOUBLE_EQ(std::get<CLine>(kept.alignments[0].geometry[0]).end.x, 1000.0);

  const CModel feet = MustRead(AlignmentDocument(line, ft), {.linearUnit = LinearUnit::Metre});
  EXPECT_EQ(feet.units.linear, LinearUnit::Metre);
  EXPECT_EQ(feet.units.fileLinear, LinearUnit::Foot);
  EXPECT_NEAR(std::get<CLine>(feet.alignments[0].geometry[0]).end.x, 304.8, 1e-12);

  // 3937 US survey feet are exactly 1200 m.
  const CModel survey = MustRead(AlignmentDocument(line, us), {.linearUnit = LinearUnit::Metre});
  EXPECT_NEAR(std::get<CLine>(survey.alignments[0].geometry[0]).start.y, 1200.0, 1e-9);

  EXPECT_THAT(MustFail(AlignmentDocument(line, "linearUnit=\"millimeter\"")),
              HasSubstr("<Metric>: linearUnit=\"millimeter\" is not read"));
}

TEST(LinearUnits, WriterWritesTheUnitAskedForAndReadingBackMatches) {
  const std::string doc = AlignmentDocument(
      "<CoordGeom><Curve rot=\"cw\"><Start>0 0</Start><Center>0 100</Center><End>100 100</End></Curve></CoordGeom>",
      "linearUnit=\"USSurveyFoot\" angularUnit=\"grads\" directionUnit=\"grads\"");
  const CModel model = MustRead(doc, {.linearUnit = LinearUnit::Metre});
  // Back in the file's own unit: the same numbers the file had.
  const CModel back = lxtest::WriteAndReread(model, {.linearUnit = model.units.fileLinear});
  EXPECT_EQ(back.units.linear, LinearUnit::UsSurveyFoot);
  EXPECT_EQ(back.units.angular, AngularUnit::Grads);
  const CCurve& curve = std::get<CCurve>(back.alignments[0].geometry[0]);
  EXPECT_NEAR(curve.center.x, 100.0, 1e-9);
  EXPECT_NEAR(curve.radius, 100.0, 1e-9);
  // And in the model's metres.
  const CModel metres = lxtest::WriteAndReread(model);
  EXPECT_NEAR(std::get<CCurve>(metres.alignments[0].geometry[0]).radius, 100.0 * 1200.0 / 3937.0, 1e-12);
}

TEST(MissingUnits, SchemaDefaultsAreTakenAndReported) {
  const std::string line = "<CoordGeom><Line dir=\"1\"><Start>0 0</Start><End>1 1</End></Line></CoordGeom>";
  const CReadResult noAngles = ReadLandXmlText(lxtest::AlignmentDocument(line, "linearUnit=\"meter\""), "test.xml");
  ASSERT_TRUE(noAngles) << noAngles.error;
  EXPECT_EQ(noAngles.model->units.angular, AngularUnit::Radians);
  EXPECT_TRUE(noAngles.model->units.angularDefaulted && noAngles.model->units.directionDefaulted);
  EXPECT_FALSE(noAngles.model->units.linearDefaulted);
  EXPECT_DOUBLE_EQ(*std::get<CLine>(noAngles.model->alignments[0].geometry[0]).direction, 1.0);
  ASSERT_EQ(noAngles.notes.size(), 2u);
  EXPECT_THAT(noAngles.notes[0], HasSubstr("<Metric> at line 3 gives no angularUnit: radians taken"));

  const CReadResult noUnits = ReadLandXmlText(
      "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\" version=\"1.2\"><Alignments/></LandXML>");
  ASSERT_TRUE(noUnits) << noUnits.error;
  EXPECT_EQ(noUnits.model->units.linear, LinearUnit::Metre);
  EXPECT_TRUE(noUnits.model->units.linearDefaulted);
  ASSERT_EQ(noUnits.notes.size(), 1u);

  const CReadResult imperial = ReadLandXmlText(
      "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\"><Units><Imperial angularUnit=\"radians\" "
      "directionUnit=\"radians\"/></Units></LandXML>");
  ASSERT_TRUE(imperial) << imperial.error;
  EXPECT_EQ(imperial.model->units.linear, LinearUnit::Foot);  // Imperial without a linearUnit: feet
  EXPECT_TRUE(imperial.model->units.linearDefaulted);
}

}  // namespace
