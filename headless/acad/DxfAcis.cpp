#include "headless/acad/DxfAcis.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <numbers>
#include <sstream>
#include <utility>

namespace headless::dxf {

namespace {

std::string Num(double v) {
  char buf[32];
  auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v == 0.0 ? 0.0 : v, std::chars_format::general, 17);
  (void)ec;
  return std::string(buf, end);
}

// One SAT line from its pieces (appended one by one: GCC 12 misjudges "literal" + string at -O3).
template <class... Parts>
std::string Join(const Parts&... parts) {
  std::string line;
  ((line += parts), ...);
  return line;
}

std::string Ref(int index) { return Join(std::string_view("$"), std::to_string(index)); }

std::string Counted(const std::string& text) {
  return Join(std::string_view("@"), std::to_string(text.size()), std::string_view(" "), text);
}

// A closed polyhedron: faces are vertex index loops, counter-clockwise seen from outside.
struct Polyhedron {
  std::vector<AcGePoint3d> points;
  std::vector<std::vector<int>> faces;
};

Polyhedron FrustumMesh(const AcDbImpAccess::Frustum& f) {
  Polyhedron mesh;
  const int n = kFrustumSegments;
  const double topY = f.xRadius > 0.0 ? f.yRadius * f.topXRadius / f.xRadius : 0.0;
  const bool cone = f.topXRadius <= 0.0;
  for (int i = 0; i < n; ++i) {
    const double t = 2.0 * std::numbers::pi * i / n;
    mesh.points.push_back(AcGePoint3d(f.xRadius * std::cos(t), f.yRadius * std::sin(t), -f.height / 2.0));
  }
  if (cone) {
    mesh.points.push_back(AcGePoint3d(0.0, 0.0, f.height / 2.0));
  } else {
    for (int i = 0; i < n; ++i) {
      const double t = 2.0 * std::numbers::pi * i / n;
      mesh.points.push_back(AcGePoint3d(f.topXRadius * std::cos(t), topY * std::sin(t), f.height / 2.0));
    }
  }
  for (AcGePoint3d& p : mesh.points) p.transformBy(f.placement);
  // A placement that mirrors turns every face inside out: the loops turn with it.
  const bool mirrored = f.placement.det() < 0.0;
  const auto add = [&](std::vector<int> face) {
    if (mirrored) std::reverse(face.begin(), face.end());
    mesh.faces.push_back(std::move(face));
  };
  std::vector<int> bottom;
  for (int i = n - 1; i >= 0; --i) bottom.push_back(i);
  add(bottom);
  if (!cone) {
    std::vector<int> top;
    for (int i = 0; i < n; ++i) top.push_back(n + i);
    add(top);
  }
  for (int i = 0; i < n; ++i) {
    const int j = (i + 1) % n;
    if (cone) {
      add({i, j, n});
    } else {
      add({i, j, n + j, n + i});
    }
  }
  return mesh;
}

std::vector<std::string> SatOf(const Polyhedron& mesh) {
  // Record numbers: body, transform, lump, shell, then per face (face, loop, surface), then the
  // coedges, edges (with their curves), vertices and points.
  const int faceCount = static_cast<int>(mesh.faces.size());
  const int faceBase = 4;
  std::vector<int> coedgeOfFace(faceCount);
  int next = faceBase + 3 * faceCount;
  struct Coedge {
    int from, to, face, edge = -1;
    bool forward = true;
  };
  std::vector<Coedge> coedges;
  for (int f = 0; f < faceCount; ++f) {
    coedgeOfFace[f] = next + static_cast<int>(coedges.size());
    const auto& face = mesh.faces[static_cast<std::size_t>(f)];
    for (std::size_t k = 0; k < face.size(); ++k) {
      coedges.push_back({face[k], face[(k + 1) % face.size()], f});
    }
  }
  const int coedgeBase = next;
  next += static_cast<int>(coedges.size());
  // Edges, each met once in each direction.
  std::map<std::pair<int, int>, int> edgeOf;
  struct Edge {
    int from, to, coedge;
  };
  std::vector<Edge> edges;
  for (std::size_t c = 0; c < coedges.size(); ++c) {
    const auto key = std::minmax(coedges[c].from, coedges[c].to);
    auto found = edgeOf.find(key);
    if (found == edgeOf.end()) {
      edgeOf.emplace(key, static_cast<int>(edges.size()));
      coedges[c].edge = static_cast<int>(edges.size());
      edges.push_back({coedges[c].from, coedges[c].to, static_cast<int>(c)});
    } else {
      coedges[c].edge = found->second;
      coedges[c].forward = false;
    }
  }
  std::vector<int> partner(coedges.size(), -1);
  for (std::size_t c = 0; c < coedges.size(); ++c) {
    const Edge& e = edges[static_cast<std::size_t>(coedges[c].edge)];
    if (static_cast<std::size_t>(e.coedge) != c) {
      partner[c] = e.coedge;
      partner[static_cast<std::size_t>(e.coedge)] = static_cast<int>(c);
    }
  }
  const int edgeBase = next;  // edge i at edgeBase + 2i, its curve after it
  next += 2 * static_cast<int>(edges.size());
  const int vertexBase = next;
  next += static_cast<int>(mesh.points.size());
  const int pointBase = next;
  std::vector<int> edgeAtVertex(mesh.points.size(), 0);
  for (std::size_t e = 0; e < edges.size(); ++e) {
    edgeAtVertex[static_cast<std::size_t>(edges[e].from)] = edgeBase + 2 * static_cast<int>(e);
    edgeAtVertex[static_cast<std::size_t>(edges[e].to)] = edgeBase + 2 * static_cast<int>(e);
  }

  std::vector<std::string> lines;
  lines.push_back("700 0 1 0 ");
  lines.push_back(Join(Counted("Headless AutoCAD"), std::string_view(" "), Counted("ACIS 7.0 NT"),
                       std::string_view(" "), Counted("Mon Jan  1 00:00:00 2024"), std::string_view(" ")));
  lines.push_back("1 9.9999999999999995e-007 1e-010 ");
  lines.push_back("body $-1 -1 $-1 $2 $-1 $1 #");
  lines.push_back("transform $-1 -1 1 0 0 0 1 0 0 0 1 0 0 0 1 no_rotate no_reflect no_shear #");
  lines.push_back("lump $-1 -1 $-1 $-1 $3 $0 #");
  lines.push_back(Join(std::string_view("shell $-1 -1 $-1 $-1 $-1 "), Ref(faceBase), std::string_view(" $-1 $2 #")));
  for (int f = 0; f < faceCount; ++f) {
    const int at = faceBase + 3 * f;
    const std::string nextFace = f + 1 < faceCount ? Ref(at + 3) : "$-1";
    lines.push_back(Join(std::string_view("face $-1 -1 $-1 "), nextFace, std::string_view(" "), Ref(at + 1),
                         std::string_view(" $3 $-1 "), Ref(at + 2), std::string_view(" forward single #")));
    lines.push_back(Join(std::string_view("loop $-1 -1 $-1 $-1 "), Ref(coedgeOfFace[f]), std::string_view(" "), Ref(at),
                         std::string_view(" #")));
    const auto& face = mesh.faces[static_cast<std::size_t>(f)];
    const AcGePoint3d& a = mesh.points[static_cast<std::size_t>(face[0])];
    const AcGePoint3d& b = mesh.points[static_cast<std::size_t>(face[1])];
    const AcGePoint3d& c = mesh.points[static_cast<std::size_t>(face[2])];
    const AcGeVector3d normal = (b - a).crossProduct(c - a).normal();
    const AcGeVector3d u = (b - a).normal();
    lines.push_back(Join(std::string_view("plane-surface $-1 -1 $-1 "), Num(a.x), std::string_view(" "), Num(a.y),
                         std::string_view(" "), Num(a.z), std::string_view(" "), Num(normal.x), std::string_view(" "),
                         Num(normal.y), std::string_view(" "), Num(normal.z), std::string_view(" "), Num(u.x),
                         std::string_view(" "), Num(u.y), std::string_view(" "), Num(u.z),
                         std::string_view(" forward_v I I I I #")));
  }
  for (std::size_t c = 0; c < coedges.size(); ++c) {
    const Coedge& ce = coedges[c];
    const int first = coedgeOfFace[ce.face] - coedgeBase;
    const int size = static_cast<int>(mesh.faces[static_cast<std::size_t>(ce.face)].size());
    const int k = static_cast<int>(c) - first;
    const int nextC = coedgeBase + first + (k + 1) % size;
    const int prevC = coedgeBase + first + (k + size - 1) % size;
    lines.push_back(Join(std::string_view("coedge $-1 -1 $-1 "), Ref(nextC), std::string_view(" "), Ref(prevC),
                         std::string_view(" "), Ref(coedgeBase + partner[c]), std::string_view(" "),
                         Ref(edgeBase + 2 * ce.edge), std::string_view(ce.forward ? " forward " : " reversed "),
                         Ref(faceBase + 3 * ce.face + 1), std::string_view(" $-1 #")));
  }
  for (std::size_t e = 0; e < edges.size(); ++e) {
    const AcGePoint3d& a = mesh.points[static_cast<std::size_t>(edges[e].from)];
    const AcGePoint3d& b = mesh.points[static_cast<std::size_t>(edges[e].to)];
    const AcGeVector3d d = (b - a).normal();
    const int at = edgeBase + 2 * static_cast<int>(e);
    lines.push_back(Join(std::string_view("edge $-1 -1 $-1 "), Ref(vertexBase + edges[e].from), std::string_view(" 0 "),
                         Ref(vertexBase + edges[e].to), std::string_view(" "), Num(a.distanceTo(b)),
                         std::string_view(" "), Ref(coedgeBase + edges[e].coedge), std::string_view(" "), Ref(at + 1),
                         std::string_view(" forward @7 unknown #")));
    lines.push_back(Join(std::string_view("straight-curve $-1 -1 $-1 "), Num(a.x), std::string_view(" "), Num(a.y),
                         std::string_view(" "), Num(a.z), std::string_view(" "), Num(d.x), std::string_view(" "),
                         Num(d.y), std::string_view(" "), Num(d.z), std::string_view(" I I #")));
  }
  for (std::size_t v = 0; v < mesh.points.size(); ++v) {
    lines.push_back(Join(std::string_view("vertex $-1 -1 $-1 "), Ref(edgeAtVertex[v]), std::string_view(" "),
                         Ref(pointBase + static_cast<int>(v)), std::string_view(" #")));
  }
  for (const AcGePoint3d& p : mesh.points) {
    lines.push_back(Join(std::string_view("point $-1 -1 $-1 "), Num(p.x), std::string_view(" "), Num(p.y),
                         std::string_view(" "), Num(p.z), std::string_view(" #")));
  }
  lines.push_back("End-of-ACIS-data ");
  return lines;
}

AcGePoint3d Centre(const std::vector<AcGePoint3d>& ring) {
  AcGeVector3d sum;
  for (const AcGePoint3d& p : ring) sum += p.asVector();
  sum /= static_cast<double>(ring.size());
  return AcGePoint3d(sum.x, sum.y, sum.z);
}

}  // namespace

std::vector<std::string> FrustumSat(const AcDbImpAccess::Frustum& frustum) {
  if (!frustum.hasBody) return {};
  return SatOf(FrustumMesh(frustum));
}

bool FrustumFromSat(const std::vector<std::string>& lines, AcDbImpAccess::Frustum& frustum) {
  std::vector<AcGePoint3d> points;
  for (const std::string& line : lines) {
    if (line.rfind("point ", 0) != 0) continue;
    std::istringstream in(line.substr(6));
    std::string attrib, unused, history;
    AcGePoint3d p;
    if (!(in >> attrib >> unused >> history >> p.x >> p.y >> p.z)) return false;
    points.push_back(p);
  }
  const int n = kFrustumSegments;
  const bool cone = static_cast<int>(points.size()) == n + 1;
  if (!cone && static_cast<int>(points.size()) != 2 * n) return false;
  const std::vector<AcGePoint3d> bottom(points.begin(), points.begin() + n);
  const std::vector<AcGePoint3d> top(points.begin() + n, points.end());
  const AcGePoint3d base = Centre(bottom);
  const AcGePoint3d apex = Centre(top);
  const AcGeVector3d axis = apex - base;
  const AcGeVector3d x = bottom[0] - base;
  const AcGeVector3d yQuarter = bottom[n / 4] - base;
  if (axis.isZeroLength() || x.isZeroLength() || yQuarter.isZeroLength()) return false;
  const AcGeVector3d z = axis.normal();
  const AcGeVector3d xAxis = x.normal();
  // The quarter point lies on +y of the body, or on -y when the placement mirrors.
  const AcGeVector3d yAxis = yQuarter.normal();
  frustum.hasBody = true;
  frustum.height = axis.length();
  frustum.xRadius = x.length();
  frustum.yRadius = yQuarter.length();
  frustum.topXRadius = cone ? 0.0 : (top[0] - apex).length();
  AcGeMatrix3d placement;
  placement.setCoordSystem(base + axis * 0.5, xAxis, yAxis, z);
  frustum.placement = placement;
  return true;
}

}  // namespace headless::dxf
