#include <atomic>
#include <thread>
#include <vector>

#include "TestObjects.h"
#include "headless/ole/ClassRegistry.h"
#include "platform/ole/combaseapi.h"

namespace {

constexpr CLSID kSquareClass{0x5a0c1e01, 0x7d2b, 0x4c3a, {0x9e, 0x10, 0x21, 0x32, 0x43, 0x54, 0x65, 0x76}};

class ComObjectTest : public OleTest {};

TEST_F(ComObjectTest, QueryInterfaceFollowsTheCountingRules) {
  Square* square = headless::MakeComObject<Square>(2.0);
  IUnknown* unknown = square->As<IUnknown>();
  EXPECT_EQ(RefCount(unknown), 1u);

  void* out = reinterpret_cast<void*>(1);
  EXPECT_EQ(unknown->QueryInterface(__uuidof(ITestMissing), &out), E_NOINTERFACE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(unknown->QueryInterface(IID_IUnknown, nullptr), E_POINTER);

  ITestNamed* named = nullptr;
  ASSERT_EQ(unknown->QueryInterface(__uuidof(ITestNamed), reinterpret_cast<void**>(&named)), S_OK);
  EXPECT_STREQ(named->Name(), L"square");
  ITestShape* shape = nullptr;  // answered through ITestSquare, listed in AlsoAnswers
  ASSERT_EQ(named->QueryInterface(__uuidof(ITestShape), reinterpret_cast<void**>(&shape)), S_OK);
  EXPECT_EQ(shape->Sides(), 4);
  IDispatch* disp = nullptr;  // answered because ITestSquare derives IDispatch
  ASSERT_EQ(shape->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&disp)), S_OK);
  UINT count = 9;
  EXPECT_EQ(disp->GetTypeInfoCount(&count), E_NOTIMPL);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(disp->Invoke(0, GUID_NULL, 0, 2, nullptr, nullptr, nullptr, nullptr), E_NOTIMPL);

  // One identity: IUnknown asked from any interface is the same pointer.
  IUnknown* identity1 = nullptr;
  IUnknown* identity2 = nullptr;
  named->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&identity1));
  disp->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&identity2));
  EXPECT_EQ(identity1, identity2);
  EXPECT_NE(static_cast<void*>(identity1), static_cast<void*>(named));

  EXPECT_EQ(RefCount(unknown), 6u);
  for (IUnknown* held : {static_cast<IUnknown*>(named), static_cast<IUnknown*>(shape),
                         static_cast<IUnknown*>(disp), identity1, identity2})
    held->Release();
  EXPECT_EQ(unknown->Release(), 0u);
}

class ActivationTest : public OleTest {
 protected:
  void SetUp() override {
    OleTest::SetUp();
    ASSERT_EQ(headless::RegisterComClass(kSquareClass, L"KdTest.Square.1", headless::ComFactoryFor<Square>(3.0)), S_OK);
  }
  void TearDown() override {
    EXPECT_EQ(headless::UnregisterComClass(kSquareClass), S_OK);
    OleTest::TearDown();
  }
};

TEST_F(ActivationTest, ProgIdLeadsToTheClassWhateverItsCase) {
  CLSID clsid{};
  EXPECT_EQ(CLSIDFromProgID(L"kdtest.SQUARE.1", &clsid), S_OK);
  EXPECT_TRUE(IsEqualCLSID(clsid, kSquareClass));
  clsid = GUID_NULL;
  EXPECT_EQ(CLSIDFromString(L"KdTest.Square.1", &clsid), S_OK);
  EXPECT_TRUE(IsEqualCLSID(clsid, kSquareClass));
  EXPECT_EQ(CLSIDFromProgID(L"KdTest.Square", &clsid), CO_E_CLASSSTRING);
  EXPECT_TRUE(IsEqualCLSID(clsid, GUID_NULL));
}

TEST_F(ActivationTest, CreatesObjectsWithOneReference) {
  ITestSquare* square = nullptr;
  ASSERT_EQ(CoCreateInstance(kSquareClass, nullptr, CLSCTX_ALL, __uuidof(ITestSquare), reinterpret_cast<void**>(&square)),
            S_OK);
  EXPECT_EQ(square->Side(), 3.0);
  EXPECT_EQ(RefCount(square), 1u);
  EXPECT_EQ(square->Release(), 0u);

  void* out = reinterpret_cast<void*>(1);
  EXPECT_EQ(CoCreateInstance(kSquareClass, nullptr, CLSCTX_ALL, __uuidof(ITestMissing), &out), E_NOINTERFACE);
  EXPECT_EQ(out, nullptr);
  out = reinterpret_cast<void*>(1);
  EXPECT_EQ(CoCreateInstance(GUID_NULL, nullptr, CLSCTX_ALL, IID_IUnknown, &out), REGDB_E_CLASSNOTREG);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(CoCreateInstance(kSquareClass, nullptr, CLSCTX_LOCAL_SERVER, IID_IUnknown, &out), REGDB_E_CLASSNOTREG);
  Label* outer = headless::MakeComObject<Label>();
  EXPECT_EQ(CoCreateInstance(kSquareClass, outer->As<IUnknown>(), CLSCTX_ALL, IID_IUnknown, &out), CLASS_E_NOAGGREGATION);
  outer->Release();
  EXPECT_EQ(CoCreateInstance(kSquareClass, nullptr, CLSCTX_ALL, IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ActivationTest, UnregisteredClassIsGone) {
  ASSERT_EQ(headless::UnregisterComClass(kSquareClass), S_OK);
  EXPECT_EQ(headless::UnregisterComClass(kSquareClass), S_FALSE);
  CLSID clsid{};
  EXPECT_EQ(CLSIDFromProgID(L"KdTest.Square.1", &clsid), CO_E_CLASSSTRING);
  void* out = nullptr;
  EXPECT_EQ(CoCreateInstance(kSquareClass, nullptr, CLSCTX_ALL, IID_IUnknown, &out), REGDB_E_CLASSNOTREG);
  ASSERT_EQ(headless::RegisterComClass(kSquareClass, L"KdTest.Square.1", headless::ComFactoryFor<Square>()), S_OK);
  EXPECT_EQ(headless::RegisterComClass(kSquareClass, L"X", nullptr), E_INVALIDARG);
}

TEST_F(ActivationTest, ThreadsCreateAndReleaseConcurrently) {
  std::atomic<int> failures{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&] {
      for (int i = 0; i < 200; ++i) {
        IUnknown* object = nullptr;
        if (FAILED(CoCreateInstance(kSquareClass, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                    reinterpret_cast<void**>(&object))))
          ++failures;
        else
          object->Release();
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures.load(), 0);
}

}  // namespace
