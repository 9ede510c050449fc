// Alignments of the active document and the style lists their creation draws on.
#include <cwchar>
#include <string>
#include <vector>

#include "module/civil/Civil3dAlignment.h"
#include "module/civil/Civil3dComHelpers.h"
#include "module/civil/Civil3dConstants.h"
#include "module/civil/Civil3dObject.h"

using namespace civil3d;

namespace {

struct Listed {
  std::vector<std::wstring> names;
  std::vector<long long> ids;
};

std::wstring Text(const CComBSTR& text) { return std::wstring(text.m_str ? text.m_str : L"", text.Length()); }

template <class Collection>
void CollectAlignments(Collection* alignments, Listed& listed) {
  if (alignments == nullptr) return;
  LONG count = 0;
  alignments->get_Count(&count);
  for (LONG i = 0; i < count; ++i) {
    CComPtr<IAeccAlignment> alignment;
    alignments->Item(IndexVariant(i), &alignment);
    if (alignment == nullptr) continue;
    CComBSTR name;
    LONG_PTR id = 0;
    alignment->get_Name(&name);
    alignment->get_ObjectID(&id);
    listed.names.push_back(Text(name));
    listed.ids.push_back(id);
  }
}

template <class Style, class Collection>
void CollectStyleNames(Collection* styles, Listed& listed) {
  if (styles == nullptr) return;
  LONG count = 0;
  styles->get_Count(&count);
  for (LONG i = 0; i < count; ++i) {
    CComPtr<Style> style;
    styles->Item(IndexVariant(i), &style);
    if (style == nullptr) continue;
    CComBSTR name;
    style->get_Name(&name);
    listed.names.push_back(Text(name));
  }
}

// The collected form: arrays sized by what was collected, allocated even when empty.
void CopyOut(const Listed& listed, wchar_t*** names, long long** ids, int* count) {
  *count = static_cast<int>(listed.names.size());
  *names = new wchar_t*[listed.names.size()];
  if (ids != nullptr) *ids = new long long[listed.ids.size()];
  for (size_t i = 0; i < listed.names.size(); ++i) {
    (*names)[i] = CopyName(listed.names[i].c_str(), static_cast<UINT>(listed.names[i].size()));
    if (ids != nullptr) (*ids)[i] = listed.ids[i];
  }
}

bool EqualsAscii(const wchar_t* text, const char* ascii) {
  for (; *text != L'\0' && *ascii != '\0'; ++text, ++ascii)
    if (*text != static_cast<wchar_t>(*ascii)) return false;
  return *text == L'\0' && *ascii == '\0';
}

// The first listed name, then any that is one of the two preferred names; the requested name
// would win only if the list held the caller's very pointer, which a fresh list never does.
std::wstring ChooseStyle(wchar_t** names, int count, const char* preferred, const wchar_t* requested,
                         const char* fallback) {
  std::wstring chosen;
  for (const char* c = preferred; *c != '\0'; ++c) chosen += static_cast<wchar_t>(*c);
  for (int i = 0; i < count; ++i) {
    const wchar_t* entry = names[i];
    if (entry == requested) return requested;
    if (i == 0 || EqualsAscii(entry, preferred) || EqualsAscii(entry, fallback)) chosen = entry;
  }
  return chosen;
}

CComVariant BstrVariant(const std::wstring& text) {
  CComVariant v;
  v.vt = VT_BSTR;
  v.bstrVal = SysAllocStringLen(text.c_str(), static_cast<UINT>(text.size()));
  return v;
}

}  // namespace

bool CCivil3dObject::ListAlignments(wchar_t*** names, long long** sessionIds, int* count) {
  CComPtr<IAeccDocument> document = GetLandDocument();
  if (document == nullptr) return false;
  CComPtr<IAeccDatabase> database = GetLandDatabase();
  if (database == nullptr || names == nullptr || sessionIds == nullptr || count == nullptr) return false;

  Listed listed;
  CComPtr<IAeccAlignmentsSiteless> siteless;
  document->get_AlignmentsSiteless(&siteless);
  CollectAlignments(siteless.p, listed);
  CComPtr<IAeccSites> sites;
  database->get_Sites(&sites);
  if (sites != nullptr) {
    LONG siteCount = 0;
    sites->get_Count(&siteCount);
    for (LONG s = 0; s < siteCount; ++s) {
      CComPtr<IAeccSite> site;
      sites->Item(IndexVariant(s), &site);
      if (site == nullptr) continue;
      CComPtr<IAeccAlignments> alignments;
      site->get_Alignments(&alignments);
      CollectAlignments(alignments.p, listed);
    }
  }
  CopyOut(listed, names, sessionIds, count);
  return true;
}

// Siteless alignments first, then each site's; the collections match names their own way.
ICivil3dAlignment* CCivil3dObject::GetAlignment(const wchar_t* name) {
  CComPtr<IAeccDocument> document = GetLandDocument();
  if (document == nullptr || name == nullptr) return nullptr;
  CComPtr<IAeccAlignment> alignment;
  CComPtr<IAeccAlignmentsSiteless> siteless;
  document->get_AlignmentsSiteless(&siteless);
  if (siteless != nullptr && siteless->Item(CComVariant(name), &alignment) >= 0 && alignment != nullptr)
    return new CCivil3dAlignment(alignment, this);

  CComPtr<IAeccSites> sites;
  document->get_Sites(&sites);
  if (sites == nullptr) return nullptr;
  LONG siteCount = 0;
  sites->get_Count(&siteCount);
  for (LONG s = 0; s < siteCount; ++s) {
    CComPtr<IAeccSite> site;
    sites->Item(IndexVariant(s), &site);
    if (site == nullptr) continue;
    CComPtr<IAeccAlignments> alignments;
    site->get_Alignments(&alignments);
    alignment.Release();
    if (alignments != nullptr && alignments->Item(CComVariant(name), &alignment) >= 0 && alignment != nullptr)
      return new CCivil3dAlignment(alignment, this);
  }
  return nullptr;
}

bool CCivil3dObject::CreateAlignment(const wchar_t* name, const wchar_t* description, const wchar_t* layer,
                                     const wchar_t* style, const wchar_t* labelStyleSet) {
  CComPtr<IAeccDocument> document = GetLandDocument();
  if (document == nullptr) return false;

  wchar_t** styles = nullptr;
  int styleCount = 0;
  if (!GetAlignmentStyleNames(&styles, &styleCount)) styleCount = 0;
  wchar_t** labelSets = nullptr;
  int labelSetCount = 0;
  if (!GetAlignmentLabelStyleSetNames(&labelSets, &labelSetCount)) labelSetCount = 0;
  const std::wstring chosenStyle =
      ChooseStyle(styles, styleCount, DEFAULT_ALINGMENT_STYLE_NAME, style, FAIL_SAFE_STYLE_NAME);
  const std::wstring chosenLabelSet =
      ChooseStyle(labelSets, labelSetCount, DEFAULT_LABEL_STYLE_SET_NAME, labelStyleSet, FAIL_SAFE_STYLE_NAME);
  FreeStrings(&styles, styleCount);
  FreeStrings(&labelSets, labelSetCount);

  CComPtr<IAeccAlignmentsSiteless> siteless;
  document->get_AlignmentsSiteless(&siteless);
  if (siteless == nullptr) return false;
  CComPtr<IAeccAlignment> alignment;
  const HRESULT hr = siteless->Add(CComBSTR(name), CComBSTR(layer), BstrVariant(chosenStyle),
                                   BstrVariant(chosenLabelSet), &alignment);
  if (alignment != nullptr) alignment->put_Description(CComBSTR(description));
  return hr >= 0 && alignment != nullptr;
}

// Only siteless alignments: a site's alignment is not found here.
bool CCivil3dObject::DeleteAlignment(const wchar_t* name) {
  CComPtr<IAeccDocument> document = GetLandDocument();
  if (document == nullptr) return false;
  CComPtr<IAeccAlignmentsSiteless> siteless;
  document->get_AlignmentsSiteless(&siteless);
  if (siteless == nullptr) return false;
  return siteless->Remove(CComVariant(name)) >= 0;
}

bool CCivil3dObject::GetAlignmentStyleNames(wchar_t*** names, int* count) {
  CComPtr<IAeccDocument> document = GetLandDocument();
  if (document == nullptr || names == nullptr || count == nullptr) return false;
  CComPtr<IAeccAlignmentStyles> styles;
  document->get_AlignmentStyles(&styles);
  Listed listed;
  CollectStyleNames<IAeccAlignmentStyle>(styles.p, listed);
  CopyOut(listed, names, nullptr, count);
  return true;
}

bool CCivil3dObject::GetAlignmentLabelStyleSetNames(wchar_t*** names, int* count) {
  CComPtr<IAeccDocument> document = GetLandDocument();
  if (document == nullptr || names == nullptr || count == nullptr) return false;
  CComPtr<IAeccAlignmentLabelStyleSets> sets;
  document->get_AlignmentLabelStyleSets(&sets);
  Listed listed;
  CollectStyleNames<IAeccAlignmentLabelStyleSet>(sets.p, listed);
  CopyOut(listed, names, nullptr, count);
  return true;
}
