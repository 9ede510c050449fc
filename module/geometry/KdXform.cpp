#include "module/geometry/KdXform.h"

#include <algorithm>
#include <cmath>

CKdXform::CKdXform() {
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) m_m[r][c] = r == c ? 1.0 : 0.0;
}

CKdXform CKdXform::Translation(const CKdVector& offset) {
  CKdXform x;
  x.m_m[0][3] = offset.x;
  x.m_m[1][3] = offset.y;
  x.m_m[2][3] = offset.z;
  return x;
}

CKdXform CKdXform::RotationZ(const CKdPoint& about, double angle_rad) {
  CKdXform turn;
  const double c = std::cos(angle_rad);
  const double s = std::sin(angle_rad);
  turn.m_m[0][0] = c;
  turn.m_m[0][1] = -s;
  turn.m_m[1][0] = s;
  turn.m_m[1][1] = c;
  const CKdVector toOrigin = CKdPoint(0.0, 0.0, 0.0) - about;
  return Translation(-toOrigin) * turn * Translation(toOrigin);
}

std::optional<CKdXform> CKdXform::RotationAboutAxis(const CKdPoint& axisPoint, const CKdVector& axisDirection,
                                                    double angle_rad) {
  const CKdVector u = axisDirection.Normalized();
  if (u.Length() == 0.0 || !std::isfinite(angle_rad)) return std::nullopt;
  // Rodrigues: R = cI + s[u]x + (1 - c) u u^T.
  const double c = std::cos(angle_rad);
  const double s = std::sin(angle_rad);
  const double k = 1.0 - c;
  CKdXform turn;
  turn.m_m[0][0] = c + k * u.x * u.x;
  turn.m_m[0][1] = k * u.x * u.y - s * u.z;
  turn.m_m[0][2] = k * u.x * u.z + s * u.y;
  turn.m_m[1][0] = k * u.y * u.x + s * u.z;
  turn.m_m[1][1] = c + k * u.y * u.y;
  turn.m_m[1][2] = k * u.y * u.z - s * u.x;
  turn.m_m[2][0] = k * u.z * u.x - s * u.y;
  turn.m_m[2][1] = k * u.z * u.y + s * u.x;
  turn.m_m[2][2] = c + k * u.z * u.z;
  const CKdVector toOrigin = CKdPoint(0.0, 0.0, 0.0) - axisPoint;
  return Translation(-toOrigin) * turn * Translation(toOrigin);
}

CKdXform CKdXform::Scaling(const CKdPoint& about, double factor) {
  const CKdVector toOrigin = CKdPoint(0.0, 0.0, 0.0) - about;
  return Translation(-toOrigin) * Scaling(factor, factor, factor) * Translation(toOrigin);
}

CKdXform CKdXform::Scaling(double factorX, double factorY, double factorZ) {
  CKdXform x;
  x.m_m[0][0] = factorX;
  x.m_m[1][1] = factorY;
  x.m_m[2][2] = factorZ;
  return x;
}

CKdXform CKdXform::MirrorX() { return Scaling(1.0, -1.0, 1.0); }
CKdXform CKdXform::MirrorY() { return Scaling(-1.0, 1.0, 1.0); }

double CKdXform::At(int row, int column) const {
  if (row < 0 || row > 3 || column < 0 || column > 3) return 0.0;
  return m_m[row][column];
}

CKdXform CKdXform::operator*(const CKdXform& first) const {
  CKdXform product;
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) {
      double sum = 0.0;
      for (int k = 0; k < 4; ++k) sum += m_m[r][k] * first.m_m[k][c];
      product.m_m[r][c] = sum;
    }
  return product;
}

double CKdXform::Determinant() const {
  const auto& m = m_m;
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) - m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

std::optional<CKdXform> CKdXform::Inverse() const {
  const double det = Determinant();
  if (det == 0.0 || !std::isfinite(det)) return std::nullopt;
  const auto& m = m_m;
  CKdXform inv;
  auto& n = inv.m_m;
  // The linear part by its adjugate, then the translation taken back through it.
  n[0][0] = (m[1][1] * m[2][2] - m[1][2] * m[2][1]) / det;
  n[0][1] = (m[0][2] * m[2][1] - m[0][1] * m[2][2]) / det;
  n[0][2] = (m[0][1] * m[1][2] - m[0][2] * m[1][1]) / det;
  n[1][0] = (m[1][2] * m[2][0] - m[1][0] * m[2][2]) / det;
  n[1][1] = (m[0][0] * m[2][2] - m[0][2] * m[2][0]) / det;
  n[1][2] = (m[0][2] * m[1][0] - m[0][0] * m[1][2]) / det;
  n[2][0] = (m[1][0] * m[2][1] - m[1][1] * m[2][0]) / det;
  n[2][1] = (m[0][1] * m[2][0] - m[0][0] * m[2][1]) / det;
  n[2][2] = (m[0][0] * m[1][1] - m[0][1] * m[1][0]) / det;
  for (int r = 0; r < 3; ++r) n[r][3] = -(n[r][0] * m[0][3] + n[r][1] * m[1][3] + n[r][2] * m[2][3]);
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 4; ++c)
      if (!std::isfinite(n[r][c])) return std::nullopt;
  return inv;
}

CKdPoint CKdXform::Apply(const CKdPoint& p) const {
  const auto& m = m_m;
  return {m[0][0] * p.x + m[0][1] * p.y + m[0][2] * p.z + m[0][3],
          m[1][0] * p.x + m[1][1] * p.y + m[1][2] * p.z + m[1][3],
          m[2][0] * p.x + m[2][1] * p.y + m[2][2] * p.z + m[2][3]};
}

CKdVector CKdXform::Apply(const CKdVector& v) const {
  const auto& m = m_m;
  return {m[0][0] * v.x + m[0][1] * v.y + m[0][2] * v.z, m[1][0] * v.x + m[1][1] * v.y + m[1][2] * v.z,
          m[2][0] * v.x + m[2][1] * v.y + m[2][2] * v.z};
}

bool CKdXform::IsSimilarityXY(double relTolerance, double* scale, bool* reflects) const {
  const auto& m = m_m;
  const double a = m[0][0], b = m[0][1], c = m[1][0], d = m[1][1];
  const double squares = a * a + b * b + c * c + d * d;
  if (!(squares > 0.0) || !std::isfinite(squares) || !std::isfinite(m[2][2])) return false;
  const double size = std::sqrt(squares);
  // x and y must not depend on z, nor z on x and y.
  const double coupling = std::max({std::fabs(m[0][2]), std::fabs(m[1][2]), std::fabs(m[2][0]), std::fabs(m[2][1])});
  if (coupling > relTolerance * size) return false;
  // Columns of the xy block orthogonal and of equal length.
  if (std::fabs((a * a + c * c) - (b * b + d * d)) > relTolerance * squares) return false;
  if (std::fabs(a * b + c * d) > relTolerance * squares) return false;
  if (scale != nullptr) *scale = std::sqrt(squares * 0.5);
  if (reflects != nullptr) *reflects = a * d - b * c < 0.0;
  return true;
}

bool CKdXform::IsEqual(const CKdXform& o, double tolerance) const {
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      if (!(std::fabs(m_m[r][c] - o.m_m[r][c]) <= tolerance)) return false;
  return true;
}
