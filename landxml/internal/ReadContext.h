// What the parts of the reader share: the fault they raise, the document's units, and reading
// attributes and coordinate text with a message that names the element when they are wrong.
// Only the reader's translation units include this (it brings in pugixml).
#pragma once

#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include "landxml/Model.h"

namespace landxml::internal {

// A fault in the document, raised inside the reader only: the public functions turn it into the
// result's message, so a failed read never hands out part of a model.
struct CReadFault {
  std::ptrdiff_t offset = -1;  // of the element in the parsed text; -1 when there is none
  std::string element;
  std::string what;
};

// The name without its namespace prefix: LandXML elements are matched whatever prefix the
// document binds to the namespace.
inline std::string_view LocalName(const char* name) {
  const char* colon = std::strchr(name, ':');
  return colon ? std::string_view(colon + 1) : std::string_view(name);
}
inline bool IsElement(pugi::xml_node node, std::string_view local) {
  return node.type() == pugi::node_element && LocalName(node.name()) == local;
}
// First child element with that local name; an empty node when there is none.
pugi::xml_node ChildElement(pugi::xml_node parent, std::string_view local);

class CReadContext {
public:
  CReadContext(const CUnits& units, std::vector<std::string>& notes) : units_(units), notes_(notes) {}

  const CUnits& Units() const { return units_; }
  // Set when the document's directions run counter-clockwise from north: they are turned into
  // the model's clockwise azimuths as they are read.
  void SetCounterClockwiseDirections(bool yes) { counterClockwiseDirections_ = yes; }
  void Note(std::string text) { notes_.push_back(std::move(text)); }
  // "<Element> at line <n>" for notes; lines are counted only when a note is made.
  void SetText(std::string_view text) { text_ = text; }
  std::string Where(pugi::xml_node node) const;

  [[noreturn]] void Fail(pugi::xml_node node, std::string what) const;

  // Attributes. Missing optional attributes give nothing; a value that is there but unreadable
  // is a fault naming the attribute and the element.
  std::optional<double> OptionalNumber(pugi::xml_node node, const char* name) const;
  double RequiredNumber(pugi::xml_node node, const char* name) const;
  // Directions (azimuths) and angles in the document's units, as radians.
  std::optional<double> OptionalDirection(pugi::xml_node node, const char* name) const;
  std::optional<double> OptionalAngle(pugi::xml_node node, const char* name) const;
  // Text of an attribute, checked to be UTF-8; "" when missing.
  std::string Text(pugi::xml_node node, const char* name) const;

  // "northing easting [elevation]" in the element's text as a point.
  CPoint Point(pugi::xml_node node) const;
  // A PntList3D or PntList2D: blank-separated "northing easting elevation" triples or
  // "northing easting" pairs.
  std::vector<CPoint> PointList(pugi::xml_node node, int dimensions) const;

private:
  std::optional<double> Angle(pugi::xml_node node, const char* name, AngularUnit unit, const char* kind) const;

  CUnits units_;
  bool counterClockwiseDirections_ = false;
  std::vector<std::string>& notes_;
  std::string_view text_;
};

// Whether the directions of the document's alignments run counter-clockwise from north. LandXML's
// own documentation says they do, yet most writers write clockwise azimuths; the lines'
// coordinates and the curves' turns against their rot settle it for each document. A document
// with nothing to decide by is taken as clockwise.
bool DirectionsRunCounterClockwise(const CReadContext& context, pugi::xml_node root);
void ReadAlignments(CReadContext& context, pugi::xml_node alignments, std::vector<CAlignment>& out);
void ReadSurfaces(CReadContext& context, pugi::xml_node surfaces, std::vector<CSurface>& out);

}  // namespace landxml::internal
