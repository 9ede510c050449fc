// The host contract driven as a separately built host drives it: the module is loaded at run
// time by path, its four exports resolved by name, and every call goes through the exports and
// the interface slots. Built from module/interface headers and the headless C API only.
#include <gtest/gtest.h>

#include <cwchar>
#include <vector>

#include "tests/host/ModuleLibrary.h"

namespace {

class LoadedModule : public ::testing::Test {
protected:
  void SetUp() override {
    const ModuleLibrary& library = ModuleLibrary::Get();
    ASSERT_TRUE(library.Complete()) << dlerror();
    getVersion = library.getVersion;
    getPlatform = library.getPlatform;
    getObject = library.getObject;
    freeObject = library.freeObject;
    liveBefore = HeadlessLiveObjects();
  }
  void TearDown() override {
    EXPECT_EQ(HeadlessLiveObjects(), liveBefore) << "a platform object outlived the test";
  }

  PFN_GetInterfaceVersion getVersion = nullptr;
  PFN_GetInterfacePlatform getPlatform = nullptr;
  PFN_GetCivil3dObject getObject = nullptr;
  PFN_FreeCivil3dObject freeObject = nullptr;
  long liveBefore = 0;
};

TEST_F(LoadedModule, ReportsVersionThree) {
  EXPECT_EQ(getVersion(), 3);
  EXPECT_EQ(ICivil3dObject::GetInterfaceVersion(), 3);
}

TEST_F(LoadedModule, PlatformCodeNeedsOneCharacterMoreThanItTakes) {
  for (int size : {6, 7, 64}) {
    std::vector<wchar_t> buffer(80, L'#');
    getPlatform(buffer.data(), size);
    EXPECT_STREQ(buffer.data(), L"F000") << "size " << size;
  }
  for (int size : {5, 4, 1, 0, -1}) {
    std::vector<wchar_t> buffer(8, L'#');
    buffer.back() = L'\0';
    getPlatform(buffer.data(), size);
    EXPECT_STREQ(buffer.data(), L"#######") << "size " << size << " must leave the buffer untouched";
  }
}

TEST_F(LoadedModule, SessionIsUninitialisedUntilInitialize) {
  ICivil3dObject* session = getObject();
  ASSERT_NE(session, nullptr);
  EXPECT_FALSE(session->IsInitialized());
  EXPECT_TRUE(session->IsCorridorFeatureAvailable());
  freeObject(&session);
  EXPECT_EQ(session, nullptr);
}

TEST_F(LoadedModule, FreeIgnoresNullAndForeignObjects) {
  ICivil3dObject* none = nullptr;
  freeObject(&none);
  EXPECT_EQ(none, nullptr);

  // A host-side class behind the same interface is not the module's to destroy.
  struct Foreign : ICivil3dObject {
    bool Initialize(CWinApp*) override { return false; }
    bool IsInitialized() override { return false; }
    ICivil3dAlignment* GetAlignment(const wchar_t*) override { return nullptr; }
    bool ListAlignments(wchar_t***, long long**, int*) override { return false; }
    bool CreateAlignment(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) override {
      return false;
    }
    bool GetAlignmentStyleNames(wchar_t***, int*) override { return false; }
    bool GetAlignmentLabelStyleSetNames(wchar_t***, int*) override { return false; }
    bool DeleteAlignment(const wchar_t*) override { return false; }
    ICivil3dSurface* GetSurface(const wchar_t*) override { return nullptr; }
    bool ListSurfaces(wchar_t***, long long**, int*) override { return false; }
    bool CreateSurface(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) override { return false; }
    bool DeleteSurface(const wchar_t*) override { return false; }
    bool GetSurfaceStyleNames(wchar_t***, int*) override { return false; }
    bool IsCorridorFeatureAvailable() override { return false; }
    ICivil3dCorridor* GetCorridor(const wchar_t*) override { return nullptr; }
    bool ListCorridors(wchar_t***, long long**, int*) override { return false; }
    void CreateCorridor(const wchar_t*) override {}
    void RebuildCorridor(const wchar_t*) override {}
    void DeleteCorridor(const wchar_t*) override {}
    void AddAssembly(const wchar_t*, const wchar_t*, const wchar_t*, bool, double, double) override {}
    void AddAssembly(const wchar_t*, const wchar_t*, const wchar_t*, bool) override {}
    void AddKelvoAssembly(const wchar_t*, double, double) override {}
    void AddKelvoAssemblyRight(const wchar_t*, double, double) override {}
    void AddKelvoAssemblyIn(const wchar_t*, double, double) override {}
    void AddKelvoAssemblyOut(const wchar_t*, double, double) override {}
    void DeleteAssembly(const wchar_t*) override {}
    void AddBaseline(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*,
                     const wchar_t*, double, double, double) override {}
    void AddBaselineForSurface(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*,
                               const wchar_t*, double) override {}
    void AddBaselineForSurface(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*,
                               double, double, const wchar_t*, double) override {}
    void FreeStrings(wchar_t***, int) override {}
    void FreeStrings(wchar_t**) override {}
    void FreeSessionIds(long long**) override {}
    void FreePoints(CC3dPoint**) override {}
    void FreeProfilePoints(CC3dProfilePoint**) override {}
    void FreeProfileVPIs(CC3dProfilePVI**) override {}
    void FreeCurves(CC3dCurve**) override {}
  } foreign;
  ICivil3dObject* pointer = &foreign;
  freeObject(&pointer);
  EXPECT_EQ(pointer, &foreign);
}

TEST_F(LoadedModule, SeveralSessionsLiveAtOnce) {
  std::vector<ICivil3dObject*> sessions;
  for (int i = 0; i < 4; ++i) sessions.push_back(getObject());
  for (auto* s : sessions) ASSERT_NE(s, nullptr);
  EXPECT_NE(sessions[0], sessions[1]);
  EXPECT_TRUE(sessions[2]->Initialize(nullptr));
  EXPECT_FALSE(sessions[3]->IsInitialized());
  // Freed in another order than made.
  for (int i : {2, 0, 3, 1}) {
    freeObject(&sessions[i]);
    EXPECT_EQ(sessions[i], nullptr);
  }
}

// The release slots free what they are given and null the host's pointer. The arrays here are
// made the way the module makes them (array new of the record type), in the same process heap.
class ReleaseSlots : public LoadedModule {
protected:
  void SetUp() override {
    LoadedModule::SetUp();
    session = getObject();
    ASSERT_NE(session, nullptr);
  }
  void TearDown() override {
    freeObject(&session);
    LoadedModule::TearDown();
  }
  ICivil3dObject* session = nullptr;
};

TEST_F(ReleaseSlots, CountedStringsFreeEveryEntryAndTheArray) {
  wchar_t** names = new wchar_t*[3];
  for (int i = 0; i < 3; ++i) {
    names[i] = new wchar_t[8];
    std::swprintf(names[i], 8, L"n%d", i);
  }
  session->FreeStrings(&names, 3);
  EXPECT_EQ(names, nullptr);

  wchar_t** empty = new wchar_t*[0];
  session->FreeStrings(&empty, 0);
  EXPECT_EQ(empty, nullptr);

  wchar_t** none = nullptr;
  session->FreeStrings(&none, 5);
  EXPECT_EQ(none, nullptr);
}

TEST_F(ReleaseSlots, SingleStringIsFreedAndNulled) {
  wchar_t* text = new wchar_t[6];
  std::wcscpy(text, L"F000");
  session->FreeStrings(&text);
  EXPECT_EQ(text, nullptr);
  wchar_t* none = nullptr;
  session->FreeStrings(&none);
  EXPECT_EQ(none, nullptr);
}

TEST_F(ReleaseSlots, RecordArraysAreFreedAndNulled) {
  long long* ids = new long long[4]{1, 2, 3, 4};
  session->FreeSessionIds(&ids);
  EXPECT_EQ(ids, nullptr);

  CC3dPoint* points = new CC3dPoint[3];
  session->FreePoints(&points);
  EXPECT_EQ(points, nullptr);

  CC3dProfilePoint* stroked = new CC3dProfilePoint[2];
  session->FreeProfilePoints(&stroked);
  EXPECT_EQ(stroked, nullptr);

  CC3dProfilePVI* pvis = new CC3dProfilePVI[5];
  session->FreeProfileVPIs(&pvis);
  EXPECT_EQ(pvis, nullptr);

  CC3dCurve* curves = new CC3dCurve[2];
  session->FreeCurves(&curves);
  EXPECT_EQ(curves, nullptr);

  CC3dCurve* noCurves = nullptr;
  session->FreeCurves(&noCurves);
  EXPECT_EQ(noCurves, nullptr);
}

TEST_F(ReleaseSlots, SlotsNotYetBuiltAnswerFailureAndTouchNothing) {
  wchar_t** names = nullptr;
  long long* ids = nullptr;
  int count = -7;
  EXPECT_FALSE(session->ListAlignments(&names, &ids, &count));
  EXPECT_EQ(count, -7);
  EXPECT_EQ(names, nullptr);
  EXPECT_EQ(session->GetAlignment(L"A"), nullptr);
  EXPECT_EQ(session->GetSurface(L"S"), nullptr);
  EXPECT_EQ(session->GetCorridor(L"C"), nullptr);
}

// Start-up against a headless application, through the CWinApp a real host would pass.
class StartUp : public LoadedModule {
protected:
  void TearDown() override {
    if (session != nullptr) freeObject(&session);
    HeadlessStop(app);
    LoadedModule::TearDown();
  }
  void Start(const char* options) {
    app = HeadlessStart(options);
    ASSERT_NE(app, nullptr) << HeadlessLastError(nullptr);
    session = getObject();
    ASSERT_NE(session, nullptr);
  }
  CWinApp* WinApp() { return static_cast<CWinApp*>(HeadlessGetWinApp(app)); }

  HeadlessApp* app = nullptr;
  ICivil3dObject* session = nullptr;
};

TEST_F(StartUp, NullApplicationSucceedsWithNothingCached) {
  Start(nullptr);
  EXPECT_TRUE(session->Initialize(nullptr));
  EXPECT_FALSE(session->IsInitialized());
}

TEST_F(StartUp, WithoutTheCivilBaseModuleInitializeFails) {
  Start("no-civil");
  EXPECT_FALSE(session->Initialize(WinApp()));
  EXPECT_FALSE(session->IsInitialized());
}

TEST_F(StartUp, WithoutEitherCivilApplicationNothingIsCached) {
  Start("no-land,no-roadway");
  EXPECT_FALSE(session->Initialize(WinApp()));
  EXPECT_FALSE(session->IsInitialized());
  // Initialize may run again; it repeats the whole sequence.
  EXPECT_FALSE(session->Initialize(WinApp()));
}

// The result tells only of a hard failure; a land side that fails is overwritten by a roadway
// side that succeeds, and only IsInitialized says both are there.
TEST_F(StartUp, ResultFollowsTheRoadwaySideAndIsInitializedNeedsBoth) {
  Start(nullptr);
  EXPECT_TRUE(session->Initialize(WinApp()));
  EXPECT_TRUE(session->IsInitialized());
  EXPECT_TRUE(session->Initialize(WinApp())) << "a second start-up replaces the references";
  EXPECT_TRUE(session->IsInitialized());
}

TEST_F(StartUp, MissingLandApplicationStillAnswersTrue) {
  Start("no-land");
  EXPECT_TRUE(session->Initialize(WinApp()));
  EXPECT_FALSE(session->IsInitialized());
}

TEST_F(StartUp, MissingRoadwayApplicationAnswersFalse) {
  Start("no-roadway");
  EXPECT_FALSE(session->Initialize(WinApp()));
  EXPECT_FALSE(session->IsInitialized());
}

TEST_F(StartUp, SessionsOnSeveralApplicationsAreIndependent) {
  Start("no-civil");
  HeadlessApp* second = HeadlessStart("no-land");
  ASSERT_NE(second, nullptr);
  ICivil3dObject* other = getObject();
  EXPECT_FALSE(session->Initialize(WinApp()));
  other->Initialize(static_cast<CWinApp*>(HeadlessGetWinApp(second)));
  EXPECT_FALSE(other->IsInitialized());
  freeObject(&other);
  HeadlessStop(second);
}

}  // namespace
