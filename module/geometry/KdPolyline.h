// CKdPolyline: a chain of straight and circular segments through vertices, open or closed.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "module/geometry/KdArc.h"
#include "module/geometry/KdCurve.h"
#include "module/geometry/KdElement.h"
#include "module/geometry/KdLine.h"
#include "module/geometry/KdPoint.h"

// Each vertex carries the bulge of the segment that starts at it: 0 for a straight segment,
// otherwise tan(sweep / 4) of a circular arc to the next vertex, positive counter-clockwise
// (the polyline bulge of CKdArc::Bulge). A closed polyline has a segment from its last vertex
// back to the first. Arc segments are horizontal, at the height of their start vertex.
class CKdPolyline : public CKdElement {
public:
  CKdPolyline() = default;
  // Bulges beyond the vertices are dropped; missing ones are 0.
  CKdPolyline(std::vector<CKdPoint> vertices, std::vector<double> bulges, bool closed);
  CKdPolyline(const CKdPolyline&) = default;
  CKdPolyline& operator=(const CKdPolyline&) = default;
  ~CKdPolyline() override = default;

  virtual void AddVertex(const CKdPoint& p, double bulge = 0.0);
  // Appends a segment that must start within the geometric tolerance of the last vertex (or
  // anywhere on an empty polyline); false and no change otherwise. A full-turn arc becomes two
  // half arcs; an arc of more than a full turn, or of no extent, is refused.
  virtual bool AddLine(const CKdLine& line);
  virtual bool AddArc(const CKdArc& arc);
  virtual void SetClosed(bool closed);
  // False and no change for an index past the vertices.
  virtual bool SetBulge(std::size_t index, double bulge);
  virtual bool IsClosed() const;
  virtual std::size_t VertexCount() const;
  // The origin and 0 past the end.
  virtual CKdPoint Vertex(std::size_t index) const;
  virtual double Bulge(std::size_t index) const;
  // Closed flag, vertices and bulges each within the geometric tolerance.
  virtual bool IsEqual(const CKdPolyline& other) const;

  // Vertex count - 1 when open, the vertex count when closed with two or more vertices.
  std::size_t SegmentCount() const;
  bool IsArcSegment(std::size_t index) const;
  // The segment as a new CKdLine or CKdArc; null past the end. An arc segment whose ends
  // coincide is given as a line.
  std::unique_ptr<IKdCurve> Segment(std::size_t index) const;
  double Length() const;
  // The point at distance_units along the polyline from its first vertex; false outside
  // [0, Length()] or for a polyline without segments.
  bool PointAtDistance(double distance_units, CKdPoint& point) const;
  // Travels the other way round: vertices in reverse order, bulges moved and negated.
  void Reverse();
  void MirrorX();
  void MirrorY();
  // The same path with every arc replaced by chords whose distance from the arc is at most
  // chordHeight_units (up to kMaxChordsPerArc chords per arc). Empty for a tolerance that is
  // not positive and finite.
  CKdPolyline ToChords(double chordHeight_units) const;
  static constexpr int kMaxChordsPerArc = 1 << 16;

  // CKdElement
  bool IsValid() const override;
  CKdElement* CloneElement() const override;
  void Translate(const CKdVector& offset) override;
  void Rotate(const CKdPoint& about, double angle_rad) override;
  // Any affine transform when every segment is straight; with arcs, a similarity of the xy
  // plane that keeps horizontal planes horizontal (a reflection negates the bulges).
  bool Transform(const CKdXform& xform) override;
  void Scale(double factor) override;
  void Write(std::wostream& out) const override;
  int GetType() const override;
  bool IsEqual(const CKdElement& other) const override;

private:
  std::vector<CKdPoint> m_vertices;
  std::vector<double> m_bulges;
  bool m_closed = false;
};

namespace kdgeo {

// The arc from p0 to p1 with the given bulge, in the plane of p0; false when the bulge is 0 or
// not finite or the two points coincide in xy.
bool ArcFromBulge(const CKdPoint& p0, const CKdPoint& p1, double bulge, CKdArc& arc);

}  // namespace kdgeo
