// Surfaces: the TIN or grid definition (points and faces), and the breaklines and boundaries of
// the source data.
#include <algorithm>
#include <limits>
#include <unordered_map>

#include "landxml/internal/NumberText.h"
#include "landxml/internal/ReadContext.h"

namespace landxml::internal {
namespace {

constexpr std::uint32_t kNoPoint = std::numeric_limits<std::uint32_t>::max();

std::string Lowered(std::string_view text) {
  std::string value;
  for (char c : text)
    if (!IsXmlSpace(c)) value.push_back(static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c));
  return value;
}

// The first PntList3D or PntList2D child as points; none when there is neither.
std::vector<CPoint> ReadPointListChild(const CReadContext& context, pugi::xml_node node) {
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
    if (IsElement(child, "PntList3D")) return context.PointList(child, 3);
    if (IsElement(child, "PntList2D")) return context.PointList(child, 2);
  }
  return {};
}

CBreakline ReadBreakline(const CReadContext& context, pugi::xml_node node) {
  CBreakline line;
  line.name = context.Text(node, "name");
  line.desc = context.Text(node, "desc");
  line.brkType = context.Text(node, "brkType");
  line.points = ReadPointListChild(context, node);
  return line;
}

CBoundary ReadBoundary(const CReadContext& context, pugi::xml_node node) {
  CBoundary boundary;
  boundary.name = context.Text(node, "name");
  boundary.desc = context.Text(node, "desc");
  boundary.bndType = context.Text(node, "bndType");
  if (const pugi::xml_attribute trim = node.attribute("edgeTrim")) {
    const std::string value = Lowered(trim.value());
    if (value == "true" || value == "1") {
      boundary.edgeTrim = true;
    } else if (value == "false" || value == "0") {
      boundary.edgeTrim = false;
    } else {
      context.Fail(node, "edgeTrim=\"" + std::string(trim.value()) + "\" is neither true nor false");
    }
  }
  boundary.points = ReadPointListChild(context, node);
  return boundary;
}

void ReadSourceData(const CReadContext& context, pugi::xml_node node, CSurface& surface) {
  for (pugi::xml_node group = node.first_child(); group; group = group.next_sibling()) {
    if (IsElement(group, "Breaklines")) {
      for (pugi::xml_node child = group.first_child(); child; child = child.next_sibling())
        if (IsElement(child, "Breakline")) surface.breaklines.push_back(ReadBreakline(context, child));
    } else if (IsElement(group, "Boundaries")) {
      for (pugi::xml_node child = group.first_child(); child; child = child.next_sibling())
        if (IsElement(child, "Boundary")) surface.boundaries.push_back(ReadBoundary(context, child));
    }
  }
}

// Point ids to indices: a table when the ids are dense enough (they nearly always run 1..n), a
// hash map otherwise.
class CPointIndex {
public:
  CPointIndex(const CReadContext& context, const std::vector<std::uint64_t>& ids,
              const std::vector<pugi::xml_node>& nodes) {
    std::uint64_t maxId = 0;
    for (std::uint64_t id : ids) maxId = std::max(maxId, id);
    dense_ = maxId <= 4 * static_cast<std::uint64_t>(ids.size()) + 1024;
    if (dense_) table_.assign(static_cast<std::size_t>(maxId) + 1, kNoPoint);
    for (std::size_t i = 0; i < ids.size(); ++i) {
      const bool fresh =
          dense_ ? table_[static_cast<std::size_t>(ids[i])] == kNoPoint : map_.find(ids[i]) == map_.end();
      if (!fresh) context.Fail(nodes[i], "id " + std::to_string(ids[i]) + " is given to another point before");
      if (dense_) {
        table_[static_cast<std::size_t>(ids[i])] = static_cast<std::uint32_t>(i);
      } else {
        map_.emplace(ids[i], static_cast<std::uint32_t>(i));
      }
    }
  }

  std::uint32_t Find(std::uint64_t id) const {
    if (dense_) return id < table_.size() ? table_[static_cast<std::size_t>(id)] : kNoPoint;
    const auto it = map_.find(id);
    return it == map_.end() ? kNoPoint : it->second;
  }

private:
  bool dense_ = true;
  std::vector<std::uint32_t> table_;
  std::unordered_map<std::uint64_t, std::uint32_t> map_;
};

void ReadPoints(const CReadContext& context, pugi::xml_node pnts, CSurface& surface,
                std::vector<pugi::xml_node>& nodes) {
  for (pugi::xml_node p = pnts.first_child(); p; p = p.next_sibling()) {
    if (!IsElement(p, "P")) continue;
    const pugi::xml_attribute idAttribute = p.attribute("id");
    std::uint64_t id = 0;
    if (!idAttribute) context.Fail(p, "has no id");
    if (!ParseUnsigned(idAttribute.value(), id))
      context.Fail(p, "id=\"" + std::string(idAttribute.value()) + "\" is not a whole number");
    const CPoint point = context.Point(p);
    if (!point.hasZ) context.Fail(p, "expects \"northing easting elevation\"; the elevation is missing");
    if (surface.points.size() >= kNoPoint) context.Fail(p, "is one point too many for this reader");
    surface.points.push_back(point);
    surface.pointIds.push_back(id);
    nodes.push_back(p);
  }
}

void ReadFaces(const CReadContext& context, pugi::xml_node faces, const CPointIndex& index, CSurface& surface) {
  const int corners = surface.VerticesPerFace();
  for (pugi::xml_node f = faces.first_child(); f; f = f.next_sibling()) {
    if (!IsElement(f, "F")) continue;
    CFace face;
    CNumberList ids(f.child_value());
    int count = 0;
    std::uint64_t id = 0;
    while (ids.NextUnsigned(id)) {
      if (count == corners) {
        ++count;  // one too many
        break;
      }
      const std::uint32_t at = index.Find(id);
      if (at == kNoPoint) context.Fail(f, "names point " + std::to_string(id) + ", which <Pnts> does not hold");
      face.vertex[static_cast<std::size_t>(count++)] = at;
    }
    if (ids.Failed() || count != corners)
      context.Fail(f, std::string("expects the ids of ") +
                          (corners == 4 ? "four points (a grid face)" : "three points (a TIN face)"));
    if (const pugi::xml_attribute invisible = f.attribute("i")) {
      const std::string value = Lowered(invisible.value());
      if (value == "1" || value == "true") {
        face.invisible = true;
      } else if (value != "0" && value != "false") {
        context.Fail(f, "i=\"" + std::string(invisible.value()) + "\" is neither 1 nor 0");
      }
    }
    surface.faces.push_back(face);
  }
}

void ReadDefinition(const CReadContext& context, pugi::xml_node node, CSurface& surface) {
  const pugi::xml_attribute type = node.attribute("surfType");
  if (!type) context.Fail(node, "has no surfType (TIN or grid)");
  const std::string value = Lowered(type.value());
  if (value == "tin") {
    surface.type = SurfaceType::Tin;
  } else if (value == "grid") {
    surface.type = SurfaceType::Grid;
  } else {
    context.Fail(node, "surfType=\"" + std::string(type.value()) + "\" is neither TIN nor grid");
  }
  std::vector<pugi::xml_node> pointNodes;
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling())
    if (IsElement(child, "Pnts")) ReadPoints(context, child, surface, pointNodes);
  const CPointIndex index(context, surface.pointIds, pointNodes);
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling())
    if (IsElement(child, "Faces")) ReadFaces(context, child, index, surface);
}

CSurface ReadSurface(const CReadContext& context, pugi::xml_node node) {
  CSurface surface;
  surface.name = context.Text(node, "name");
  surface.desc = context.Text(node, "desc");
  bool defined = false;
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
    if (IsElement(child, "SourceData")) {
      ReadSourceData(context, child, surface);
    } else if (IsElement(child, "Definition")) {
      if (defined) context.Fail(child, "is the second <Definition> of one surface");
      defined = true;
      ReadDefinition(context, child, surface);
    }
  }
  return surface;
}

}  // namespace

void ReadSurfaces(CReadContext& context, pugi::xml_node surfaces, std::vector<CSurface>& out) {
  for (pugi::xml_node child = surfaces.first_child(); child; child = child.next_sibling())
    if (IsElement(child, "Surface")) out.push_back(ReadSurface(context, child));
}

}  // namespace landxml::internal
