// Turns a surface's definition into what the triangulation is built from: the data clip
// applied, the areas of pasted surfaces taken out of the data beneath them, and points and
// constraints put in the order that settles which vertex and which elevation wins
// (TinSurface.h, steps 1 to 4).
#pragma once

#include <memory>
#include <vector>

#include "headless/aecc/model/internal/TinTriangulation.h"

namespace headless::land::tin {

BuildInput PrepareBuild(const std::vector<Point3>& points, const std::vector<std::vector<Point3>>& breaklines,
                        const std::vector<SurfaceBoundary>& boundaries,
                        const std::vector<std::shared_ptr<const TinTriangulation>>& pastes);

}  // namespace headless::land::tin
