#include "module/acad/GrAcadHatchDc.h"

#include <cmath>
#include <memory>
#include <optional>
#include <vector>

#include "module/acad/GrAcadCurveDc.h"
#include "module/graphics/GrArc.h"
#include "module/graphics/GrHatch.h"
#include "module/graphics/GrLine.h"
#include "module/graphics/GrPolyline.h"
#include "platform/acad/dbhatch.h"

namespace {

constexpr const wchar_t* kSolid = L"SOLID";

// One loop's edges, owned until appended (the hatch copies them).
struct LoopEdges {
  std::vector<std::unique_ptr<AcGeLineSeg2d>> lines;
  std::vector<std::unique_ptr<AcGeCircArc2d>> arcs;
  AcGeVoidPointerArray pointers;
  AcGeIntArray types;
};

// The loop of one border; false when a piece is neither a line nor an arc.
bool BuildLoop(const CGrElement& border, LoopEdges& loop, std::optional<double>& elevation) {
  CGrElementVector pieces;
  border.BreakIntoCurves(pieces);
  for (const auto& piece : pieces) {
    if (const auto* line = dynamic_cast<const CGrLine*>(piece.get())) {
      if (!elevation) elevation = line->Start().z;
      loop.lines.push_back(std::make_unique<AcGeLineSeg2d>(AcGePoint2d(line->Start().x, line->Start().y),
                                                           AcGePoint2d(line->End().x, line->End().y)));
      loop.pointers.append(loop.lines.back().get());
      loop.types.append(AcDbHatch::kLine);
    } else if (const auto* arc = dynamic_cast<const CGrArc*>(piece.get())) {
      if (!elevation) elevation = arc->Center().z;
      const AcGePoint2d centre(arc->Center().x, arc->Center().y);
      const double sweep = std::fabs(arc->Sweep());
      // A clockwise arc measures its angles clockwise from the x axis.
      const bool clockwise = arc->Sweep() < 0.0;
      const double start = clockwise ? -arc->StartAngle() : arc->StartAngle();
      loop.arcs.push_back(std::make_unique<AcGeCircArc2d>(centre, arc->Radius(), start, start + sweep,
                                                          AcGeVector2d::kXAxis, clockwise));
      loop.pointers.append(loop.arcs.back().get());
      loop.types.append(AcDbHatch::kCirArc);
    } else {
      return false;
    }
  }
  return !loop.pointers.isEmpty();
}

Acad::ErrorStatus SetLoops(const CGrHatch& hatch, AcDbHatch& entity) {
  std::vector<LoopEdges> loops(hatch.Borders().Size());
  std::optional<double> elevation;
  for (std::size_t i = 0; i < loops.size(); ++i) {
    if (!BuildLoop(*hatch.Borders().At(i), loops[i], elevation)) return Acad::eInvalidInput;
  }
  if (loops.empty()) return Acad::eInvalidInput;
  const std::wstring& pattern = hatch.Pattern();
  Acad::ErrorStatus es = entity.setPattern(AcDbHatch::kPreDefined, pattern.empty() ? kSolid : pattern.c_str());
  if (es == Acad::eOk) es = entity.setNormal(AcGeVector3d::kZAxis);
  if (es == Acad::eOk) es = entity.setElevation(elevation.value_or(0.0));
  while (es == Acad::eOk && entity.numLoops() > 0) es = entity.removeLoopAt(entity.numLoops() - 1);
  for (std::size_t i = 0; i < loops.size() && es == Acad::eOk; ++i) {
    es = entity.appendLoop(i == 0 ? AcDbHatch::kExternal : AcDbHatch::kDefault, loops[i].pointers, loops[i].types);
  }
  return es == Acad::eOk ? entity.evaluateHatch() : es;
}

CKdPoint At(const AcGePoint2d& p, double z) { return {p.x, p.y, z}; }

double AngleOf(const AcGeVector2d& v) { return std::atan2(v.y, v.x); }

}  // namespace

AcDbEntity* CGrAcadHatchDc::MakeEntity(CGrElement* element) {
  return MakeKindEntity<CGrHatch, AcDbHatch>(element, SetLoops);
}

CGrElement* CGrAcadHatchDc::MakeElement(AcDbObject* object) {
  const AcDbHatch* entity = AcDbHatch::cast(object);
  if (entity == nullptr) return nullptr;
  auto* hatch = new CGrHatch(entity->patternName());
  const double z = entity->elevation();
  for (int i = 0; i < entity->numLoops(); ++i) {
    Adesk::Int32 type = 0;
    AcGeVoidPointerArray edges;
    AcGeIntArray types;
    if (entity->getLoopAt(i, type, edges, types) != Acad::eOk) continue;
    auto* border = new CGrPolyline;
    for (int k = 0; k < edges.length(); ++k) {
      if (types[k] == AcDbHatch::kLine) {
        std::unique_ptr<AcGeLineSeg2d> line(static_cast<AcGeLineSeg2d*>(edges[k]));
        border->Add(new CGrLine(At(line->startPoint(), z), At(line->endPoint(), z)));
      } else if (types[k] == AcDbHatch::kCirArc) {
        std::unique_ptr<AcGeCircArc2d> arc(static_cast<AcGeCircArc2d*>(edges[k]));
        const double reference = AngleOf(arc->refVec());
        const double sweep = arc->endAng() - arc->startAng();
        const double start = arc->isClockWise() ? reference - arc->startAng() : reference + arc->startAng();
        border->Add(new CGrLineArc(At(arc->center(), z), arc->radius(), gracad::Normalized(start),
                                   arc->isClockWise() ? -sweep : sweep));
      }
    }
    border->SetClosed(true);
    hatch->AddBorder(border);
  }
  ReadCommonProperties(entity, hatch);
  return hatch;
}
