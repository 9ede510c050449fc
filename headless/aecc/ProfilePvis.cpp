// A profile's PVIs (IAeccProfilePVIs), the face of each PVI, and the profile's entities.
//
// Every PVI object is also its curve: its class's first interface is the curve interface of its
// kind (IAeccProfilePVICurve for no curve, ...Circular, ...Parabolic, ...Asymmetric), so that a
// caller may cast the IAeccProfilePVI pointer to that interface without QueryInterface, as
// Civil 3D's objects allow. A face holds its PVI by the model's stable id: it stays with its PVI
// while others are added, removed or moved, and answers E_FAIL once its PVI is gone.
#include <cmath>

#include "headless/aecc/LandFaces.h"

namespace headless::aecc {
namespace {

// Which PVI a face stands for, for Remove by object.
struct IPviIdentity : IUnknown {
  virtual AcDbObjectId STDMETHODCALLTYPE ProfileOf() const = 0;
  virtual int STDMETHODCALLTYPE PviIdOf() const = 0;
};

}  // namespace
}  // namespace headless::aecc

OLE_DEFINE_UUIDOF(headless::aecc::IPviIdentity, 0x7B0C5E12, 0x3A4D, 0x4F61, 0x8E, 0x92, 0x1D, 0x6B, 0xA7, 0x30, 0xC5,
                  0x48);

namespace headless::aecc {
namespace {

// The stations a PVI of the profile may take: its alignment's.
land::StationRange RangeOf(const AeccDbProfile& profile) {
  const auto* alignment = AeccDbAlignment::cast(AcDbImpDatabase::peek(profile.alignmentId()));
  if (alignment == nullptr) return {};
  return {alignment->geometry().StartingStation(), alignment->geometry().EndingStation()};
}

HRESULT MakePviFace(const std::shared_ptr<Document>& document, AcDbObjectId profile, const land::Pvi& pvi,
                    IAeccProfilePVI** out);

// What every PVI face answers, whatever its curve.
template <class Derived, class Curve>
class PviFace : public ComObject<Derived, Curve, IPviIdentity> {
public:
  PviFace(std::shared_ptr<Document> document, AcDbObjectId profile, int pviId)
      : document_(std::move(document)), profile_(profile), pviId_(pviId) {}

  AcDbObjectId STDMETHODCALLTYPE ProfileOf() const override { return profile_; }
  int STDMETHODCALLTYPE PviIdOf() const override { return pviId_; }

  HRESULT STDMETHODCALLTYPE get_Station(double* pVal) override {
    return Read(pVal, [&](const land::ProfileGeometry&, const land::Pvi& p, int) {
      *pVal = p.station;
      return S_OK;
    });
  }
  // Within the alignment's stations and not onto another PVI's station (E_INVALIDARG). A PVI
  // moved past a neighbour takes its place in station order.
  HRESULT STDMETHODCALLTYPE put_Station(double pVal) override {
    return Write([&](AeccDbProfile& profile, land::ProfileGeometry& g, int index) {
      return ToHResult(g.SetStation(index, pVal, RangeOf(profile)).Error());
    });
  }
  HRESULT STDMETHODCALLTYPE get_Elevation(double* pVal) override {
    return Read(pVal, [&](const land::ProfileGeometry&, const land::Pvi& p, int) {
      *pVal = p.elevation;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE put_Elevation(double pVal) override {
    return Write([&](AeccDbProfile&, land::ProfileGeometry& g, int index) {
      return ToHResult(g.SetElevation(index, pVal));
    });
  }
  // E_FAIL where there is no grade (before the first PVI, after the last).
  HRESULT STDMETHODCALLTYPE get_GradeIn(double* pVal) override {
    return Read(pVal, [&](const land::ProfileGeometry& g, const land::Pvi&, int index) {
      return Set(pVal, g.GradeIn(index));
    });
  }
  HRESULT STDMETHODCALLTYPE get_GradeOut(double* pVal) override {
    return Read(pVal, [&](const land::ProfileGeometry& g, const land::Pvi&, int index) {
      return Set(pVal, g.GradeOut(index));
    });
  }

  HRESULT STDMETHODCALLTYPE get_EntityType(AeccProfilePVICurveType* pVal) override {
    return Read(pVal, [&](const land::ProfileGeometry&, const land::Pvi& p, int) {
      switch (p.curve.type) {
        case land::VerticalCurveType::None: *pVal = aeccNoCurve; break;
        case land::VerticalCurveType::Circular: *pVal = aeccCircular; break;
        case land::VerticalCurveType::SymmetricParabola: *pVal = aeccParabola; break;
        case land::VerticalCurveType::AsymmetricParabola: *pVal = aeccAsymmetricParabola; break;
      }
      return S_OK;
    });
  }
  // The curve's horizontal length: a parabola's length, the sum of an asymmetric parabola's two
  // lengths, and the station span between a circular curve's tangent points (0 where the grades
  // do not change or at an end PVI); 0 without a curve.
  HRESULT STDMETHODCALLTYPE get_CurveLength(double* pVal) override {
    return Read(pVal, [&](const land::ProfileGeometry& g, const land::Pvi& p, int index) {
      switch (p.curve.type) {
        case land::VerticalCurveType::None: *pVal = 0.0; break;
        case land::VerticalCurveType::SymmetricParabola: *pVal = p.curve.length; break;
        case land::VerticalCurveType::AsymmetricParabola: *pVal = p.curve.length1 + p.curve.length2; break;
        case land::VerticalCurveType::Circular: {
          const land::Outcome<land::CurveExtent> extent = g.CurveAt(index);
          *pVal = extent ? extent.Value().endStation - extent.Value().startStation : 0.0;
          break;
        }
      }
      return S_OK;
    });
  }
  // A parabola takes the length; an asymmetric parabola keeps the ratio of its two lengths; a
  // circular curve takes the radius that gives that span between its tangent points. No curve:
  // E_INVALIDARG.
  HRESULT STDMETHODCALLTYPE put_CurveLength(double CurveLength) override {
    if (!(CurveLength > 0.0) || !std::isfinite(CurveLength)) return E_INVALIDARG;
    return Write([&](AeccDbProfile&, land::ProfileGeometry& g, int index) {
      land::VerticalCurve curve = g.Item(index)->curve;
      switch (curve.type) {
        case land::VerticalCurveType::None: return E_INVALIDARG;
        case land::VerticalCurveType::SymmetricParabola: curve.length = CurveLength; break;
        case land::VerticalCurveType::AsymmetricParabola: {
          const double scale = CurveLength / (curve.length1 + curve.length2);
          curve.length1 *= scale;
          curve.length2 *= scale;
          break;
        }
        case land::VerticalCurveType::Circular: {
          // Tangent length T = R tan(|a1 - a2| / 2); the span is T (cos a1 + cos a2).
          const land::Outcome<double> g1 = g.GradeIn(index);
          const land::Outcome<double> g2 = g.GradeOut(index);
          if (!g1 || !g2) return E_FAIL;
          const double a1 = std::atan(g1.Value());
          const double a2 = std::atan(g2.Value());
          const double perRadius = std::tan(std::abs(a1 - a2) / 2.0) * (std::cos(a1) + std::cos(a2));
          if (!(perRadius > 0.0)) return E_FAIL;
          curve.radius = CurveLength / perRadius;
          break;
        }
      }
      return ToHResult(g.SetCurve(index, curve));
    });
  }
  // Sag where the grade rises through the PVI, crest where it falls; E_FAIL at an end PVI.
  HRESULT STDMETHODCALLTYPE get_VerticalCurveType(AeccProfileVerticalCurveType* pVal) override {
    return Read(pVal, [&](const land::ProfileGeometry& g, const land::Pvi&, int index) {
      const land::Outcome<double> g1 = g.GradeIn(index);
      const land::Outcome<double> g2 = g.GradeOut(index);
      if (!g1 || !g2) return E_FAIL;
      *pVal = g2.Value() >= g1.Value() ? aeccSag : aeccCrest;
      return S_OK;
    });
  }

protected:
  static HRESULT Set(double* out, const land::Outcome<double>& value) {
    if (!value) return ToHResult(value.Error());
    *out = value.Value();
    return S_OK;
  }
  template <class Out, class Body>
  HRESULT Read(Out* out, Body body) {
    if (out == nullptr) return E_POINTER;
    return WithRead<AeccDbProfile>(profile_, [&](const AeccDbProfile& profile) {
      const land::ProfileGeometry& g = profile.geometry();
      const int index = g.IndexOfId(pviId_);
      return index < 0 ? E_FAIL : body(g, *g.Item(index), index);
    });
  }
  template <class Body>
  HRESULT Write(Body body) {
    return WithWrite<AeccDbProfile>(*document_, profile_, [&](AeccDbProfile& profile) {
      land::ProfileGeometry& g = *profile.geometryForWrite();
      const int index = g.IndexOfId(pviId_);
      return index < 0 ? E_FAIL : body(profile, g, index);
    });
  }
  // Changes this PVI's curve parameters.
  template <class Change>
  HRESULT ChangeCurve(Change change) {
    return Write([&](AeccDbProfile&, land::ProfileGeometry& g, int index) {
      land::VerticalCurve curve = g.Item(index)->curve;
      if (HRESULT hr = change(g, index, curve); FAILED(hr)) return hr;
      return ToHResult(g.SetCurve(index, curve));
    });
  }

  std::shared_ptr<Document> document_;
  AcDbObjectId profile_;
  int pviId_;
};

class PlainPvi final : public PviFace<PlainPvi, IAeccProfilePVICurve> {
public:
  using AlsoAnswers = Interfaces<IAeccProfilePVI>;
  using PviFace::PviFace;
};

class CircularPvi final : public PviFace<CircularPvi, IAeccProfilePVICurveCircular> {
public:
  using AlsoAnswers = Interfaces<IAeccProfilePVI, IAeccProfilePVICurve>;
  using PviFace::PviFace;
  HRESULT STDMETHODCALLTYPE get_Radius(double* pVal) override {
    return Read(pVal, [&](const land::ProfileGeometry&, const land::Pvi& p, int) {
      *pVal = p.curve.radius;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE put_Radius(double Radius) override {
    return ChangeCurve([&](const land::ProfileGeometry&, int, land::VerticalCurve& c) {
      c.radius = Radius;
      return S_OK;
    });
  }
};

// The grade change at the PVI, as a fraction; E_FAIL at an end PVI.
HRESULT GradeChange(const land::ProfileGeometry& g, int index, double& change) {
  const land::Outcome<double> g1 = g.GradeIn(index);
  const land::Outcome<double> g2 = g.GradeOut(index);
  if (!g1 || !g2) return E_FAIL;
  change = std::abs(g2.Value() - g1.Value());
  return S_OK;
}

// Radius is the parabola's length per unit of grade change (L / |g2 - g1|, grades as fractions);
// K its length per percent of grade change (L / (100 |g2 - g1|)). Both need a grade change.
class ParabolicPvi final : public PviFace<ParabolicPvi, IAeccProfilePVICurveParabolic> {
public:
  using AlsoAnswers = Interfaces<IAeccProfilePVI, IAeccProfilePVICurve>;
  using PviFace::PviFace;
  HRESULT STDMETHODCALLTYPE get_Radius(double* pVal) override { return PerChange(pVal, 1.0); }
  HRESULT STDMETHODCALLTYPE put_Radius(double Radius) override { return SetPerChange(Radius, 1.0); }
  HRESULT STDMETHODCALLTYPE get_K(double* pVal) override { return PerChange(pVal, 100.0); }
  HRESULT STDMETHODCALLTYPE put_K(double K) override { return SetPerChange(K, 100.0); }

private:
  HRESULT PerChange(double* out, double unit) {
    return Read(out, [&](const land::ProfileGeometry& g, const land::Pvi& p, int index) {
      double change = 0.0;
      if (HRESULT hr = GradeChange(g, index, change); FAILED(hr)) return hr;
      if (!(change > 0.0)) return E_FAIL;
      *out = p.curve.length / (unit * change);
      return S_OK;
    });
  }
  HRESULT SetPerChange(double value, double unit) {
    return ChangeCurve([&](const land::ProfileGeometry& g, int index, land::VerticalCurve& c) {
      double change = 0.0;
      if (HRESULT hr = GradeChange(g, index, change); FAILED(hr)) return hr;
      if (!(change > 0.0)) return E_FAIL;
      c.length = value * unit * change;
      return S_OK;
    });
  }
};

class AsymmetricPvi final : public PviFace<AsymmetricPvi, IAeccProfilePVICurveAsymmetric> {
public:
  using AlsoAnswers = Interfaces<IAeccProfilePVI, IAeccProfilePVICurve>;
  using PviFace::PviFace;
  HRESULT STDMETHODCALLTYPE get_VerticalLength1(double* pVal) override {
    return Read(pVal, [&](const land::ProfileGeometry&, const land::Pvi& p, int) {
      *pVal = p.curve.length1;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE put_VerticalLength1(double pVal) override {
    return ChangeCurve([&](const land::ProfileGeometry&, int, land::VerticalCurve& c) {
      c.length1 = pVal;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_VerticalLength2(double* pVal) override {
    return Read(pVal, [&](const land::ProfileGeometry&, const land::Pvi& p, int) {
      *pVal = p.curve.length2;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE put_VerticalLength2(double pVal) override {
    return ChangeCurve([&](const land::ProfileGeometry&, int, land::VerticalCurve& c) {
      c.length2 = pVal;
      return S_OK;
    });
  }
};

// The face's first interface is the curve interface of its kind: handing out As<IAeccProfilePVI>
// keeps the pointer on that vtable.
template <class Face>
HRESULT Hand(const std::shared_ptr<Document>& document, AcDbObjectId profile, int id, IAeccProfilePVI** out) {
  return Make<Face>(out, document, profile, id);
}

HRESULT MakePviFace(const std::shared_ptr<Document>& document, AcDbObjectId profile, const land::Pvi& pvi,
                    IAeccProfilePVI** out) {
  switch (pvi.curve.type) {
    case land::VerticalCurveType::None: return Hand<PlainPvi>(document, profile, pvi.id, out);
    case land::VerticalCurveType::Circular: return Hand<CircularPvi>(document, profile, pvi.id, out);
    case land::VerticalCurveType::SymmetricParabola: return Hand<ParabolicPvi>(document, profile, pvi.id, out);
    case land::VerticalCurveType::AsymmetricParabola: return Hand<AsymmetricPvi>(document, profile, pvi.id, out);
  }
  return E_FAIL;
}

// A VT_R8 parameter (anything that converts to one); an absent one is 0.
bool ReadParameter(const VARIANT& value, double& out) {
  out = 0.0;
  if (value.vt == VT_EMPTY || value.vt == VT_ERROR) return true;
  VARIANT number;
  VariantInit(&number);
  if (FAILED(VariantChangeType(&number, &value, 0, VT_R8))) return false;
  out = number.dblVal;
  return std::isfinite(out);
}

class Pvis final : public ComObject<Pvis, IAeccProfilePVIs> {
public:
  Pvis(std::shared_ptr<Document> document, AcDbObjectId profile) : document_(std::move(document)), profile_(profile) {}

  HRESULT STDMETHODCALLTYPE get_Count(LONG* pVal) override {
    return Read(pVal, [&](const land::ProfileGeometry& g) {
      *pVal = g.Count();
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE Item(LONG PVIindex, IAeccProfilePVI** pVal) override {
    if (pVal != nullptr) *pVal = nullptr;
    return Read(pVal, [&](const land::ProfileGeometry& g) {
      const land::Pvi* pvi = g.Item(PVIindex);
      if (pvi == nullptr) return E_INVALIDARG;
      return MakePviFace(document_, profile_, *pvi, pVal);
    });
  }
  // A PVI outside the alignment's stations, at the station of another (within 1e-6), or with a
  // curve parameter that is not positive: E_INVALIDARG.
  HRESULT STDMETHODCALLTYPE Add(double Station, double Elevation, AeccProfilePVICurveType CurveType, VARIANT Param1,
                                VARIANT Param2, IAeccProfilePVI** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    double p1 = 0.0;
    double p2 = 0.0;
    if (!ReadParameter(Param1, p1) || !ReadParameter(Param2, p2)) return E_INVALIDARG;
    land::VerticalCurve curve;
    switch (CurveType) {
      case aeccNoCurve: break;
      case aeccCircular: curve = land::VerticalCurve::Circular(p1); break;
      case aeccParabola: curve = land::VerticalCurve::Parabola(p1); break;
      case aeccAsymmetricParabola: curve = land::VerticalCurve::Asymmetric(p1, p2); break;
      default: return E_INVALIDARG;
    }
    return WithWrite<AeccDbProfile>(*document_, profile_, [&](AeccDbProfile& profile) {
      land::ProfileGeometry& g = *profile.geometryForWrite();
      const land::Outcome<int> added = g.AddPvi(Station, Elevation, curve, RangeOf(profile));
      if (!added) return ToHResult(added.Error());
      return MakePviFace(document_, profile_, *g.Item(g.IndexOfId(added.Value())), pVal);
    });
  }
  // By VT_I4 position, or by a PVI object of this profile.
  HRESULT STDMETHODCALLTYPE Remove(VARIANT pvi) override {
    const VARIANT* v = &pvi;
    while (v->vt == (VT_BYREF | VT_VARIANT) && v->pvarVal != nullptr) v = v->pvarVal;
    if (v->vt == VT_DISPATCH || v->vt == VT_UNKNOWN) {
      IUnknown* object = v->vt == VT_DISPATCH ? v->pdispVal : v->punkVal;
      CComPtr<IPviIdentity> identity;
      if (object == nullptr ||
          FAILED(object->QueryInterface(__uuidof(IPviIdentity), reinterpret_cast<void**>(&identity))) ||
          identity->ProfileOf() != profile_)
        return E_INVALIDARG;
      const int id = identity->PviIdOf();
      return Write([&](land::ProfileGeometry& g) { return ToHResult(g.RemovePvi(g.IndexOfId(id))); });
    }
    Key key;
    if (HRESULT hr = ReadKey(pvi, key); FAILED(hr) || key.byName) return E_INVALIDARG;
    return Write([&](land::ProfileGeometry& g) { return ToHResult(g.RemovePvi(key.index)); });
  }
  // The PVI nearest to the point (station, elevation); E_FAIL without PVIs.
  HRESULT STDMETHODCALLTYPE ItemAt(double Station, double Elevation, IAeccProfilePVI** pVal) override {
    if (pVal != nullptr) *pVal = nullptr;
    return Read(pVal, [&](const land::ProfileGeometry& g) {
      const int index = Nearest(g, Station, Elevation);
      if (index < 0) return E_FAIL;
      return MakePviFace(document_, profile_, *g.Item(index), pVal);
    });
  }
  HRESULT STDMETHODCALLTYPE RemoveAt(double Station, double Elevation) override {
    return Write([&](land::ProfileGeometry& g) {
      const int index = Nearest(g, Station, Elevation);
      if (index < 0) return E_FAIL;
      return ToHResult(g.RemovePvi(index));
    });
  }

private:
  static int Nearest(const land::ProfileGeometry& g, double station, double elevation) {
    if (!std::isfinite(station) || !std::isfinite(elevation)) return -1;
    int best = -1;
    double bestGap = 0.0;
    for (int i = 0; i < g.Count(); ++i) {
      const double gap = std::hypot(g.Item(i)->station - station, g.Item(i)->elevation - elevation);
      if (best < 0 || gap < bestGap) {
        best = i;
        bestGap = gap;
      }
    }
    return best;
  }
  template <class Out, class Body>
  HRESULT Read(Out* out, Body body) {
    if (out == nullptr) return E_POINTER;
    return WithRead<AeccDbProfile>(profile_, [&](const AeccDbProfile& p) { return body(p.geometry()); });
  }
  template <class Body>
  HRESULT Write(Body body) {
    return WithWrite<AeccDbProfile>(*document_, profile_,
                                    [&](AeccDbProfile& p) { return body(*p.geometryForWrite()); });
  }

  std::shared_ptr<Document> document_;
  AcDbObjectId profile_;
};

// The tangents and vertical curves the PVIs make, in station order: a grade line between
// neighbouring PVIs (shortened by the curves at its ends; left out where they use it up) and each
// curve that has an effect.
struct Span {
  double start;
  double end;
};

std::vector<Span> SpansOf(const land::ProfileGeometry& g) {
  std::vector<Span> spans;
  double from = g.Count() > 0 ? g.Item(0)->station : 0.0;
  for (int i = 1; i < g.Count(); ++i) {
    const land::Outcome<land::CurveExtent> curve = g.CurveAt(i);
    const double to = curve ? curve.Value().startStation : g.Item(i)->station;
    if (to > from) spans.push_back({from, to});
    if (curve) {
      spans.push_back({curve.Value().startStation, curve.Value().endStation});
      from = curve.Value().endStation;
    } else {
      from = g.Item(i)->station;
    }
  }
  return spans;
}

class ProfileEntity final : public ComObject<ProfileEntity, IAeccProfileEntity> {
public:
  explicit ProfileEntity(Span span) : span_(span) {}
  HRESULT STDMETHODCALLTYPE get_StartStation(double* pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = span_.start;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_EndStation(double* pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = span_.end;
    return S_OK;
  }

private:
  Span span_;
};

class ProfileEntities final : public ComObject<ProfileEntities, IAeccProfileEntities> {
public:
  ProfileEntities(std::shared_ptr<Document> document, AcDbObjectId profile)
      : document_(std::move(document)), profile_(profile) {}

  HRESULT STDMETHODCALLTYPE get_Count(LONG* pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = 0;
    Opened<AeccDbProfile> profile(profile_, AcDb::kForRead);
    if (!profile) return profile.Status();
    *pVal = static_cast<LONG>(SpansOf(profile->geometry()).size());
    return S_OK;
  }
  // A snapshot of the entity: its stations as they were when it was asked for.
  HRESULT STDMETHODCALLTYPE Item(LONG nIndex, IAeccProfileEntity** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    Opened<AeccDbProfile> profile(profile_, AcDb::kForRead);
    if (!profile) return profile.Status();
    const std::vector<Span> spans = SpansOf(profile->geometry());
    if (nIndex < 0 || nIndex >= static_cast<LONG>(spans.size())) return E_INVALIDARG;
    return Make<ProfileEntity>(pVal, spans[static_cast<size_t>(nIndex)]);
  }
  // Takes every PVI away: the profile is left empty.
  HRESULT STDMETHODCALLTYPE RemoveAll() override {
    return WithWrite<AeccDbProfile>(*document_, profile_, [](AeccDbProfile& p) {
      p.geometryForWrite()->RemoveAll();
      return S_OK;
    });
  }

private:
  std::shared_ptr<Document> document_;
  AcDbObjectId profile_;
};

}  // namespace

HRESULT MakeProfilePvis(const std::shared_ptr<Document>& document, AcDbObjectId profile, IAeccProfilePVIs** out) {
  return Make<Pvis>(out, document, profile);
}

HRESULT MakeProfileEntities(const std::shared_ptr<Document>& document, AcDbObjectId profile,
                            IAeccProfileEntities** out) {
  return Make<ProfileEntities>(out, document, profile);
}

}  // namespace headless::aecc
