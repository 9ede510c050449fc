// The virtual operations of the element, the curve interface and the arc sit in their fixed
// slots (checked here under the Itanium ABI of this build, where a virtual destructor takes
// two slots).
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iosfwd>

#include "module/geometry/KdArc.h"
#include "module/geometry/KdXform.h"

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

#define KD_SLOT(Class, member, Sig) Slot(static_cast<MemberOf<Class, Sig>>(&Class::member))

TEST(GeometrySlots, ElementOperations) {
  using E = CKdElement;
  EXPECT_EQ(KD_SLOT(E, GetClassConstant, int() const), 0);
  EXPECT_EQ(KD_SLOT(E, IsValid, bool() const), 1);
  // 2 and 3: the destructor.
  EXPECT_EQ(KD_SLOT(E, CloneElement, CKdElement*() const), 4);
  EXPECT_EQ(KD_SLOT(E, Translate, void(const CKdVector&)), 5);
  EXPECT_EQ(KD_SLOT(E, Rotate, void(const CKdPoint&, double)), 6);
  EXPECT_EQ(KD_SLOT(E, Transform, bool(const CKdXform&)), 7);
  EXPECT_EQ(KD_SLOT(E, Scale, void(double)), 8);
  EXPECT_EQ(KD_SLOT(E, Write, void(std::wostream&) const), 9);
  EXPECT_EQ(KD_SLOT(E, GetType, int() const), 10);
  EXPECT_EQ(KD_SLOT(E, IsEqual, bool(const CKdElement&) const), 11);
  EXPECT_EQ(KD_SLOT(E, IsNotEqual, bool(const CKdElement&) const), 12);
}

TEST(GeometrySlots, CurveOperations) {
  using C = IKdCurve;
  // 0 and 1: the destructor.
  EXPECT_EQ(KD_SLOT(C, Eval, CKdPoint(double) const), 2);
  EXPECT_EQ(KD_SLOT(C, StartPoint, CKdPoint() const), 3);
  EXPECT_EQ(KD_SLOT(C, EndPoint, CKdPoint() const), 4);
  EXPECT_EQ(KD_SLOT(C, StartTangent, CKdVector() const), 5);
  EXPECT_EQ(KD_SLOT(C, EndTangent, CKdVector() const), 6);
  EXPECT_EQ(KD_SLOT(C, Length, double() const), 7);
  EXPECT_EQ(KD_SLOT(C, Length, double(double) const), 8);
  EXPECT_EQ(KD_SLOT(C, Reverse, void()), 9);
  EXPECT_EQ(KD_SLOT(C, ClosestParam, double(const CKdPoint&) const), 10);
  EXPECT_EQ(KD_SLOT(C, Clone, IKdCurve*() const), 11);
  EXPECT_EQ(KD_SLOT(C, Translate, void(const CKdVector&)), 12);
  EXPECT_EQ(KD_SLOT(C, Rotate, void(const CKdPoint&, double)), 13);
  EXPECT_EQ(KD_SLOT(C, Transform, bool(const CKdXform&)), 14);
  EXPECT_EQ(KD_SLOT(C, Scale, void(double)), 15);
  EXPECT_EQ(KD_SLOT(C, Write, void(std::wostream&) const), 16);
  EXPECT_EQ(KD_SLOT(C, IsEqual, bool(const CKdElement&) const), 17);
  EXPECT_EQ(KD_SLOT(C, IsNotEqual, bool(const CKdElement&) const), 18);
  EXPECT_EQ(KD_SLOT(C, Tangent, CKdVector(double) const), 19);
  EXPECT_EQ(KD_SLOT(C, ParamAtLength, double(double) const), 20);
  EXPECT_EQ(KD_SLOT(C, PointAt, CKdPoint(double) const), 21);
  EXPECT_EQ(KD_SLOT(C, DirectionAt, CKdVector(double) const), 22);
  EXPECT_EQ(KD_SLOT(C, NormalAt, CKdVector(double) const), 23);
  EXPECT_EQ(KD_SLOT(C, MirrorX, void()), 24);
  EXPECT_EQ(KD_SLOT(C, MirrorY, void()), 25);
}

TEST(GeometrySlots, ArcOperationsFollowTheElements) {
  using A = CKdArc;
  EXPECT_EQ(KD_SLOT(A, SetCenter, void(double, double, double)), 13);
  EXPECT_EQ(KD_SLOT(A, SetCenter, void(const CKdPoint&)), 14);
  EXPECT_EQ(KD_SLOT(A, SetRadius, void(double)), 15);
  EXPECT_EQ(KD_SLOT(A, SetStartAngle, void(double)), 16);
  EXPECT_EQ(KD_SLOT(A, SetSweep, void(double)), 17);
  EXPECT_EQ(KD_SLOT(A, SetDirection, void(int)), 18);
  EXPECT_EQ(KD_SLOT(A, Center, CKdPoint() const), 19);
  EXPECT_EQ(KD_SLOT(A, Radius, double() const), 20);
  EXPECT_EQ(KD_SLOT(A, StartAngle, double() const), 21);
  EXPECT_EQ(KD_SLOT(A, EndAngle, double() const), 22);
  EXPECT_EQ(KD_SLOT(A, IsCounterClockwise, bool() const), 23);
  EXPECT_EQ(KD_SLOT(A, IsClockwise, bool() const), 24);
  EXPECT_EQ(KD_SLOT(A, Direction, int() const), 25);
  EXPECT_EQ(KD_SLOT(A, Sweep, double() const), 26);
  EXPECT_EQ(KD_SLOT(A, Bulge, double() const), 27);
  EXPECT_EQ(KD_SLOT(A, IsEqual, bool(const CKdArc&) const), 28);
  EXPECT_EQ(KD_SLOT(A, IsNotEqual, bool(const CKdArc&) const), 29);
  // The element's operations keep their places in the arc's primary table.
  EXPECT_EQ(KD_SLOT(A, GetType, int() const), 10);
}

}  // namespace
