#include "landxml/internal/ReadContext.h"

#include <cmath>
#include <numbers>

#include "landxml/internal/NumberText.h"
#include "landxml/internal/TextInput.h"

namespace landxml::internal {
namespace {

// A value quoted in a message, cut short so a broken point list does not flood it; bytes that are
// not UTF-8 show as '?' so the message itself stays text.
std::string Quoted(std::string_view value) {
  constexpr std::size_t kMaxShown = 40;
  const bool cut = value.size() > kMaxShown;
  std::string shown(value.substr(0, kMaxShown));
  if (!IsValidUtf8(shown)) {
    for (char& c : shown)
      if (static_cast<unsigned char>(c) >= 0x80) c = '?';
  }
  return "\"" + shown + (cut ? "...\"" : "\"");
}

std::string_view Trim(std::string_view s) {
  while (!s.empty() && IsXmlSpace(s.front())) s.remove_prefix(1);
  while (!s.empty() && IsXmlSpace(s.back())) s.remove_suffix(1);
  return s;
}

}  // namespace

pugi::xml_node ChildElement(pugi::xml_node parent, std::string_view local) {
  for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling())
    if (IsElement(child, local)) return child;
  return {};
}

std::string CReadContext::Where(pugi::xml_node node) const {
  std::string where = "<";
  where.append(LocalName(node.name()));
  where.push_back('>');
  const std::ptrdiff_t offset = node.offset_debug();
  if (offset >= 0 && !text_.empty())
    where += " at line " + std::to_string(LineAt(text_, static_cast<std::size_t>(offset)));
  return where;
}

void CReadContext::Fail(pugi::xml_node node, std::string what) const {
  throw CReadFault{node.offset_debug(), std::string(LocalName(node.name())), std::move(what)};
}

std::optional<double> CReadContext::OptionalNumber(pugi::xml_node node, const char* name) const {
  const pugi::xml_attribute attribute = node.attribute(name);
  if (!attribute) return std::nullopt;
  double value = 0.0;
  if (!ParseDouble(attribute.value(), value))
    Fail(node, std::string(name) + "=" + Quoted(attribute.value()) + " is not a number");
  return value;
}

double CReadContext::RequiredNumber(pugi::xml_node node, const char* name) const {
  const std::optional<double> value = OptionalNumber(node, name);
  if (!value) Fail(node, std::string("has no ") + name);
  return *value;
}

std::optional<double> CReadContext::Angle(pugi::xml_node node, const char* name, AngularUnit unit,
                                          const char* kind) const {
  const std::optional<double> value = OptionalNumber(node, name);
  if (!value) return std::nullopt;
  const std::optional<double> radians = AngleToRadians(*value, unit);
  if (!radians)
    Fail(node, std::string(name) + "=" + Quoted(node.attribute(name).value()) + " is not a " + kind + " in " +
                   std::string(AngularUnitName(unit)));
  return radians;
}

std::optional<double> CReadContext::OptionalDirection(pugi::xml_node node, const char* name) const {
  std::optional<double> azimuth = Angle(node, name, units_.direction, "direction");
  if (azimuth && counterClockwiseDirections_) {
    constexpr double kFullTurn = 2.0 * std::numbers::pi;
    azimuth = std::fmod(kFullTurn - *azimuth, kFullTurn);
    if (*azimuth < 0.0) *azimuth += kFullTurn;
  }
  return azimuth;
}

std::optional<double> CReadContext::OptionalAngle(pugi::xml_node node, const char* name) const {
  return Angle(node, name, units_.angular, "angle");
}

std::string CReadContext::Text(pugi::xml_node node, const char* name) const {
  const char* value = node.attribute(name).value();
  if (!IsValidUtf8(value)) Fail(node, std::string(name) + " is not valid text in the declared encoding");
  return value;
}

CPoint CReadContext::Point(pugi::xml_node node) const {
  const std::string_view text = node.child_value();
  CNumberList numbers(text);
  double values[3] = {};
  int count = 0;
  double extra = 0.0;
  while (count < 3 && numbers.Next(values[count])) ++count;
  if (numbers.Failed() || count < 2 || numbers.Next(extra) || numbers.Failed()) {
    if (Trim(text).empty() && node.attribute("pntRef"))
      Fail(node, "refers to a point by pntRef, which this reader does not follow");
    Fail(node, "expects \"northing easting [elevation]\", found " + Quoted(Trim(text)));
  }
  CPoint p;
  p.y = values[0];
  p.x = values[1];
  if (count == 3) {
    p.z = values[2];
    p.hasZ = true;
  }
  if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z))
    Fail(node, "holds a coordinate that is not finite: " + Quoted(Trim(text)));
  return p;
}

std::vector<CPoint> CReadContext::PointList(pugi::xml_node node, int dimensions) const {
  const std::string_view text = node.child_value();
  CNumberList numbers(text);
  std::vector<CPoint> points;
  double v = 0.0;
  std::size_t count = 0;
  CPoint p;
  while (numbers.Next(v)) {
    if (!std::isfinite(v)) Fail(node, "holds a coordinate that is not finite");
    switch (count++ % static_cast<std::size_t>(dimensions)) {
      case 0:
        p.y = v;
        break;
      case 1:
        p.x = v;
        if (dimensions == 2) points.push_back(p);
        break;
      default:
        p.z = v;
        p.hasZ = true;
        points.push_back(p);
        break;
    }
  }
  if (numbers.Failed()) Fail(node, "holds something that is not a number");
  if (count % static_cast<std::size_t>(dimensions) != 0)
    Fail(node, "holds " + std::to_string(count) + " numbers, not a whole number of " +
                   (dimensions == 3 ? "northing easting elevation triples" : "northing easting pairs"));
  return points;
}

}  // namespace landxml::internal
