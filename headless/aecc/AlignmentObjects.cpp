// The alignment's face (IAeccAlignment): its name and description, stationing, positions, its
// light-weight polyline form, and the ways to its entities and profiles.
#include <cmath>
#include <type_traits>

#include "headless/aecc/LandFaces.h"
#include "platform/acad/dbpl.h"

namespace headless::aecc {

namespace {

class Alignment final : public AcadEntityImpl<Alignment, IAeccAlignment> {
public:
  using AlsoAnswers = Interfaces<IAeccEntity, IAcadEntity, IAcadObject>;
  Alignment(std::shared_ptr<Document> document, AcDbObjectId id) : AcadEntityImpl(std::move(document), id) {}

  HRESULT STDMETHODCALLTYPE get_Name(BSTR* pVal) override {
    return Read(pVal, [&](const AeccDbAlignment& a) { return ToBstr(a.name(), pVal); });
  }
  // Names are unique among the drawing's alignments, letter case ignored.
  HRESULT STDMETHODCALLTYPE put_Name(BSTR pVal) override {
    const std::wstring name = Text(pVal);
    if (name.empty()) return E_INVALIDARG;
    return Write([&](AeccDbAlignment& a) {
      if (land_drawing::AlignmentNameTaken(a.database(), name, objectId())) return E_INVALIDARG;
      return ToHResult(a.setName(name));
    });
  }
  HRESULT STDMETHODCALLTYPE get_Description(BSTR* pVal) override {
    return Read(pVal, [&](const AeccDbAlignment& a) { return ToBstr(a.description(), pVal); });
  }
  HRESULT STDMETHODCALLTYPE put_Description(BSTR pVal) override {
    return Write([&](AeccDbAlignment& a) { return ToHResult(a.setDescription(Text(pVal))); });
  }

  HRESULT STDMETHODCALLTYPE get_Entities(IAeccAlignmentEntities** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    if (HRESULT hr = Opened<AeccDbAlignment>(objectId(), AcDb::kForRead).Status(); FAILED(hr)) return hr;
    return MakeAlignmentEntities(document(), objectId(), pVal);
  }
  HRESULT STDMETHODCALLTYPE get_StartingStation(double* pVal) override {
    return Read(pVal, [&](const AeccDbAlignment& a) { return Set(pVal, a.geometry().StartingStation()); });
  }
  HRESULT STDMETHODCALLTYPE get_EndingStation(double* pVal) override {
    return Read(pVal, [&](const AeccDbAlignment& a) { return Set(pVal, a.geometry().EndingStation()); });
  }
  HRESULT STDMETHODCALLTYPE get_Length(double* pVal) override {
    return Read(pVal, [&](const AeccDbAlignment& a) { return Set(pVal, a.geometry().Length()); });
  }
  HRESULT STDMETHODCALLTYPE get_ReferencePoint(VARIANT* pVal) override {
    return Read(pVal, [&](const AeccDbAlignment& a) {
      const land::Point2 p = a.geometry().ReferencePoint();
      return MakeDoubles({p.x, p.y}, pVal);
    });
  }
  // Two or three coordinates; the third (an elevation) is not kept.
  HRESULT STDMETHODCALLTYPE put_ReferencePoint(VARIANT RefPoint) override {
    std::vector<double> xyz;
    if (!ReadPoint(RefPoint, 2, 3, xyz)) return E_INVALIDARG;
    return Write([&](AeccDbAlignment& a) {
      return ToHResult(a.geometryForWrite()->SetReferencePoint({xyz[0], xyz[1]}));
    });
  }
  HRESULT STDMETHODCALLTYPE get_ReferencePointStation(double* pVal) override {
    return Read(pVal, [&](const AeccDbAlignment& a) { return Set(pVal, a.geometry().ReferencePointStation()); });
  }
  HRESULT STDMETHODCALLTYPE put_ReferencePointStation(double StationValue) override {
    return Write([&](AeccDbAlignment& a) {
      return ToHResult(a.geometryForWrite()->SetReferencePointStation(StationValue));
    });
  }

  HRESULT STDMETHODCALLTYPE get_Profiles(IAeccProfiles** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    if (HRESULT hr = Opened<AeccDbAlignment>(objectId(), AcDb::kForRead).Status(); FAILED(hr)) return hr;
    return MakeProfiles(document(), objectId(), pVal);
  }

  HRESULT STDMETHODCALLTYPE GetLWPolyline(IAcadLWPolyline** pVal) override;

  HRESULT STDMETHODCALLTYPE PointLocation(double Station, double Offset, double* Easting,
                                          double* Northing) override {
    if (Easting == nullptr || Northing == nullptr) return E_POINTER;
    return Read(Easting, [&](const AeccDbAlignment& a) {
      const land::Outcome<land::Point2> p = a.geometry().PointLocation(Station, Offset);
      if (!p) return ToHResult(p.Error());
      *Easting = p.Value().x;
      *Northing = p.Value().y;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE StationOffset(double Easting, double Northing, double* Station, double* Offset) override {
    if (Station == nullptr || Offset == nullptr) return E_POINTER;
    return Read(Station, [&](const AeccDbAlignment& a) {
      const land::Outcome<land::StationOffset> so = a.geometry().StationOffsetOf({Easting, Northing});
      if (!so) return ToHResult(so.Error());
      *Station = so.Value().station;
      *Offset = so.Value().offset;
      return S_OK;
    });
  }

private:
  static HRESULT Set(double* out, double value) {
    *out = value;
    return S_OK;
  }
  template <class Out, class Body>
  HRESULT Read(Out* out, Body body) {
    if (out == nullptr) return E_POINTER;
    if constexpr (std::is_same_v<Out, BSTR>) *out = nullptr;
    return WithRead<AeccDbAlignment>(objectId(), body);
  }
  template <class Body>
  HRESULT Write(Body body) {
    return WithWrite<AeccDbAlignment>(*document(), objectId(), body);
  }
};

// Each call adds a new polyline to model space, on the alignment's layer, as the .NET counterpart
// (Alignment.GetPolyline) does; the caller erases it when it is not wanted. Arcs are exact bulges,
// spirals chords within 0.001 of the curve. An alignment without entities has no polyline.
HRESULT Alignment::GetLWPolyline(IAcadLWPolyline** pVal) {
  if (pVal == nullptr) return E_POINTER;
  *pVal = nullptr;
  std::vector<land::PolylineVertex> vertices;
  std::wstring layer;
  {
    Opened<AeccDbAlignment> alignment(objectId(), AcDb::kForRead);
    if (!alignment) return alignment.Status();
    land::Outcome<std::vector<land::PolylineVertex>> form = alignment->geometry().Polyline();
    if (!form) return ToHResult(form.Error());
    vertices = std::move(form).Value();
    ACHAR* name = alignment->layer();
    if (name != nullptr) layer = name;
    acutDelString(name);
  }
  if (vertices.size() < 2) return E_FAIL;
  if (HRESULT hr = faces::AutoLock(*document()); FAILED(hr)) return hr;
  auto* polyline = new AcDbPolyline;
  for (unsigned int i = 0; i < vertices.size(); ++i) {
    const land::PolylineVertex& v = vertices[i];
    polyline->addVertexAt(i, AcGePoint2d(v.point.x, v.point.y), v.bulge);
  }
  AcDbObjectId id;
  if (HRESULT hr = ToHResult(land_drawing::AppendToModelSpace(document()->database(), polyline, layer, id));
      FAILED(hr))
    return hr;
  CComPtr<IDispatch> face;
  if (HRESULT hr = faces::ObjectIdToObject(document(), static_cast<LONG_PTR>(id.asOldId()), &face); FAILED(hr))
    return hr;
  return face->QueryInterface(__uuidof(IAcadLWPolyline), reinterpret_cast<void**>(pVal));
}

}  // namespace

HRESULT MakeAlignmentFace(const std::shared_ptr<Document>& document, AcDbObjectId id, IDispatch** face) {
  return Make<Alignment>(face, document, id);
}

}  // namespace headless::aecc
