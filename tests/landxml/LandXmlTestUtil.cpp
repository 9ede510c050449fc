#include "tests/landxml/LandXmlTestUtil.h"

namespace lxtest {
namespace {

using namespace landxml;

void Same(const std::optional<double>& a, const std::optional<double>& b, const char* what) {
  ASSERT_EQ(a.has_value(), b.has_value()) << what;
  if (a) {
    EXPECT_TRUE(Close(*a, *b)) << what << ": " << *a << " vs " << *b;
  }
}
void Same(double a, double b, const char* what) { EXPECT_TRUE(Close(a, b)) << what << ": " << a << " vs " << b; }
void Same(const std::optional<CPoint>& a, const std::optional<CPoint>& b, const char* what) {
  ASSERT_EQ(a.has_value(), b.has_value()) << what;
  if (a) {
    EXPECT_TRUE(Close(*a, *b)) << what;
  }
}

void SameElement(const CGeometry& ga, const CGeometry& gb) {
  ASSERT_EQ(ga.index(), gb.index());
  if (const auto* a = std::get_if<CLine>(&ga)) {
    const auto& b = std::get<CLine>(gb);
    EXPECT_TRUE(Close(a->start, b.start));
    EXPECT_TRUE(Close(a->end, b.end));
    Same(a->staStart, b.staStart, "line staStart");
    Same(a->length, b.length, "line length");
    Same(a->direction, b.direction, "line dir");
  } else if (const auto* a = std::get_if<CCurve>(&ga)) {
    const auto& b = std::get<CCurve>(gb);
    EXPECT_EQ(a->rot, b.rot);
    EXPECT_TRUE(Close(a->start, b.start));
    EXPECT_TRUE(Close(a->center, b.center));
    EXPECT_TRUE(Close(a->end, b.end));
    Same(a->pi, b.pi, "curve PI");
    Same(a->radius, b.radius, "curve radius");
    Same(a->length, b.length, "curve length");
    Same(a->dirStart, b.dirStart, "curve dirStart");
    Same(a->dirEnd, b.dirEnd, "curve dirEnd");
    Same(a->delta, b.delta, "curve delta");
  } else {
    const auto& sa = std::get<CSpiral>(ga);
    const auto& sb = std::get<CSpiral>(gb);
    EXPECT_EQ(sa.rot, sb.rot);
    EXPECT_EQ(sa.spiType, sb.spiType);
    EXPECT_TRUE(Close(sa.start, sb.start));
    EXPECT_TRUE(Close(sa.end, sb.end));
    Same(sa.pi, sb.pi, "spiral PI");
    Same(sa.length, sb.length, "spiral length");
    Same(sa.radiusStart, sb.radiusStart, "spiral radiusStart");
    Same(sa.radiusEnd, sb.radiusEnd, "spiral radiusEnd");
    Same(sa.dirStart, sb.dirStart, "spiral dirStart");
    Same(sa.dirEnd, sb.dirEnd, "spiral dirEnd");
    Same(sa.tanLong, sb.tanLong, "spiral tanLong");
  }
}

void SameAlignment(const CAlignment& a, const CAlignment& b) {
  SCOPED_TRACE("alignment " + a.name);
  EXPECT_EQ(a.name, b.name);
  Same(a.staStart, b.staStart, "staStart");
  ASSERT_EQ(a.geometry.size(), b.geometry.size());
  for (std::size_t i = 0; i < a.geometry.size(); ++i) {
    SCOPED_TRACE("element " + std::to_string(i));
    SameElement(a.geometry[i], b.geometry[i]);
  }
  ASSERT_EQ(a.stationEquations.size(), b.stationEquations.size());
  for (std::size_t i = 0; i < a.stationEquations.size(); ++i) {
    Same(a.stationEquations[i].staAhead, b.stationEquations[i].staAhead, "staAhead");
    Same(a.stationEquations[i].staBack, b.stationEquations[i].staBack, "staBack");
    Same(a.stationEquations[i].staInternal, b.stationEquations[i].staInternal, "staInternal");
    EXPECT_EQ(a.stationEquations[i].decreasing, b.stationEquations[i].decreasing);
  }
  ASSERT_EQ(a.profiles.size(), b.profiles.size());
  for (std::size_t p = 0; p < a.profiles.size(); ++p) {
    const CProfile& pa = a.profiles[p];
    const CProfile& pb = b.profiles[p];
    ASSERT_EQ(pa.layouts.size(), pb.layouts.size());
    for (std::size_t l = 0; l < pa.layouts.size(); ++l) {
      ASSERT_EQ(pa.layouts[l].vertices.size(), pb.layouts[l].vertices.size());
      for (std::size_t v = 0; v < pa.layouts[l].vertices.size(); ++v) {
        const CProfileVertex& va = pa.layouts[l].vertices[v];
        const CProfileVertex& vb = pb.layouts[l].vertices[v];
        EXPECT_EQ(va.curve, vb.curve);
        Same(va.station, vb.station, "PVI station");
        Same(va.elevation, vb.elevation, "PVI elevation");
        Same(va.length, vb.length, "curve length");
        Same(va.lengthIn, vb.lengthIn, "lengthIn");
        Same(va.lengthOut, vb.lengthOut, "lengthOut");
        Same(va.radius, vb.radius, "curve radius");
      }
    }
    ASSERT_EQ(pa.surfaceProfiles.size(), pb.surfaceProfiles.size());
    for (std::size_t s = 0; s < pa.surfaceProfiles.size(); ++s) {
      ASSERT_EQ(pa.surfaceProfiles[s].points.size(), pb.surfaceProfiles[s].points.size());
      for (std::size_t i = 0; i < pa.surfaceProfiles[s].points.size(); ++i) {
        Same(pa.surfaceProfiles[s].points[i].station, pb.surfaceProfiles[s].points[i].station, "ProfSurf station");
        Same(pa.surfaceProfiles[s].points[i].elevation, pb.surfaceProfiles[s].points[i].elevation,
             "ProfSurf elevation");
      }
    }
  }
}

void SamePoints(const std::vector<CPoint>& a, const std::vector<CPoint>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) ASSERT_TRUE(Close(a[i], b[i])) << "point " << i;
}

void SameSurface(const CSurface& a, const CSurface& b) {
  SCOPED_TRACE("surface " + a.name);
  EXPECT_EQ(a.name, b.name);
  EXPECT_EQ(a.type, b.type);
  SamePoints(a.points, b.points);
  EXPECT_EQ(a.pointIds, b.pointIds);
  ASSERT_EQ(a.faces.size(), b.faces.size());
  for (std::size_t i = 0; i < a.faces.size(); ++i) {
    ASSERT_EQ(a.faces[i].vertex, b.faces[i].vertex) << "face " << i;
    ASSERT_EQ(a.faces[i].invisible, b.faces[i].invisible) << "face " << i;
  }
  ASSERT_EQ(a.breaklines.size(), b.breaklines.size());
  for (std::size_t i = 0; i < a.breaklines.size(); ++i) SamePoints(a.breaklines[i].points, b.breaklines[i].points);
  ASSERT_EQ(a.boundaries.size(), b.boundaries.size());
  for (std::size_t i = 0; i < a.boundaries.size(); ++i) {
    EXPECT_EQ(a.boundaries[i].bndType, b.boundaries[i].bndType);
    SamePoints(a.boundaries[i].points, b.boundaries[i].points);
  }
}

}  // namespace

void ExpectSameGeometry(const CModel& a, const CModel& b) {
  EXPECT_EQ(a.units.linear, b.units.linear);
  ASSERT_EQ(a.alignments.size(), b.alignments.size());
  for (std::size_t i = 0; i < a.alignments.size(); ++i) SameAlignment(a.alignments[i], b.alignments[i]);
  ASSERT_EQ(a.surfaces.size(), b.surfaces.size());
  for (std::size_t i = 0; i < a.surfaces.size(); ++i) SameSurface(a.surfaces[i], b.surfaces[i]);
}

}  // namespace lxtest
