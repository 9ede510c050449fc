// LandXML import into the active drawing. The whole file is read and turned into alignment and
// profile geometry first; only when all of it is good does the drawing change, so a bad file
// leaves the drawing as it was.
//
// Choices where Civil 3D's import is not publicly described:
// - Spiral groups: LandXML has no element for them. Consecutive elements that join (within
//   kImportJoin) and follow a group's layout form that group, scanning along the alignment: at
//   each element the longest layout wins, then the one with more arcs, then more spirals; an arc or
//   tangent is left alone when the group starting at the next element would be larger, so that
//   "tangent, spiral, arc, spiral, tangent" gives a spiral-curve-spiral group between two
//   tangents. A spiral that fits no layout stays a spiral entity.
// - A spiral starts in the file's dirStart (or the direction of its PI); without one, in the
//   direction that carries it from its Start to its End. It must then end within
//   kSpiralEndTolerance of the file's End.
// - Elements of zero length are left out; a station equation that does not fall inside its
//   alignment is left out; names already in the drawing get " (1)", " (2)", ... as Civil 3D adds
//   a counter.
// - Lengths are converted to metres (the drawing's unit). Surfaces and surface profiles are not
//   imported yet.
#include <cmath>
#include <numbers>
#include <optional>
#include <sstream>

#include "headless/acad/AcadApplication.h"
#include "headless/aecc/LandFaces.h"
#include "headless/aecc/LandXmlExchange.h"
#include "headless/aecc/LandXmlText.h"
#include "landxml/LandXml.h"

namespace headless::land {

namespace {

// Files round their coordinates (to 1e-6, often to millimetres): parts that a designer drew as one
// group must not fall apart over that.
constexpr GroupTolerance kImportJoin{1e-3, 1e-4, 1e-3};
// An arc's End may lie off the circle its Start and Center fix by this much (metres).
constexpr double kArcEndTolerance = 1e-3;
// A spiral computed from the file's Start, direction, length and radii ends this near its End.
constexpr double kSpiralEndTolerance = 1e-3;
// A PVI this close beyond the alignment's ends is put on the end: files round profile stations
// apart from the length their alignment's coordinates give (Land Desktop's by 0.005 ft).
constexpr double kProfileEndSnap = 0.01;

struct PlannedProfile {
  std::wstring name;
  std::wstring description;
  ProfileGeometry geometry;
};

struct PlannedAlignment {
  std::wstring name;
  std::wstring description;
  AlignmentGeometry geometry;
  std::vector<PlannedProfile> profiles;
};

std::string Number(double value) {
  std::ostringstream out;
  out.precision(12);
  out << value;
  return out.str();
}

// LandXML directions are azimuths (0 north, clockwise); the model's are angles from +x,
// counter-clockwise.
double AngleOfAzimuth(double azimuth) { return std::numbers::pi / 2.0 - azimuth; }

Point2 Xy(const landxml::CPoint& p) { return {p.x, p.y}; }

std::optional<AlignmentCurve> Spiral(const landxml::CSpiral& s, std::string& why) {
  if (!s.IsClothoid()) {
    why = "spiral type \"" + s.spiType + "\" is not a clothoid, the only spiral computed here";
    return std::nullopt;
  }
  const SpiralDirection side = s.rot == landxml::Rotation::Clockwise ? SpiralDirection::Right : SpiralDirection::Left;
  double direction = 0.0;
  if (s.dirStart) {
    direction = AngleOfAzimuth(*s.dirStart);
  } else {
    // The direction that turns the spiral's own chord onto the file's Start-End line.
    const Outcome<AlignmentCurve> local = AlignmentCurve::MakeSpiral({}, 0.0, s.length, s.radiusStart, s.radiusEnd, side);
    if (!local) {
      why = std::string("spiral: ") + LandErrorText(local.Error());
      return std::nullopt;
    }
    const Point2 chord = Xy(s.end) - Xy(s.start);
    const Point2 own = local.Value().EndPoint();
    direction = std::atan2(chord.y, chord.x) - std::atan2(own.y, own.x);
  }
  Outcome<AlignmentCurve> spiral = AlignmentCurve::MakeSpiral(Xy(s.start), direction, s.length, s.radiusStart,
                                                              s.radiusEnd, side);
  if (!spiral) {
    why = std::string("spiral: ") + LandErrorText(spiral.Error());
    return std::nullopt;
  }
  const double miss = Distance(spiral.Value().EndPoint(), Xy(s.end));
  if (miss > kSpiralEndTolerance) {
    why = "the clothoid its Start, direction, length and radii give ends " + Number(miss) + " from its <End>";
    return std::nullopt;
  }
  return std::move(spiral).Value();
}

// The curve of one element; nothing (and no reason) for an element of zero length.
std::optional<AlignmentCurve> Curve(const landxml::CGeometry& element, std::string& why) {
  if (const auto* line = std::get_if<landxml::CLine>(&element)) {
    if (Distance(Xy(line->start), Xy(line->end)) <= kPointTolerance) return std::nullopt;
    Outcome<AlignmentCurve> tangent = AlignmentCurve::MakeTangent(Xy(line->start), Xy(line->end));
    if (!tangent) why = std::string("line: ") + LandErrorText(tangent.Error());
    return tangent ? std::optional<AlignmentCurve>(std::move(tangent).Value()) : std::nullopt;
  }
  if (const auto* curve = std::get_if<landxml::CCurve>(&element)) {
    if (Distance(Xy(curve->start), Xy(curve->end)) <= kPointTolerance && !(curve->length > 0.0)) return std::nullopt;
    Outcome<AlignmentCurve> arc =
        AlignmentCurve::MakeArcAboutCentre(Xy(curve->start), Xy(curve->center), Xy(curve->end),
                                           curve->rot == landxml::Rotation::Clockwise, kArcEndTolerance);
    if (!arc) why = std::string("curve: ") + LandErrorText(arc.Error());
    return arc ? std::optional<AlignmentCurve>(std::move(arc).Value()) : std::nullopt;
  }
  const auto& spiral = std::get<landxml::CSpiral>(element);
  if (!(spiral.length > 0.0)) return std::nullopt;
  return Spiral(spiral, why);
}

// --- spiral groups ---------------------------------------------------------------------------

constexpr AlignmentEntityType kGroupTypes[] = {
    AlignmentEntityType::SpiralCurveSpiralSpiralCurveSpiral,
    AlignmentEntityType::SpiralCurveSpiralCurveSpiral,
    AlignmentEntityType::SpiralCurveSpiral,
    AlignmentEntityType::SpiralTangentSpiral,
    AlignmentEntityType::SpiralSpiralCurve,
    AlignmentEntityType::CurveSpiralSpiral,
    AlignmentEntityType::SpiralCurve,
    AlignmentEntityType::CurveSpiral,
    AlignmentEntityType::SpiralTangent,
    AlignmentEntityType::TangentSpiral,
    AlignmentEntityType::SpiralSpiral,
};

struct GroupChoice {
  AlignmentEntityType type;
  int parts = 0;
  int arcs = 0;
  int spirals = 0;

  // Longer first, then more arcs, then more spirals.
  bool Beats(const GroupChoice& other) const {
    if (parts != other.parts) return parts > other.parts;
    if (arcs != other.arcs) return arcs > other.arcs;
    return spirals > other.spirals;
  }
};

std::optional<GroupChoice> BestGroupAt(const std::vector<AlignmentCurve>& curves, size_t at) {
  std::optional<GroupChoice> best;
  for (const AlignmentEntityType type : kGroupTypes) {
    const std::span<const CurveKind> layout = EntityLayout(type);
    if (at + layout.size() > curves.size()) continue;
    GroupChoice choice{type, static_cast<int>(layout.size())};
    bool fits = true;
    for (size_t k = 0; k < layout.size() && fits; ++k) {
      fits = curves[at + k].Kind() == layout[k];
      choice.arcs += layout[k] == CurveKind::Arc;
      choice.spirals += layout[k] == CurveKind::Spiral;
    }
    if (!fits || (best && !choice.Beats(*best))) continue;
    std::vector<AlignmentCurve> parts(curves.begin() + static_cast<long>(at),
                                      curves.begin() + static_cast<long>(at + layout.size()));
    if (AlignmentEntity::MakeGroup(type, std::move(parts), kImportJoin)) best = choice;
  }
  return best;
}

std::vector<AlignmentEntity> Entities(const std::vector<AlignmentCurve>& curves) {
  std::vector<AlignmentEntity> entities;
  for (size_t i = 0; i < curves.size();) {
    std::optional<GroupChoice> here = BestGroupAt(curves, i);
    if (curves[i].Kind() != CurveKind::Spiral && i + 1 < curves.size()) {
      const std::optional<GroupChoice> next = BestGroupAt(curves, i + 1);
      if (next && (!here || next->Beats(*here))) here.reset();
    }
    if (!here) {
      entities.push_back(AlignmentEntity::MakeSimple(curves[i]));
      ++i;
      continue;
    }
    std::vector<AlignmentCurve> parts(curves.begin() + static_cast<long>(i),
                                      curves.begin() + static_cast<long>(i) + here->parts);
    entities.push_back(std::move(AlignmentEntity::MakeGroup(here->type, std::move(parts), kImportJoin)).Value());
    i += static_cast<size_t>(here->parts);
  }
  return entities;
}

// --- alignments and profiles -----------------------------------------------------------------

bool PlanEquations(const landxml::CAlignment& source, AlignmentGeometry& geometry, std::string& why) {
  std::optional<double> previousRaw;
  std::optional<landxml::CStationEquation> previous;
  for (const landxml::CStationEquation& e : source.stationEquations) {
    double raw = 0.0;
    if (e.staInternal) {
      raw = *e.staInternal;
    } else if (!e.staBack) {
      why = "a station equation gives neither staInternal nor staBack";
      return false;
    } else if (!previous) {
      raw = *e.staBack;
    } else {
      // Before this equation the labels run from the previous one's station ahead.
      raw = *previousRaw + (*e.staBack - previous->staAhead) * (previous->decreasing ? -1.0 : 1.0);
    }
    const LandError added = geometry.AddStationEquation(
        raw, e.staAhead, e.decreasing ? StationIncrement::Decreasing : StationIncrement::Increasing);
    if (added == LandError::InvalidArgument) {
      why = "a station equation has a value that is not a number";
      return false;
    }
    // One outside the alignment (or on another's place) is left out.
    previousRaw = raw;
    previous = e;
  }
  return true;
}

VerticalCurve VerticalCurveOf(const landxml::CProfileVertex& v) {
  switch (v.curve) {
    case landxml::VerticalCurve::None: break;
    case landxml::VerticalCurve::Parabolic:
      if (v.length > 0.0) return VerticalCurve::Parabola(v.length);
      break;
    case landxml::VerticalCurve::AsymmetricParabolic:
      if (v.lengthIn > 0.0 && v.lengthOut > 0.0) return VerticalCurve::Asymmetric(v.lengthIn, v.lengthOut);
      break;
    case landxml::VerticalCurve::Circular:
      if (v.radius != 0.0) return VerticalCurve::Circular(std::abs(v.radius));
      break;
  }
  return {};
}

bool PlanProfile(const landxml::CProfile& profile, const landxml::CProfAlign& layout, const AlignmentGeometry& owner,
                 PlannedProfile& planned, std::string& why) {
  const std::string& name = !layout.name.empty() ? layout.name : profile.name;
  planned.name = WideFromUtf8(name.empty() ? std::string("Profile") : name);
  planned.description = WideFromUtf8(!layout.desc.empty() ? layout.desc : profile.desc);
  const StationRange range{owner.StartingStation(), owner.EndingStation()};
  for (const landxml::CProfileVertex& v : layout.vertices) {
    double station = v.station;
    if (owner.Equations().Count() > 0) {
      const Outcome<double> distance = owner.DistanceAtStation(v.station);
      if (distance) station = owner.StartingStation() + distance.Value();
    }
    if (station < range.start && range.start - station <= kProfileEndSnap) station = range.start;
    if (station > range.end && station - range.end <= kProfileEndSnap) station = range.end;
    const Outcome<int> added = planned.geometry.AddPvi(station, v.elevation, VerticalCurveOf(v), range);
    if (!added) {
      why = "profile \"" + name + "\": the PVI at station " + Number(v.station) + " is refused: " +
            LandErrorText(added.Error());
      return false;
    }
  }
  return true;
}

bool PlanAlignment(const landxml::CAlignment& source, PlannedAlignment& planned, std::string& why) {
  planned.name = WideFromUtf8(source.name);
  planned.description = WideFromUtf8(source.desc);
  std::vector<AlignmentCurve> curves;
  static constexpr const char* kElementNames[] = {"Line", "Curve", "Spiral"};
  for (size_t i = 0; i < source.geometry.size(); ++i) {
    std::string reason;
    std::optional<AlignmentCurve> curve = Curve(source.geometry[i], reason);
    if (!reason.empty()) {
      why = "element " + std::to_string(i + 1) + " (" + kElementNames[source.geometry[i].index()] + "): " + reason;
      return false;
    }
    if (curve) curves.push_back(std::move(*curve));
  }
  for (AlignmentEntity& entity : Entities(curves)) planned.geometry.AddEntity(0, std::move(entity));
  planned.geometry.SetReferencePointStation(source.staStart);
  if (!PlanEquations(source, planned.geometry, why)) return false;
  for (const landxml::CProfile& profile : source.profiles) {
    for (const landxml::CProfAlign& layout : profile.layouts) {
      planned.profiles.emplace_back();
      if (!PlanProfile(profile, layout, planned.geometry, planned.profiles.back(), why)) return false;
    }
  }
  return true;
}

bool ReadOptions(const char* options, std::wstring& site, std::string& error) {
  if (options == nullptr) return true;
  std::istringstream in(options);
  std::string item;
  while (std::getline(in, item, ',')) {
    const auto first = item.find_first_not_of(" \t");
    if (first == std::string::npos) continue;
    item = item.substr(first, item.find_last_not_of(" \t") - first + 1);
    if (item.rfind("site=", 0) == 0 && item.size() > 5) {
      site = WideFromUtf8(item.substr(5));
    } else {
      error = "unknown import option \"" + item + "\" (known: site=NAME)";
      return false;
    }
  }
  return true;
}

// Takes back what a failed import added.
void Erase(const std::vector<AcDbObjectId>& ids) {
  for (auto it = ids.rbegin(); it != ids.rend(); ++it) {
    AcDbObject* object = nullptr;
    if (acdbOpenAcDbObject(object, *it, AcDb::kForWrite) != Acad::eOk) continue;
    object->erase();
    object->close();
  }
}

}  // namespace

bool ImportLandXml(AcadApplication& application, const std::filesystem::path& path, const char* options,
                   std::string& error) {
  std::wstring siteName;
  if (!ReadOptions(options, siteName, error)) return false;
  const std::shared_ptr<Document> document = application.Documents().Active();
  if (document == nullptr) {
    error = "there is no active drawing to import into";
    return false;
  }

  landxml::CReadOptions readOptions;
  readOptions.linearUnit = landxml::LinearUnit::Metre;
  landxml::CReadResult read = landxml::ReadLandXml(path, readOptions);
  if (!read) {
    error = read.error;
    return false;
  }
  std::vector<PlannedAlignment> plan(read.model->alignments.size());
  for (size_t i = 0; i < plan.size(); ++i) {
    std::string why;
    if (!PlanAlignment(read.model->alignments[i], plan[i], why)) {
      error = path.string() + ": alignment \"" + read.model->alignments[i].name + "\": " + why;
      return false;
    }
  }

  // Into the drawing, as one change.
  land_drawing::Roots roots;
  if (FAILED(aecc::LandRoots(*document, roots)) || FAILED(faces::AutoLock(*document))) {
    error = path.string() + ": the drawing cannot be changed now (another command holds it)";
    return false;
  }
  AcDbDatabase* db = document->database();
  std::vector<AcDbObjectId> made;
  AcDbObjectId site;
  if (!siteName.empty()) {
    site = land_drawing::FindSite(db, siteName);
    if (site.isNull()) {
      if (land_drawing::AddSite(db, siteName, site) != Acad::eOk) {
        error = path.string() + ": site \"" + Utf8FromWide(siteName) + "\" cannot be made";
        return false;
      }
      made.push_back(site);
    }
  }
  const std::vector<AcDbObjectId> alignmentStyles = land_drawing::Styles(db, LandStyleKind::Alignment);
  const std::vector<AcDbObjectId> labelSets = land_drawing::Styles(db, LandStyleKind::AlignmentLabelSet);
  const std::vector<AcDbObjectId> profileStyles = land_drawing::Styles(db, LandStyleKind::Profile);
  for (PlannedAlignment& planned : plan) {
    land_drawing::NewAlignment request;
    request.name = land_drawing::FreeName(planned.name.empty() ? std::wstring(L"Alignment") : planned.name,
                                       [&](const std::wstring& n) { return land_drawing::AlignmentNameTaken(db, n); });
    request.description = planned.description;
    request.style = alignmentStyles.empty() ? AcDbObjectId::kNull : alignmentStyles.front();
    request.labelSet = labelSets.empty() ? AcDbObjectId::kNull : labelSets.front();
    request.site = site;
    AcDbObjectId id;
    Acad::ErrorStatus es = land_drawing::AddAlignment(db, request, id, &planned.geometry);
    if (es == Acad::eOk) made.push_back(id);
    for (PlannedProfile& profile : planned.profiles) {
      if (es != Acad::eOk) break;
      land_drawing::NewProfile profileRequest;
      profileRequest.name = land_drawing::FreeName(
          profile.name, [&](const std::wstring& n) { return land_drawing::ProfileNameTaken(id, n); });
      profileRequest.description = profile.description;
      profileRequest.style = profileStyles.empty() ? AcDbObjectId::kNull : profileStyles.front();
      AcDbObjectId profileId;
      es = land_drawing::AddProfile(id, profileRequest, profileId, &profile.geometry);
    }
    if (es != Acad::eOk) {
      Erase(made);
      error = path.string() + ": alignment \"" + Utf8FromWide(planned.name) + "\" cannot be added to the drawing";
      return false;
    }
  }
  return true;
}

}  // namespace headless::land
