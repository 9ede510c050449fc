// Profiles: an alignment's profile collection (IAeccProfiles) and the profile's face
// (IAeccProfile). A profile is a drawing entity linked to its alignment; its vertical geometry is
// the land model's ProfileGeometry, reached through PVIs (ProfilePvis.cpp).
#include <type_traits>

#include "headless/aecc/LandFaces.h"

namespace headless::aecc {

namespace {

std::wstring ProfileName(AcDbObjectId id) {
  const auto* profile = AeccDbProfile::cast(AcDbImpDatabase::peek(id));
  return profile == nullptr ? std::wstring() : profile->name();
}

bool KnownType(AeccProfileType type) { return type >= aeccExistingGround && type <= aeccSuperimposed; }

class Profile final : public AcadEntityImpl<Profile, IAeccProfile> {
public:
  using AlsoAnswers = Interfaces<IAeccEntity, IAcadEntity, IAcadObject>;
  Profile(std::shared_ptr<Document> document, AcDbObjectId id) : AcadEntityImpl(std::move(document), id) {}

  HRESULT STDMETHODCALLTYPE get_Name(BSTR* pVal) override {
    return Read(pVal, [&](const AeccDbProfile& p) { return ToBstr(p.name(), pVal); });
  }
  // Unique among the profiles of its alignment, letter case ignored.
  HRESULT STDMETHODCALLTYPE put_Name(BSTR pVal) override {
    const std::wstring name = Text(pVal);
    if (name.empty()) return E_INVALIDARG;
    return Write([&](AeccDbProfile& p) {
      if (land_drawing::ProfileNameTaken(p.alignmentId(), name, objectId())) return E_INVALIDARG;
      return ToHResult(p.setName(name));
    });
  }
  HRESULT STDMETHODCALLTYPE get_Description(BSTR* pVal) override {
    return Read(pVal, [&](const AeccDbProfile& p) { return ToBstr(p.description(), pVal); });
  }
  HRESULT STDMETHODCALLTYPE put_Description(BSTR pVal) override {
    return Write([&](AeccDbProfile& p) { return ToHResult(p.setDescription(Text(pVal))); });
  }

  HRESULT STDMETHODCALLTYPE get_Alignment(IAeccAlignment** pVal) override {
    if (pVal != nullptr) *pVal = nullptr;
    return Read(pVal, [&](const AeccDbProfile& p) { return LandObjectFace(document(), p.alignmentId(), pVal); });
  }
  HRESULT STDMETHODCALLTYPE get_PVIs(IAeccProfilePVIs** pVal) override {
    if (pVal != nullptr) *pVal = nullptr;
    return Read(pVal, [&](const AeccDbProfile&) { return MakeProfilePvis(document(), objectId(), pVal); });
  }
  HRESULT STDMETHODCALLTYPE get_Entities(IAeccProfileEntities** pVal) override {
    if (pVal != nullptr) *pVal = nullptr;
    return Read(pVal, [&](const AeccDbProfile&) { return MakeProfileEntities(document(), objectId(), pVal); });
  }
  // The first and last PVI's stations; E_FAIL for a profile without PVIs.
  HRESULT STDMETHODCALLTYPE get_StartingStation(double* pVal) override {
    return Read(pVal, [&](const AeccDbProfile& p) { return Set(pVal, p.geometry().StartingStation()); });
  }
  HRESULT STDMETHODCALLTYPE get_EndingStation(double* pVal) override {
    return Read(pVal, [&](const AeccDbProfile& p) { return Set(pVal, p.geometry().EndingStation()); });
  }
  // E_INVALIDARG outside the profile's stations and within the reach of a curve that does not
  // fit between its neighbours; E_FAIL for a profile without PVIs.
  HRESULT STDMETHODCALLTYPE ElevationAt(double Station, double* pVal) override {
    return Read(pVal, [&](const AeccDbProfile& p) { return Set(pVal, p.geometry().ElevationAt(Station)); });
  }
  HRESULT STDMETHODCALLTYPE get_Type(AeccProfileType* pVal) override {
    return Read(pVal, [&](const AeccDbProfile& p) {
      *pVal = static_cast<AeccProfileType>(p.geometry().Type());
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE put_Type(AeccProfileType pVal) override {
    if (!KnownType(pVal)) return E_INVALIDARG;
    return Write([&](AeccDbProfile& p) {
      p.geometryForWrite()->SetType(static_cast<land::ProfileType>(pVal));
      return S_OK;
    });
  }

private:
  static HRESULT Set(double* out, const land::Outcome<double>& value) {
    if (!value) return ToHResult(value.Error());
    *out = value.Value();
    return S_OK;
  }
  template <class Out, class Body>
  HRESULT Read(Out* out, Body body) {
    if (out == nullptr) return E_POINTER;
    if constexpr (std::is_same_v<Out, BSTR>) *out = nullptr;
    return WithRead<AeccDbProfile>(objectId(), body);
  }
  template <class Body>
  HRESULT Write(Body body) {
    return WithWrite<AeccDbProfile>(*document(), objectId(), body);
  }
};

class Profiles final : public ComObject<Profiles, IAeccProfiles> {
public:
  Profiles(std::shared_ptr<Document> document, AcDbObjectId alignment)
      : document_(std::move(document)), alignment_(alignment) {}

  HRESULT STDMETHODCALLTYPE get_Count(LONG* pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = 0;
    if (!AlignmentLives()) return E_FAIL;
    *pVal = static_cast<LONG>(land_drawing::Profiles(alignment_).size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Item(VARIANT Index, IAeccProfile** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    Key key;
    if (HRESULT hr = ReadKey(Index, key); FAILED(hr)) return hr;
    if (!AlignmentLives()) return E_FAIL;
    const AcDbObjectId id = Pick(land_drawing::Profiles(alignment_), key, ProfileName);
    if (id.isNull()) return E_INVALIDARG;
    return LandObjectFace(document_, id, pVal);
  }
  // A new profile without PVIs, on the alignment's layer. An empty or taken name, a type outside
  // 1..3 or an unknown style: E_INVALIDARG.
  HRESULT STDMETHODCALLTYPE Add(BSTR Name, AeccProfileType ProfileType, VARIANT ProfileStyle,
                                IAeccProfile** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    if (!AlignmentLives()) return E_FAIL;
    land_drawing::Roots roots;
    if (HRESULT hr = LandRoots(*document_, roots); FAILED(hr)) return hr;
    land_drawing::NewProfile request;
    request.name = Text(Name);
    request.style = StyleFromVariant(document_->database(), LandStyleKind::Profile, ProfileStyle);
    if (request.name.empty() || !KnownType(ProfileType) || request.style.isNull()) return E_INVALIDARG;
    if (land_drawing::ProfileNameTaken(alignment_, request.name)) return E_INVALIDARG;
    request.type = static_cast<land::ProfileType>(ProfileType);
    if (HRESULT hr = faces::AutoLock(*document_); FAILED(hr)) return hr;
    AcDbObjectId id;
    if (HRESULT hr = ToHResult(land_drawing::AddProfile(alignment_, request, id)); FAILED(hr)) return hr;
    return LandObjectFace(document_, id, pVal);
  }
  // Erases the profile.
  HRESULT STDMETHODCALLTYPE Remove(VARIANT Name) override {
    Key key;
    if (HRESULT hr = ReadKey(Name, key); FAILED(hr)) return hr;
    if (!AlignmentLives()) return E_FAIL;
    const AcDbObjectId id = Pick(land_drawing::Profiles(alignment_), key, ProfileName);
    if (id.isNull()) return E_INVALIDARG;
    return WithWrite<AeccDbProfile>(*document_, id, [](AeccDbProfile& p) { return ToHResult(p.erase()); });
  }

private:
  bool AlignmentLives() const { return alignment_.isValid() && !alignment_.isErased(); }

  std::shared_ptr<Document> document_;
  AcDbObjectId alignment_;
};

}  // namespace

HRESULT MakeProfileFace(const std::shared_ptr<Document>& document, AcDbObjectId id, IDispatch** face) {
  return Make<Profile>(face, document, id);
}

HRESULT MakeProfiles(const std::shared_ptr<Document>& document, AcDbObjectId alignment, IAeccProfiles** out) {
  return Make<Profiles>(out, document, alignment);
}

}  // namespace headless::aecc
