// Sites and the alignment collections: the siteless alignments of a document and the alignments
// of each site. Collections list what the drawing holds at the time of each call.
#include "headless/aecc/LandFaces.h"

namespace headless::aecc {

namespace {

std::wstring AlignmentName(AcDbObjectId id) {
  const auto* alignment = AeccDbAlignment::cast(AcDbImpDatabase::peek(id));
  return alignment == nullptr ? std::wstring() : alignment->name();
}

std::wstring SiteName(AcDbObjectId id) {
  const auto* site = AeccDbSite::cast(AcDbImpDatabase::peek(id));
  return site == nullptr ? std::wstring() : site->name();
}

HRESULT EraseObject(Document& document, AcDbObjectId id) {
  if (HRESULT hr = faces::AutoLock(document); FAILED(hr)) return hr;
  AcDbObject* object = nullptr;
  const Acad::ErrorStatus es = acdbOpenAcDbObject(object, id, AcDb::kForWrite);
  if (es != Acad::eOk) return E_FAIL;
  const Acad::ErrorStatus erased = object->erase();
  object->close();
  return ToHResult(erased);
}

// The alignments of a site (IAeccAlignments) or the siteless ones (IAeccAlignmentsSiteless).
template <class I>
class Alignments final : public ComObject<Alignments<I>, I> {
public:
  Alignments(std::shared_ptr<Document> document, AcDbObjectId site) : document_(std::move(document)), site_(site) {}

  HRESULT STDMETHODCALLTYPE get_Count(LONG* pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = 0;
    if (!SiteLives()) return E_FAIL;
    *pVal = static_cast<LONG>(Listed().size());
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE Item(VARIANT Index, IAeccAlignment** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    Key key;
    if (HRESULT hr = ReadKey(Index, key); FAILED(hr)) return hr;
    if (!SiteLives()) return E_FAIL;
    const AcDbObjectId id = Pick(Listed(), key, AlignmentName);
    if (id.isNull()) return E_INVALIDARG;
    return LandObjectFace(document_, id, pVal);
  }

  // The style and label style set go by name or by object; an unknown one is refused. A layer
  // the drawing lacks is made.
  HRESULT STDMETHODCALLTYPE Add(BSTR Name, BSTR Layer, VARIANT AlignmentStyle, VARIANT AlignmentLabelStyleSet,
                                IAeccAlignment** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    if (!SiteLives()) return E_FAIL;
    land_drawing::Roots roots;
    if (HRESULT hr = LandRoots(*document_, roots); FAILED(hr)) return hr;
    AcDbDatabase* db = document_->database();
    land_drawing::NewAlignment request;
    request.name = Text(Name);
    request.layer = Text(Layer);
    request.site = site_;
    request.style = StyleFromVariant(db, LandStyleKind::Alignment, AlignmentStyle);
    request.labelSet = StyleFromVariant(db, LandStyleKind::AlignmentLabelSet, AlignmentLabelStyleSet);
    if (request.name.empty() || request.style.isNull() || request.labelSet.isNull()) return E_INVALIDARG;
    if (land_drawing::AlignmentNameTaken(db, request.name)) return E_INVALIDARG;
    if (HRESULT hr = faces::AutoLock(*document_); FAILED(hr)) return hr;
    AcDbObjectId id;
    if (HRESULT hr = ToHResult(land_drawing::AddAlignment(db, request, id)); FAILED(hr)) return hr;
    return LandObjectFace(document_, id, pVal);
  }

  // Erases the alignment (its profiles go with it).
  HRESULT STDMETHODCALLTYPE Remove(VARIANT Name) override {
    Key key;
    if (HRESULT hr = ReadKey(Name, key); FAILED(hr)) return hr;
    if (!SiteLives()) return E_FAIL;
    const AcDbObjectId id = Pick(Listed(), key, AlignmentName);
    if (id.isNull()) return E_INVALIDARG;
    return EraseObject(*document_, id);
  }

private:
  std::vector<AcDbObjectId> Listed() const { return land_drawing::Alignments(document_->database(), site_); }
  bool SiteLives() const { return site_.isNull() || (site_.isValid() && !site_.isErased()); }

  std::shared_ptr<Document> document_;
  AcDbObjectId site_;
};

class Site final : public AcadObjectImpl<Site, IAeccSite> {
public:
  using AlsoAnswers = Interfaces<IAcadObject>;
  Site(std::shared_ptr<Document> document, AcDbObjectId id) : AcadObjectImpl(std::move(document), id) {}

  HRESULT STDMETHODCALLTYPE get_Name(BSTR* pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    Opened<AeccDbSite> site(objectId(), AcDb::kForRead);
    if (!site) return site.Status();
    return ToBstr(site->name(), pVal);
  }
  HRESULT STDMETHODCALLTYPE put_Name(BSTR pVal) override {
    if (objectId().isErased()) return E_FAIL;
    if (HRESULT hr = faces::AutoLock(*document()); FAILED(hr)) return hr;
    return ToHResult(land_drawing::RenameSite(objectId(), Text(pVal)));
  }
  HRESULT STDMETHODCALLTYPE get_Alignments(IAeccAlignments** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    if (objectId().isErased() || !objectId().isValid()) return E_FAIL;
    return MakeSiteAlignments(document(), objectId(), pVal);
  }
};

class Sites final : public ComObject<Sites, IAeccSites> {
public:
  explicit Sites(std::shared_ptr<Document> document) : document_(std::move(document)) {}

  HRESULT STDMETHODCALLTYPE get_Count(LONG* pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = static_cast<LONG>(land_drawing::Sites(document_->database()).size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Item(VARIANT Index, IAeccSite** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    Key key;
    if (HRESULT hr = ReadKey(Index, key); FAILED(hr)) return hr;
    const AcDbObjectId id = Pick(land_drawing::Sites(document_->database()), key, SiteName);
    if (id.isNull()) return E_INVALIDARG;
    return LandObjectFace(document_, id, pVal);
  }
  HRESULT STDMETHODCALLTYPE Add(BSTR Name, IAeccSite** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    land_drawing::Roots roots;
    if (HRESULT hr = LandRoots(*document_, roots); FAILED(hr)) return hr;
    if (HRESULT hr = faces::AutoLock(*document_); FAILED(hr)) return hr;
    AcDbObjectId id;
    if (HRESULT hr = ToHResult(land_drawing::AddSite(document_->database(), Text(Name), id)); FAILED(hr)) return hr;
    return LandObjectFace(document_, id, pVal);
  }
  // Erases the site and the alignments in it.
  HRESULT STDMETHODCALLTYPE Remove(VARIANT Index) override {
    Key key;
    if (HRESULT hr = ReadKey(Index, key); FAILED(hr)) return hr;
    const AcDbObjectId id = Pick(land_drawing::Sites(document_->database()), key, SiteName);
    if (id.isNull()) return E_INVALIDARG;
    return EraseObject(*document_, id);
  }

private:
  std::shared_ptr<Document> document_;
};

}  // namespace

HRESULT MakeSites(const std::shared_ptr<Document>& document, IAeccSites** out) { return Make<Sites>(out, document); }

HRESULT MakeSitelessAlignments(const std::shared_ptr<Document>& document, IAeccAlignmentsSiteless** out) {
  return Make<Alignments<IAeccAlignmentsSiteless>>(out, document, AcDbObjectId::kNull);
}

HRESULT MakeSiteAlignments(const std::shared_ptr<Document>& document, AcDbObjectId site, IAeccAlignments** out) {
  return Make<Alignments<IAeccAlignments>>(out, document, site);
}

HRESULT MakeSiteFace(const std::shared_ptr<Document>& document, AcDbObjectId id, IDispatch** face) {
  return Make<Site>(face, document, id);
}

}  // namespace headless::aecc
