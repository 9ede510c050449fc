// The element's virtual operations and the colour translator's sit in their fixed slots
// (checked under the Itanium ABI of this build, where a virtual destructor takes two slots).
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "module/graphics/GrElement.h"
#include "module/graphics/GrPlatformColor.h"

namespace {

// A pointer to a virtual member holds 1 + its byte offset in the vtable.
template <class F>
std::ptrdiff_t Slot(F member) {
  static_assert(sizeof(F) == 2 * sizeof(std::uintptr_t));
  std::uintptr_t raw[2];
  std::memcpy(raw, &member, sizeof raw);
  if ((raw[0] & 1u) == 0) return -1;
  return static_cast<std::ptrdiff_t>((raw[0] - 1) / sizeof(void*));
}

template <class Class, class Sig>
using MemberOf = Sig Class::*;

#define GR_SLOT(Class, member, Sig) Slot(static_cast<MemberOf<Class, Sig>>(&Class::member))

TEST(GrSlots, ElementOperationsInTheirOrder) {
  using E = CGrElement;
  // 0 and 1: the destructor.
  EXPECT_EQ(GR_SLOT(E, Clone, CGrElement*() const), 2);
  EXPECT_EQ(GR_SLOT(E, MakeGeometry, CKdElement*() const), 3);
  EXPECT_EQ(GR_SLOT(E, Move, void(const CKdVector&)), 4);
  EXPECT_EQ(GR_SLOT(E, Rotate, void(const CKdPoint&, double)), 5);
  EXPECT_EQ(GR_SLOT(E, ScaleAxes, void(double, double, double)), 6);
  EXPECT_EQ(GR_SLOT(E, Scale, void(double)), 7);
  EXPECT_EQ(GR_SLOT(E, ResetDrawn, void()), 8);
  EXPECT_EQ(GR_SLOT(E, Type, int() const), 9);
  EXPECT_EQ(GR_SLOT(E, AttributesEqual, bool(const CGrElement&) const), 10);
  EXPECT_EQ(GR_SLOT(E, AttributesDiffer, bool(const CGrElement&) const), 11);
  EXPECT_EQ(GR_SLOT(E, SetColor, void(const CGrColor&)), 12);
  EXPECT_EQ(GR_SLOT(E, BoundingRect, const CGrRect&() const), 13);
  EXPECT_EQ(GR_SLOT(E, BreakIntoCurves, void(CGrElementVector&, std::optional<double>) const), 14);
  EXPECT_EQ(GR_SLOT(E, WriteJson, void(GrJson::Value&) const), 15);
  EXPECT_EQ(GR_SLOT(E, ReadJson, void(const GrJson::Value&)), 16);
  EXPECT_EQ(GR_SLOT(E, SetLayerName, void(const std::wstring&)), 17);
  EXPECT_EQ(GR_SLOT(E, SetLineType, void(std::int32_t)), 18);
  EXPECT_EQ(GR_SLOT(E, SetLineTypeScale, void(double)), 19);
  EXPECT_EQ(GR_SLOT(E, GetDisplay, bool() const), 20);
  EXPECT_EQ(GR_SLOT(E, SetDisplay, void(bool)), 21);
  EXPECT_EQ(GR_SLOT(E, SetIdTag, void(std::uint32_t)), 22);
  EXPECT_EQ(GR_SLOT(E, FindByTag, CGrElement*(const std::wstring&)), 23);
  EXPECT_EQ(GR_SLOT(E, CloneByTag, CGrElement*(const std::wstring&) const), 24);
}

TEST(GrSlots, TranslatorOperationsBeforeItsDestructor) {
  using T = IGrPlatformColor;
  EXPECT_EQ(GR_SLOT(T, IndexToRgb, std::uint32_t(const std::uint32_t&) const), 0);
  EXPECT_EQ(GR_SLOT(T, RgbToIndex, std::uint32_t(const std::uint32_t&) const), 1);
}

}  // namespace
