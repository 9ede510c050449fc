#include "TestObjects.h"
#include "headless/ole/ClassRegistry.h"
#include "platform/ole/atlbase.h"
#include "platform/ole/atlsafe.h"
#include "platform/ole/atlstr.h"

namespace {

class AtlTest : public OleTest {};

TEST_F(AtlTest, CComPtrOwnsExactlyOneReference) {
  Square* square = headless::MakeComObject<Square>();
  {
    CComPtr<ITestSquare> first(square->As<ITestSquare>());
    EXPECT_EQ(RefCount(first), 2u);
    CComPtr<ITestSquare> second = first;
    EXPECT_EQ(RefCount(first), 3u);
    second.Release();
    EXPECT_TRUE(!second);
    EXPECT_EQ(RefCount(first), 2u);

    ITestSquare* raw = nullptr;
    EXPECT_EQ(first.CopyTo(&raw), S_OK);
    second.Attach(raw);  // takes over the reference CopyTo added
    EXPECT_EQ(RefCount(first), 3u);
    second.Detach()->Release();

    CComPtr<ITestNamed> named;
    EXPECT_EQ(first.QueryInterface(&named), S_OK);
    EXPECT_STREQ(named->Name(), L"square");
    EXPECT_TRUE(first.IsEqualObject(named));
    EXPECT_FALSE(first.IsEqualObject(nullptr));
    CComPtr<ITestMissing> missing;
    EXPECT_EQ(first.QueryInterface(&missing), E_NOINTERFACE);
    EXPECT_TRUE(!missing);
    CComPtr<ITestShape> shape;
    shape = first;  // ITestSquare derives ITestShape: a plain copy
    EXPECT_EQ(shape->Sides(), 4);
    CComPtr<ITestNamed> viaQuery;
    viaQuery = first;  // unrelated interfaces: QueryInterface
    EXPECT_EQ(viaQuery, named.p);
  }
  EXPECT_EQ(square->Release(), 0u);

  CComPtr<ITestNamed> empty;
  ITestShape* none = reinterpret_cast<ITestShape*>(1);
  EXPECT_EQ(empty.QueryInterface(&none), E_POINTER);  // no object: no crash
  EXPECT_EQ(none, nullptr);
}

TEST_F(AtlTest, CComQIPtrAsksForItsInterface) {
  CComPtr<ITestNamed> label;
  label.Attach(headless::MakeComObject<Label>()->As<ITestNamed>());
  CComQIPtr<ITestShape> notAShape(label);
  EXPECT_TRUE(!notAShape);
  CComQIPtr<ITestNamed> same(label);
  EXPECT_EQ(same, label.p);
  EXPECT_EQ(RefCount(label), 2u);

  CComPtr<ITestNamed> square;
  square.Attach(headless::MakeComObject<Square>()->As<ITestNamed>());
  CComQIPtr<ITestSquare> asSquare;
  asSquare = static_cast<IUnknown*>(square);
  ASSERT_TRUE(asSquare);
  EXPECT_EQ(asSquare->Sides(), 4);
  CComQIPtr<IUnknown> identity(static_cast<IUnknown*>(asSquare));
  EXPECT_TRUE(square.IsEqualObject(identity));
}

TEST_F(AtlTest, CComPtrCreatesRegisteredClassesByProgId) {
  const CLSID clsid{0x5a0c1e02, 0x7d2b, 0x4c3a, {0x9e, 0x10, 0x21, 0x32, 0x43, 0x54, 0x65, 0x77}};
  ASSERT_EQ(headless::RegisterComClass(clsid, L"KdTest.AtlSquare", headless::ComFactoryFor<Square>(5.0)), S_OK);
  {
    CComPtr<ITestSquare> square;
    EXPECT_EQ(square.CoCreateInstance(L"KdTest.AtlSquare"), S_OK);
    EXPECT_EQ(square->Side(), 5.0);
    CComPtr<ITestSquare> other;
    EXPECT_EQ(other.CoCreateInstance(clsid), S_OK);
    EXPECT_FALSE(square.IsEqualObject(other));
    CComPtr<ITestSquare> none;
    EXPECT_EQ(none.CoCreateInstance(L"KdTest.Nothing"), CO_E_CLASSSTRING);
  }
  headless::UnregisterComClass(clsid);
}

TEST_F(AtlTest, CComBstrCopiesAppendsAndCompares) {
  CComBSTR name(L"Ground");
  EXPECT_EQ(name.Length(), 6u);
  EXPECT_EQ(name.Append(L"_2"), S_OK);
  EXPECT_EQ(name.Append(L'!'), S_OK);
  EXPECT_TRUE(name == L"Ground_2!");
  CComBSTR copy(name);
  EXPECT_NE(copy.m_str, name.m_str);
  EXPECT_TRUE(copy == name);

  const OLECHAR zeros[] = {L'a', L'\0', L'b'};
  CComBSTR embedded(3, zeros);
  BSTR out = nullptr;
  EXPECT_EQ(embedded.CopyTo(&out), S_OK);
  EXPECT_EQ(SysStringLen(out), 3u);  // Copy keeps the whole length
  CComBSTR adopted;
  adopted.Attach(out);
  EXPECT_FALSE(adopted == CComBSTR(L"a"));
  SysFreeString(embedded.Detach());
  EXPECT_TRUE(!embedded);
  EXPECT_TRUE(embedded == CComBSTR(L""));  // null equals empty, as VarBstrCmp has it
  EXPECT_TRUE(embedded == nullptr);

  CComBSTR filled;
  *&filled = SysAllocString(L"out-parameter");
  EXPECT_EQ(filled.Length(), 13u);
  filled = filled.m_str + 4;  // assigning a tail of itself
  EXPECT_TRUE(filled == L"parameter");
  filled.Empty();
  EXPECT_EQ(filled.m_str, nullptr);
}

TEST_F(AtlTest, CComVariantHoldsAndReleasesWhatItIsGiven) {
  EXPECT_EQ(CComVariant(7).vt, VT_I4);
  EXPECT_EQ(CComVariant(7L).vt, VT_I4);  // `long` as Windows code means it
  EXPECT_EQ(CComVariant(1L << 40).vt, VT_I8);
  EXPECT_EQ(CComVariant(2.5).vt, VT_R8);
  CComVariant flag(true);
  EXPECT_EQ(flag.vt, VT_BOOL);
  EXPECT_EQ(flag.boolVal, VARIANT_TRUE);
  CComVariant text(L"abc");
  EXPECT_EQ(text.vt, VT_BSTR);
  EXPECT_STREQ(text.bstrVal, L"abc");

  Square* square = headless::MakeComObject<Square>();
  {
    CComVariant held(square->As<IDispatch>());
    EXPECT_EQ(held.vt, VT_DISPATCH);
    EXPECT_EQ(RefCount(square->As<IDispatch>()), 2u);
    CComVariant copy(held);
    EXPECT_EQ(RefCount(square->As<IDispatch>()), 3u);
    copy = 3.0;  // replacing the object releases it
    EXPECT_EQ(RefCount(square->As<IDispatch>()), 2u);
    VARIANT out;
    VariantInit(&out);
    EXPECT_EQ(held.Detach(&out), S_OK);
    EXPECT_EQ(held.vt, VT_EMPTY);
    EXPECT_EQ(held.Attach(&out), S_OK);
    EXPECT_EQ(out.vt, VT_EMPTY);
  }
  EXPECT_EQ(square->Release(), 0u);

  BSTR copied = nullptr;
  EXPECT_EQ(text.CopyTo(&copied), S_OK);
  EXPECT_STREQ(copied, L"abc");
  SysFreeString(copied);
  EXPECT_EQ(flag.CopyTo(&copied), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(flag.ChangeType(VT_BSTR), S_OK);
  EXPECT_STREQ(flag.bstrVal, L"-1");
  CComVariant number;
  EXPECT_EQ(number.ChangeType(VT_R8, &text), DISP_E_TYPEMISMATCH);
}

TEST_F(AtlTest, CComSafeArrayOfDoublesKeepsItsArrayLocked) {
  CComSafeArray<double> point(3);
  ASSERT_NE(point.m_psa, nullptr);
  EXPECT_EQ(point.m_psa->cLocks, 1u);
  EXPECT_EQ(point.GetType(), VT_R8);
  point[0] = 1.0;
  EXPECT_EQ(point.SetAt(2, 3.0), S_OK);
  EXPECT_EQ(point.SetAt(3, 4.0), DISP_E_BADINDEX);
  EXPECT_THROW(point.GetAt(-1), CAtlException);
  EXPECT_EQ(point.Add(4.0), S_OK);
  EXPECT_EQ(point.GetCount(), 4u);
  EXPECT_EQ(point.GetUpperBound(), 3);
  EXPECT_EQ(point[3], 4.0);

  CComVariant asVariant(point.m_psa);
  EXPECT_EQ(asVariant.vt, VT_ARRAY | VT_R8);
  LPSAFEARRAY detached = point.Detach();
  EXPECT_EQ(detached->cLocks, 0u);
  EXPECT_EQ(SafeArrayDestroy(detached), S_OK);
  EXPECT_EQ(point.GetCount(), 0u);
  EXPECT_THROW(point.GetLowerBound(), CAtlException);
}

TEST_F(AtlTest, CComSafeArrayOfBstrAssignsWithCComBstrSemantics) {
  // As an automation call would hand it over: a VARIANT holding an array of names.
  CComVariant listed;
  listed.vt = VT_ARRAY | VT_BSTR;
  listed.parray = SafeArrayCreateVector(VT_BSTR, 0, 2);
  CComSafeArray<BSTR> names;
  ASSERT_EQ(names.Attach(listed.parray), S_OK);
  listed.vt = VT_EMPTY;  // the wrapper owns it now
  names[0] = L"acad.dbx";
  names[1] = L"AecBase.dbx";
  names[0] = L"replaced";  // frees the previous element
  EXPECT_EQ(names[1].Length(), 11u);
  EXPECT_EQ(CString(names[1]).CompareNoCase(L"AECBASE.DBX"), 0);
  LONG index = 0;
  BSTR out = nullptr;
  EXPECT_EQ(names.MultiDimGetAt(&index, out), S_OK);
  EXPECT_STREQ(out, L"replaced");
  SysFreeString(out);

  CComSafeArray<LONG> wrongType;
  EXPECT_EQ(wrongType.Attach(names), E_INVALIDARG);
}

TEST_F(AtlTest, CComSafeArrayOfInterfacesAndVariantsReleasesOnDestruction) {
  Square* square = headless::MakeComObject<Square>();
  {
    CComSafeArray<IDispatch*> entities;
    EXPECT_EQ(entities.Add(square->As<IDispatch>()), S_OK);
    EXPECT_EQ(RefCount(square->As<IDispatch>()), 2u);
    EXPECT_EQ(entities.GetType(), VT_DISPATCH);
    CComSafeArray<IDispatch*> copy(entities);
    EXPECT_EQ(RefCount(square->As<IDispatch>()), 3u);
    copy[0] = nullptr;  // CComPtr semantics: releases
    EXPECT_EQ(RefCount(square->As<IDispatch>()), 2u);

    SAFEARRAYBOUND grid[2] = {{2, 0}, {3, 0}};
    CComSafeArray<VARIANT> cells(grid, 2);
    const LONG at[2] = {1, 2};
    EXPECT_EQ(cells.MultiDimSetAt(at, CComVariant(square->As<IDispatch>())), S_OK);
    EXPECT_EQ(RefCount(square->As<IDispatch>()), 3u);
    CComVariant read;
    EXPECT_EQ(cells.MultiDimGetAt(at, read), S_OK);
    EXPECT_EQ(read.pdispVal, square->As<IDispatch>());
    EXPECT_EQ(cells.GetCount(1), 3u);
  }
  EXPECT_EQ(square->Release(), 0u);
}

}  // namespace
