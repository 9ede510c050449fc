// Small COM objects for the OLE tests, and a fixture that fails a test leaving any object alive.
#pragma once

#include <gtest/gtest.h>

#include "headless/ole/ComObject.h"
#include "platform/ole/oleauto.h"

struct ITestShape : IDispatch {
  virtual LONG STDMETHODCALLTYPE Sides() = 0;
};
OLE_DEFINE_UUIDOF(ITestShape, 0x6d1f8a10, 0x2b3c, 0x4d5e, 0x8f, 0x01, 0x12, 0x23, 0x34, 0x45, 0x56, 0x67);

struct ITestSquare : ITestShape {
  virtual double STDMETHODCALLTYPE Side() = 0;
};
OLE_DEFINE_UUIDOF(ITestSquare, 0x6d1f8a11, 0x2b3c, 0x4d5e, 0x8f, 0x01, 0x12, 0x23, 0x34, 0x45, 0x56, 0x67);

struct ITestNamed : IUnknown {
  virtual const wchar_t* STDMETHODCALLTYPE Name() = 0;
};
OLE_DEFINE_UUIDOF(ITestNamed, 0x6d1f8a12, 0x2b3c, 0x4d5e, 0x8f, 0x01, 0x12, 0x23, 0x34, 0x45, 0x56, 0x67);

struct ITestMissing : IUnknown {};
OLE_DEFINE_UUIDOF(ITestMissing, 0x6d1f8a13, 0x2b3c, 0x4d5e, 0x8f, 0x01, 0x12, 0x23, 0x34, 0x45, 0x56, 0x67);

// Answers IUnknown, IDispatch, ITestShape (through ITestSquare), ITestSquare and ITestNamed.
class Square final : public headless::ComObject<Square, ITestSquare, ITestNamed> {
 public:
  using AlsoAnswers = headless::Interfaces<ITestShape>;
  explicit Square(double side = 1.0) : side_(side) {}
  LONG STDMETHODCALLTYPE Sides() override { return 4; }
  double STDMETHODCALLTYPE Side() override { return side_; }
  const wchar_t* STDMETHODCALLTYPE Name() override { return L"square"; }

 private:
  double side_;
};

// Answers IUnknown and ITestNamed only: no IDispatch.
class Label final : public headless::ComObject<Label, ITestNamed> {
 public:
  const wchar_t* STDMETHODCALLTYPE Name() override { return L"label"; }
};

// References held on obj now (AddRef then Release, reading the count Release returns).
inline ULONG RefCount(IUnknown* obj) {
  obj->AddRef();
  return obj->Release();
}

// Every test starts and must end with the same number of live COM objects.
class OleTest : public ::testing::Test {
 protected:
  void SetUp() override { baseline_ = headless::LiveComObjects(); }
  void TearDown() override { EXPECT_EQ(headless::LiveComObjects(), baseline_) << "a COM object was leaked"; }

 private:
  long baseline_ = 0;
};
