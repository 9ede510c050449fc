#include "module/civil/Civil3dAlignment.h"

#include <cwchar>
#include <vector>

#include "module/civil/Civil3dComHelpers.h"
#include "module/civil/Civil3dObject.h"
#include "module/civil/Civil3dProfile.h"
#include "module/geometry/KdArc.h"

using namespace civil3d;

namespace {

bool TangentToRecord(IAeccAlignmentTangent* tangent, CC3dCurve& record) {
  if (tangent == nullptr) return false;
  double sx = 0, sy = 0, ex = 0, ey = 0;
  tangent->get_StartEasting(&sx);
  tangent->get_StartNorthing(&sy);
  tangent->get_EndEasting(&ex);
  tangent->get_EndNorthing(&ey);
  record.SetLine(CC3dPoint(sx, sy, 0.0), CC3dPoint(ex, ey, 0.0));
  return true;
}

bool ArcToRecord(IAeccAlignmentArc* arc, CC3dCurve& record) {
  if (arc == nullptr) return false;
  double sx = 0, sy = 0, ex = 0, ey = 0, cx = 0, cy = 0, r = 0;
  VARIANT_BOOL clockwise = VARIANT_FALSE;
  arc->get_StartEasting(&sx);
  arc->get_StartNorthing(&sy);
  arc->get_EndEasting(&ex);
  arc->get_EndNorthing(&ey);
  arc->get_CenterEasting(&cx);
  arc->get_CenterNorthing(&cy);
  arc->get_Radius(&r);
  arc->get_Clockwise(&clockwise);
  const CKdPoint centre(cx, cy, 0.0);
  const double a0 = CKdPoint(sx, sy, 0.0).AngleFromXY(centre);
  const double a1 = CKdPoint(ex, ey, 0.0).AngleFromXY(centre);
  const CKdArc kd(centre, r, a0, a1, clockwise == VARIANT_FALSE);
  record.SetArc(CC3dPoint(cx, cy, 0.0), kd.Radius(), kd.StartAngle(), kd.Sweep());
  return true;
}

// The part of a group that reads back, fetched through the group's own property.
template <class Group, class Part>
CComPtr<Part> GroupPart(IAeccAlignmentEntity* entity, HRESULT (STDMETHODCALLTYPE Group::*get)(Part**)) {
  CComPtr<Part> part;
  CComQIPtr<Group> group(entity);
  if (group != nullptr) (group.p->*get)(&part);
  return part;
}

// Lines and arcs of one listed entity; spirals give none.
void AppendRecords(IAeccAlignmentEntity* entity, CC3dCurve* records, int& count) {
  AeccAlignmentEntityType type = static_cast<AeccAlignmentEntityType>(0);
  if (FAILED(entity->get_Type(&type))) return;
  auto arc = [&](IAeccAlignmentArc* a) {
    if (ArcToRecord(a, records[count])) ++count;
  };
  auto tangent = [&](IAeccAlignmentTangent* t) {
    if (TangentToRecord(t, records[count])) ++count;
  };
  switch (type) {
    case aeccTangent: tangent(CComQIPtr<IAeccAlignmentTangent>(entity)); break;
    case aeccArc: arc(CComQIPtr<IAeccAlignmentArc>(entity)); break;
    case aeccSpiralCurveSpiralGroup: arc(GroupPart(entity, &IAeccAlignmentSCSGroup::get_Arc)); break;
    case aeccSpiralTangentSpiralGroup: tangent(GroupPart(entity, &IAeccAlignmentSTSGroup::get_Tangent)); break;
    case aeccSpiralTangentGroup: tangent(GroupPart(entity, &IAeccAlignmentSTGroup::get_TangentOut)); break;
    case aeccTangentSpiralGroup: tangent(GroupPart(entity, &IAeccAlignmentTSGroup::get_TangentIn)); break;
    case aeccSpiralCurveGroup: arc(GroupPart(entity, &IAeccAlignmentSCGroup::get_ArcOut)); break;
    case aeccCurveSpiralGroup: arc(GroupPart(entity, &IAeccAlignmentCSGroup::get_ArcIn)); break;
    case aeccSpiralSpiralCurveGroup: arc(GroupPart(entity, &IAeccAlignmentSSCGroup::get_Arc)); break;
    case aeccCurveSpiralSpiralGroup: arc(GroupPart(entity, &IAeccAlignmentCSSGroup::get_Arc)); break;
    case aeccSpiralCurveSpiralCurveSpiralGroup:
      arc(GroupPart(entity, &IAeccAlignmentSCSCSGroup::get_Arc1));
      arc(GroupPart(entity, &IAeccAlignmentSCSCSGroup::get_Arc2));
      break;
    case aeccSpiralCurveSpiralSpiralCurveSpiralGroup:
      arc(GroupPart(entity, &IAeccAlignmentSCSSCSGroup::get_Arc1));
      arc(GroupPart(entity, &IAeccAlignmentSCSSCSGroup::get_Arc2));
      break;
    default: break;  // spirals and anything else produce no record
  }
}

}  // namespace

CCivil3dAlignment::CCivil3dAlignment(IAeccAlignment* alignment, CCivil3dObject* owner)
    : m_alignment(alignment), m_owner(owner) {}

CCivil3dAlignment::~CCivil3dAlignment() { m_owner = nullptr; }

long long CCivil3dAlignment::GetPolylineId() {
  if (!Usable()) return 0;
  CComPtr<IAcadLWPolyline> polyline;
  m_alignment->GetLWPolyline(&polyline);
  if (polyline == nullptr) return 0;
  LONG_PTR id = 0;
  polyline->get_ObjectID(&id);
  return id;
}

long long CCivil3dAlignment::GetSessionId() {
  if (m_alignment == nullptr) return 0;
  LONG_PTR id = 0;
  m_alignment->get_ObjectID(&id);
  return id;
}

// The caller supplies room for the name; a null buffer still learns the length.
bool CCivil3dAlignment::GetName(wchar_t* buffer, int& size) {
  if (m_alignment == nullptr) return false;
  CComBSTR name;
  m_alignment->get_Name(&name);
  const UINT length = name.Length();
  if (buffer != nullptr) {
    if (length > 0) std::wmemcpy(buffer, name.m_str, length);
    buffer[length] = L'\0';
  }
  size = static_cast<int>(length);
  return true;
}

bool CCivil3dAlignment::SetName(const wchar_t* name) {
  if (m_alignment == nullptr) return false;
  return m_alignment->put_Name(CComBSTR(name)) >= 0;
}

// Each curve starts where the previous one ended as computed here, so gaps in the host's data
// close; an arc's direction reaches Civil 3D only through its middle point.
bool CCivil3dAlignment::SetAlignmentGeometry(const CC3dCurve* curves, int count) {
  if (!Usable() || count < 0 || (count > 0 && curves == nullptr)) return false;
  CComPtr<IAeccAlignmentEntities> entities;
  if (m_alignment->get_Entities(&entities) < 0 || entities == nullptr) return false;
  entities->RemoveAll();

  CC3dPoint lastEnd(0.0, 0.0, 0.0);
  LONG previousId = 0;
  for (int i = 0; i < count; ++i) {
    const CC3dCurve& c = curves[i];
    if (c.GetIsLine()) {
      const CC3dPoint start = i == 0 ? c.GetStartPt() : lastEnd;
      const CC3dPoint end = c.GetEndPt();
      CComPtr<IAeccAlignmentTangent> tangent;
      entities->AddFixedLine1(MakePointVariant(start.x, start.y, start.z), MakePointVariant(end.x, end.y, end.z),
                              &tangent);
      if (tangent != nullptr) tangent->get_Id(&previousId);
      lastEnd = end;
    } else {
      const CC3dPoint centre = c.GetCenter();
      const CKdArc arc(CKdPoint(centre.x, centre.y, centre.z), c.GetRadius(), c.GetStartAngle(), c.GetSweep());
      const CKdPoint arcStart = arc.StartPoint();
      const CC3dPoint start = i == 0 ? CC3dPoint(arcStart.x, arcStart.y, 0.0) : lastEnd;
      const CKdPoint mid = arc.Eval(0.5);
      const CKdPoint end = arc.EndPoint();
      CComPtr<IAeccAlignmentArc> added;
      entities->AddFixedCurve1(previousId, MakePointVariant(start.x, start.y, start.z),
                               MakePointVariant(mid.x, mid.y, 0.0), MakePointVariant(end.x, end.y, 0.0), &added);
      if (added != nullptr) added->get_Id(&previousId);
      lastEnd = CC3dPoint(end.x, end.y, 0.0);
    }
  }
  return true;
}

// Room for two records per entity: the double-arc groups give two.
bool CCivil3dAlignment::GetAlignmentGeometry(CC3dCurve** curves, int* count) {
  if (!Usable() || curves == nullptr || count == nullptr) return false;
  CComPtr<IAeccAlignmentEntities> entities;
  if (m_alignment->get_Entities(&entities) < 0 || entities == nullptr) return false;
  LONG n = 0;
  entities->get_Count(&n);
  if (n < 0) n = 0;
  auto* records = new CC3dCurve[2 * static_cast<size_t>(n)];
  *curves = records;
  *count = 0;
  int written = 0;
  for (LONG i = 0; i < n; ++i) {
    CComPtr<IAeccAlignmentEntity> entity;
    entities->Item(i, &entity);
    if (entity == nullptr) continue;
    AppendRecords(entity, records, written);
  }
  *count = written;
  return true;
}

double CCivil3dAlignment::GetStartingStation() {
  if (!Usable()) return 0.0;
  double station = 0.0;
  m_alignment->get_StartingStation(&station);
  return station;
}

// Moves the whole stationing: the reference point keeps its place, its station shifts.
void CCivil3dAlignment::SetStartingStation(const double& station) {
  if (!Usable()) return;
  double start = 0.0, reference = 0.0;
  m_alignment->get_StartingStation(&start);
  m_alignment->get_ReferencePointStation(&reference);
  m_alignment->put_ReferencePointStation(reference + (station - start));
}

void CCivil3dAlignment::SetStationReference(const double& station, const CC3dPoint& point) {
  if (!Usable()) return;
  m_alignment->put_ReferencePoint(MakePointVariant(point.x, point.y, point.z));
  m_alignment->put_ReferencePointStation(station);
}

bool CCivil3dAlignment::ListProfiles(wchar_t*** names, int* count) {
  if (!Usable() || names == nullptr || count == nullptr) return false;
  CComPtr<IAeccProfiles> profiles;
  if (m_alignment->get_Profiles(&profiles) < 0 || profiles == nullptr) return false;
  LONG n = 0;
  profiles->get_Count(&n);
  if (n < 0) n = 0;
  auto** list = new wchar_t*[static_cast<size_t>(n)]();
  *names = list;
  for (LONG i = 0; i < n; ++i) {
    CComPtr<IAeccProfile> profile;
    profiles->Item(IndexVariant(i), &profile);
    if (profile == nullptr) {
      // Nothing half-made reaches the caller.
      for (LONG j = 0; j < i; ++j) delete[] list[j];
      delete[] list;
      *names = nullptr;
      return false;
    }
    CComBSTR name;
    profile->get_Name(&name);
    list[i] = CopyName(name);
  }
  *count = static_cast<int>(n);
  return true;
}

ICivil3dProfile* CCivil3dAlignment::GetProfile(const wchar_t* name) {
  if (!Usable()) return nullptr;
  CComPtr<IAeccProfiles> profiles;
  if (m_alignment->get_Profiles(&profiles) < 0 || profiles == nullptr) return nullptr;
  CComPtr<IAeccProfile> profile;
  profiles->Item(CComVariant(name), &profile);
  if (profile == nullptr) return nullptr;
  return new CCivil3dProfile(profile, m_owner);
}

bool CCivil3dAlignment::CreateProfile(const wchar_t* name, const wchar_t* description) {
  if (!Usable()) return false;
  CComPtr<IAeccProfiles> profiles;
  if (m_alignment->get_Profiles(&profiles) < 0 || profiles == nullptr) return false;
  CComBSTR styleName;
  if (CComPtr<IAeccProfileStyle> style = CCivil3dProfile::GetProfileStyle(m_owner)) style->get_Name(&styleName);
  CComVariant styleArgument;
  styleArgument.vt = VT_BSTR;
  styleArgument.bstrVal = styleName.Copy();
  CComPtr<IAeccProfile> profile;
  const HRESULT hr = profiles->Add(CComBSTR(name), aeccFinishedGround, styleArgument, &profile);
  if (profile != nullptr) {
    profile->put_Description(CComBSTR(description));
    CComBSTR layer;
    m_alignment->get_Layer(&layer);
    profile->put_Layer(layer);
  }
  return hr >= 0 && profile != nullptr;
}

bool CCivil3dAlignment::DeleteProfile(const wchar_t* name) {
  if (!Usable()) return false;
  CComPtr<IAeccProfiles> profiles;
  if (m_alignment->get_Profiles(&profiles) < 0 || profiles == nullptr) return false;
  return profiles->Remove(CComVariant(name)) >= 0;
}

CComPtr<IAeccAlignmentStyle> CCivil3dAlignment::GetAlignmentStyle(CCivil3dObject* owner) {
  CComPtr<IAeccAlignmentStyle> style;
  if (owner == nullptr) return style;
  CComPtr<IAeccDocument> document = owner->GetLandDocument();
  if (document == nullptr) return style;
  CComPtr<IAeccAlignmentStyles> styles;
  document->get_AlignmentStyles(&styles);
  if (styles != nullptr) styles->Item(IndexVariant(0), &style);
  return style;
}

CComPtr<IAeccAlignmentLabelStyleSet> CCivil3dAlignment::GetAlignmentLabelStyleSet(CCivil3dObject* owner) {
  CComPtr<IAeccAlignmentLabelStyleSet> set;
  if (owner == nullptr) return set;
  CComPtr<IAeccDocument> document = owner->GetLandDocument();
  if (document == nullptr) return set;
  CComPtr<IAeccAlignmentLabelStyleSets> sets;
  document->get_AlignmentLabelStyleSets(&sets);
  if (sets != nullptr) sets->Item(IndexVariant(0), &set);
  return set;
}
