#include <cwchar>
#include <string>

#include "TestObjects.h"
#include "platform/ole/atlbase.h"

namespace {

class VariantTest : public OleTest {};

VARIANT Bstr(const wchar_t* text) {
  VARIANT v;
  VariantInit(&v);
  v.vt = VT_BSTR;
  v.bstrVal = SysAllocString(text);
  return v;
}

TEST_F(VariantTest, ClearReleasesTheHeldInterfaceAndCopyAddsOne) {
  Square* square = headless::MakeComObject<Square>();
  VARIANT held;
  VariantInit(&held);
  held.vt = VT_DISPATCH;
  held.pdispVal = square->As<IDispatch>();  // takes over the creation reference

  VARIANT copy;
  VariantInit(&copy);
  ASSERT_EQ(VariantCopy(&copy, &held), S_OK);
  EXPECT_EQ(copy.pdispVal, held.pdispVal);
  EXPECT_EQ(RefCount(square->As<IDispatch>()), 2u);
  EXPECT_EQ(VariantClear(&held), S_OK);
  EXPECT_EQ(held.vt, VT_EMPTY);
  EXPECT_EQ(RefCount(copy.pdispVal), 1u);
  EXPECT_EQ(VariantClear(&copy), S_OK);  // the fixture checks the object is gone
}

TEST_F(VariantTest, CopiedBstrIsIndependentAndKeepsEmbeddedZeros) {
  const OLECHAR text[] = {L'a', L'\0', L'b'};
  VARIANT source;
  VariantInit(&source);
  source.vt = VT_BSTR;
  source.bstrVal = SysAllocStringLen(text, 3);
  VARIANT copy = Bstr(L"overwritten");  // VariantCopy frees what the destination held
  ASSERT_EQ(VariantCopy(&copy, &source), S_OK);
  EXPECT_NE(copy.bstrVal, source.bstrVal);
  EXPECT_EQ(SysStringLen(copy.bstrVal), 3u);
  source.bstrVal[2] = L'z';
  EXPECT_EQ(copy.bstrVal[2], L'b');
  VariantClear(&source);
  VariantClear(&copy);
}

TEST_F(VariantTest, ClearRefusesBadTypesAndLeavesReferencesAlone) {
  VARIANT v;
  VariantInit(&v);
  v.vt = 15;  // no such type
  EXPECT_EQ(VariantClear(&v), DISP_E_BADVARTYPE);
  EXPECT_EQ(v.vt, 15);
  v.vt = VT_SAFEARRAY;  // TYPEDESC-only
  EXPECT_EQ(VariantClear(&v), DISP_E_BADVARTYPE);

  BSTR owned = SysAllocString(L"kept");
  v.vt = VT_BSTR | VT_BYREF;
  v.pbstrVal = &owned;
  EXPECT_EQ(VariantClear(&v), S_OK);
  EXPECT_STREQ(owned, L"kept");
  SysFreeString(owned);

  v.vt = VT_ARRAY | VT_R8;
  v.parray = SafeArrayCreateVector(VT_R8, 0, 3);
  SafeArrayLock(v.parray);
  EXPECT_EQ(VariantClear(&v), DISP_E_ARRAYISLOCKED);
  SafeArrayUnlock(v.parray);
  EXPECT_EQ(VariantClear(&v), S_OK);
  EXPECT_EQ(VariantClear(nullptr), E_INVALIDARG);
  EXPECT_EQ(VariantCopy(&v, nullptr), E_INVALIDARG);
}

struct Coercion {
  const char* name;
  VARIANT (*make)();
  VARTYPE to;
  HRESULT expected;
  std::wstring text;  // the result as text, when expected succeeds
};

VARIANT I4(LONG n) { VARIANT v; VariantInit(&v); v.vt = VT_I4; v.lVal = n; return v; }
VARIANT R8(double d) { VARIANT v; VariantInit(&v); v.vt = VT_R8; v.dblVal = d; return v; }
VARIANT Bool(bool b) { VARIANT v; VariantInit(&v); v.vt = VT_BOOL; v.boolVal = b ? VARIANT_TRUE : VARIANT_FALSE; return v; }
VARIANT Empty() { VARIANT v; VariantInit(&v); return v; }

std::wstring AsText(const VARIANT& v) {
  VARIANT text;
  VariantInit(&text);
  if (FAILED(VariantChangeType(&text, &v, 0, VT_BSTR))) return L"<no text>";
  std::wstring s(text.bstrVal, SysStringLen(text.bstrVal));
  VariantClear(&text);
  return s;
}

class ChangeType : public ::testing::TestWithParam<Coercion> {};

TEST_P(ChangeType, GivesWindowsResult) {
  const Coercion& c = GetParam();
  VARIANT source = c.make();
  VARIANT result;
  VariantInit(&result);
  EXPECT_EQ(VariantChangeType(&result, &source, 0, c.to), c.expected);
  if (SUCCEEDED(c.expected)) {
    EXPECT_EQ(result.vt, c.to);
    EXPECT_EQ(AsText(result), c.text);
  } else {
    EXPECT_EQ(result.vt, VT_EMPTY);  // a failed coercion leaves the destination alone
  }
  VariantClear(&source);
  VariantClear(&result);
}

INSTANTIATE_TEST_SUITE_P(
    Coercions, ChangeType,
    ::testing::Values(
        Coercion{"I4ToText", [] { return I4(-42); }, VT_BSTR, S_OK, L"-42"},
        Coercion{"RealToText", [] { return R8(1.5); }, VT_BSTR, S_OK, L"1.5"},
        Coercion{"LargeRealToText", [] { return R8(1e20); }, VT_BSTR, S_OK, L"1E+20"},
        Coercion{"RealRoundsHalfToEvenDown", [] { return R8(2.5); }, VT_I4, S_OK, L"2"},
        Coercion{"RealRoundsHalfToEvenUp", [] { return R8(3.5); }, VT_I4, S_OK, L"4"},
        Coercion{"NegativeRealRounds", [] { return R8(-2.5); }, VT_I2, S_OK, L"-2"},
        Coercion{"TextWithSpacesToI4", [] { return Bstr(L" 12 "); }, VT_I4, S_OK, L"12"},
        Coercion{"ExponentTextToReal", [] { return Bstr(L"-1.25e3"); }, VT_R8, S_OK, L"-1250"},
        Coercion{"LongTextToI8Exactly", [] { return Bstr(L"9223372036854775807"); }, VT_I8, S_OK, L"9223372036854775807"},
        Coercion{"WordToBool", [] { return Bstr(L"True"); }, VT_BOOL, S_OK, L"-1"},
        Coercion{"TrueToNumber", [] { return Bool(true); }, VT_R8, S_OK, L"-1"},
        Coercion{"NumberToBool", [] { return I4(5); }, VT_BOOL, S_OK, L"-1"},
        Coercion{"ZeroToBool", [] { return R8(0.0); }, VT_BOOL, S_OK, L"0"},
        Coercion{"EmptyToNumber", Empty, VT_I4, S_OK, L"0"},
        Coercion{"EmptyToText", Empty, VT_BSTR, S_OK, L""},
        Coercion{"NotANumber", [] { return Bstr(L"12abc"); }, VT_I4, DISP_E_TYPEMISMATCH, L""},
        Coercion{"EmptyText", [] { return Bstr(L""); }, VT_R8, DISP_E_TYPEMISMATCH, L""},
        Coercion{"TextTooBigForI2", [] { return Bstr(L"70000"); }, VT_I2, DISP_E_OVERFLOW, L""},
        Coercion{"NegativeToUnsigned", [] { return I4(-1); }, VT_UI1, DISP_E_OVERFLOW, L""},
        Coercion{"RealTooBigForI4", [] { return R8(3e9); }, VT_I4, DISP_E_OVERFLOW, L""},
        Coercion{"RealTooBigForR4", [] { return R8(1e300); }, VT_R4, DISP_E_OVERFLOW, L""},
        Coercion{"NumberToNull", [] { return I4(1); }, VT_NULL, DISP_E_TYPEMISMATCH, L""},
        Coercion{"NumberToInterface", [] { return I4(1); }, VT_DISPATCH, DISP_E_TYPEMISMATCH, L""},
        Coercion{"ToSafeArrayType", Empty, VT_SAFEARRAY, DISP_E_BADVARTYPE, L""},
        Coercion{"ToUnknownType", Empty, 15, DISP_E_BADVARTYPE, L""}),
    [](const ::testing::TestParamInfo<Coercion>& info) { return info.param.name; });

TEST_F(VariantTest, InPlaceChangeFreesTheOldValue) {
  VARIANT v = Bstr(L"2.75");
  ASSERT_EQ(VariantChangeType(&v, &v, 0, VT_R8), S_OK);  // the BSTR is freed (ASan watches)
  EXPECT_EQ(v.vt, VT_R8);
  EXPECT_EQ(v.dblVal, 2.75);
  VARIANT text = Bstr(L"x");
  EXPECT_EQ(VariantChangeType(&text, &text, 0, VT_I4), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(text.vt, VT_BSTR);  // unchanged on failure
  EXPECT_STREQ(text.bstrVal, L"x");
  VariantClear(&text);

  LONG referenced = 9;
  VARIANT ref;
  VariantInit(&ref);
  ref.vt = VT_I4 | VT_BYREF;
  ref.plVal = &referenced;
  VARIANT value;
  VariantInit(&value);
  EXPECT_EQ(VariantChangeType(&value, &ref, 0, VT_R8), S_OK);
  EXPECT_EQ(value.dblVal, 9.0);
  EXPECT_EQ(VariantChangeType(&value, &ref, 0, VT_BSTR | VT_BYREF), DISP_E_TYPEMISMATCH);
}

// Windows refuses VT_SAFEARRAY (27) as a VARIANT type: the change fails and the variant stays
// empty; assigning the array through CComVariant then makes it VT_ARRAY | VT_R8.
TEST_F(VariantTest, ChangeToSafeArrayTypeFailsThenArrayAssignmentSetsTheType) {
  CComVariant point;
  EXPECT_EQ(point.ChangeType(VT_SAFEARRAY), DISP_E_BADVARTYPE);
  EXPECT_EQ(point.vt, VT_EMPTY);
  SAFEARRAY* xyz = SafeArrayCreateVector(VT_R8, 0, 3);
  static_cast<double*>(xyz->pvData)[2] = 7.5;
  point = xyz;
  EXPECT_EQ(point.vt, VT_ARRAY | VT_R8);
  EXPECT_NE(point.parray, xyz);  // CComVariant holds its own copy
  EXPECT_EQ(static_cast<double*>(point.parray->pvData)[2], 7.5);
  SafeArrayDestroy(xyz);
}

TEST_F(VariantTest, InterfaceChangesGoThroughQueryInterface) {
  Label* label = headless::MakeComObject<Label>();
  VARIANT unknown;
  VariantInit(&unknown);
  unknown.vt = VT_UNKNOWN;
  unknown.punkVal = label->As<IUnknown>();
  VARIANT disp;
  VariantInit(&disp);
  EXPECT_EQ(VariantChangeType(&disp, &unknown, 0, VT_DISPATCH), E_NOINTERFACE);  // no IDispatch

  Square* square = headless::MakeComObject<Square>();
  VARIANT shape;
  VariantInit(&shape);
  shape.vt = VT_DISPATCH;
  shape.pdispVal = square->As<IDispatch>();
  ASSERT_EQ(VariantChangeType(&disp, &shape, 0, VT_UNKNOWN), S_OK);
  EXPECT_EQ(disp.punkVal, square->As<IUnknown>());
  EXPECT_EQ(RefCount(disp.punkVal), 2u);
  // Without a value property (Invoke answers E_NOTIMPL) an object is no number.
  VARIANT number;
  VariantInit(&number);
  EXPECT_EQ(VariantChangeType(&number, &shape, 0, VT_I4), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(VariantChangeType(&number, &shape, VARIANT_NOVALUEPROP, VT_I4), DISP_E_TYPEMISMATCH);
  VariantClear(&disp);
  VariantClear(&shape);
  VariantClear(&unknown);
}

// An object's default property (DISPID_VALUE) is read when it must become a fundamental type.
class Gauge final : public headless::ComObject<Gauge, ITestShape> {
 public:
  LONG STDMETHODCALLTYPE Sides() override { return 0; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                   UINT*) override {
    if (id != 0 || flags != 2 || result == nullptr) return DISP_E_MEMBERNOTFOUND;
    result->vt = VT_R8;
    result->dblVal = 12.5;
    return S_OK;
  }
};

TEST_F(VariantTest, ObjectBecomesItsValueProperty) {
  VARIANT gauge;
  VariantInit(&gauge);
  gauge.vt = VT_DISPATCH;
  gauge.pdispVal = headless::MakeComObject<Gauge>()->As<IDispatch>();
  EXPECT_EQ(AsText(gauge), L"12.5");
  VARIANT number;
  VariantInit(&number);
  EXPECT_EQ(VariantChangeType(&number, &gauge, VARIANT_NOVALUEPROP, VT_R8), DISP_E_TYPEMISMATCH);
  VariantClear(&gauge);
}

}  // namespace
