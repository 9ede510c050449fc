#include "module/ids/KdId.h"

#include <algorithm>
#include <ostream>

#include "module/ids/KdIdStub.h"
#include "platform/ole/combaseapi.h"

const CKdId kKdFixedId1(L"{AEB86808-60E8-41F9-9B91-A991DDA2C001}");
const CKdId kKdFixedId2(L"{6A5AC8A7-16BE-4EEC-B29A-9D2E5860A907}");
const CKdId kKdFixedId3(L"{90CCD41A-BA5A-40C6-B47A-439BA9F9705B}");
const CKdId kKdFixedId4(L"{6F0B068E-5D68-4934-93F8-EA0D4A04B199}");

namespace {

IKdIdStub* g_installedGenerator = nullptr;

IKdIdStub& Generator() {
  if (g_installedGenerator != nullptr) return *g_installedGenerator;
  // Made on first use and never destroyed: identifiers may be made during static destruction.
  static IKdIdStub* const platform = new CKdIdWindows();
  return *platform;
}

// Case folding as the platform's case-insensitive comparison does it for identifier text: only
// ASCII letters fold, so the order does not depend on the locale.
wchar_t Fold(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

}  // namespace

CKdId::CKdId(bool makeNew) : m_text(Generator().NewId()) {
  if (!makeNew) m_text = kKdNullIdText;
}

CKdId::CKdId(const std::wstring& text) : m_text(text) {}

CKdId::CKdId(const wchar_t* text) : m_text(text != nullptr ? text : L"") {}

CKdId& CKdId::operator=(const std::wstring& text) {
  m_text = text;
  return *this;
}

CKdId& CKdId::operator=(const wchar_t* text) {
  m_text = text != nullptr ? text : L"";
  return *this;
}

bool CKdId::IsNull() const { return *this == CKdId(kKdNullIdText); }

GUID CKdId::ToGuid() const {
  CLSID guid{};
  if (FAILED(CLSIDFromString(m_text.c_str(), &guid))) return GUID_NULL;
  return guid;
}

ULONG CKdId::ToData1() const { return ToGuid().Data1; }

bool operator==(const CKdId& a, const CKdId& b) {
  return a.m_text.size() == b.m_text.size() &&
         std::equal(a.m_text.begin(), a.m_text.end(), b.m_text.begin(),
                    [](wchar_t x, wchar_t y) { return Fold(x) == Fold(y); });
}

std::weak_ordering operator<=>(const CKdId& a, const CKdId& b) {
  const std::size_t common = std::min(a.m_text.size(), b.m_text.size());
  for (std::size_t i = 0; i < common; ++i) {
    const wchar_t x = Fold(a.m_text[i]);
    const wchar_t y = Fold(b.m_text[i]);
    if (x != y) return x < y ? std::weak_ordering::less : std::weak_ordering::greater;
  }
  return a.m_text.size() <=> b.m_text.size();
}

IKdIdStub* CKdId::SetGenerator(IKdIdStub* generator) {
  IKdIdStub* previous = g_installedGenerator != nullptr ? g_installedGenerator : &Generator();
  g_installedGenerator = generator;
  return previous;
}

std::ostream& operator<<(std::ostream& out, const CKdId& id) {
  for (wchar_t c : id.Text()) out << (c >= 0x20 && c < 0x7f ? static_cast<char>(c) : '?');
  return out;
}

std::size_t std::hash<CKdId>::operator()(const CKdId& id) const noexcept {
  // FNV-1a over the folded text.
  std::size_t h = 14695981039346656037ull;
  for (wchar_t c : id.Text()) {
    h ^= static_cast<std::size_t>(Fold(c));
    h *= 1099511628211ull;
  }
  return h;
}

namespace kdid {

std::wstring WideFromUtf8(std::string_view utf8) {
  std::wstring wide;
  wide.reserve(utf8.size());
  auto put = [&wide](char32_t cp) {
    if constexpr (sizeof(wchar_t) == 2) {
      if (cp >= 0x10000) {
        cp -= 0x10000;
        wide.push_back(static_cast<wchar_t>(0xD800 + (cp >> 10)));
        wide.push_back(static_cast<wchar_t>(0xDC00 + (cp & 0x3FF)));
        return;
      }
    }
    wide.push_back(static_cast<wchar_t>(cp));
  };
  std::size_t i = 0;
  while (i < utf8.size()) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    int extra = 0;
    char32_t cp = 0;
    char32_t least = 0;
    if (lead < 0x80) {
      cp = lead;
    } else if ((lead & 0xE0) == 0xC0) {
      extra = 1;
      cp = lead & 0x1F;
      least = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
      extra = 2;
      cp = lead & 0x0F;
      least = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
      extra = 3;
      cp = lead & 0x07;
      least = 0x10000;
    } else {
      put(0xFFFD);
      ++i;
      continue;
    }
    std::size_t j = i + 1;
    for (; j < i + 1 + extra; ++j) {
      if (j >= utf8.size() || (static_cast<unsigned char>(utf8[j]) & 0xC0) != 0x80) break;
      cp = (cp << 6) | (static_cast<unsigned char>(utf8[j]) & 0x3F);
    }
    if (j != i + 1 + static_cast<std::size_t>(extra) || cp < least || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
      put(0xFFFD);
      i = j > i + 1 ? j : i + 1;
      continue;
    }
    put(cp);
    i = j;
  }
  return wide;
}

}  // namespace kdid
