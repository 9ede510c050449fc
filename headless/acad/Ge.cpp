// The AcGe value types' out-of-line members: tolerances, vector and point transforms, matrices.
#include <algorithm>
#include <cmath>

#include "platform/acad/gemat3d.h"
#include "platform/acad/gepnt2d.h"
#include "platform/acad/gepnt3d.h"

AcGeTol AcGeContext::gTol;

const AcGeVector2d AcGeVector2d::kIdentity{1.0, 1.0};
const AcGeVector2d AcGeVector2d::kXAxis{1.0, 0.0};
const AcGeVector2d AcGeVector2d::kYAxis{0.0, 1.0};
const AcGePoint2d AcGePoint2d::kOrigin{0.0, 0.0};
const AcGeVector3d AcGeVector3d::kIdentity{1.0, 1.0, 1.0};
const AcGeVector3d AcGeVector3d::kXAxis{1.0, 0.0, 0.0};
const AcGeVector3d AcGeVector3d::kYAxis{0.0, 1.0, 0.0};
const AcGeVector3d AcGeVector3d::kZAxis{0.0, 0.0, 1.0};
const AcGePoint3d AcGePoint3d::kOrigin{0.0, 0.0, 0.0};
const AcGeMatrix3d AcGeMatrix3d::kIdentity;

namespace {
constexpr double kTwoPi = 6.283185307179586476925;
}

// --- Vectors and points -------------------------------------------------------------------------

AcGeVector3d AcGeVector3d::normal(const AcGeTol& tol) const {
  const double len = length();
  return len <= tol.equalVector() ? *this : *this / len;
}

bool AcGeVector3d::isParallelTo(const AcGeVector3d& v, const AcGeTol& tol) const {
  if (isZeroLength(tol) || v.isZeroLength(tol)) return false;
  return normal(tol).crossProduct(v.normal(tol)).length() <= tol.equalVector();
}

bool AcGeVector3d::isPerpendicularTo(const AcGeVector3d& v, const AcGeTol& tol) const {
  if (isZeroLength(tol) || v.isZeroLength(tol)) return false;
  return std::fabs(normal(tol).dotProduct(v.normal(tol))) <= tol.equalVector();
}

// AutoCAD's arbitrary axis algorithm: the x axis of the plane whose normal this is.
AcGeVector3d AcGeVector3d::perpVector() const {
  const AcGeVector3d n = normal();
  constexpr double kLimit = 1.0 / 64.0;
  const AcGeVector3d x = (std::fabs(n.x) < kLimit && std::fabs(n.y) < kLimit) ? kYAxis.crossProduct(n)
                                                                            : kZAxis.crossProduct(n);
  return x.normal();
}

double AcGeVector3d::angleTo(const AcGeVector3d& v) const {
  const double cross = crossProduct(v).length();
  return std::atan2(cross, dotProduct(v));
}

double AcGeVector3d::angleTo(const AcGeVector3d& v, const AcGeVector3d& refVec) const {
  const AcGeVector3d cross = crossProduct(v);
  double angle = std::atan2(cross.length(), dotProduct(v));
  if (cross.dotProduct(refVec) < 0.0) angle = kTwoPi - angle;
  return angle >= kTwoPi ? 0.0 : angle;
}

AcGeVector3d& AcGeVector3d::rotateBy(double ang, const AcGeVector3d& axis) {
  return transformBy(AcGeMatrix3d::rotation(ang, axis));
}

AcGeVector3d& AcGeVector3d::transformBy(const AcGeMatrix3d& m) {
  const AcGeVector3d v = *this;
  x = m.entry[0][0] * v.x + m.entry[0][1] * v.y + m.entry[0][2] * v.z;
  y = m.entry[1][0] * v.x + m.entry[1][1] * v.y + m.entry[1][2] * v.z;
  z = m.entry[2][0] * v.x + m.entry[2][1] * v.y + m.entry[2][2] * v.z;
  return *this;
}

AcGeVector3d operator*(const AcGeMatrix3d& mat, const AcGeVector3d& vec) {
  AcGeVector3d v = vec;
  return v.transformBy(mat);
}

AcGePoint3d& AcGePoint3d::transformBy(const AcGeMatrix3d& m) {
  const AcGePoint3d p = *this;
  x = m.entry[0][0] * p.x + m.entry[0][1] * p.y + m.entry[0][2] * p.z + m.entry[0][3];
  y = m.entry[1][0] * p.x + m.entry[1][1] * p.y + m.entry[1][2] * p.z + m.entry[1][3];
  z = m.entry[2][0] * p.x + m.entry[2][1] * p.y + m.entry[2][2] * p.z + m.entry[2][3];
  return *this;
}

AcGePoint2d AcGePoint3d::convert2d() const { return {x, y}; }

AcGePoint3d operator*(const AcGeMatrix3d& mat, const AcGePoint3d& pnt) {
  AcGePoint3d p = pnt;
  return p.transformBy(mat);
}

// --- Matrices -----------------------------------------------------------------------------------

AcGeMatrix3d::AcGeMatrix3d() { setToIdentity(); }

AcGeMatrix3d& AcGeMatrix3d::setToIdentity() {
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) entry[r][c] = r == c ? 1.0 : 0.0;
  return *this;
}

AcGeMatrix3d AcGeMatrix3d::translation(const AcGeVector3d& vec) { return AcGeMatrix3d().setToTranslation(vec); }

AcGeMatrix3d AcGeMatrix3d::rotation(double angle, const AcGeVector3d& axis, const AcGePoint3d& center) {
  return AcGeMatrix3d().setToRotation(angle, axis, center);
}

AcGeMatrix3d AcGeMatrix3d::scaling(double scaleAll, const AcGePoint3d& center) {
  return AcGeMatrix3d().setToScaling(scaleAll, center);
}

AcGeMatrix3d AcGeMatrix3d::planeToWorld(const AcGeVector3d& normal) {
  const AcGeVector3d z = normal.normal();
  const AcGeVector3d x = z.perpVector();
  const AcGeVector3d y = z.crossProduct(x);
  return AcGeMatrix3d().setCoordSystem(AcGePoint3d::kOrigin, x, y, z);
}

AcGeMatrix3d AcGeMatrix3d::worldToPlane(const AcGeVector3d& normal) { return planeToWorld(normal).inverse(); }

AcGeMatrix3d AcGeMatrix3d::alignCoordSys(const AcGePoint3d& fromOrigin, const AcGeVector3d& fromXAxis,
                                         const AcGeVector3d& fromYAxis, const AcGeVector3d& fromZAxis,
                                         const AcGePoint3d& toOrigin, const AcGeVector3d& toXAxis,
                                         const AcGeVector3d& toYAxis, const AcGeVector3d& toZAxis) {
  const AcGeMatrix3d from = AcGeMatrix3d().setCoordSystem(fromOrigin, fromXAxis, fromYAxis, fromZAxis);
  const AcGeMatrix3d to = AcGeMatrix3d().setCoordSystem(toOrigin, toXAxis, toYAxis, toZAxis);
  return to * from.inverse();
}

AcGeMatrix3d& AcGeMatrix3d::setToTranslation(const AcGeVector3d& vec) {
  setToIdentity();
  return setTranslation(vec);
}

// Rodrigues' rotation about the axis, then moved so that center stays put.
AcGeMatrix3d& AcGeMatrix3d::setToRotation(double angle, const AcGeVector3d& axis, const AcGePoint3d& center) {
  setToIdentity();
  const AcGeVector3d u = axis.normal();
  if (u.isZeroLength()) return *this;
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  const double t = 1.0 - c;
  entry[0][0] = t * u.x * u.x + c;
  entry[0][1] = t * u.x * u.y - s * u.z;
  entry[0][2] = t * u.x * u.z + s * u.y;
  entry[1][0] = t * u.x * u.y + s * u.z;
  entry[1][1] = t * u.y * u.y + c;
  entry[1][2] = t * u.y * u.z - s * u.x;
  entry[2][0] = t * u.x * u.z - s * u.y;
  entry[2][1] = t * u.y * u.z + s * u.x;
  entry[2][2] = t * u.z * u.z + c;
  AcGeVector3d moved = center.asVector();
  moved.transformBy(*this);
  return setTranslation(center.asVector() - moved);
}

AcGeMatrix3d& AcGeMatrix3d::setToScaling(double scaleAll, const AcGePoint3d& center) {
  setToIdentity();
  for (int i = 0; i < 3; ++i) entry[i][i] = scaleAll;
  return setTranslation(center.asVector() * (1.0 - scaleAll));
}

AcGeMatrix3d& AcGeMatrix3d::setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                                           const AcGeVector3d& yAxis, const AcGeVector3d& zAxis) {
  setToIdentity();
  for (unsigned int r = 0; r < 3; ++r) {
    entry[r][0] = xAxis[r];
    entry[r][1] = yAxis[r];
    entry[r][2] = zAxis[r];
    entry[r][3] = origin[r];
  }
  return *this;
}

void AcGeMatrix3d::getCoordSystem(AcGePoint3d& origin, AcGeVector3d& xAxis, AcGeVector3d& yAxis,
                                  AcGeVector3d& zAxis) const {
  for (unsigned int r = 0; r < 3; ++r) {
    xAxis[r] = entry[r][0];
    yAxis[r] = entry[r][1];
    zAxis[r] = entry[r][2];
    origin[r] = entry[r][3];
  }
}

AcGeMatrix3d& AcGeMatrix3d::setTranslation(const AcGeVector3d& vec) {
  entry[0][3] = vec.x;
  entry[1][3] = vec.y;
  entry[2][3] = vec.z;
  return *this;
}

AcGeVector3d AcGeMatrix3d::translation() const { return {entry[0][3], entry[1][3], entry[2][3]}; }

AcGeMatrix3d AcGeMatrix3d::operator*(const AcGeMatrix3d& mat) const {
  AcGeMatrix3d product;
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) {
      double sum = 0.0;
      for (int k = 0; k < 4; ++k) sum += entry[r][k] * mat.entry[k][c];
      product.entry[r][c] = sum;
    }
  return product;
}

AcGeMatrix3d& AcGeMatrix3d::operator*=(const AcGeMatrix3d& mat) { return *this = *this * mat; }
AcGeMatrix3d& AcGeMatrix3d::preMultBy(const AcGeMatrix3d& leftSide) { return *this = leftSide * *this; }
AcGeMatrix3d& AcGeMatrix3d::postMultBy(const AcGeMatrix3d& rightSide) { return *this = *this * rightSide; }
AcGeMatrix3d& AcGeMatrix3d::setToProduct(const AcGeMatrix3d& mat1, const AcGeMatrix3d& mat2) {
  return *this = mat1 * mat2;
}

// Gauss-Jordan elimination with partial pivoting.
bool AcGeMatrix3d::inverse(AcGeMatrix3d& inv, double tol) const {
  double a[4][8];
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) {
      a[r][c] = entry[r][c];
      a[r][c + 4] = r == c ? 1.0 : 0.0;
    }
  for (int col = 0; col < 4; ++col) {
    int pivot = col;
    for (int r = col + 1; r < 4; ++r)
      if (std::fabs(a[r][col]) > std::fabs(a[pivot][col])) pivot = r;
    if (std::fabs(a[pivot][col]) <= tol) return false;
    if (pivot != col)
      for (int c = 0; c < 8; ++c) std::swap(a[pivot][c], a[col][c]);
    const double p = a[col][col];
    for (int c = 0; c < 8; ++c) a[col][c] /= p;
    for (int r = 0; r < 4; ++r) {
      if (r == col || a[r][col] == 0.0) continue;
      const double f = a[r][col];
      for (int c = 0; c < 8; ++c) a[r][c] -= f * a[col][c];
    }
  }
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) inv.entry[r][c] = a[r][c + 4];
  return true;
}

AcGeMatrix3d AcGeMatrix3d::inverse() const {
  AcGeMatrix3d inv;
  return inverse(inv, 1e-300) ? inv : *this;
}

AcGeMatrix3d& AcGeMatrix3d::invert() { return *this = inverse(); }

bool AcGeMatrix3d::isSingular(const AcGeTol& tol) const { return std::fabs(det()) <= tol.equalPoint(); }

AcGeMatrix3d& AcGeMatrix3d::transposeIt() {
  for (int r = 0; r < 4; ++r)
    for (int c = r + 1; c < 4; ++c) std::swap(entry[r][c], entry[c][r]);
  return *this;
}

AcGeMatrix3d AcGeMatrix3d::transpose() const {
  AcGeMatrix3d t = *this;
  return t.transposeIt();
}

double AcGeMatrix3d::det() const {
  // Laplace expansion over 2x2 minors of the top and bottom row pairs.
  const double(*m)[4] = entry;
  const double s0 = m[0][0] * m[1][1] - m[1][0] * m[0][1];
  const double s1 = m[0][0] * m[1][2] - m[1][0] * m[0][2];
  const double s2 = m[0][0] * m[1][3] - m[1][0] * m[0][3];
  const double s3 = m[0][1] * m[1][2] - m[1][1] * m[0][2];
  const double s4 = m[0][1] * m[1][3] - m[1][1] * m[0][3];
  const double s5 = m[0][2] * m[1][3] - m[1][2] * m[0][3];
  const double c5 = m[2][2] * m[3][3] - m[3][2] * m[2][3];
  const double c4 = m[2][1] * m[3][3] - m[3][1] * m[2][3];
  const double c3 = m[2][1] * m[3][2] - m[3][1] * m[2][2];
  const double c2 = m[2][0] * m[3][3] - m[3][0] * m[2][3];
  const double c1 = m[2][0] * m[3][2] - m[3][0] * m[2][2];
  const double c0 = m[2][0] * m[3][1] - m[3][0] * m[2][1];
  return s0 * c5 - s1 * c4 + s2 * c3 + s3 * c2 - s4 * c1 + s5 * c0;
}

double AcGeMatrix3d::scale() const {
  double largest = 0.0;
  for (int c = 0; c < 3; ++c)
    largest = std::max(largest, std::sqrt(entry[0][c] * entry[0][c] + entry[1][c] * entry[1][c] + entry[2][c] * entry[2][c]));
  return largest;
}

bool AcGeMatrix3d::isUniScaledOrtho(const AcGeTol& tol) const {
  const AcGeVector3d x(entry[0][0], entry[1][0], entry[2][0]);
  const AcGeVector3d y(entry[0][1], entry[1][1], entry[2][1]);
  const AcGeVector3d z(entry[0][2], entry[1][2], entry[2][2]);
  const double s = x.length();
  if (s <= tol.equalVector()) return false;
  const double relTol = tol.equalVector() * std::max(1.0, s * s);
  return std::fabs(y.length() - s) <= tol.equalVector() * std::max(1.0, s) &&
         std::fabs(z.length() - s) <= tol.equalVector() * std::max(1.0, s) && std::fabs(x.dotProduct(y)) <= relTol &&
         std::fabs(y.dotProduct(z)) <= relTol && std::fabs(x.dotProduct(z)) <= relTol;
}

bool AcGeMatrix3d::isEqualTo(const AcGeMatrix3d& mat, const AcGeTol& tol) const {
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      if (std::fabs(entry[r][c] - mat.entry[r][c]) > tol.equalVector()) return false;
  return true;
}
