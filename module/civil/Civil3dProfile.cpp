#include "module/civil/Civil3dProfile.h"

#include <cmath>
#include <vector>

#include "module/civil/Civil3dComHelpers.h"
#include "module/civil/Civil3dObject.h"

using namespace civil3d;

namespace {

void SetDouble(VARIANT& v, double value) {
  VariantClear(&v);
  v.vt = VT_R8;
  v.dblVal = value;
}

}  // namespace

CCivil3dProfile::CCivil3dProfile(IAeccProfile* profile, CCivil3dObject* owner) : m_profile(profile), m_owner(owner) {}

CCivil3dProfile::~CCivil3dProfile() { m_owner = nullptr; }

long long CCivil3dProfile::GetSessionId() {
  if (m_profile == nullptr) return 0;
  LONG_PTR id = 0;
  m_profile->get_ObjectID(&id);
  return id;
}

bool CCivil3dProfile::SetName(const wchar_t* name) {
  if (m_profile == nullptr) return false;
  return m_profile->put_Name(CComBSTR(name)) >= 0;
}

// A type outside the four known ones leaves the curve type at "no curve" and both parameters 0.
void CCivil3dProfile::GetProfileCurveParamsFromProfilePoint(const CC3dProfilePVI& pvi, AeccProfilePVICurveType& type,
                                                            VARIANT& first, VARIANT& second) {
  SetDouble(first, 0.0);
  SetDouble(second, 0.0);
  switch (pvi.GetType()) {
    case CC3dProfilePVI::NoCurve: type = aeccNoCurve; break;
    case CC3dProfilePVI::CircularCurve:
      type = aeccCircular;
      SetDouble(first, pvi.GetRadius());
      break;
    case CC3dProfilePVI::ParabolicCurve:
      type = aeccParabola;
      SetDouble(first, pvi.GetCurveLength());
      break;
    case CC3dProfilePVI::AsymmetricParabolicCurve:
      type = aeccAsymmetricParabola;
      SetDouble(first, pvi.GetLength1());
      SetDouble(second, pvi.GetLength2());
      break;
  }
}

bool CCivil3dProfile::AddProfilePVI(CComPtr<IAeccProfilePVIs> pvis, const CC3dProfilePVI& pvi,
                                    const double& startStation, const double& endStation) {
  if (pvis == nullptr) return false;
  double station = pvi.GetStation();
  if (station < startStation || std::fabs(station - startStation) <= STATION_TOLERANCE) station = startStation;
  if (station > endStation || std::fabs(station - endStation) <= STATION_TOLERANCE) station = endStation;
  AeccProfilePVICurveType type = aeccNoCurve;
  CComVariant first, second;
  GetProfileCurveParamsFromProfilePoint(pvi, type, first, second);
  CComPtr<IAeccProfilePVI> added;
  return pvis->Add(station, pvi.GetElevation(), type, first, second, &added) >= 0;
}

// The two end PVIs are edited in place, never recreated: a profile keeps them. Fewer than two
// records still strip the profile down to its ends before failing.
bool CCivil3dProfile::SetProfileGeometry(const CC3dProfilePVI* pvis, int count) {
  if (!Usable()) return false;
  CComPtr<IAeccAlignment> alignment;
  m_profile->get_Alignment(&alignment);
  if (alignment == nullptr) return false;
  double start = 0.0, end = 0.0;
  alignment->get_StartingStation(&start);
  alignment->get_EndingStation(&end);

  CComPtr<IAeccProfilePVIs> collection;
  m_profile->get_PVIs(&collection);
  if (collection == nullptr) return false;
  LONG existing = 0;
  collection->get_Count(&existing);
  if (existing > 2) {
    for (LONG i = existing - 2; i >= 1; --i) collection->Remove(IndexVariant(i));
    collection.Release();
    m_profile->get_PVIs(&collection);
    if (collection == nullptr) return false;
    collection->get_Count(&existing);
  }

  if (count <= 1 || pvis == nullptr) return false;

  if (existing == 0) {
    AddProfilePVI(collection, pvis[0], start, end);
    AddProfilePVI(collection, pvis[count - 1], start, end);
  } else if (existing == 2) {
    CComPtr<IAeccProfilePVI> first, last;
    collection->Item(0, &first);
    collection->Item(1, &last);
    if (first == nullptr || last == nullptr) return false;
    double firstStation = pvis[0].GetStation();
    double lastStation = pvis[count - 1].GetStation();
    if (firstStation < start) firstStation = start;
    if (lastStation > end) lastStation = end;
    first->put_Station(firstStation);
    first->put_Elevation(pvis[0].GetElevation());
    last->put_Station(lastStation);
    last->put_Elevation(pvis[count - 1].GetElevation());
  }

  for (int i = 1; i < count - 1; ++i) AddProfilePVI(collection, pvis[i], start, end);

  LONG now = 0;
  collection->get_Count(&now);
  if (now != count) return false;
  m_profile->Update();
  return true;
}

// Each PVI object is its curve, so the pointer is cast to the curve interface of its type. Both
// asymmetric lengths are read from the first one: a read-back gives them equal.
bool CCivil3dProfile::GetProfileGeometry(CC3dProfilePVI** pvis, int* count) {
  if (!Usable() || pvis == nullptr || count == nullptr) return false;
  CComPtr<IAeccProfilePVIs> collection;
  m_profile->get_PVIs(&collection);
  if (collection == nullptr) return false;
  LONG n = 0;
  collection->get_Count(&n);
  if (n < 0) n = 0;
  auto* records = new CC3dProfilePVI[static_cast<size_t>(n)];
  int written = 0;
  for (LONG i = 0; i < n; ++i) {
    CComPtr<IAeccProfilePVI> pvi;
    collection->Item(i, &pvi);
    if (pvi == nullptr) {
      delete[] records;
      return false;
    }
    CC3dProfilePVI& record = records[written++];
    double station = 0.0, elevation = 0.0;
    pvi->get_Station(&station);
    pvi->get_Elevation(&elevation);
    record.SetStation(station);
    record.SetElevation(elevation);

    auto* curve = static_cast<IAeccProfilePVICurve*>(pvi.p);
    AeccProfilePVICurveType type = aeccNoCurve;
    if (curve != nullptr) curve->get_EntityType(&type);
    switch (type) {
      case aeccNoCurve: record.SetCurveType(CC3dProfilePVI::NoCurve); break;
      case aeccParabola: {
        double length = 0.0;
        static_cast<IAeccProfilePVICurveParabolic*>(curve)->get_CurveLength(&length);
        record.SetCurveType(CC3dProfilePVI::ParabolicCurve);
        record.SetCurveLength(length);
        break;
      }
      case aeccCircular: {
        double radius = 0.0;
        static_cast<IAeccProfilePVICurveCircular*>(curve)->get_Radius(&radius);
        record.SetCurveType(CC3dProfilePVI::CircularCurve);
        record.SetRadius(radius);
        break;
      }
      case aeccAsymmetricParabola: {
        double length1 = 0.0, length2 = 0.0;
        auto* asymmetric = static_cast<IAeccProfilePVICurveAsymmetric*>(curve);
        asymmetric->get_VerticalLength1(&length1);
        asymmetric->get_VerticalLength1(&length2);
        record.SetCurveType(CC3dProfilePVI::AsymmetricParabolicCurve);
        record.SetLength1(length1);
        record.SetLength2(length2);
        break;
      }
      default: break;
    }
  }
  *pvis = records;
  *count = written;
  return true;
}

bool CCivil3dProfile::ClearProfileGeometry() {
  if (!Usable()) return false;
  CComPtr<IAeccProfileEntities> entities;
  m_profile->get_Entities(&entities);
  if (entities == nullptr) return false;
  entities->RemoveAll();
  return true;
}

// The first sample is the start, each next one a step further, the last exactly the end.
bool CCivil3dProfile::GetStrokedProfile(const double& step, CC3dProfilePoint** points, int* count) {
  if (!Usable() || points == nullptr || count == nullptr) return false;
  if (!(step > 0.0) || !std::isfinite(step)) return false;
  double first = 0.0, last = 0.0;
  m_profile->get_StartingStation(&first);
  m_profile->get_EndingStation(&last);
  if (!std::isfinite(first) || !std::isfinite(last)) return false;

  std::vector<CC3dProfilePoint> samples;
  double station = first;
  for (;;) {
    double elevation = 0.0;
    if (FAILED(m_profile->ElevationAt(station, &elevation))) elevation = 0.0;
    CC3dProfilePoint sample;
    sample.SetStation(station);
    sample.SetElevation(elevation);
    samples.push_back(sample);
    if (station == last) break;
    const double next = station + step;
    // A step too small to move the station on still ends at the last station.
    station = (next > last || next <= station) ? last : next;
  }
  auto* records = new CC3dProfilePoint[samples.size()];
  std::copy(samples.begin(), samples.end(), records);
  *points = records;
  *count = static_cast<int>(samples.size());
  return true;
}

CComPtr<IAeccProfileStyle> CCivil3dProfile::GetProfileStyle(CCivil3dObject* owner) {
  CComPtr<IAeccProfileStyle> style;
  if (owner == nullptr) return style;
  CComPtr<IAeccDocument> document = owner->GetLandDocument();
  if (document == nullptr) return style;
  CComPtr<IAeccProfileStyles> styles;
  document->get_LandProfileStyles(&styles);
  if (styles != nullptr) styles->Item(IndexVariant(0), &style);
  return style;
}
