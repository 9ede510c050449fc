// Alignment styles, alignment label style sets and profile styles: their faces and collections.
// A drawing has the standard template's styles from the first time anything asks for them.
#include "headless/aecc/LandFaces.h"

namespace headless::aecc {

namespace {

std::wstring StyleName(AcDbObjectId id) {
  const auto* style = AeccDbStyle::cast(AcDbImpDatabase::peek(id));
  return style == nullptr ? std::wstring() : style->name();
}

template <class I>
class Style final : public AcadObjectImpl<Style<I>, I> {
public:
  using AlsoAnswers = Interfaces<IAeccStyle, IAcadObject>;
  Style(std::shared_ptr<Document> document, AcDbObjectId id)
      : AcadObjectImpl<Style<I>, I>(std::move(document), id) {}

  HRESULT STDMETHODCALLTYPE get_Name(BSTR* pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    Opened<AeccDbStyle> style(this->objectId(), AcDb::kForRead);
    if (!style) return style.Status();
    return ToBstr(style->name(), pVal);
  }
  // Another style of the kind with the name (letter case ignored), or an empty name: E_INVALIDARG.
  HRESULT STDMETHODCALLTYPE put_Name(BSTR pVal) override {
    if (this->objectId().isErased()) return E_FAIL;
    if (HRESULT hr = faces::AutoLock(*this->document()); FAILED(hr)) return hr;
    return ToHResult(land_drawing::RenameStyle(this->objectId(), Text(pVal)));
  }
  HRESULT STDMETHODCALLTYPE get_Description(BSTR* pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    Opened<AeccDbStyle> style(this->objectId(), AcDb::kForRead);
    if (!style) return style.Status();
    return ToBstr(style->description(), pVal);
  }
  HRESULT STDMETHODCALLTYPE put_Description(BSTR pVal) override {
    return WithWrite<AeccDbStyle>(*this->document(), this->objectId(),
                                  [&](AeccDbStyle& style) { return ToHResult(style.setDescription(Text(pVal))); });
  }
};

template <class Collection, class ItemI, LandStyleKind kKind>
class Styles final : public ComObject<Styles<Collection, ItemI, kKind>, Collection> {
public:
  explicit Styles(std::shared_ptr<Document> document) : document_(std::move(document)) {}

  HRESULT STDMETHODCALLTYPE get_Count(LONG* pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = 0;
    std::vector<AcDbObjectId> ids;
    if (HRESULT hr = Listed(ids); FAILED(hr)) return hr;
    *pVal = static_cast<LONG>(ids.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Item(VARIANT Index, ItemI** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    Key key;
    if (HRESULT hr = ReadKey(Index, key); FAILED(hr)) return hr;
    std::vector<AcDbObjectId> ids;
    if (HRESULT hr = Listed(ids); FAILED(hr)) return hr;
    const AcDbObjectId id = Pick(ids, key, StyleName);
    if (id.isNull()) return E_INVALIDARG;
    return LandObjectFace(document_, id, pVal);
  }
  // A new style with nothing but its name.
  HRESULT STDMETHODCALLTYPE Add(BSTR Name, ItemI** pVal) override {
    if (pVal == nullptr) return E_POINTER;
    *pVal = nullptr;
    std::vector<AcDbObjectId> ids;
    if (HRESULT hr = Listed(ids); FAILED(hr)) return hr;
    if (HRESULT hr = faces::AutoLock(*document_); FAILED(hr)) return hr;
    AcDbObjectId id;
    if (HRESULT hr = ToHResult(land_drawing::AddStyle(document_->database(), kKind, Text(Name), id)); FAILED(hr))
      return hr;
    return LandObjectFace(document_, id, pVal);
  }
  // A style that an alignment or profile uses stays (E_FAIL), as Civil 3D keeps styles in use.
  HRESULT STDMETHODCALLTYPE Remove(VARIANT Index) override {
    Key key;
    if (HRESULT hr = ReadKey(Index, key); FAILED(hr)) return hr;
    std::vector<AcDbObjectId> ids;
    if (HRESULT hr = Listed(ids); FAILED(hr)) return hr;
    const AcDbObjectId id = Pick(ids, key, StyleName);
    if (id.isNull()) return E_INVALIDARG;
    if (land_drawing::StyleInUse(document_->database(), id)) return E_FAIL;
    return WithWrite<AeccDbStyle>(*document_, id, [](AeccDbStyle& style) { return ToHResult(style.erase()); });
  }

private:
  HRESULT Listed(std::vector<AcDbObjectId>& ids) const {
    land_drawing::Roots roots;
    if (HRESULT hr = LandRoots(*document_, roots); FAILED(hr)) return hr;
    ids = land_drawing::Styles(document_->database(), kKind);
    return S_OK;
  }

  std::shared_ptr<Document> document_;
};

}  // namespace

HRESULT MakeStyleFace(const std::shared_ptr<Document>& document, AcDbObjectId id, IDispatch** face) {
  const auto* style = AeccDbStyle::cast(AcDbImpDatabase::peek(id));
  if (style == nullptr) return E_FAIL;
  switch (style->kind()) {
    case LandStyleKind::Alignment: return Make<Style<IAeccAlignmentStyle>>(face, document, id);
    case LandStyleKind::AlignmentLabelSet: return Make<Style<IAeccAlignmentLabelStyleSet>>(face, document, id);
    case LandStyleKind::Profile: return Make<Style<IAeccProfileStyle>>(face, document, id);
  }
  return E_FAIL;
}

HRESULT MakeAlignmentStyles(const std::shared_ptr<Document>& document, IAeccAlignmentStyles** out) {
  return Make<Styles<IAeccAlignmentStyles, IAeccAlignmentStyle, LandStyleKind::Alignment>>(out, document);
}

HRESULT MakeAlignmentLabelSets(const std::shared_ptr<Document>& document, IAeccAlignmentLabelStyleSets** out) {
  return Make<Styles<IAeccAlignmentLabelStyleSets, IAeccAlignmentLabelStyleSet, LandStyleKind::AlignmentLabelSet>>(
      out, document);
}

HRESULT MakeProfileStyles(const std::shared_ptr<Document>& document, IAeccProfileStyles** out) {
  return Make<Styles<IAeccProfileStyles, IAeccProfileStyle, LandStyleKind::Profile>>(out, document);
}

}  // namespace headless::aecc
