// What the LandXML exchange tests share: temporary files, LandXML text for chains of elements
// built with the land model, and a snapshot of a drawing's alignments and profiles read through
// the COM faces, to compare two drawings within a relative tolerance.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "CivilFixture.h"
#include "headless/aecc/model/AlignmentCurve.h"

namespace kdtest {

// A file in the temporary folder, removed when the object goes.
class TempFile {
public:
  explicit TempFile(const std::string& text = {}) {
    static std::atomic<int> counter{0};
    path_ = std::filesystem::temp_directory_path() /
            ("kd_landxml_" + std::to_string(::getpid()) + "_" + std::to_string(counter++) + ".xml");
    if (!text.empty()) std::ofstream(path_, std::ios::binary) << text;
  }
  ~TempFile() {
    std::error_code ec;
    std::filesystem::remove(path_, ec);
  }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;
  std::string Path() const { return path_.string(); }

private:
  std::filesystem::path path_;
};

inline std::string Num(double v) {
  if (std::isinf(v)) return "INF";
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "%.17g", v);
  return buffer;
}

// A chain of alignment elements built with the land model, each starting where the last ended.
class Chain {
public:
  Chain(double x, double y, double headingRad) : at_{x, y}, heading_(headingRad) {}

  Chain& Line(double length) {
    const headless::land::Point2 end = at_ + length * headless::land::UnitAt(heading_);
    return Add(headless::land::AlignmentCurve::MakeTangent(at_, end));
  }
  Chain& Arc(double radius, double length, bool right) {
    return Add(headless::land::AlignmentCurve::MakeArcFromDirection(at_, heading_, radius, length, right));
  }
  Chain& Spiral(double length, double radiusIn, double radiusOut, bool right) {
    return Add(headless::land::AlignmentCurve::MakeSpiral(
        at_, heading_, length, radiusIn, radiusOut,
        right ? headless::land::SpiralDirection::Right : headless::land::SpiralDirection::Left));
  }
  // Moves the start of the next element (a gap in the chain).
  Chain& Skip(double dx, double dy) {
    at_ = at_ + headless::land::Point2{dx, dy};
    return *this;
  }

  // The <CoordGeom> elements (points written "northing easting").
  std::string Xml() const {
    std::string out;
    const auto point = [](const char* tag, headless::land::Point2 p) {
      return std::string("<") + tag + ">" + Num(p.y) + " " + Num(p.x) + "</" + tag + ">";
    };
    for (const auto& c : curves_) {
      switch (c.Kind()) {
        case headless::land::CurveKind::Tangent:
          out += "<Line>" + point("Start", c.StartPoint()) + point("End", c.EndPoint()) + "</Line>\n";
          break;
        case headless::land::CurveKind::Arc:
          out += std::string("<Curve rot=\"") + (c.Clockwise() ? "cw" : "ccw") + "\">" + point("Start", c.StartPoint()) +
                 point("Center", c.Centre()) + point("End", c.EndPoint()) + "</Curve>\n";
          break;
        case headless::land::CurveKind::Spiral:
          out += "<Spiral length=\"" + Num(c.Length()) + "\" radiusStart=\"" + Num(c.RadiusIn()) + "\" radiusEnd=\"" +
                 Num(c.RadiusOut()) + "\" rot=\"" +
                 (c.Direction() == headless::land::SpiralDirection::Right ? "cw" : "ccw") +
                 "\" spiType=\"clothoid\">" + point("Start", c.StartPoint()) + point("End", c.EndPoint()) +
                 "</Spiral>\n";
          break;
      }
    }
    return out;
  }

private:
  Chain& Add(headless::land::Outcome<headless::land::AlignmentCurve> curve) {
    EXPECT_TRUE(curve.Ok()) << "a test chain element is refused";
    if (!curve) return *this;
    at_ = curve.Value().EndPoint();
    heading_ = curve.Value().EndDirection();
    curves_.push_back(std::move(curve).Value());
    return *this;
  }

  headless::land::Point2 at_;
  double heading_;
  std::vector<headless::land::AlignmentCurve> curves_;
};

// A LandXML 1.2 document in metres holding the alignments given as (name, CoordGeom text).
inline std::string LandXml(const std::vector<std::pair<std::string, std::string>>& alignments) {
  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\" version=\"1.2\">\n"
      "<Units><Metric linearUnit=\"meter\" angularUnit=\"decimal degrees\" directionUnit=\"decimal "
      "degrees\"/></Units>\n<Alignments>\n";
  for (const auto& [name, geometry] : alignments)
    out += "<Alignment name=\"" + name + "\" staStart=\"0\">\n<CoordGeom>\n" + geometry + "</CoordGeom>\n</Alignment>\n";
  return out + "</Alignments>\n</LandXML>\n";
}

// One curve of an alignment as the faces give it.
struct PartSnapshot {
  AeccAlignmentEntityType kind{};
  std::vector<double> values;  // start, end, length and the kind's own values
};

struct AlignmentSnapshot {
  std::wstring name;
  std::vector<double> stationing;  // starting station, ending station, length
  std::vector<AeccAlignmentEntityType> types;
  std::vector<PartSnapshot> parts;
  std::vector<std::wstring> profileNames;
  std::vector<std::vector<double>> pvis;  // station, elevation, curve type, curve values
};

inline PartSnapshot SnapPart(IAeccAlignmentEntity* part) {
  PartSnapshot snap;
  part->get_Type(&snap.kind);
  double v[7] = {};
  if (CComPtr<IAeccAlignmentCurve> curve = As<IAeccAlignmentCurve>(part)) {
    curve->get_StartEasting(&v[0]);
    curve->get_StartNorthing(&v[1]);
    curve->get_EndEasting(&v[2]);
    curve->get_EndNorthing(&v[3]);
    curve->get_Length(&v[4]);
    curve->get_StartingStation(&v[5]);
    snap.values.assign(v, v + 6);
  }
  if (CComPtr<IAeccAlignmentArc> arc = As<IAeccAlignmentArc>(part)) {
    VARIANT_BOOL clockwise = VARIANT_FALSE;
    arc->get_CenterEasting(&v[0]);
    arc->get_CenterNorthing(&v[1]);
    arc->get_Radius(&v[2]);
    arc->get_Clockwise(&clockwise);
    snap.values.insert(snap.values.end(), {v[0], v[1], v[2], clockwise ? 1.0 : 0.0});
  }
  if (CComPtr<IAeccAlignmentSpiral> spiral = As<IAeccAlignmentSpiral>(part)) {
    AeccAlignmentSpiralDirectionType direction{};
    spiral->get_RadiusIn(&v[0]);
    spiral->get_RadiusOut(&v[1]);
    spiral->get_A(&v[2]);
    spiral->get_Direction(&direction);
    snap.values.insert(snap.values.end(), {v[0], v[1], v[2], static_cast<double>(direction)});
  }
  return snap;
}

template <class Collection>
void SnapAlignments(Collection* alignments, std::vector<AlignmentSnapshot>& out) {
  LONG count = 0;
  alignments->get_Count(&count);
  for (LONG a = 0; a < count; ++a) {
    CComPtr<IAeccAlignment> alignment;
    alignments->Item(Index(a), &alignment);
    AlignmentSnapshot snap;
    snap.name = NameOf(alignment);
    double s = 0, e = 0, l = 0;
    alignment->get_StartingStation(&s);
    alignment->get_EndingStation(&e);
    alignment->get_Length(&l);
    snap.stationing = {s, e, l};
    CComPtr<IAeccAlignmentEntities> entities;
    alignment->get_Entities(&entities);
    LONG n = 0;
    entities->get_Count(&n);
    for (LONG i = 0; i < n; ++i) {
      CComPtr<IAeccAlignmentEntity> entity;
      entities->Item(i, &entity);
      AeccAlignmentEntityType type{};
      entity->get_Type(&type);
      snap.types.push_back(type);
      LONG parts = 0;
      entity->get_SubEntityCount(&parts);
      for (LONG p = 0; p < parts; ++p) {
        CComPtr<IAeccAlignmentEntity> part;
        entity->SubEntity(p, &part);
        snap.parts.push_back(SnapPart(part));
      }
    }
    CComPtr<IAeccProfiles> profiles;
    alignment->get_Profiles(&profiles);
    LONG profileCount = 0;
    profiles->get_Count(&profileCount);
    for (LONG p = 0; p < profileCount; ++p) {
      CComPtr<IAeccProfile> profile;
      profiles->Item(Index(p), &profile);
      snap.profileNames.push_back(NameOf(profile));
      CComPtr<IAeccProfilePVIs> pvis;
      profile->get_PVIs(&pvis);
      LONG pviCount = 0;
      pvis->get_Count(&pviCount);
      for (LONG i = 0; i < pviCount; ++i) {
        CComPtr<IAeccProfilePVI> pvi;
        pvis->Item(i, &pvi);
        double station = 0, elevation = 0, first = 0, second = 0;
        AeccProfilePVICurveType type{};
        pvi->get_Station(&station);
        pvi->get_Elevation(&elevation);
        auto* curve = static_cast<IAeccProfilePVICurve*>(pvi.p);
        curve->get_EntityType(&type);
        if (type == aeccParabola) curve->get_CurveLength(&first);
        if (type == aeccCircular) static_cast<IAeccProfilePVICurveCircular*>(curve)->get_Radius(&first);
        if (type == aeccAsymmetricParabola) {
          static_cast<IAeccProfilePVICurveAsymmetric*>(curve)->get_VerticalLength1(&first);
          static_cast<IAeccProfilePVICurveAsymmetric*>(curve)->get_VerticalLength2(&second);
        }
        snap.pvis.push_back({station, elevation, static_cast<double>(type), first, second});
      }
    }
    out.push_back(std::move(snap));
  }
}

// Siteless alignments, then each site's.
inline std::vector<AlignmentSnapshot> Snapshot(IAeccDocument* document) {
  std::vector<AlignmentSnapshot> out;
  CComPtr<IAeccAlignmentsSiteless> siteless;
  document->get_AlignmentsSiteless(&siteless);
  SnapAlignments(siteless.p, out);
  CComPtr<IAeccSites> sites;
  document->get_Sites(&sites);
  LONG count = 0;
  sites->get_Count(&count);
  for (LONG s = 0; s < count; ++s) {
    CComPtr<IAeccSite> site;
    sites->Item(Index(s), &site);
    CComPtr<IAeccAlignments> alignments;
    site->get_Alignments(&alignments);
    SnapAlignments(alignments.p, out);
  }
  return out;
}

// Equal within `relative` of the values' magnitude (at least 1).
inline bool Close(double a, double b, double relative) {
  return std::abs(a - b) <= relative * std::max({1.0, std::abs(a), std::abs(b)});
}

inline void ExpectSame(const std::vector<double>& a, const std::vector<double>& b, double relative,
                       const std::string& where) {
  ASSERT_EQ(a.size(), b.size()) << where;
  for (size_t i = 0; i < a.size(); ++i)
    EXPECT_TRUE(Close(a[i], b[i], relative)) << where << " value " << i << ": " << Num(a[i]) << " vs " << Num(b[i]);
}

inline void ExpectSameDrawing(const std::vector<AlignmentSnapshot>& a, const std::vector<AlignmentSnapshot>& b,
                              double relative) {
  ASSERT_EQ(a.size(), b.size());
  for (size_t i = 0; i < a.size(); ++i) {
    const std::string where = "alignment " + std::to_string(i);
    EXPECT_EQ(a[i].name, b[i].name) << where;
    EXPECT_EQ(a[i].types, b[i].types) << where;
    ExpectSame(a[i].stationing, b[i].stationing, relative, where + " stationing");
    ASSERT_EQ(a[i].parts.size(), b[i].parts.size()) << where;
    for (size_t p = 0; p < a[i].parts.size(); ++p) {
      EXPECT_EQ(a[i].parts[p].kind, b[i].parts[p].kind) << where << " part " << p;
      ExpectSame(a[i].parts[p].values, b[i].parts[p].values, relative, where + " part " + std::to_string(p));
    }
    EXPECT_EQ(a[i].profileNames, b[i].profileNames) << where;
    ASSERT_EQ(a[i].pvis.size(), b[i].pvis.size()) << where;
    for (size_t p = 0; p < a[i].pvis.size(); ++p)
      ExpectSame(a[i].pvis[p], b[i].pvis[p], relative, where + " PVI " + std::to_string(p));
  }
}

}  // namespace kdtest
