// Surfaces from hand-built documents: TIN and grid definitions, point ids however they run,
// invisible faces, breaklines and boundaries, and the faults a definition can have.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/landxml/LandXmlTestUtil.h"

namespace {

using ::testing::HasSubstr;
using namespace landxml;
using lxtest::MustFail;
using lxtest::MustRead;

std::string SurfaceDocument(const std::string& definition, const std::string& sourceData = "") {
  return lxtest::Document("<Surfaces><Surface name=\"EG\" desc=\"ground\">\n" + sourceData + definition +
                          "\n</Surface></Surfaces>");
}

std::string Tin(const std::string& points, const std::string& faces) {
  return "<Definition surfType=\"TIN\"><Pnts>" + points + "</Pnts>\n<Faces>" + faces + "</Faces></Definition>";
}

const std::string kFourPoints =
    "<P id=\"10\">1000 500 20</P><P id=\"11\">1000 510 21</P><P id=\"12\">1010 510 22</P><P id=\"13\">1010 500 23</P>";

TEST(SurfaceTin, PointsFacesAndTheInvisibleFlag) {
  const CModel model = MustRead(
      SurfaceDocument(Tin(kFourPoints, "<F>10 11 12</F><F i=\"1\" n=\"0 -1 -1\">10 12 13</F><F i=\"0\">13 12 11</F>")));
  const CSurface& s = model.surfaces.at(0);
  EXPECT_EQ(s.name, "EG");
  EXPECT_EQ(s.type, SurfaceType::Tin);
  ASSERT_EQ(s.points.size(), 4u);
  EXPECT_EQ(s.points[1], (CPoint{510.0, 1000.0, 21.0, true}));  // "northing easting elevation"
  EXPECT_EQ(s.pointIds, (std::vector<std::uint64_t>{10, 11, 12, 13}));
  ASSERT_EQ(s.faces.size(), 3u);
  EXPECT_EQ(s.faces[1].vertex[0], 0u);  // indices into points, not ids
  EXPECT_EQ(s.faces[1].vertex[2], 3u);
  EXPECT_FALSE(s.faces[0].invisible);
  EXPECT_TRUE(s.faces[1].invisible);
  EXPECT_FALSE(s.faces[2].invisible);
  lxtest::ExpectSameGeometry(model, lxtest::WriteAndReread(model));
}

TEST(SurfaceTin, SparseIdsMapAsDenseOnes) {
  const CModel model =
      MustRead(SurfaceDocument(Tin("<P id=\"4000000000\">0 0 1</P><P id=\"7\">0 1 2</P><P id=\"123456789\">1 1 3</P>",
                                   "<F>123456789 4000000000 7</F>")));
  const CSurface& s = model.surfaces.at(0);
  EXPECT_EQ(s.faces.at(0).vertex[0], 2u);
  EXPECT_EQ(s.faces[0].vertex[1], 0u);
  EXPECT_EQ(s.faces[0].vertex[2], 1u);
  EXPECT_EQ(lxtest::WriteAndReread(model).surfaces.at(0).pointIds, s.pointIds);
}

TEST(SurfaceGrid, FacesHaveFourCorners) {
  const CModel model = MustRead(SurfaceDocument("<Definition surfType=\"grid\"><Pnts>" + kFourPoints +
                                                "</Pnts><Faces><F>10 11 12 13</F></Faces></Definition>"));
  const CSurface& s = model.surfaces.at(0);
  EXPECT_EQ(s.type, SurfaceType::Grid);
  EXPECT_EQ(s.VerticesPerFace(), 4);
  EXPECT_EQ(s.faces.at(0).vertex, (std::array<std::uint32_t, 4>{0, 1, 2, 3}));
  lxtest::ExpectSameGeometry(model, lxtest::WriteAndReread(model));
  EXPECT_THAT(MustFail(SurfaceDocument("<Definition surfType=\"grid\"><Pnts>" + kFourPoints +
                                       "</Pnts><Faces><F>10 11 12</F></Faces></Definition>")),
              HasSubstr("<F>: expects the ids of four points (a grid face)"));
}

TEST(SurfaceSourceData, BreaklinesAndBoundaries) {
  const CModel model =
      MustRead(SurfaceDocument(Tin(kFourPoints, "<F>10 11 12</F>"),
                               "<SourceData><Boundaries><Boundary bndType=\"outer\" edgeTrim=\"true\"><PntList2D>0 0 0 "
                               "10 10 10 0 0</PntList2D></Boundary>"
                               "<Boundary bndType=\"void\" edgeTrim=\"false\"><PntList3D>1 1 5 1 2 5 2 2 5 1 1 "
                               "5</PntList3D></Boundary></Boundaries>"
                               "<Breaklines><Breakline brkType=\"standard\" name=\"ridge\"><PntList3D>1000 500 20 1010 "
                               "510 22</PntList3D></Breakline></Breaklines>"
                               "<DataPoints><PntList3D>0 0 0</PntList3D></DataPoints></SourceData>\n"));
  const CSurface& s = model.surfaces.at(0);
  ASSERT_EQ(s.boundaries.size(), 2u);
  EXPECT_EQ(s.boundaries[0].bndType, "outer");
  EXPECT_EQ(s.boundaries[0].edgeTrim, std::optional<bool>(true));
  ASSERT_EQ(s.boundaries[0].points.size(), 4u);
  EXPECT_EQ(s.boundaries[0].points[1], (CPoint{10.0, 0.0, 0.0, false}));
  EXPECT_EQ(s.boundaries[1].bndType, "void");
  EXPECT_TRUE(s.boundaries[1].points[1].hasZ);
  ASSERT_EQ(s.breaklines.size(), 1u);
  EXPECT_EQ(s.breaklines[0].name, "ridge");
  EXPECT_EQ(s.breaklines[0].points[1], (CPoint{510.0, 1010.0, 22.0, true}));
  lxtest::ExpectSameGeometry(model, lxtest::WriteAndReread(model));

  EXPECT_THAT(
      MustFail(SurfaceDocument(
          "",
          "<SourceData><Breaklines><Breakline><PntList3D>1 2 3 4</PntList3D></Breakline></Breaklines></SourceData>")),
      HasSubstr("<PntList3D>: holds 4 numbers, not a whole number of northing easting elevation triples"));
}

TEST(SurfaceFaults, EachNamesTheElementAndItsLine) {
  // The definition starts on line 5, its faces on line 6.
  EXPECT_THAT(MustFail(SurfaceDocument(Tin(kFourPoints, "<F>10 11 99</F>"))),
              HasSubstr("test.xml: line 6: <F>: names point 99, which <Pnts> does not hold"));
  EXPECT_THAT(MustFail(SurfaceDocument(Tin("<P id=\"1\">0 0 0</P><P id=\"1\">1 1 1</P>", ""))),
              HasSubstr("line 5: <P>: id 1 is given to another point before"));
  EXPECT_THAT(MustFail(SurfaceDocument(Tin("<P id=\"1\">0 0</P>", ""))),
              HasSubstr("<P>: expects \"northing easting elevation\""));
  EXPECT_THAT(MustFail(SurfaceDocument(Tin("<P>0 0 0</P>", ""))), HasSubstr("<P>: has no id"));
  EXPECT_THAT(MustFail(SurfaceDocument(Tin("<P id=\"1\">0 0 x</P>", ""))), HasSubstr("found \"0 0 x\""));
  EXPECT_THAT(MustFail(SurfaceDocument("<Definition><Pnts/></Definition>")),
              HasSubstr("line 5: <Definition>: has no surfType"));
  EXPECT_THAT(MustFail(SurfaceDocument("<Definition surfType=\"mesh\"/>")),
              HasSubstr("surfType=\"mesh\" is neither TIN nor grid"));
  EXPECT_THAT(MustFail(SurfaceDocument(Tin(kFourPoints, "<F i=\"yes\">10 11 12</F>"))),
              HasSubstr("<F>: i=\"yes\" is neither 1 nor 0"));
}

TEST(SurfaceWriter, RefusesFacesThatNameNoPoint) {
  CModel model;
  CSurface surface;
  surface.name = "broken";
  surface.type = SurfaceType::Tin;
  surface.points = {{0, 0, 0, true}};
  surface.pointIds = {1};
  surface.faces.push_back(CFace{{0, 0, 5, 0}, false});
  model.surfaces.push_back(surface);
  std::string text;
  const CWriteResult written = WriteLandXmlText(model, text);
  EXPECT_FALSE(written.ok);
  EXPECT_TRUE(text.empty());
  EXPECT_THAT(written.error, HasSubstr("a face of surface \"broken\" names point 5 of 1"));
}

}  // namespace
