// The element base as every kind shares it: flags, attributes, copies, the element counter, tags,
// colours and their resolution through the installed translator, the factory.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <typeinfo>

#include "module/geometry/KdXform.h"
#include "module/graphics/GrElementFactory.h"
#include "module/graphics/GrElementVector.h"
#include "module/graphics/GrPlatformColor.h"
#include "tests/module/graphics/GraphicsTestUtil.h"

namespace {

TEST(GrElementFlags, ANewElementIsModifiedWithItsIdTagChangedAndNotDrawn) {
  const CGrLine line;
  EXPECT_TRUE(line.IsModified());
  EXPECT_TRUE(line.IsIdTagChanged());
  EXPECT_EQ(line.SessionId(), 0);
  EXPECT_EQ(line.Handle(), 0);
  EXPECT_EQ(line.Tag(), nullptr);
  EXPECT_EQ(line.Placement(), nullptr);
  EXPECT_TRUE(line.GetDisplay());
  EXPECT_EQ(line.Color(), CGrColor());
}

TEST(GrElementFlags, EverySetterMarksTheElementModified) {
  CGrCircle circle;
  const auto setters = std::vector<std::function<void()>>{
      [&] { circle.SetColor(CGrColor(5u)); },        [&] { circle.SetLayerName(L"A"); },
      [&] { circle.SetLineType(2); },                [&] { circle.SetLineTypeScale(3.0); },
      [&] { circle.SetIdTag(9); },                   [&] { circle.SetTag(L"t"); },
      [&] { circle.SetPlacement(CKdXform()); },      [&] { circle.SetRadius(4.0); },
      [&] { circle.Move(CKdVector(1, 0, 0)); },      [&] { circle.Rotate(CKdPoint(0, 0), 1.0); },
      [&] { circle.ScaleAxes(2, 2, 2); },            [&] { circle.Scale(0.5); },
  };
  for (std::size_t i = 0; i < setters.size(); ++i) {
    circle.SetModified(false);
    setters[i]();
    EXPECT_TRUE(circle.IsModified()) << "setter " << i;
  }
}

TEST(GrElementFlags, TheDisplaySetterMarksOnlyAChange) {
  CGrLine line;
  line.SetModified(false);
  line.SetDisplay(true);
  EXPECT_FALSE(line.IsModified());
  line.SetDisplay(false);
  EXPECT_TRUE(line.IsModified());
  EXPECT_FALSE(line.GetDisplay());
  EXPECT_FALSE(std::unique_ptr<CGrElement>(line.Clone())->GetDisplay()) << "copied with the element";
}

TEST(GrElementFlags, SettingTheIdTagMarksItChanged) {
  CGrLine line;
  line.SetIdTagChanged(false);
  line.SetIdTag(42);
  EXPECT_TRUE(line.IsIdTagChanged());
  EXPECT_EQ(line.IdTag(), 42u);
}

TEST(GrElementFlags, ResetDrawnForgetsTheEntity) {
  CGrLine line;
  line.SetSessionId(77);
  line.SetHandle(0x2A);
  line.SetModified(false);
  line.SetIdTagChanged(false);
  line.ResetDrawn();
  EXPECT_TRUE(line.IsModified());
  EXPECT_TRUE(line.IsIdTagChanged());
  EXPECT_EQ(line.SessionId(), 0);
  EXPECT_EQ(line.Handle(), 0);
}

TEST(GrElementCopy, ACopyHasItsIdTagChangedFlagSetEvenWhenTheOriginalsWasCleared) {
  CGrLine line(CKdPoint(0, 0), CKdPoint(1, 1));
  line.SetIdTagChanged(false);
  line.SetModified(false);
  const std::unique_ptr<CGrElement> copy(line.Clone());
  EXPECT_TRUE(copy->IsIdTagChanged());
  EXPECT_TRUE(copy->IsModified());
  EXPECT_FALSE(line.IsIdTagChanged()) << "the original keeps its own flag";
}

TEST(GrElementCopy, TheTagAndThePlacementAreCopiedDeeply) {
  CGrText text;
  text.SetTag(L"label");
  text.SetPlacement(CKdXform::Translation(CKdVector(5, 6, 7)));
  const std::unique_ptr<CGrElement> copy(text.Clone());
  text.SetTag(L"changed");
  text.ClearPlacement();
  ASSERT_NE(copy->Tag(), nullptr);
  EXPECT_EQ(*copy->Tag(), L"label");
  ASSERT_NE(copy->Placement(), nullptr);
  EXPECT_TRUE(copy->Placement()->IsEqual(CKdXform::Translation(CKdVector(5, 6, 7)), 0.0));
}

TEST(GrElementCopy, EveryKindClonesToItsOwnClassWithEqualAttributes) {
  for (const auto& element : grtest::SampleElements()) {
    const std::unique_ptr<CGrElement> clone(element->Clone());
    EXPECT_EQ(typeid(*clone), typeid(*element));
    EXPECT_TRUE(grtest::SameElement(*clone, *element)) << "type " << element->Type();
  }
  const CGrLineArc lineArc(CKdPoint(0, 0), 1.0, 0.0, 1.0);
  EXPECT_EQ(typeid(*std::unique_ptr<CGrElement>(lineArc.Clone())), typeid(CGrLineArc));
}

TEST(GrElementCounter, EveryConstructionCountsAndTheCountCanBeSet) {
  CGrElement::SetCount(10);
  const CGrLine line;
  EXPECT_EQ(CGrElement::Count(), 11u);
  const std::unique_ptr<CGrElement> copy(line.Clone());
  EXPECT_EQ(CGrElement::Count(), 12u);
  { const CGrCircle transient; }
  EXPECT_EQ(CGrElement::Count(), 13u) << "never decremented";
  // A polyline copy counts itself and each curve it clones.
  CGrPolyline polyline;
  polyline.Add(new CGrLine());
  polyline.Add(new CGrArc());
  CGrElement::SetCount(0);
  const CGrPolyline polylineCopy(polyline);
  EXPECT_EQ(CGrElement::Count(), 3u);
}

TEST(GrElementAttributes, LineTypeScalesWithinTheToleranceAreEqual) {
  CGrLine a;
  CGrLine b;
  a.SetLineTypeScale(1.0);
  b.SetLineTypeScale(1.0000005);
  EXPECT_TRUE(a.AttributesEqual(b));
  EXPECT_FALSE(a.AttributesDiffer(b));
  b.SetLineTypeScale(1.00001);
  EXPECT_FALSE(a.AttributesEqual(b));
  EXPECT_TRUE(a.AttributesDiffer(b));
}

TEST(GrElementAttributes, ColourLineTypeAndGeometryCountLayerAndTagDoNot) {
  CGrLine a(CKdPoint(0, 0), CKdPoint(1, 0));
  CGrLine b(CKdPoint(0, 0), CKdPoint(1, 0));
  b.SetLayerName(L"other");
  b.SetTag(L"other");
  EXPECT_TRUE(a.AttributesEqual(b));
  b.SetLineType(3);
  EXPECT_FALSE(a.AttributesEqual(b));
  b.SetLineType(0);
  b.SetColor(CGrColor::FromIndex(1));
  EXPECT_FALSE(a.AttributesEqual(b));
  b.SetColor(CGrColor());
  b.SetEnd(CKdPoint(1, 0.0000005));
  EXPECT_TRUE(a.AttributesEqual(b));
  b.SetEnd(CKdPoint(1, 0.00001));
  EXPECT_FALSE(a.AttributesEqual(b));
  EXPECT_FALSE(a.AttributesEqual(CGrLineArc())) << "another class is never equal";
  EXPECT_FALSE(CGrArc().AttributesEqual(CGrLineArc()));
}

TEST(GrElementTags, FindAndCloneByTagAreExactAndCaseSensitive) {
  CGrLine line;
  EXPECT_EQ(line.FindByTag(L""), nullptr) << "no tag is not an empty tag";
  line.SetTag(L"Kerb");
  EXPECT_EQ(line.FindByTag(L"Kerb"), &line);
  EXPECT_EQ(line.FindByTag(L"kerb"), nullptr);
  EXPECT_EQ(line.FindByTag(L"Kerb "), nullptr);
  const std::unique_ptr<CGrElement> clone(line.CloneByTag(L"Kerb"));
  ASSERT_NE(clone, nullptr);
  EXPECT_NE(clone.get(), &line);
  EXPECT_TRUE(grtest::SameElement(*clone, line));
  EXPECT_EQ(line.CloneByTag(L"KERB"), nullptr);
}

TEST(GrElementTags, KindsWithChildrenLookThroughThemDepthFirst) {
  auto inner = std::make_unique<CGrGroup>(L"inner");
  auto* deep = new CGrText();
  deep->SetTag(L"deep");
  inner->Add(deep);
  CGrGroup outer(L"outer");
  auto* first = new CGrLine();
  first->SetTag(L"twice");
  outer.Add(first);
  outer.Add(inner.release());
  auto* second = new CGrCircle();
  second->SetTag(L"twice");
  outer.Add(second);

  EXPECT_EQ(outer.FindByTag(L"deep"), deep);
  EXPECT_EQ(outer.FindByTag(L"twice"), first) << "the first in order wins";
  const std::unique_ptr<CGrElement> clone(outer.CloneByTag(L"deep"));
  ASSERT_NE(clone, nullptr);
  EXPECT_EQ(clone->Type(), grkind::kText);
  outer.SetTag(L"twice");
  EXPECT_EQ(outer.FindByTag(L"twice"), &outer) << "the element itself comes first";

  CGrPolyline polyline;
  auto* segment = new CGrArc();
  segment->SetTag(L"seg");
  polyline.Add(new CGrLine());
  polyline.Add(segment);
  EXPECT_EQ(polyline.FindByTag(L"seg"), segment);

  CGrElementBlock block;
  auto* child = new CGrLine();
  child->SetTag(L"child");
  block.Add(child);
  block.SetPosition(CKdPoint(100, 0));
  EXPECT_EQ(block.FindByTag(L"child"), child) << "the child in its own coordinates";

  CGrHatch hatch;
  auto* border = new CGrCircle();
  border->SetTag(L"edge");
  hatch.AddBorder(border);
  EXPECT_EQ(hatch.FindByTag(L"edge"), border);
  EXPECT_EQ(hatch.FindByTag(L"none"), nullptr);
}

// A translator that answers fixed values, to see when CGrColor asks it.
class FixedTranslator : public IGrPlatformColor {
public:
  std::uint32_t IndexToRgb(const std::uint32_t& index) const override { return 0x00ABCD00u + index; }
  std::uint32_t RgbToIndex(const std::uint32_t& rgb) const override { return rgb % 250u + 1u; }
};

class GrColorResolution : public testing::Test {
protected:
  void SetUp() override { previous = IGrPlatformColor::Install(nullptr); }
  void TearDown() override { IGrPlatformColor::Install(previous); }
  IGrPlatformColor* previous = nullptr;
};

TEST_F(GrColorResolution, TheConstructorsSetIndexRgbAndMethod) {
  EXPECT_EQ(CGrColor().Method(), grcolor::kMethodNone);
  EXPECT_NE(CGrColor(), CGrColor(0u, 0u)) << "the methods differ";
  CGrColor same(0u, 0u);
  same.SetMethod(grcolor::kMethodNone);
  EXPECT_EQ(CGrColor(), same) << "all three fields equal";
  const CGrColor rgb(0x123456u);
  EXPECT_EQ(rgb.StoredIndex(), 0u);
  EXPECT_EQ(rgb.StoredRgb(), 0x123456u);
  EXPECT_EQ(rgb.Method(), grcolor::kMethodRgb);
  const CGrColor both(5u, 0x0000FFu);
  EXPECT_EQ(both.Method(), grcolor::kMethodBoth);
  EXPECT_EQ(CGrColor::FromIndex(5).Method(), grcolor::kMethodByIndex);
  EXPECT_NE(CGrColor(5u, 0x0000FFu), CGrColor::FromIndex(5));
}

TEST_F(GrColorResolution, WithoutATranslatorTheStoredFieldsAreTheAnswer) {
  CGrColor color(7u, 0x00112233u);
  for (const std::int32_t method : {0, 1, 2, 3}) {
    color.SetMethod(method);
    EXPECT_EQ(color.Rgb(), 0x00112233u) << method;
    EXPECT_EQ(color.Index(), 7u) << method;
  }
}

TEST_F(GrColorResolution, OnlyAByIndexColourAsksForItsRgbAndOnlyATrueColourForItsIndex) {
  FixedTranslator translator;
  IGrPlatformColor::Install(&translator);
  CGrColor color(7u, 0x00112233u);
  color.SetMethod(grcolor::kMethodByIndex);
  EXPECT_EQ(color.Rgb(), 0x00ABCD07u);
  EXPECT_EQ(color.Index(), 7u);
  color.SetMethod(grcolor::kMethodRgb);
  EXPECT_EQ(color.Rgb(), 0x00112233u);
  EXPECT_EQ(color.Index(), 0x00112233u % 250u + 1u);
  for (const std::int32_t method : {0, 3}) {
    color.SetMethod(method);
    EXPECT_EQ(color.Rgb(), 0x00112233u) << "methods 0 and 3 resolve like true colour";
    EXPECT_EQ(color.Index(), 7u);
  }
  EXPECT_EQ(IGrPlatformColor::Install(nullptr), &translator) << "the setter hands back what it replaces";
}

TEST(GrElementFactory, MakesExactlyTheKindsOfItsCodes) {
  const std::vector<std::pair<int, int>> made = {{1, grkind::kText},        {2, grkind::kCircle},
                                                 {3, grkind::kLine},        {4, grkind::kPolyline},
                                                 {5, grkind::kElementBlock}, {6, grkind::kGroup},
                                                 {7, grkind::kHatch},       {8, grkind::kRectangleFace},
                                                 {9, grkind::kTriangleFace}, {15, grkind::kEllipse},
                                                 {16, grkind::kArc},        {105, grkind::kMesh}};
  for (const auto& [code, type] : made) {
    const std::unique_ptr<CGrElement> element(CGrElementFactory::Make(code));
    ASSERT_NE(element, nullptr) << code;
    EXPECT_EQ(element->Type(), type);
  }
  EXPECT_EQ(typeid(*std::unique_ptr<CGrElement>(CGrElementFactory::Make(16))), typeid(CGrArc));
  EXPECT_EQ(static_cast<CGrGroup*>(std::unique_ptr<CGrElement>(CGrElementFactory::Make(6)).get())->Name(), L"");
  for (const int code : {-1, 0, 10, 11, 12, 13, 14, 17, 50, 98, 99, 100, 104, 106, 1000}) {
    EXPECT_EQ(std::unique_ptr<CGrElement>(CGrElementFactory::Make(code)), nullptr) << code;
  }
}

TEST(GrElementKinds, TypeCodesAndTheLineArcSharingTheArcs) {
  const std::vector<int> expected = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 15, 16, 105, 99};
  const auto elements = grtest::SampleElements();
  ASSERT_EQ(elements.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(elements[i]->Type(), expected[i]);
  EXPECT_EQ(CGrLineArc().Type(), 16);
  EXPECT_EQ(CGrArc().Type(), 16);
}

}  // namespace
