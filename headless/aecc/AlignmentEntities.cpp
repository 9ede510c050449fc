// An alignment's entities (IAeccAlignmentEntities) and the faces of each entity: tangents, arcs,
// spirals and the spiral groups with their parts as sub-entities.
//
// A face names its entity by the alignment and the entity's id (and, for a part of a group, the
// part's place), and reads the alignment afresh at each call: a face whose entity was removed
// answers E_FAIL. A part of a group has no id of its own: it answers its group's id, neighbours
// and stations along the alignment.
#include "headless/aecc/LandFaces.h"

namespace headless::aecc {

namespace {

struct EntityRef {
  std::shared_ptr<Document> document;
  AcDbObjectId alignment;
  int entityId = 0;
  int part = -1;       // the curve within the entity; -1 for a group as a whole
  bool isPart = false; // the face stands for a part (a sub-entity), not the entity
};

// The entity (and curve) a reference names, with the alignment held open for the call.
class Resolved {
public:
  explicit Resolved(const EntityRef& ref) : alignment_(ref.alignment, AcDb::kForRead) {
    if (!alignment_) {
      status_ = alignment_.Status();
      return;
    }
    const land::AlignmentGeometry& g = alignment_->geometry();
    index_ = g.IndexOfId(ref.entityId);
    entity_ = g.Item(index_);
    if (entity_ == nullptr) return;  // removed since the face was made
    distance_ = g.StartDistance(index_);
    if (ref.part >= 0) {
      curve_ = entity_->SubEntity(ref.part);
      if (curve_ == nullptr) return;
      for (int i = 0; i < ref.part; ++i) distance_ += entity_->SubEntity(i)->Length();
    }
    status_ = S_OK;
  }
  HRESULT Status() const { return status_; }
  const land::AlignmentGeometry& Geometry() const { return alignment_->geometry(); }
  const land::AlignmentEntity& Entity() const { return *entity_; }
  const land::AlignmentCurve& Curve() const { return *curve_; }
  // From the alignment's start to the face's curve (or entity).
  double StartDistance() const { return distance_; }

private:
  Opened<AeccDbAlignment> alignment_;
  int index_ = -1;
  const land::AlignmentEntity* entity_ = nullptr;
  const land::AlignmentCurve* curve_ = nullptr;
  double distance_ = 0.0;
  HRESULT status_ = E_FAIL;
};

HRESULT MakeEntityFace(const EntityRef& ref, const land::AlignmentEntity& entity, REFIID riid, void** out);
HRESULT MakeCurveFace(const EntityRef& ref, land::CurveKind kind, REFIID riid, void** out);

AeccAlignmentEntityType TypeOf(land::CurveKind kind) {
  switch (kind) {
    case land::CurveKind::Tangent: return aeccTangent;
    case land::CurveKind::Arc: return aeccArc;
    case land::CurveKind::Spiral: return aeccSpiral;
  }
  return aeccTangent;
}

template <class Derived, class I>
class EntityFace : public ComObject<Derived, I> {
public:
  explicit EntityFace(EntityRef ref) : ref_(std::move(ref)) {}

  HRESULT STDMETHODCALLTYPE get_Type(AeccAlignmentEntityType* pVal) override {
    return Read(pVal, [&](const Resolved& r) {
      *pVal = ref_.isPart ? TypeOf(r.Curve().Kind()) : static_cast<AeccAlignmentEntityType>(r.Entity().Type());
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_Id(LONG* pVal) override {
    return Read(pVal, [&](const Resolved&) {
      *pVal = ref_.entityId;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_EntityBefore(LONG* pVal) override {
    return Read(pVal, [&](const Resolved& r) {
      *pVal = r.Geometry().EntityBefore(ref_.entityId);
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_EntityAfter(LONG* pVal) override {
    return Read(pVal, [&](const Resolved& r) {
      *pVal = r.Geometry().EntityAfter(ref_.entityId);
      return S_OK;
    });
  }
  // A simple entity has one sub-entity, its own curve; a group has its parts; a part has itself.
  HRESULT STDMETHODCALLTYPE get_SubEntityCount(LONG* pVal) override {
    return Read(pVal, [&](const Resolved& r) {
      *pVal = ref_.isPart ? 1 : r.Entity().SubEntityCount();
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE SubEntity(LONG lIndex, IAeccAlignmentEntity** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    Resolved r(ref_);
    if (FAILED(r.Status())) return r.Status();
    const LONG count = ref_.isPart ? 1 : r.Entity().SubEntityCount();
    if (lIndex < 0 || lIndex >= count) return E_INVALIDARG;
    EntityRef part = ref_;
    part.isPart = true;
    if (!ref_.isPart) part.part = static_cast<int>(lIndex);
    return MakeCurveFace(part, r.Entity().SubEntity(part.part)->Kind(), __uuidof(IAeccAlignmentEntity),
                         reinterpret_cast<void**>(pVal));
  }

protected:
  template <class Out, class Body>
  HRESULT Read(Out* out, Body body) {
    if (out == nullptr) return E_POINTER;
    Resolved r(ref_);
    if (FAILED(r.Status())) return r.Status();
    return body(r);
  }
  // A part of the group (for the group's own properties).
  template <class Part>
  HRESULT PartFace(int index, Part** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    Resolved r(ref_);
    if (FAILED(r.Status())) return r.Status();
    const land::AlignmentCurve* curve = r.Entity().SubEntity(index);
    if (curve == nullptr) return E_FAIL;
    EntityRef part = ref_;
    part.part = index;
    part.isPart = true;
    return MakeCurveFace(part, curve->Kind(), __uuidof(Part), reinterpret_cast<void**>(out));
  }

  EntityRef ref_;
};

// What tangents, arcs and spirals share (IAeccAlignmentCurve).
template <class Derived, class I>
class CurveFace : public EntityFace<Derived, I> {
public:
  using EntityFace<Derived, I>::EntityFace;

  HRESULT STDMETHODCALLTYPE get_Length(double* pVal) override { return Value(pVal, [](auto& r) { return r.Curve().Length(); }); }
  HRESULT STDMETHODCALLTYPE get_StartEasting(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Curve().StartPoint().x; });
  }
  HRESULT STDMETHODCALLTYPE get_StartNorthing(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Curve().StartPoint().y; });
  }
  HRESULT STDMETHODCALLTYPE get_EndEasting(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Curve().EndPoint().x; });
  }
  HRESULT STDMETHODCALLTYPE get_EndNorthing(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Curve().EndPoint().y; });
  }
  // Stations as labelled (station equations applied).
  HRESULT STDMETHODCALLTYPE get_StartingStation(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Geometry().StationAtDistance(r.StartDistance()); });
  }
  HRESULT STDMETHODCALLTYPE get_EndingStation(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Geometry().StationAtDistance(r.StartDistance() + r.Curve().Length()); });
  }

protected:
  template <class Get>
  HRESULT Value(double* out, Get get) {
    return this->Read(out, [&](const Resolved& r) {
      *out = get(r);
      return S_OK;
    });
  }
};

class Tangent final : public CurveFace<Tangent, IAeccAlignmentTangent> {
public:
  using AlsoAnswers = Interfaces<IAeccAlignmentCurve, IAeccAlignmentEntity>;
  using CurveFace::CurveFace;
  HRESULT STDMETHODCALLTYPE get_Direction(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Curve().StartDirection(); });
  }
};

class Arc final : public CurveFace<Arc, IAeccAlignmentArc> {
public:
  using AlsoAnswers = Interfaces<IAeccAlignmentCurve, IAeccAlignmentEntity>;
  using CurveFace::CurveFace;
  HRESULT STDMETHODCALLTYPE get_CenterEasting(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Curve().Centre().x; });
  }
  HRESULT STDMETHODCALLTYPE get_CenterNorthing(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Curve().Centre().y; });
  }
  HRESULT STDMETHODCALLTYPE get_Radius(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Curve().Radius(); });
  }
  HRESULT STDMETHODCALLTYPE get_Clockwise(VARIANT_BOOL* pVal) override {
    return Read(pVal, [&](const Resolved& r) {
      *pVal = r.Curve().Clockwise() ? VARIANT_TRUE : VARIANT_FALSE;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_Delta(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Curve().Delta(); });
  }
  HRESULT STDMETHODCALLTYPE get_StartDirection(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Curve().StartDirection(); });
  }
  HRESULT STDMETHODCALLTYPE get_EndDirection(double* pVal) override {
    return Value(pVal, [](auto& r) { return r.Curve().EndDirection(); });
  }
};

// An infinite radius (the tangent end of a spiral) reads as 0.
double RadiusOrZero(double radius) { return std::isfinite(radius) ? radius : 0.0; }

class Spiral final : public CurveFace<Spiral, IAeccAlignmentSpiral> {
public:
  using AlsoAnswers = Interfaces<IAeccAlignmentCurve, IAeccAlignmentEntity>;
  using CurveFace::CurveFace;
  HRESULT STDMETHODCALLTYPE get_RadiusIn(double* pVal) override {
    return Value(pVal, [](auto& r) { return RadiusOrZero(r.Curve().RadiusIn()); });
  }
  HRESULT STDMETHODCALLTYPE get_RadiusOut(double* pVal) override {
    return Value(pVal, [](auto& r) { return RadiusOrZero(r.Curve().RadiusOut()); });
  }
  HRESULT STDMETHODCALLTYPE get_A(double* pVal) override { return Value(pVal, [](auto& r) { return r.Curve().A(); }); }
  HRESULT STDMETHODCALLTYPE get_Direction(AeccAlignmentSpiralDirectionType* pVal) override {
    return Read(pVal, [&](const Resolved& r) {
      *pVal = r.Curve().Direction() == land::SpiralDirection::Left ? aeccAlignmentSpiralDirectionLeft
                                                                    : aeccAlignmentSpiralDirectionRight;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_SpiralType(AeccAlignmentSpiralType* pVal) override {
    return Read(pVal, [&](const Resolved&) {
      *pVal = aeccClothoid;
      return S_OK;
    });
  }
};

// The groups: each part through its own property, in the group's order.
#define KD_GROUP_PART(Name, Interface, Index) \
  HRESULT STDMETHODCALLTYPE get_##Name(Interface** pVal) override { return PartFace(Index, pVal); }
#define KD_GROUP(Class, Interface, ...)                                   \
  class Class final : public EntityFace<Class, Interface> {               \
  public:                                                                 \
    using AlsoAnswers = Interfaces<IAeccAlignmentEntity>;                 \
    using EntityFace::EntityFace;                                         \
    __VA_ARGS__                                                           \
  };

KD_GROUP(ScsGroup, IAeccAlignmentSCSGroup, KD_GROUP_PART(SpiralIn, IAeccAlignmentSpiral, 0)
             KD_GROUP_PART(Arc, IAeccAlignmentArc, 1) KD_GROUP_PART(SpiralOut, IAeccAlignmentSpiral, 2))
KD_GROUP(StsGroup, IAeccAlignmentSTSGroup, KD_GROUP_PART(SpiralIn, IAeccAlignmentSpiral, 0)
             KD_GROUP_PART(Tangent, IAeccAlignmentTangent, 1) KD_GROUP_PART(SpiralOut, IAeccAlignmentSpiral, 2))
KD_GROUP(StGroup, IAeccAlignmentSTGroup, KD_GROUP_PART(SpiralIn, IAeccAlignmentSpiral, 0)
             KD_GROUP_PART(TangentOut, IAeccAlignmentTangent, 1))
KD_GROUP(TsGroup, IAeccAlignmentTSGroup, KD_GROUP_PART(TangentIn, IAeccAlignmentTangent, 0)
             KD_GROUP_PART(SpiralOut, IAeccAlignmentSpiral, 1))
KD_GROUP(ScGroup, IAeccAlignmentSCGroup, KD_GROUP_PART(SpiralIn, IAeccAlignmentSpiral, 0)
             KD_GROUP_PART(ArcOut, IAeccAlignmentArc, 1))
KD_GROUP(CsGroup, IAeccAlignmentCSGroup, KD_GROUP_PART(ArcIn, IAeccAlignmentArc, 0)
             KD_GROUP_PART(SpiralOut, IAeccAlignmentSpiral, 1))
KD_GROUP(SscGroup, IAeccAlignmentSSCGroup, KD_GROUP_PART(Spiral1, IAeccAlignmentSpiral, 0)
             KD_GROUP_PART(Spiral2, IAeccAlignmentSpiral, 1) KD_GROUP_PART(Arc, IAeccAlignmentArc, 2))
KD_GROUP(CssGroup, IAeccAlignmentCSSGroup, KD_GROUP_PART(Arc, IAeccAlignmentArc, 0)
             KD_GROUP_PART(Spiral1, IAeccAlignmentSpiral, 1) KD_GROUP_PART(Spiral2, IAeccAlignmentSpiral, 2))
KD_GROUP(ScscsGroup, IAeccAlignmentSCSCSGroup, KD_GROUP_PART(Spiral1, IAeccAlignmentSpiral, 0)
             KD_GROUP_PART(Arc1, IAeccAlignmentArc, 1) KD_GROUP_PART(Spiral2, IAeccAlignmentSpiral, 2)
                 KD_GROUP_PART(Arc2, IAeccAlignmentArc, 3) KD_GROUP_PART(Spiral3, IAeccAlignmentSpiral, 4))
KD_GROUP(ScsscsGroup, IAeccAlignmentSCSSCSGroup, KD_GROUP_PART(Spiral1, IAeccAlignmentSpiral, 0)
             KD_GROUP_PART(Arc1, IAeccAlignmentArc, 1) KD_GROUP_PART(Spiral2, IAeccAlignmentSpiral, 2)
                 KD_GROUP_PART(Spiral3, IAeccAlignmentSpiral, 3) KD_GROUP_PART(Arc2, IAeccAlignmentArc, 4)
                     KD_GROUP_PART(Spiral4, IAeccAlignmentSpiral, 5))
KD_GROUP(SsGroup, IAeccAlignmentSSGroup, KD_GROUP_PART(Spiral1, IAeccAlignmentSpiral, 0)
             KD_GROUP_PART(Spiral2, IAeccAlignmentSpiral, 1))

#undef KD_GROUP
#undef KD_GROUP_PART

template <class Face>
HRESULT Answer(const EntityRef& ref, REFIID riid, void** out) {
  Face* face = MakeComObject<Face>(ref);
  if (face == nullptr) return E_OUTOFMEMORY;
  const HRESULT hr = face->QueryInterface(riid, out);
  face->Release();
  return hr;
}

HRESULT MakeCurveFace(const EntityRef& ref, land::CurveKind kind, REFIID riid, void** out) {
  switch (kind) {
    case land::CurveKind::Tangent: return Answer<Tangent>(ref, riid, out);
    case land::CurveKind::Arc: return Answer<Arc>(ref, riid, out);
    case land::CurveKind::Spiral: return Answer<Spiral>(ref, riid, out);
  }
  return E_FAIL;
}

HRESULT MakeEntityFace(const EntityRef& base, const land::AlignmentEntity& entity, REFIID riid, void** out) {
  EntityRef ref = base;
  ref.entityId = entity.Id();
  ref.isPart = false;
  ref.part = entity.IsGroup() ? -1 : 0;
  using T = land::AlignmentEntityType;
  switch (entity.Type()) {
    case T::Tangent:
    case T::Arc:
    case T::Spiral: return MakeCurveFace(ref, entity.SubEntity(0)->Kind(), riid, out);
    case T::SpiralCurveSpiral: return Answer<ScsGroup>(ref, riid, out);
    case T::SpiralTangentSpiral: return Answer<StsGroup>(ref, riid, out);
    case T::SpiralTangent: return Answer<StGroup>(ref, riid, out);
    case T::TangentSpiral: return Answer<TsGroup>(ref, riid, out);
    case T::SpiralCurve: return Answer<ScGroup>(ref, riid, out);
    case T::CurveSpiral: return Answer<CsGroup>(ref, riid, out);
    case T::SpiralSpiralCurve: return Answer<SscGroup>(ref, riid, out);
    case T::CurveSpiralSpiral: return Answer<CssGroup>(ref, riid, out);
    case T::SpiralCurveSpiralCurveSpiral: return Answer<ScscsGroup>(ref, riid, out);
    case T::SpiralCurveSpiralSpiralCurveSpiral: return Answer<ScsscsGroup>(ref, riid, out);
    case T::SpiralSpiral: return Answer<SsGroup>(ref, riid, out);
  }
  return E_FAIL;
}

bool ReadXy(const VARIANT& value, land::Point2& point) {
  std::vector<double> xyz;
  if (!ReadPoint(value, 3, 3, xyz)) return false;
  point = {xyz[0], xyz[1]};
  return true;
}

class Entities final : public ComObject<Entities, IAeccAlignmentEntities> {
public:
  Entities(std::shared_ptr<Document> document, AcDbObjectId alignment) : ref_{std::move(document), alignment} {}

  HRESULT STDMETHODCALLTYPE get_Count(LONG* pVal) override {
    return Read(pVal, [&](const land::AlignmentGeometry& g) {
      *pVal = g.Count();
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE Item(LONG Index, IAeccAlignmentEntity** pVal) override {
    if (pVal != nullptr) *pVal = nullptr;
    return Read(pVal, [&](const land::AlignmentGeometry& g) {
      const land::AlignmentEntity* entity = g.Item(Index);
      if (entity == nullptr) return E_INVALIDARG;
      return MakeEntityFace(ref_, *entity, __uuidof(IAeccAlignmentEntity), reinterpret_cast<void**>(pVal));
    });
  }
  HRESULT STDMETHODCALLTYPE RemoveAll() override {
    return Write([](land::AlignmentGeometry& g) {
      g.RemoveAll();
      return S_OK;
    });
  }
  // A fixed tangent appended at the end of the listing.
  HRESULT STDMETHODCALLTYPE AddFixedLine1(VARIANT StartPoint, VARIANT EndPoint, IAeccAlignmentTangent** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    land::Point2 start, end;
    if (!ReadXy(StartPoint, start) || !ReadXy(EndPoint, end)) return E_INVALIDARG;
    int id = 0;
    if (HRESULT hr = Write([&](land::AlignmentGeometry& g) {
          const land::Outcome<int> added = g.AddFixedLine(start, end);
          id = added.ValueOr(0);
          return ToHResult(added.Error());
        });
        FAILED(hr))
      return hr;
    return Face(id, pVal);
  }
  // A fixed arc through three points after the entity PreviousElementId (0: at the end).
  HRESULT STDMETHODCALLTYPE AddFixedCurve1(LONG PreviousElementId, VARIANT StartPoint, VARIANT MiddlePoint,
                                           VARIANT EndPoint, IAeccAlignmentArc** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    land::Point2 start, middle, end;
    if (!ReadXy(StartPoint, start) || !ReadXy(MiddlePoint, middle) || !ReadXy(EndPoint, end)) return E_INVALIDARG;
    int id = 0;
    if (HRESULT hr = Write([&](land::AlignmentGeometry& g) {
          const land::Outcome<int> added = g.AddFixedCurve(PreviousElementId, start, middle, end);
          id = added.ValueOr(0);
          return ToHResult(added.Error());
        });
        FAILED(hr))
      return hr;
    return Face(id, pVal);
  }
  HRESULT STDMETHODCALLTYPE get_FirstEntity(LONG* pVal) override {
    return Read(pVal, [&](const land::AlignmentGeometry& g) {
      *pVal = g.FirstEntityId();
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_LastEntity(LONG* pVal) override {
    return Read(pVal, [&](const land::AlignmentGeometry& g) {
      *pVal = g.LastEntityId();
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE EntityAtId(LONG EntityId, IAeccAlignmentEntity** pVal) override {
    if (pVal != nullptr) *pVal = nullptr;
    return Read(pVal, [&](const land::AlignmentGeometry& g) {
      const land::AlignmentEntity* entity = g.EntityAtId(EntityId);
      if (entity == nullptr) return E_INVALIDARG;
      return MakeEntityFace(ref_, *entity, __uuidof(IAeccAlignmentEntity), reinterpret_cast<void**>(pVal));
    });
  }

private:
  template <class Out, class Body>
  HRESULT Read(Out* out, Body body) {
    if (out == nullptr) return E_POINTER;
    return WithRead<AeccDbAlignment>(ref_.alignment, [&](const AeccDbAlignment& a) { return body(a.geometry()); });
  }
  template <class Body>
  HRESULT Write(Body body) {
    return WithWrite<AeccDbAlignment>(*ref_.document, ref_.alignment,
                                      [&](AeccDbAlignment& a) { return body(*a.geometryForWrite()); });
  }
  template <class I>
  HRESULT Face(int id, I** out) {
    return Read(out, [&](const land::AlignmentGeometry& g) {
      return MakeEntityFace(ref_, *g.EntityAtId(id), __uuidof(I), reinterpret_cast<void**>(out));
    });
  }

  EntityRef ref_;
};

}  // namespace

HRESULT MakeAlignmentEntities(const std::shared_ptr<Document>& document, AcDbObjectId alignment,
                              IAeccAlignmentEntities** out) {
  return Make<Entities>(out, document, alignment);
}

}  // namespace headless::aecc
