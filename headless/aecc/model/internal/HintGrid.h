// Start points for walks through a triangulation: one handle per cell of a grid over its extent,
// about four vertices to a cell, so a point location that starts from the hint near the point
// crosses a handful of triangles instead of the square root of their number.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "headless/aecc/model/internal/TinGeometry.h"

namespace headless::land::tin {

template <class Handle>
class HintGrid {
public:
  // Sizes the grid for `count` handles over `box`; forgets earlier ones.
  void Reset(const PlanBox& box, std::size_t count) {
    const double width = std::max(box.xMax - box.xMin, 1e-300);
    const double height = std::max(box.yMax - box.yMin, 1e-300);
    const double cells = std::max(1.0, static_cast<double>(count) / 4.0);
    cell_ = std::sqrt(width * height / cells);
    if (!(cell_ > 0.0) || !std::isfinite(cell_)) cell_ = std::max(width, height);
    nx_ = static_cast<int>(std::clamp(std::ceil(width / cell_), 1.0, 65536.0));
    ny_ = static_cast<int>(std::clamp(std::ceil(height / cell_), 1.0, 65536.0));
    x0_ = box.xMin;
    y0_ = box.yMin;
    hints_.assign(static_cast<std::size_t>(nx_) * static_cast<std::size_t>(ny_), Handle());
  }

  void Put(Point2 p, Handle h) { hints_[Index(CellOf(p.x, x0_, nx_), CellOf(p.y, y0_, ny_))] = h; }

  // A handle from the cell of p or, if that is empty, from the nearest filled cell within three
  // cells; a default handle when there is none.
  Handle Near(Point2 p) const {
    if (hints_.empty()) return Handle();
    const int cx = CellOf(p.x, x0_, nx_);
    const int cy = CellOf(p.y, y0_, ny_);
    for (int ring = 0; ring <= 3; ++ring) {
      for (int dx = -ring; dx <= ring; ++dx) {
        for (int dy = -ring; dy <= ring; ++dy) {
          if (std::max(std::abs(dx), std::abs(dy)) != ring) continue;
          const int x = cx + dx;
          const int y = cy + dy;
          if (x < 0 || y < 0 || x >= nx_ || y >= ny_) continue;
          const Handle h = hints_[Index(x, y)];
          if (h != Handle()) return h;
        }
      }
    }
    return Handle();
  }

private:
  int CellOf(double v, double origin, int n) const {
    const double c = (v - origin) / cell_;
    if (!(c > 0.0)) return 0;
    return c >= n - 1 ? n - 1 : static_cast<int>(c);
  }
  std::size_t Index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(nx_) + static_cast<std::size_t>(x);
  }

  double x0_ = 0.0, y0_ = 0.0, cell_ = 1.0;
  int nx_ = 0, ny_ = 0;
  std::vector<Handle> hints_;
};

}  // namespace headless::land::tin
