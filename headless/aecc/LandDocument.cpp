// The land document and the land database: the faces of an AutoCAD document and of its drawing
// that answer Civil 3D's collections too. One document object per AutoCAD document answers
// IAcadDocument, IAcadDatabase, IAeccDocument and (while the roadway application can be made)
// IAeccRoadwayDocument; its Database answers IAeccDatabase. The roadway document's corridors are
// a real collection, empty until corridors are modelled.
#include "headless/acad/AcadApplication.h"
#include "headless/aecc/LandFaces.h"

namespace headless::aecc {

namespace {

// The collections a land document and its database both answer. The surface family answers
// E_NOTIMPL until surfaces are modelled here.
template <class Derived, class Base>
class LandCollections : public Base {
public:
  using Base::Base;

  HRESULT STDMETHODCALLTYPE get_Sites(IAeccSites** pVal) override { return MakeSites(Doc(), pVal); }
  HRESULT STDMETHODCALLTYPE get_AlignmentsSiteless(IAeccAlignmentsSiteless** pVal) override {
    return MakeSitelessAlignments(Doc(), pVal);
  }
  HRESULT STDMETHODCALLTYPE get_AlignmentStyles(IAeccAlignmentStyles** pVal) override {
    return MakeAlignmentStyles(Doc(), pVal);
  }
  HRESULT STDMETHODCALLTYPE get_AlignmentLabelStyleSets(IAeccAlignmentLabelStyleSets** pVal) override {
    return MakeAlignmentLabelSets(Doc(), pVal);
  }
  HRESULT STDMETHODCALLTYPE get_LandProfileStyles(IAeccProfileStyles** pVal) override {
    return MakeProfileStyles(Doc(), pVal);
  }
  HRESULT STDMETHODCALLTYPE get_Surfaces(IAeccSurfaces** pVal) override { return NotYet(pVal); }
  HRESULT STDMETHODCALLTYPE get_Points(IAeccPoints** pVal) override { return NotYet(pVal); }
  HRESULT STDMETHODCALLTYPE get_PointGroups(IAeccPointGroups** pVal) override { return NotYet(pVal); }
  HRESULT STDMETHODCALLTYPE get_PointStyles(IAeccPointStyles** pVal) override { return NotYet(pVal); }
  HRESULT STDMETHODCALLTYPE get_PointLabelStyles(IAeccLabelStyles** pVal) override { return NotYet(pVal); }

protected:
  const std::shared_ptr<Document>& Doc() const { return static_cast<const Derived*>(this)->document(); }
  template <class T>
  static HRESULT NotYet(T** pVal) {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    return E_NOTIMPL;
  }
};

bool RoadwayAvailable(const Document& document) {
  const DocumentManager* manager = document.Manager();
  const AcadApplication* app = manager == nullptr ? nullptr : manager->Application();
  return app != nullptr && app->Options().roadwayAvailable;
}

class LandDocument final
    : public LandCollections<LandDocument, AcadDocumentImpl<LandDocument, IAeccRoadwayDocument>> {
public:
  using AlsoAnswers = Interfaces<IAeccDocument, IAcadDocument, IAcadDatabase>;
  explicit LandDocument(std::shared_ptr<Document> document) : LandCollections(std::move(document)) {}

  // The roadway face of the document exists only where the roadway application does.
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppvObject) override {
    if (IsEqualIID(riid, __uuidof(IAeccRoadwayDocument)) && !RoadwayAvailable(*document())) {
      if (ppvObject != nullptr) *ppvObject = nullptr;
      return ppvObject == nullptr ? E_POINTER : E_NOINTERFACE;
    }
    return LandCollections::QueryInterface(riid, ppvObject);
  }

  HRESULT STDMETHODCALLTYPE get_SurfaceStyles(IAeccSurfaceStyles** pVal) override { return NotYet(pVal); }
  HRESULT STDMETHODCALLTYPE get_Corridors(IAeccCorridors** pVal) override { return MakeCorridors(document(), pVal); }
};

class LandDatabase final : public LandCollections<LandDatabase, AcadDatabaseImpl<LandDatabase, IAeccDatabase>> {
public:
  using AlsoAnswers = Interfaces<IAcadDatabase>;
  explicit LandDatabase(std::shared_ptr<Document> document) : LandCollections(std::move(document)) {}
};

// The corridors of the drawing; none can be made yet.
class Corridors final : public ComObject<Corridors, IAeccCorridors> {
public:
  explicit Corridors(std::shared_ptr<Document> document) : document_(std::move(document)) {}

  HRESULT STDMETHODCALLTYPE get_Count(LONG* pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Item(VARIANT Index, IAeccCorridor** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    Key key;
    if (HRESULT hr = ReadKey(Index, key); FAILED(hr)) return hr;
    return E_INVALIDARG;  // no corridor answers to any position or name
  }

private:
  std::shared_ptr<Document> document_;
};

}  // namespace

HRESULT MakeDocumentFace(const std::shared_ptr<Document>& document, IAcadDocument** face) {
  return Make<LandDocument>(face, document);
}

HRESULT MakeDatabaseFace(const std::shared_ptr<Document>& document, IAcadDatabase** face) {
  return Make<LandDatabase>(face, document);
}

HRESULT MakeCorridors(const std::shared_ptr<Document>& document, IAeccCorridors** out) {
  return Make<Corridors>(out, document);
}

}  // namespace headless::aecc
