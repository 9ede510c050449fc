// VariantChangeType: coercion between the fundamental VARIANT types, as oleaut32 does it, with
// text written and read in the invariant ("C") style whatever the process locale.
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "headless/ole/VarTypes.h"
#include "platform/ole/oleauto.h"

using headless::ole::IsValidVariantType;
using headless::ole::kVtRecord;

namespace {

constexpr DISPID kDispidValue = 0;
constexpr WORD kDispatchPropertyGet = 2;
constexpr LCID kLocaleUserDefault = 0x0400;
constexpr int kMaxDepth = 8;  // nested references and value properties

// DATE's range: 1 January 100 to 31 December 9999.
constexpr double kDateMin = -657434.0;
constexpr double kDateMaxExclusive = 2958466.0;

constexpr long long kCurrencyScale = 10000;

// A scalar source value, kept exact where the source type is exact.
struct Number {
  enum class Kind { Signed, Unsigned, Real, Currency } kind = Kind::Signed;
  long long i = 0;            // Signed, and Currency (scaled by 10000)
  unsigned long long u = 0;   // Unsigned
  double d = 0.0;             // Real
};

Number Signed(long long v) { Number n; n.kind = Number::Kind::Signed; n.i = v; return n; }
Number Unsigned(unsigned long long v) { Number n; n.kind = Number::Kind::Unsigned; n.u = v; return n; }
Number Real(double v) { Number n; n.kind = Number::Kind::Real; n.d = v; return n; }
Number Currency(long long scaled) { Number n; n.kind = Number::Kind::Currency; n.i = scaled; return n; }

bool IsSpace(OLECHAR c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }

// Strips the whitespace around a BSTR's text and narrows it to ASCII; false for other characters.
bool TrimmedAscii(BSTR text, std::string* out) {
  const UINT length = SysStringLen(text);
  UINT first = 0, last = length;
  while (first < last && IsSpace(text[first])) ++first;
  while (last > first && IsSpace(text[last - 1])) --last;
  out->clear();
  for (UINT i = first; i < last; ++i) {
    if (text[i] <= 0 || text[i] > 0x7F) return false;
    out->push_back(static_cast<char>(text[i]));
  }
  return true;
}

bool EqualsNoCase(const std::string& a, const char* b) {
  const std::size_t n = std::strlen(b);
  if (a.size() != n) return false;
  for (std::size_t i = 0; i < n; ++i) {
    char c = a[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != b[i]) return false;
  }
  return true;
}

// Parses [sign] digits [. digits] [e [sign] digits], or [sign] . digits...; integers stay exact.
HRESULT ParseNumber(BSTR text, Number* out) {
  std::string s;
  if (!TrimmedAscii(text, &s) || s.empty()) return DISP_E_TYPEMISMATCH;
  std::size_t pos = 0;
  const bool negative = s[pos] == '-';
  if (s[pos] == '+' || s[pos] == '-') ++pos;
  const std::size_t digitsStart = pos;
  std::size_t mantissaDigits = 0;
  while (pos < s.size() && s[pos] >= '0' && s[pos] <= '9') ++pos, ++mantissaDigits;
  const std::size_t integerEnd = pos;
  bool integral = true;
  if (pos < s.size() && s[pos] == '.') {
    integral = false;
    ++pos;
    while (pos < s.size() && s[pos] >= '0' && s[pos] <= '9') ++pos, ++mantissaDigits;
  }
  if (mantissaDigits == 0) return DISP_E_TYPEMISMATCH;
  if (pos < s.size() && (s[pos] == 'e' || s[pos] == 'E')) {
    integral = false;
    ++pos;
    if (pos < s.size() && (s[pos] == '+' || s[pos] == '-')) ++pos;
    std::size_t exponentDigits = 0;
    while (pos < s.size() && s[pos] >= '0' && s[pos] <= '9') ++pos, ++exponentDigits;
    if (exponentDigits == 0) return DISP_E_TYPEMISMATCH;
  }
  if (pos != s.size()) return DISP_E_TYPEMISMATCH;

  if (integral) {
    unsigned long long magnitude = 0;
    bool fits = true;
    for (std::size_t i = digitsStart; i < integerEnd && fits; ++i) {
      const unsigned digit = static_cast<unsigned>(s[i] - '0');
      fits = magnitude <= (std::numeric_limits<unsigned long long>::max() - digit) / 10;
      magnitude = magnitude * 10 + digit;
    }
    if (fits) {
      if (!negative) {
        *out = Unsigned(magnitude);
        return S_OK;
      }
      if (magnitude <= static_cast<unsigned long long>(std::numeric_limits<long long>::max()) + 1) {
        *out = Signed(magnitude == 0 ? 0 : -static_cast<long long>(magnitude - 1) - 1);
        return S_OK;
      }
    }
    // Too long for 64 bits: read as a real, which the range checks then refuse or accept.
  }
  double value = 0.0;
  const char* begin = s.data() + (s[0] == '+' ? 1 : 0);
  const auto [end, ec] = std::from_chars(begin, s.data() + s.size(), value);
  if (end != s.data() + s.size()) return DISP_E_TYPEMISMATCH;
  if (ec == std::errc::result_out_of_range) {
    // from_chars leaves value untouched here: tell overflow from underflow by the exponent sign.
    const std::size_t e = s.find_first_of("eE");
    const bool tiny = e != std::string::npos && s.find('-', e) != std::string::npos;
    value = tiny ? 0.0 : (negative ? -HUGE_VAL : HUGE_VAL);
  } else if (ec != std::errc()) {
    return DISP_E_TYPEMISMATCH;
  }
  *out = Real(value);
  return S_OK;
}

// Rounds half to even, as oleaut32 does for every real-to-integer coercion.
double RoundHalfEven(double x) {
  const double floor = std::floor(x);
  const double diff = x - floor;
  if (diff > 0.5) return floor + 1.0;
  if (diff < 0.5) return floor;
  return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1.0;
}

long long RoundCurrencyToInteger(long long scaled) {
  long long q = scaled / kCurrencyScale;
  long long r = scaled % kCurrencyScale;
  if (r < 0) { r += kCurrencyScale; --q; }  // floor division
  if (r > kCurrencyScale / 2 || (r == kCurrencyScale / 2 && (q & 1) != 0)) ++q;
  return q;
}

// Converts n to an integer within [lo, hi], or DISP_E_OVERFLOW.
HRESULT ToSigned(const Number& n, long long lo, long long hi, long long* out) {
  switch (n.kind) {
    case Number::Kind::Signed:
      if (n.i < lo || n.i > hi) return DISP_E_OVERFLOW;
      *out = n.i;
      return S_OK;
    case Number::Kind::Unsigned:
      if (n.u > static_cast<unsigned long long>(hi)) return DISP_E_OVERFLOW;
      *out = static_cast<long long>(n.u);
      return S_OK;
    case Number::Kind::Currency:
      return ToSigned(Signed(RoundCurrencyToInteger(n.i)), lo, hi, out);
    case Number::Kind::Real: {
      if (std::isnan(n.d)) return DISP_E_OVERFLOW;
      const double r = RoundHalfEven(n.d);
      // hi + 1 is a power of two for every target, so it is exact as a double.
      if (r < static_cast<double>(lo) || r >= static_cast<double>(hi) + 1.0) return DISP_E_OVERFLOW;
      *out = static_cast<long long>(r);
      return S_OK;
    }
  }
  return DISP_E_TYPEMISMATCH;
}

HRESULT ToUnsigned(const Number& n, unsigned long long hi, unsigned long long* out) {
  switch (n.kind) {
    case Number::Kind::Unsigned:
      if (n.u > hi) return DISP_E_OVERFLOW;
      *out = n.u;
      return S_OK;
    case Number::Kind::Signed:
      if (n.i < 0 || static_cast<unsigned long long>(n.i) > hi) return DISP_E_OVERFLOW;
      *out = static_cast<unsigned long long>(n.i);
      return S_OK;
    case Number::Kind::Currency:
      return ToUnsigned(Signed(RoundCurrencyToInteger(n.i)), hi, out);
    case Number::Kind::Real: {
      if (std::isnan(n.d)) return DISP_E_OVERFLOW;
      const double r = RoundHalfEven(n.d);
      if (r < 0.0 || r >= static_cast<double>(hi) + 1.0) return DISP_E_OVERFLOW;
      *out = static_cast<unsigned long long>(r);
      return S_OK;
    }
  }
  return DISP_E_TYPEMISMATCH;
}

double ToDouble(const Number& n) {
  switch (n.kind) {
    case Number::Kind::Signed: return static_cast<double>(n.i);
    case Number::Kind::Unsigned: return static_cast<double>(n.u);
    case Number::Kind::Real: return n.d;
    case Number::Kind::Currency: return static_cast<double>(n.i) / kCurrencyScale;
  }
  return 0.0;
}

bool IsZero(const Number& n) {
  switch (n.kind) {
    case Number::Kind::Signed: case Number::Kind::Currency: return n.i == 0;
    case Number::Kind::Unsigned: return n.u == 0;
    case Number::Kind::Real: return n.d == 0.0;
  }
  return true;
}

HRESULT ToCurrency(const Number& n, long long* out) {
  constexpr long long kMax = std::numeric_limits<long long>::max();
  switch (n.kind) {
    case Number::Kind::Currency:
      *out = n.i;
      return S_OK;
    case Number::Kind::Signed:
      if (n.i > kMax / kCurrencyScale || n.i < -(kMax / kCurrencyScale)) return DISP_E_OVERFLOW;
      *out = n.i * kCurrencyScale;
      return S_OK;
    case Number::Kind::Unsigned:
      if (n.u > static_cast<unsigned long long>(kMax / kCurrencyScale)) return DISP_E_OVERFLOW;
      *out = static_cast<long long>(n.u) * kCurrencyScale;
      return S_OK;
    case Number::Kind::Real: {
      if (std::isnan(n.d)) return DISP_E_OVERFLOW;
      const double scaled = RoundHalfEven(n.d * kCurrencyScale);
      if (scaled < -9223372036854775808.0 || scaled >= 9223372036854775808.0) return DISP_E_OVERFLOW;
      *out = static_cast<long long>(scaled);
      return S_OK;
    }
  }
  return DISP_E_TYPEMISMATCH;
}

std::wstring Widen(const char* begin, const char* end) { return std::wstring(begin, end); }

std::wstring Decimal(unsigned long long magnitude, bool negative) {
  wchar_t digits[24];
  wchar_t* p = digits + 24;
  do {
    *--p = static_cast<wchar_t>(L'0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude != 0);
  if (negative) *--p = L'-';
  return std::wstring(p, digits + 24);
}

std::wstring Decimal(long long value) {
  const unsigned long long magnitude =
      value < 0 ? static_cast<unsigned long long>(-(value + 1)) + 1 : static_cast<unsigned long long>(value);
  return Decimal(magnitude, value < 0);
}

// Reals as oleaut32 writes them: `digits` significant digits, shortest form, upper-case exponent.
std::wstring FormatReal(double value, int digits) {
  if (value == 0.0) return L"0";  // also for -0
  char buffer[64];
  const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits);
  if (ec != std::errc()) return L"0";
  for (char* p = buffer; p != end; ++p)
    if (*p >= 'a' && *p <= 'z') *p = static_cast<char>(*p - 'a' + 'A');
  return Widen(buffer, end);
}

std::wstring FormatCurrency(long long scaled) {
  const bool negative = scaled < 0;
  const unsigned long long magnitude =
      negative ? static_cast<unsigned long long>(-(scaled + 1)) + 1 : static_cast<unsigned long long>(scaled);
  std::wstring text = Decimal(magnitude / kCurrencyScale, false);
  unsigned long long fraction = magnitude % kCurrencyScale;
  if (fraction != 0) {
    std::wstring digits = Decimal(fraction, false);
    digits.insert(0, 4 - digits.size(), L'0');
    while (digits.back() == L'0') digits.pop_back();
    text += L'.';
    text += digits;
  }
  return negative ? L"-" + text : text;
}

HRESULT MakeBstr(const std::wstring& text, VARIANT* out) {
  out->bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (out->bstrVal == nullptr) return E_OUTOFMEMORY;
  out->vt = VT_BSTR;
  return S_OK;
}

HRESULT Convert(VARIANT* out, const VARIANT* src, USHORT flags, VARTYPE vt, int depth);

// An object's value: its default (DISPID_VALUE) property, unless the caller forbids asking.
HRESULT ValueProperty(const VARIANT* src, USHORT flags, VARTYPE vt, VARIANT* out, int depth) {
  if ((flags & VARIANT_NOVALUEPROP) || src->pdispVal == nullptr) return DISP_E_TYPEMISMATCH;
  DISPPARAMS none{nullptr, nullptr, 0, 0};
  VARIANT value;
  VariantInit(&value);
  HRESULT hr = src->pdispVal->Invoke(kDispidValue, GUID_NULL, kLocaleUserDefault, kDispatchPropertyGet,
                                     &none, &value, nullptr, nullptr);
  if (FAILED(hr)) {
    VariantClear(&value);
    return DISP_E_TYPEMISMATCH;
  }
  hr = Convert(out, &value, flags, vt, depth + 1);
  VariantClear(&value);
  return hr;
}

// The numeric value of a by-value scalar source.
HRESULT SourceNumber(const VARIANT* src, VARTYPE target, Number* n) {
  switch (src->vt) {
    case VT_EMPTY: *n = Signed(0); return S_OK;
    case VT_I1: *n = Signed(src->cVal); return S_OK;
    case VT_UI1: *n = Unsigned(src->bVal); return S_OK;
    case VT_I2: *n = Signed(src->iVal); return S_OK;
    case VT_UI2: *n = Unsigned(src->uiVal); return S_OK;
    case VT_I4: *n = Signed(src->lVal); return S_OK;
    case VT_UI4: *n = Unsigned(src->ulVal); return S_OK;
    case VT_INT: *n = Signed(src->intVal); return S_OK;
    case VT_UINT: *n = Unsigned(src->uintVal); return S_OK;
    case VT_I8: *n = Signed(src->llVal); return S_OK;
    case VT_UI8: *n = Unsigned(src->ullVal); return S_OK;
    case VT_BOOL: *n = Signed(src->boolVal); return S_OK;
    case VT_R4: *n = Real(src->fltVal); return S_OK;
    case VT_R8: *n = Real(src->dblVal); return S_OK;
    case VT_DATE: *n = Real(src->date); return S_OK;
    case VT_CY: *n = Currency(src->llVal); return S_OK;
    case VT_BSTR: {
      if (target == VT_BOOL) {
        std::string word;
        if (TrimmedAscii(src->bstrVal, &word)) {
          if (EqualsNoCase(word, "true")) { *n = Signed(VARIANT_TRUE); return S_OK; }
          if (EqualsNoCase(word, "false")) { *n = Signed(VARIANT_FALSE); return S_OK; }
        }
      }
      if (target == VT_DATE) return E_NOTIMPL;  // date text is not parsed here
      return ParseNumber(src->bstrVal, n);
    }
    case VT_DECIMAL: return E_NOTIMPL;
    default: return DISP_E_TYPEMISMATCH;  // VT_NULL, VT_ERROR, VT_UNKNOWN
  }
}

HRESULT ToText(const VARIANT* src, USHORT flags, VARIANT* out) {
  switch (src->vt) {
    case VT_EMPTY: return MakeBstr(L"", out);
    case VT_BOOL:
      if (flags & (VARIANT_ALPHABOOL | VARIANT_LOCALBOOL))
        return MakeBstr(src->boolVal ? L"True" : L"False", out);
      return MakeBstr(src->boolVal ? L"-1" : L"0", out);
    case VT_R4: return MakeBstr(FormatReal(src->fltVal, 7), out);
    case VT_R8: return MakeBstr(FormatReal(src->dblVal, 15), out);
    case VT_CY: return MakeBstr(FormatCurrency(src->llVal), out);
    case VT_DATE: case VT_DECIMAL: return E_NOTIMPL;
    default: break;
  }
  Number n;
  const HRESULT hr = SourceNumber(src, VT_BSTR, &n);
  if (FAILED(hr)) return hr;
  if (n.kind == Number::Kind::Signed) return MakeBstr(Decimal(n.i), out);
  if (n.kind == Number::Kind::Unsigned) return MakeBstr(Decimal(n.u, false), out);
  return DISP_E_TYPEMISMATCH;
}

HRESULT ToInterface(const VARIANT* src, VARTYPE vt, VARIANT* out) {
  if (src->vt != VT_DISPATCH && src->vt != VT_UNKNOWN) return DISP_E_TYPEMISMATCH;
  out->punkVal = nullptr;
  if (src->punkVal != nullptr) {
    const IID& iid = vt == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
    void* result = nullptr;
    const HRESULT hr = src->punkVal->QueryInterface(iid, &result);
    if (FAILED(hr)) return hr;
    out->punkVal = static_cast<IUnknown*>(result);
  }
  out->vt = vt;
  return S_OK;
}

HRESULT ToNumber(const VARIANT* src, VARTYPE vt, VARIANT* out) {
  Number n;
  HRESULT hr = SourceNumber(src, vt, &n);
  if (FAILED(hr)) return hr;
  long long s = 0;
  unsigned long long u = 0;
  switch (vt) {
    case VT_I1: hr = ToSigned(n, -128, 127, &s); out->cVal = static_cast<CHAR>(s); break;
    case VT_UI1: hr = ToUnsigned(n, 0xFF, &u); out->bVal = static_cast<BYTE>(u); break;
    case VT_I2: hr = ToSigned(n, -32768, 32767, &s); out->iVal = static_cast<SHORT>(s); break;
    case VT_UI2: hr = ToUnsigned(n, 0xFFFF, &u); out->uiVal = static_cast<USHORT>(u); break;
    case VT_I4: case VT_INT:
      hr = ToSigned(n, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max(), &s);
      out->lVal = static_cast<LONG>(s);
      break;
    case VT_UI4: case VT_UINT: hr = ToUnsigned(n, 0xFFFFFFFFull, &u); out->ulVal = static_cast<ULONG>(u); break;
    case VT_I8:
      hr = ToSigned(n, std::numeric_limits<long long>::min(), std::numeric_limits<long long>::max(), &s);
      out->llVal = s;
      break;
    case VT_UI8: hr = ToUnsigned(n, std::numeric_limits<unsigned long long>::max(), &u); out->ullVal = u; break;
    case VT_R8: out->dblVal = ToDouble(n); break;
    case VT_R4: {
      const double d = ToDouble(n);
      if (std::isfinite(d) && std::fabs(d) > FLT_MAX) hr = DISP_E_OVERFLOW;
      out->fltVal = static_cast<float>(d);
      break;
    }
    case VT_DATE: {
      const double d = ToDouble(n);
      if (!(d >= kDateMin && d < kDateMaxExclusive)) hr = DISP_E_OVERFLOW;
      out->date = d;
      break;
    }
    case VT_CY: hr = ToCurrency(n, &s); out->llVal = s; break;
    case VT_BOOL: out->boolVal = IsZero(n) ? VARIANT_FALSE : VARIANT_TRUE; break;
    default: return DISP_E_TYPEMISMATCH;
  }
  if (SUCCEEDED(hr)) out->vt = vt;
  return hr;
}

// Reads through a VT_BYREF source into a non-owning by-value view.
HRESULT Dereference(const VARIANT* src, VARIANT* view) {
  if (src->byref == nullptr) return E_INVALIDARG;
  VariantInit(view);
  const VARTYPE base = src->vt & static_cast<VARTYPE>(~VT_BYREF);
  view->vt = base;
  if (base & VT_ARRAY) {
    view->parray = *src->pparray;
    return S_OK;
  }
  switch (base) {
    case VT_I1: case VT_UI1: std::memcpy(&view->bVal, src->byref, 1); break;
    case VT_I2: case VT_UI2: case VT_BOOL: std::memcpy(&view->iVal, src->byref, 2); break;
    case VT_I4: case VT_UI4: case VT_INT: case VT_UINT: case VT_R4: case VT_ERROR:
      std::memcpy(&view->lVal, src->byref, 4);
      break;
    case VT_I8: case VT_UI8: case VT_R8: case VT_DATE: case VT_CY: std::memcpy(&view->llVal, src->byref, 8); break;
    case VT_BSTR: case VT_DISPATCH: case VT_UNKNOWN: std::memcpy(&view->byref, src->byref, sizeof(void*)); break;
    default: return E_NOTIMPL;  // VT_DECIMAL and VT_RECORD references
  }
  return S_OK;
}

// Builds into out (empty on entry) the value of src as type vt.
HRESULT Convert(VARIANT* out, const VARIANT* src, USHORT flags, VARTYPE vt, int depth) {
  if (depth > kMaxDepth) return DISP_E_TYPEMISMATCH;
  if (src->vt == vt) return VariantCopy(out, src);
  if (vt & VT_BYREF) return DISP_E_TYPEMISMATCH;
  if (src->vt & VT_BYREF) {
    if (src->vt == (VT_VARIANT | VT_BYREF)) {
      if (src->pvarVal == nullptr) return E_INVALIDARG;
      return Convert(out, src->pvarVal, flags, vt, depth + 1);
    }
    VARIANT view;
    const HRESULT hr = Dereference(src, &view);
    if (FAILED(hr)) return hr;
    return Convert(out, &view, flags, vt, depth + 1);
  }
  if ((src->vt | vt) & VT_ARRAY) {
    // Byte arrays to and from text exist on Windows but are not implemented here.
    if ((src->vt == (VT_ARRAY | VT_UI1) && vt == VT_BSTR) || (src->vt == VT_BSTR && vt == (VT_ARRAY | VT_UI1)))
      return E_NOTIMPL;
    return DISP_E_TYPEMISMATCH;  // arrays are never converted to other types
  }
  if (src->vt == kVtRecord || vt == kVtRecord) return E_NOTIMPL;
  if (src->vt == VT_DISPATCH && vt != VT_UNKNOWN) return ValueProperty(src, flags, vt, out, depth);

  switch (vt) {
    case VT_EMPTY:
      return S_OK;
    case VT_NULL:
      if (src->vt != VT_EMPTY) return DISP_E_TYPEMISMATCH;
      out->vt = VT_NULL;
      return S_OK;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return ToInterface(src, vt, out);
    case VT_BSTR:
      return ToText(src, flags, out);
    case VT_ERROR:
      return DISP_E_TYPEMISMATCH;
    case VT_DECIMAL:
      return E_NOTIMPL;
    default:
      return ToNumber(src, vt, out);
  }
}

}  // namespace

HRESULT VariantChangeType(VARIANTARG* pvargDest, const VARIANTARG* pvarSrc, USHORT wFlags, VARTYPE vt) {
  if (pvargDest == nullptr || pvarSrc == nullptr) return E_INVALIDARG;
  // VT_SAFEARRAY (27) and the other TYPEDESC-only types are not variant types: refused here.
  if (!IsValidVariantType(pvarSrc->vt) || !IsValidVariantType(vt)) return DISP_E_BADVARTYPE;
  VARIANT result;
  VariantInit(&result);
  HRESULT hr = Convert(&result, pvarSrc, wFlags, vt, 0);
  if (FAILED(hr)) {
    VariantClear(&result);
    return hr;  // the destination keeps its value
  }
  hr = VariantClear(pvargDest);  // after converting: the destination may be the source
  if (FAILED(hr)) {
    VariantClear(&result);
    return hr;
  }
  *pvargDest = result;
  return S_OK;
}
