// The Civil 3D applications on a headless AutoCAD, their documents and databases, the style
// collections of a new drawing, and sites: through the platform declarations, as the module
// meets them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CivilFixture.h"

namespace {

using kdtest::As;
using kdtest::CivilDrawing;
using kdtest::Index;
using kdtest::Name;

template <class Collection, class Item>
std::vector<std::wstring> StyleNames(Collection* styles) {
  std::vector<std::wstring> names;
  LONG count = 0;
  EXPECT_EQ(styles->get_Count(&count), S_OK);
  for (LONG i = 0; i < count; ++i) {
    CComPtr<Item> style;
    EXPECT_EQ(styles->Item(Index(i), &style), S_OK);
    CComBSTR name;
    style->get_Name(&name);
    names.emplace_back(name.m_str);
  }
  return names;
}

class Applications : public CivilDrawing {};

TEST_F(Applications, TheLandDocumentIsAutoCadsActiveDocumentAndAnswersEveryFace) {
  CComPtr<IAcadDocument> fromAutoCad;
  ASSERT_EQ(acad->get_ActiveDocument(&fromAutoCad), S_OK);
  EXPECT_EQ(As<IUnknown>(fromAutoCad), As<IUnknown>(document)) << "one object per AutoCAD document";
  EXPECT_NE(As<IAcadDatabase>(document), nullptr);
  EXPECT_NE(As<IAeccRoadwayDocument>(document), nullptr);

  CComPtr<IAcadDatabase> database;
  ASSERT_EQ(document->get_Database(&database), S_OK);
  CComPtr<IAeccDatabase> land = As<IAeccDatabase>(database);
  ASSERT_NE(land, nullptr);
  CComPtr<IAeccSites> sites;
  EXPECT_EQ(land->get_Sites(&sites), S_OK);
  EXPECT_NE(sites, nullptr);
}

TEST_F(Applications, InitTakesOnlyTheApplicationThatMadeIt) {
  EXPECT_EQ(land->Init(nullptr), E_POINTER);
  HeadlessApp* other = HeadlessStart(nullptr);
  ASSERT_NE(other, nullptr);
  {
    CComPtr<IAcadApplication> otherAcad;
    static_cast<CWinApp*>(HeadlessGetWinApp(other))
        ->GetIDispatch(FALSE)
        ->QueryInterface(__uuidof(IAcadApplication), reinterpret_cast<void**>(&otherAcad));
    EXPECT_EQ(land->Init(otherAcad), E_INVALIDARG);
  }
  HeadlessStop(other);
  // Its AutoCAD members are AutoCAD's.
  CComVariant modules;
  ASSERT_EQ(land->ListArx(&modules), S_OK);
  EXPECT_EQ(modules.vt, VT_ARRAY | VT_BSTR);
}

TEST_F(Applications, TheRoadwayDocumentHasARealEmptyCorridorCollection) {
  CComPtr<IDispatch> object;
  ASSERT_EQ(acad->GetInterfaceObject(CComBSTR(kdtest::kRoadwayProgId), &object), S_OK);
  CComPtr<IAeccRoadwayApplication> roadway = As<IAeccRoadwayApplication>(object);
  ASSERT_NE(roadway, nullptr);
  ASSERT_EQ(roadway->Init(acad), S_OK);
  CComPtr<IAcadDocument> active;
  ASSERT_EQ(roadway->get_ActiveDocument(&active), S_OK);
  CComPtr<IAeccRoadwayDocument> roadwayDocument = As<IAeccRoadwayDocument>(active);
  ASSERT_NE(roadwayDocument, nullptr);
  CComPtr<IAeccCorridors> corridors;
  ASSERT_EQ(roadwayDocument->get_Corridors(&corridors), S_OK);
  LONG count = -1;
  EXPECT_EQ(corridors->get_Count(&count), S_OK);
  EXPECT_EQ(count, 0);
  CComPtr<IAeccCorridor> corridor;
  EXPECT_EQ(corridors->Item(Index(0), &corridor), E_INVALIDARG);
  EXPECT_EQ(corridors->Item(Name(L"Main"), &corridor), E_INVALIDARG);
  EXPECT_EQ(corridor, nullptr);
}

TEST_F(Applications, SurfaceMembersAreNotImplementedYet) {
  // Not declared beyond their names yet: raw pointers, which must come back null.
  IAeccSurfaces* surfaces = nullptr;
  EXPECT_EQ(document->get_Surfaces(&surfaces), E_NOTIMPL);
  IAeccSurfaceStyles* styles = nullptr;
  EXPECT_EQ(document->get_SurfaceStyles(&styles), E_NOTIMPL);
  IAeccPointGroups* groups = nullptr;
  EXPECT_EQ(document->get_PointGroups(&groups), E_NOTIMPL);
  EXPECT_EQ(surfaces, nullptr);
  EXPECT_EQ(styles, nullptr);
  EXPECT_EQ(groups, nullptr);
}

class WithoutLand : public CivilDrawing {
  const char* Options() const override { return "no-land"; }
};

TEST_F(WithoutLand, TheLandApplicationCannotBeMadeButTheRoadwayOneCan) {
  EXPECT_EQ(land, nullptr);
  CComPtr<IDispatch> object;
  EXPECT_EQ(acad->GetInterfaceObject(CComBSTR(kdtest::kLandProgId), &object), CO_E_CLASSSTRING);
  EXPECT_EQ(object, nullptr);
  ASSERT_EQ(acad->GetInterfaceObject(CComBSTR(kdtest::kRoadwayProgId), &object), S_OK);
  CComPtr<IAcadDocument> active;
  ASSERT_EQ(As<IAeccRoadwayApplication>(object)->get_ActiveDocument(&active), S_OK);
  EXPECT_NE(As<IAeccRoadwayDocument>(active), nullptr);
}

class WithoutRoadway : public CivilDrawing {
  const char* Options() const override { return "no-roadway"; }
};

TEST_F(WithoutRoadway, TheRoadwayApplicationAndDocumentFaceAreMissing) {
  CComPtr<IDispatch> object;
  EXPECT_EQ(acad->GetInterfaceObject(CComBSTR(kdtest::kRoadwayProgId), &object), CO_E_CLASSSTRING);
  ASSERT_NE(document, nullptr);
  CComPtr<IAeccRoadwayDocument> roadway;
  EXPECT_EQ(document->QueryInterface(__uuidof(IAeccRoadwayDocument), reinterpret_cast<void**>(&roadway)),
            E_NOINTERFACE);
}

// A new drawing has the standard template's styles; the first of each list is the default the
// module takes, so the order is checked, not only the names.
class Styles : public CivilDrawing {};

TEST_F(Styles, ANewDrawingListsTheTemplateStylesInOrder) {
  CComPtr<IAeccAlignmentStyles> alignmentStyles;
  ASSERT_EQ(document->get_AlignmentStyles(&alignmentStyles), S_OK);
  EXPECT_EQ((StyleNames<IAeccAlignmentStyles, IAeccAlignmentStyle>(alignmentStyles)),
            (std::vector<std::wstring>{L"Basic", L"Design Style", L"Existing", L"Layout", L"Proposed", L"Standard"}));
  CComPtr<IAeccAlignmentLabelStyleSets> labelSets;
  ASSERT_EQ(document->get_AlignmentLabelStyleSets(&labelSets), S_OK);
  EXPECT_EQ((StyleNames<IAeccAlignmentLabelStyleSets, IAeccAlignmentLabelStyleSet>(labelSets)),
            (std::vector<std::wstring>{L"_No Labels", L"All Labels", L"Major and Minor only",
                                       L"Major Minor and Geometry Points", L"Standard"}));
  CComPtr<IAeccProfileStyles> profileStyles;
  ASSERT_EQ(document->get_LandProfileStyles(&profileStyles), S_OK);
  EXPECT_EQ((StyleNames<IAeccProfileStyles, IAeccProfileStyle>(profileStyles)),
            (std::vector<std::wstring>{L"Basic", L"Design Profile", L"Existing Ground Profile", L"Layout",
                                       L"Standard"}));
}

TEST_F(Styles, NamesMatchWithoutCaseAndStayUnique) {
  CComPtr<IAeccAlignmentStyles> styles;
  ASSERT_EQ(document->get_AlignmentStyles(&styles), S_OK);
  CComPtr<IAeccAlignmentStyle> basic;
  ASSERT_EQ(styles->Item(Name(L"bAsIc"), &basic), S_OK);
  CComBSTR name;
  basic->get_Name(&name);
  EXPECT_STREQ(name, L"Basic");
  CComPtr<IAeccAlignmentStyle> again;
  EXPECT_EQ(styles->Add(CComBSTR(L"BASIC"), &again), E_INVALIDARG);
  ASSERT_EQ(styles->Add(CComBSTR(L"Ramp"), &again), S_OK);
  EXPECT_EQ(again->put_Name(CComBSTR(L"proposed")), E_INVALIDARG);
  ASSERT_EQ(again->put_Name(CComBSTR(L"Access")), S_OK);
  // The list keeps its order by name: "Access" comes first now.
  CComPtr<IAeccAlignmentStyle> first;
  ASSERT_EQ(styles->Item(Index(0), &first), S_OK);
  EXPECT_EQ(As<IUnknown>(first), As<IUnknown>(again)) << "one face per style while it lives";
  CComPtr<IAeccAlignmentStyle> none;
  EXPECT_EQ(styles->Item(Name(L"Nothing"), &none), E_INVALIDARG);
  EXPECT_EQ(styles->Item(Index(99), &none), E_INVALIDARG);
}

TEST_F(Styles, AStyleInUseCannotBeRemoved) {
  CComPtr<IAeccAlignment> road = AddAlignment(L"Road");
  CComPtr<IAeccAlignmentStyles> styles;
  ASSERT_EQ(document->get_AlignmentStyles(&styles), S_OK);
  EXPECT_EQ(styles->Remove(Name(L"Basic")), E_FAIL);
  EXPECT_EQ(styles->Remove(Name(L"Layout")), S_OK);
  LONG count = 0;
  styles->get_Count(&count);
  EXPECT_EQ(count, 5);
}

class Sites : public CivilDrawing {};

TEST_F(Sites, ASitesAlignmentsAreApartFromTheSitelessOnesAndGoWithTheSite) {
  CComPtr<IAeccSites> sites;
  ASSERT_EQ(document->get_Sites(&sites), S_OK);
  CComPtr<IAeccSite> site;
  ASSERT_EQ(sites->Add(CComBSTR(L"Roads"), &site), S_OK);
  CComPtr<IAeccSite> twin;
  EXPECT_EQ(sites->Add(CComBSTR(L"ROADS"), &twin), E_INVALIDARG);
  CComPtr<IAeccAlignments> inSite;
  ASSERT_EQ(site->get_Alignments(&inSite), S_OK);
  CComPtr<IAeccAlignment> ramp;
  ASSERT_EQ(inSite->Add(CComBSTR(L"Ramp"), CComBSTR(L"0"), Name(L"Basic"), Name(L"_No Labels"), &ramp), S_OK);
  AddAlignment(L"Main");
  // Alignment names are unique in the whole drawing.
  CComPtr<IAeccAlignment> clash;
  EXPECT_EQ(inSite->Add(CComBSTR(L"main"), CComBSTR(L"0"), Name(L"Basic"), Name(L"_No Labels"), &clash),
            E_INVALIDARG);

  LONG siteless = 0, sited = 0;
  Siteless()->get_Count(&siteless);
  inSite->get_Count(&sited);
  EXPECT_EQ(siteless, 1);
  EXPECT_EQ(sited, 1);
  EXPECT_EQ(Siteless()->Remove(Name(L"Ramp")), E_INVALIDARG) << "a site's alignment is not siteless";

  ASSERT_EQ(sites->Remove(Name(L"roads")), S_OK);
  CComBSTR name;
  EXPECT_EQ(ramp->get_Name(&name), E_FAIL) << "the site's alignments went with it";
  CComPtr<IAeccAlignments> gone;
  EXPECT_EQ(site->get_Alignments(&gone), E_FAIL);
  LONG count = -1;
  sites->get_Count(&count);
  EXPECT_EQ(count, 0);
}

TEST_F(Sites, TheDatabaseFindsCivilObjectsByObjectId) {
  CComPtr<IAeccAlignment> road = AddAlignment(L"Road");
  LONG_PTR id = 0;
  ASSERT_EQ(road->get_ObjectID(&id), S_OK);
  CComPtr<IAcadDatabase> database;
  ASSERT_EQ(document->get_Database(&database), S_OK);
  CComPtr<IDispatch> viaDatabase, viaDocument;
  ASSERT_EQ(database->ObjectIdToObject(id, &viaDatabase), S_OK);
  ASSERT_EQ(document->ObjectIdToObject(id, &viaDocument), S_OK);
  EXPECT_EQ(As<IUnknown>(viaDatabase), As<IUnknown>(road));
  EXPECT_EQ(As<IUnknown>(viaDocument), As<IUnknown>(road));
  EXPECT_NE(As<IAeccAlignment>(viaDatabase), nullptr);

  CComPtr<IAeccProfiles> profiles;
  ASSERT_EQ(road->get_Profiles(&profiles), S_OK);
  CComPtr<IAeccProfile> profile;
  ASSERT_EQ(profiles->Add(CComBSTR(L"FG"), aeccFinishedGround, Name(L"Basic"), &profile), S_OK);
  ASSERT_EQ(profile->get_ObjectID(&id), S_OK);
  CComPtr<IDispatch> found;
  ASSERT_EQ(database->ObjectIdToObject(id, &found), S_OK);
  EXPECT_NE(As<IAeccProfile>(found), nullptr);
  CComBSTR objectName;
  profile->get_ObjectName(&objectName);
  EXPECT_STREQ(objectName, L"AeccDbProfile");
}

}  // namespace
