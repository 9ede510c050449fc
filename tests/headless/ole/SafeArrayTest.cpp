#include <cwchar>

#include "TestObjects.h"

namespace {

class SafeArrayTest : public OleTest {};

TEST_F(SafeArrayTest, VectorHonoursANegativeLowerBound) {
  SAFEARRAY* psa = SafeArrayCreateVector(VT_R8, -2, 5);
  ASSERT_NE(psa, nullptr);
  LONG lower = 0, upper = 0;
  EXPECT_EQ(SafeArrayGetLBound(psa, 1, &lower), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(psa, 1, &upper), S_OK);
  EXPECT_EQ(lower, -2);
  EXPECT_EQ(upper, 2);
  EXPECT_EQ(SafeArrayGetDim(psa), 1u);
  EXPECT_EQ(SafeArrayGetElemsize(psa), sizeof(double));
  VARTYPE vt = VT_EMPTY;
  EXPECT_EQ(SafeArrayGetVartype(psa, &vt), S_OK);
  EXPECT_EQ(vt, VT_R8);
  EXPECT_TRUE(psa->fFeatures & FADF_HAVEVARTYPE);

  double value = 1.5;
  for (LONG i : {-2L, 2L}) EXPECT_EQ(SafeArrayPutElement(psa, &i, &value), S_OK);
  for (LONG i : {-3L, 3L}) {
    EXPECT_EQ(SafeArrayPutElement(psa, &i, &value), DISP_E_BADINDEX);
    EXPECT_EQ(SafeArrayGetElement(psa, &i, &value), DISP_E_BADINDEX);
  }
  LONG first = -2;
  double read = 0;
  EXPECT_EQ(SafeArrayGetElement(psa, &first, &read), S_OK);
  EXPECT_EQ(read, 1.5);
  EXPECT_EQ(SafeArrayGetLBound(psa, 0, &lower), DISP_E_BADINDEX);
  EXPECT_EQ(SafeArrayGetUBound(psa, 2, &upper), DISP_E_BADINDEX);
  EXPECT_EQ(SafeArrayDestroy(psa), S_OK);
}

// Bounds are given leftmost first, stored rightmost first; rgIndices[0] indexes the leftmost
// dimension, which varies fastest in memory (column-major).
TEST_F(SafeArrayTest, TwoDimensionsAreColumnMajorWithBoundsStoredReversed) {
  SAFEARRAYBOUND bounds[2] = {{3, 1}, {4, 0}};  // rows 1..3, columns 0..3
  SAFEARRAY* psa = SafeArrayCreate(VT_I4, 2, bounds);
  ASSERT_NE(psa, nullptr);
  EXPECT_EQ(psa->rgsabound[0].cElements, 4u);
  EXPECT_EQ(psa->rgsabound[1].cElements, 3u);
  LONG lower = 0, upper = 0;
  EXPECT_EQ(SafeArrayGetLBound(psa, 1, &lower), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(psa, 1, &upper), S_OK);
  EXPECT_EQ(lower, 1);
  EXPECT_EQ(upper, 3);
  EXPECT_EQ(SafeArrayGetUBound(psa, 2, &upper), S_OK);
  EXPECT_EQ(upper, 3);
  EXPECT_EQ(SafeArrayGetLBound(psa, 3, &lower), DISP_E_BADINDEX);

  for (LONG row = 1; row <= 3; ++row)
    for (LONG column = 0; column < 4; ++column) {
      LONG index[2] = {row, column};
      LONG value = row * 10 + column;
      ASSERT_EQ(SafeArrayPutElement(psa, index, &value), S_OK);
    }
  LONG outside[2] = {0, 0};
  LONG value = 0;
  EXPECT_EQ(SafeArrayPutElement(psa, outside, &value), DISP_E_BADINDEX);

  void* data = nullptr;
  ASSERT_EQ(SafeArrayAccessData(psa, &data), S_OK);
  const LONG* cells = static_cast<const LONG*>(data);
  EXPECT_EQ(cells[0], 10);  // (1, 0)
  EXPECT_EQ(cells[1], 20);  // (2, 0)
  EXPECT_EQ(cells[3], 11);  // (1, 1)
  EXPECT_EQ(cells[11], 33);
  LONG last[2] = {3, 3};
  void* cell = nullptr;
  EXPECT_EQ(SafeArrayPtrOfIndex(psa, last, &cell), S_OK);
  EXPECT_EQ(cell, &cells[11]);
  EXPECT_EQ(SafeArrayUnaccessData(psa), S_OK);
  EXPECT_EQ(SafeArrayDestroy(psa), S_OK);
}

TEST_F(SafeArrayTest, LockedArrayIsNotDestroyed) {
  SAFEARRAY* psa = SafeArrayCreateVector(VT_I2, 0, 2);
  ASSERT_EQ(SafeArrayLock(psa), S_OK);
  EXPECT_EQ(SafeArrayDestroy(psa), DISP_E_ARRAYISLOCKED);
  SAFEARRAYBOUND bigger{4, 0};
  EXPECT_EQ(SafeArrayRedim(psa, &bigger), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(SafeArrayUnlock(psa), S_OK);
  EXPECT_EQ(SafeArrayUnlock(psa), E_UNEXPECTED);
  EXPECT_EQ(SafeArrayDestroy(psa), S_OK);
}

TEST_F(SafeArrayTest, BstrElementsAreCopiedInAndOut) {
  SAFEARRAY* psa = SafeArrayCreateVector(VT_BSTR, 0, 2);
  ASSERT_NE(psa, nullptr);
  EXPECT_TRUE(psa->fFeatures & FADF_BSTR);
  const OLECHAR text[] = {L'x', L'\0', L'y'};
  BSTR source = SysAllocStringLen(text, 3);
  LONG i = 0;
  ASSERT_EQ(SafeArrayPutElement(psa, &i, source), S_OK);  // a BSTR goes in as the pointer itself
  SysFreeString(source);
  BSTR out = nullptr;
  ASSERT_EQ(SafeArrayGetElement(psa, &i, &out), S_OK);
  EXPECT_EQ(SysStringLen(out), 3u);
  EXPECT_EQ(out[2], L'y');
  BSTR replacement = SysAllocString(L"replaced");
  ASSERT_EQ(SafeArrayPutElement(psa, &i, replacement), S_OK);  // frees the old element
  SysFreeString(replacement);
  EXPECT_STREQ(out, L"x");  // the copy handed out is the caller's, unaffected
  SysFreeString(out);
  EXPECT_EQ(SafeArrayDestroy(psa), S_OK);
}

TEST_F(SafeArrayTest, InterfaceElementsHoldReferencesUntilDestroyed) {
  Square* square = headless::MakeComObject<Square>();
  SAFEARRAY* psa = SafeArrayCreateVector(VT_DISPATCH, 0, 1);
  ASSERT_NE(psa, nullptr);
  EXPECT_EQ(psa->fFeatures & (FADF_DISPATCH | FADF_HAVEIID), FADF_DISPATCH | FADF_HAVEIID);
  VARTYPE vt = VT_EMPTY;
  EXPECT_EQ(SafeArrayGetVartype(psa, &vt), S_OK);
  EXPECT_EQ(vt, VT_DISPATCH);
  LONG i = 0;
  IDispatch* disp = square->As<IDispatch>();
  ASSERT_EQ(SafeArrayPutElement(psa, &i, disp), S_OK);
  EXPECT_EQ(RefCount(disp), 2u);
  IDispatch* out = nullptr;
  ASSERT_EQ(SafeArrayGetElement(psa, &i, &out), S_OK);
  EXPECT_EQ(out, disp);
  EXPECT_EQ(out->Release(), 2u);
  ASSERT_EQ(SafeArrayPutElement(psa, &i, nullptr), S_OK);  // releases the element held
  EXPECT_EQ(RefCount(disp), 1u);
  ASSERT_EQ(SafeArrayPutElement(psa, &i, disp), S_OK);
  square->Release();
  EXPECT_EQ(SafeArrayDestroy(psa), S_OK);  // the last reference goes with the array
}

TEST_F(SafeArrayTest, CopyIsDeepAndRedimKeepsTheCommonElements) {
  SAFEARRAY* psa = SafeArrayCreateVector(VT_VARIANT, 1, 2);
  ASSERT_NE(psa, nullptr);
  EXPECT_EQ(SafeArrayGetElemsize(psa), sizeof(VARIANT));
  VARIANT v;
  VariantInit(&v);
  v.vt = VT_BSTR;
  v.bstrVal = SysAllocString(L"one");
  LONG i = 1;
  ASSERT_EQ(SafeArrayPutElement(psa, &i, &v), S_OK);
  VariantClear(&v);

  SAFEARRAY* copy = nullptr;
  ASSERT_EQ(SafeArrayCopy(psa, &copy), S_OK);
  VARIANT* cells = static_cast<VARIANT*>(psa->pvData);
  VARIANT* copied = static_cast<VARIANT*>(copy->pvData);
  EXPECT_NE(cells[0].bstrVal, copied[0].bstrVal);
  EXPECT_STREQ(copied[0].bstrVal, L"one");
  EXPECT_EQ(copy->cLocks, 0u);

  SAFEARRAYBOUND grown{4, 1};
  ASSERT_EQ(SafeArrayRedim(copy, &grown), S_OK);
  copied = static_cast<VARIANT*>(copy->pvData);
  EXPECT_STREQ(copied[0].bstrVal, L"one");
  EXPECT_EQ(copied[3].vt, VT_EMPTY);
  SAFEARRAYBOUND shrunk{0, 1};
  ASSERT_EQ(SafeArrayRedim(copy, &shrunk), S_OK);  // frees the element it drops
  LONG upper = 0;
  EXPECT_EQ(SafeArrayGetUBound(copy, 1, &upper), S_OK);
  EXPECT_EQ(upper, 0);
  EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
  EXPECT_EQ(SafeArrayDestroy(psa), S_OK);

  EXPECT_EQ(SafeArrayCopy(nullptr, &copy), S_OK);
  EXPECT_EQ(copy, nullptr);
}

TEST_F(SafeArrayTest, RedimChangesTheRightmostDimension) {
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  SAFEARRAY* psa = SafeArrayCreate(VT_I4, 2, bounds);
  LONG index[2] = {1, 1};
  LONG value = 7;
  ASSERT_EQ(SafeArrayPutElement(psa, index, &value), S_OK);
  SAFEARRAYBOUND wider{3, 0};
  ASSERT_EQ(SafeArrayRedim(psa, &wider), S_OK);
  LONG upper = 0;
  EXPECT_EQ(SafeArrayGetUBound(psa, 1, &upper), S_OK);
  EXPECT_EQ(upper, 1);
  EXPECT_EQ(SafeArrayGetUBound(psa, 2, &upper), S_OK);
  EXPECT_EQ(upper, 2);
  value = 0;
  EXPECT_EQ(SafeArrayGetElement(psa, index, &value), S_OK);
  EXPECT_EQ(value, 7);
  EXPECT_EQ(SafeArrayDestroy(psa), S_OK);
}

TEST_F(SafeArrayTest, BadArgumentsAreRefused) {
  SAFEARRAYBOUND bound{1, 0};
  EXPECT_EQ(SafeArrayCreate(VT_EMPTY, 1, &bound), nullptr);
  EXPECT_EQ(SafeArrayCreate(VT_R8, 0, &bound), nullptr);
  EXPECT_EQ(SafeArrayCreate(VT_R8, 1, nullptr), nullptr);
  LONG i = 0, out = 0;
  VARTYPE vt;
  void* data;
  EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
  EXPECT_EQ(SafeArrayGetDim(nullptr), 0u);
  EXPECT_EQ(SafeArrayGetVartype(nullptr, &vt), E_INVALIDARG);
  EXPECT_EQ(SafeArrayGetLBound(nullptr, 1, &out), E_INVALIDARG);
  EXPECT_EQ(SafeArrayLock(nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayAccessData(nullptr, &data), E_INVALIDARG);
  EXPECT_EQ(SafeArrayGetElement(nullptr, &i, &out), E_INVALIDARG);
  EXPECT_EQ(SafeArrayPutElement(nullptr, &i, &out), E_INVALIDARG);
  EXPECT_EQ(SafeArrayRedim(nullptr, &bound), E_INVALIDARG);
  EXPECT_EQ(SafeArrayCopy(nullptr, nullptr), E_INVALIDARG);
  SAFEARRAY* psa = SafeArrayCreateVector(VT_I4, 0, 1);
  EXPECT_EQ(SafeArrayGetElement(psa, nullptr, &out), E_INVALIDARG);
  EXPECT_EQ(SafeArrayGetElement(psa, &i, nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayPutElement(psa, &i, nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayDestroy(psa), S_OK);
}

}  // namespace
