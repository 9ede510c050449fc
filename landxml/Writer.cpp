// Writing LandXML 1.2 from the model.
#include <atomic>
#include <charconv>
#include <chrono>
#include <cmath>
#include <fstream>
#include <random>

#include "landxml/LandXml.h"
#include "landxml/internal/TextInput.h"

namespace landxml {
namespace {

constexpr int kSignificantDigits = 17;  // enough to read back the same double

struct CWriteFault {
  std::string what;
};

class CXmlWriter {
public:
  CXmlWriter(std::string& out, const CUnits& units, LinearUnit linear)
      : out_(out), units_(units), factor_(LinearFactor(units.linear, linear)) {}

  // <name ...attributes...> then Open() or Empty().
  void Begin(std::string_view name) {
    Indent();
    out_ += '<';
    out_ += name;
  }
  void Open() {
    out_ += ">\n";
    ++depth_;
  }
  void Empty() { out_ += "/>\n"; }
  void End(std::string_view name) {
    --depth_;
    Indent();
    out_ += "</";
    out_ += name;
    out_ += ">\n";
  }
  // <name>text</name> with the text written by `body`.
  template <class Body>
  void Leaf(std::string_view name, Body&& body) {
    Begin(name);
    LeafBody(name, body);
  }
  template <class Body>
  void LeafBody(std::string_view name, Body&& body) {
    out_ += '>';
    body();
    out_ += "</";
    out_ += name;
    out_ += ">\n";
  }

  void Text(std::string_view name, std::string_view value) {
    out_ += ' ';
    out_ += name;
    out_ += "=\"";
    Escaped(value);
    out_ += '"';
  }
  // Only when there is something to say.
  void OptionalText(std::string_view name, std::string_view value) {
    if (!value.empty()) Text(name, value);
  }
  void UnsignedAttribute(std::string_view name, std::uint64_t value) {
    out_ += ' ';
    out_ += name;
    out_ += "=\"";
    Unsigned(value);
    out_ += '"';
  }
  void Length(std::string_view name, double value) { NumberAttribute(name, value * factor_); }
  void Length(std::string_view name, const std::optional<double>& value) {
    if (value) Length(name, *value);
  }
  void Direction(std::string_view name, const std::optional<double>& radians) {
    if (radians) NumberAttribute(name, AngleFromRadians(*radians, units_.direction));
  }
  void Angle(std::string_view name, const std::optional<double>& radians) {
    if (radians) NumberAttribute(name, AngleFromRadians(*radians, units_.angular));
  }

  // Element text.
  void LengthValue(double value) { Number(value * factor_); }
  void Space() { out_ += ' '; }
  void Point(const CPoint& p, bool withZ) {
    LengthValue(p.y);
    Space();
    LengthValue(p.x);
    if (withZ) {
      Space();
      LengthValue(p.z);
    }
  }
  void Unsigned(std::uint64_t value) {
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out_.append(buffer, result.ptr);
  }

private:
  void Indent() { out_.append(static_cast<std::size_t>(depth_), '\t'); }

  void NumberAttribute(std::string_view name, double value) {
    out_ += ' ';
    out_ += name;
    out_ += "=\"";
    Number(value);
    out_ += '"';
  }

  void Number(double value) {
    if (std::isinf(value)) {
      out_ += value > 0 ? "INF" : "-INF";  // xs:double's spelling
      return;
    }
    if (std::isnan(value)) throw CWriteFault{"a value to write is not a number"};
    char buffer[32];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, kSignificantDigits);
    out_.append(buffer, result.ptr);
  }

  void Escaped(std::string_view value) {
    if (!internal::IsValidUtf8(value)) throw CWriteFault{"text \"" + std::string(value) + "\" is not UTF-8"};
    for (char c : value) {
      switch (c) {
        case '&':
          out_ += "&amp;";
          break;
        case '<':
          out_ += "&lt;";
          break;
        case '>':
          out_ += "&gt;";
          break;
        case '"':
          out_ += "&quot;";
          break;
        // Kept as written: a raw line break in an attribute would read back as a blank.
        case '\t':
          out_ += "&#9;";
          break;
        case '\n':
          out_ += "&#10;";
          break;
        case '\r':
          out_ += "&#13;";
          break;
        default:
          if (static_cast<unsigned char>(c) < 0x20)
            throw CWriteFault{"text holds a control character XML does not allow"};
          out_ += c;
      }
    }
  }

  std::string& out_;
  const CUnits& units_;
  double factor_;
  int depth_ = 0;
};

std::string_view RotationName(Rotation rot) { return rot == Rotation::Clockwise ? "cw" : "ccw"; }

bool AnyZ(const std::vector<CPoint>& points) {
  for (const CPoint& p : points)
    if (p.hasZ) return true;
  return false;
}

void WritePointList(CXmlWriter& w, const std::vector<CPoint>& points) {
  if (points.empty()) return;
  const bool withZ = AnyZ(points);
  const char* name = withZ ? "PntList3D" : "PntList2D";
  w.Leaf(name, [&] {
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (i) w.Space();
      w.Point(points[i], withZ);
    }
  });
}

void WritePointElement(CXmlWriter& w, std::string_view name, const CPoint& p) {
  w.Leaf(name, [&] { w.Point(p, p.hasZ); });
}

void WriteLine(CXmlWriter& w, const CLine& line) {
  w.Begin("Line");
  w.Length("staStart", line.staStart);
  w.Length("length", line.length);
  w.Direction("dir", line.direction);
  w.OptionalText("name", line.name);
  w.OptionalText("desc", line.desc);
  w.Open();
  WritePointElement(w, "Start", line.start);
  WritePointElement(w, "End", line.end);
  w.End("Line");
}

void WriteCurve(CXmlWriter& w, const CCurve& curve) {
  w.Begin("Curve");
  w.Text("rot", RotationName(curve.rot));
  w.Length("radius", curve.radius);
  w.Length("length", curve.length);
  w.Length("staStart", curve.staStart);
  w.Direction("dirStart", curve.dirStart);
  w.Direction("dirEnd", curve.dirEnd);
  w.Length("chord", curve.chord);
  w.Angle("delta", curve.delta);
  w.OptionalText("crvType", curve.crvType);
  w.OptionalText("name", curve.name);
  w.OptionalText("desc", curve.desc);
  w.Open();
  WritePointElement(w, "Start", curve.start);
  WritePointElement(w, "Center", curve.center);
  WritePointElement(w, "End", curve.end);
  if (curve.pi) WritePointElement(w, "PI", *curve.pi);
  w.End("Curve");
}

void WriteSpiral(CXmlWriter& w, const CSpiral& spiral) {
  w.Begin("Spiral");
  w.Length("length", spiral.length);
  w.Length("radiusStart", spiral.radiusStart);
  w.Length("radiusEnd", spiral.radiusEnd);
  w.Text("rot", RotationName(spiral.rot));
  w.Text("spiType", spiral.spiType);
  w.Length("staStart", spiral.staStart);
  w.Direction("dirStart", spiral.dirStart);
  w.Direction("dirEnd", spiral.dirEnd);
  w.Length("tanLong", spiral.tanLong);
  w.Length("tanShort", spiral.tanShort);
  w.Angle("theta", spiral.theta);
  w.Length("constant", spiral.constant);
  w.OptionalText("name", spiral.name);
  w.OptionalText("desc", spiral.desc);
  w.Open();
  WritePointElement(w, "Start", spiral.start);
  if (spiral.pi) WritePointElement(w, "PI", *spiral.pi);
  WritePointElement(w, "End", spiral.end);
  w.End("Spiral");
}

void WriteProfile(CXmlWriter& w, const CProfile& profile) {
  w.Begin("Profile");
  w.OptionalText("name", profile.name);
  w.OptionalText("desc", profile.desc);
  w.OptionalText("state", profile.state);
  w.Length("staStart", profile.staStart);
  w.Open();
  for (const CProfSurf& sampled : profile.surfaceProfiles) {
    w.Begin("ProfSurf");
    w.Text("name", sampled.name);
    w.OptionalText("desc", sampled.desc);
    w.OptionalText("state", sampled.state);
    w.Open();
    if (!sampled.points.empty()) {
      w.Leaf("PntList2D", [&] {
        for (std::size_t i = 0; i < sampled.points.size(); ++i) {
          if (i) w.Space();
          w.LengthValue(sampled.points[i].station);
          w.Space();
          w.LengthValue(sampled.points[i].elevation);
        }
      });
    }
    w.End("ProfSurf");
  }
  for (const CProfAlign& layout : profile.layouts) {
    w.Begin("ProfAlign");
    w.Text("name", layout.name);
    w.OptionalText("desc", layout.desc);
    w.OptionalText("state", layout.state);
    w.Open();
    for (const CProfileVertex& v : layout.vertices) {
      const char* name = "PVI";
      switch (v.curve) {
        case VerticalCurve::None:
          break;
        case VerticalCurve::Parabolic:
          name = "ParaCurve";
          break;
        case VerticalCurve::AsymmetricParabolic:
          name = "UnsymParaCurve";
          break;
        case VerticalCurve::Circular:
          name = "CircCurve";
          break;
      }
      w.Begin(name);
      if (v.curve == VerticalCurve::Parabolic || v.curve == VerticalCurve::Circular) w.Length("length", v.length);
      if (v.curve == VerticalCurve::AsymmetricParabolic) {
        w.Length("lengthIn", v.lengthIn);
        w.Length("lengthOut", v.lengthOut);
      }
      if (v.curve == VerticalCurve::Circular) w.Length("radius", v.radius);
      w.OptionalText("desc", v.desc);
      w.LeafBody(name, [&] {
        w.LengthValue(v.station);
        w.Space();
        w.LengthValue(v.elevation);
      });
    }
    w.End("ProfAlign");
  }
  w.End("Profile");
}

void WriteAlignment(CXmlWriter& w, const CAlignment& alignment) {
  w.Begin("Alignment");
  w.Text("name", alignment.name);
  w.OptionalText("desc", alignment.desc);
  w.OptionalText("state", alignment.state);
  w.Length("staStart", alignment.staStart);
  w.Length("length", alignment.length);
  w.Open();
  for (const CStationEquation& e : alignment.stationEquations) {
    w.Begin("StaEquation");
    w.Length("staAhead", e.staAhead);
    w.Length("staBack", e.staBack);
    w.Length("staInternal", e.staInternal);
    if (e.decreasing) w.Text("staIncrement", "decreasing");
    w.OptionalText("desc", e.desc);
    w.Empty();
  }
  w.Begin("CoordGeom");
  w.Open();
  for (const CGeometry& element : alignment.geometry) {
    if (const auto* line = std::get_if<CLine>(&element)) WriteLine(w, *line);
    if (const auto* curve = std::get_if<CCurve>(&element)) WriteCurve(w, *curve);
    if (const auto* spiral = std::get_if<CSpiral>(&element)) WriteSpiral(w, *spiral);
  }
  w.End("CoordGeom");
  for (const CProfile& profile : alignment.profiles) WriteProfile(w, profile);
  w.End("Alignment");
}

void WriteSurface(CXmlWriter& w, const CSurface& surface) {
  w.Begin("Surface");
  w.Text("name", surface.name);
  w.OptionalText("desc", surface.desc);
  w.Open();
  if (!surface.boundaries.empty() || !surface.breaklines.empty()) {
    w.Begin("SourceData");
    w.Open();
    if (!surface.boundaries.empty()) {
      w.Begin("Boundaries");
      w.Open();
      for (const CBoundary& b : surface.boundaries) {
        w.Begin("Boundary");
        w.OptionalText("name", b.name);
        w.OptionalText("desc", b.desc);
        w.OptionalText("bndType", b.bndType);
        if (b.edgeTrim) w.Text("edgeTrim", *b.edgeTrim ? "true" : "false");
        w.Open();
        WritePointList(w, b.points);
        w.End("Boundary");
      }
      w.End("Boundaries");
    }
    if (!surface.breaklines.empty()) {
      w.Begin("Breaklines");
      w.Open();
      for (const CBreakline& b : surface.breaklines) {
        w.Begin("Breakline");
        w.OptionalText("name", b.name);
        w.OptionalText("desc", b.desc);
        w.OptionalText("brkType", b.brkType);
        w.Open();
        WritePointList(w, b.points);
        w.End("Breakline");
      }
      w.End("Breaklines");
    }
    w.End("SourceData");
  }
  if (surface.type) {
    if (surface.pointIds.size() != surface.points.size())
      throw CWriteFault{"surface \"" + surface.name + "\" has " + std::to_string(surface.points.size()) +
                        " points but " + std::to_string(surface.pointIds.size()) + " point ids"};
    w.Begin("Definition");
    w.Text("surfType", *surface.type == SurfaceType::Grid ? "grid" : "TIN");
    w.Open();
    w.Begin("Pnts");
    w.Open();
    for (std::size_t i = 0; i < surface.points.size(); ++i) {
      w.Begin("P");
      w.UnsignedAttribute("id", surface.pointIds[i]);
      w.LeafBody("P", [&] { w.Point(surface.points[i], true); });
    }
    w.End("Pnts");
    w.Begin("Faces");
    w.Open();
    const int corners = surface.VerticesPerFace();
    for (const CFace& face : surface.faces) {
      w.Begin("F");
      if (face.invisible) w.Text("i", "1");
      w.LeafBody("F", [&] {
        for (int k = 0; k < corners; ++k) {
          const std::uint32_t index = face.vertex[static_cast<std::size_t>(k)];
          if (index >= surface.points.size())
            throw CWriteFault{"a face of surface \"" + surface.name + "\" names point " + std::to_string(index) +
                              " of " + std::to_string(surface.points.size())};
          if (k) w.Space();
          w.Unsigned(surface.pointIds[index]);
        }
      });
    }
    w.End("Faces");
    w.End("Definition");
  }
  w.End("Surface");
}

void WriteUnits(CXmlWriter& w, const CUnits& units, LinearUnit linear) {
  w.Begin("Units");
  w.Open();
  if (linear == LinearUnit::Metre) {
    w.Begin("Metric");
    w.Text("linearUnit", LinearUnitName(linear));
    w.Text("areaUnit", "squareMeter");
    w.Text("volumeUnit", "cubicMeter");
    w.Text("temperatureUnit", "celsius");
    w.Text("pressureUnit", "milliBars");
  } else {
    w.Begin("Imperial");
    w.Text("linearUnit", LinearUnitName(linear));
    w.Text("areaUnit", "squareFoot");
    w.Text("volumeUnit", "cubicFeet");
    w.Text("temperatureUnit", "fahrenheit");
    w.Text("pressureUnit", "inchHG");
  }
  w.Text("angularUnit", AngularUnitName(units.angular));
  w.Text("directionUnit", AngularUnitName(units.direction));
  w.Empty();
  w.End("Units");
}

std::string TwoDigits(unsigned value) {
  return {static_cast<char>('0' + value / 10 % 10), static_cast<char>('0' + value % 10)};
}

void WriteDocument(const CModel& model, const CWriteOptions& options, std::string& out) {
  const LinearUnit linear = options.linearUnit.value_or(model.units.linear);
  CXmlWriter w(out, model.units, linear);

  const auto now = std::chrono::system_clock::now();
  const auto today = std::chrono::floor<std::chrono::days>(now);
  const std::chrono::year_month_day date(today);
  const std::chrono::hh_mm_ss time(std::chrono::floor<std::chrono::seconds>(now - today));
  const std::string dateText = std::to_string(static_cast<int>(date.year())) + "-" +
                               TwoDigits(static_cast<unsigned>(date.month())) + "-" +
                               TwoDigits(static_cast<unsigned>(date.day()));
  const std::string timeText = TwoDigits(static_cast<unsigned>(time.hours().count())) + ":" +
                               TwoDigits(static_cast<unsigned>(time.minutes().count())) + ":" +
                               TwoDigits(static_cast<unsigned>(time.seconds().count()));

  out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  w.Begin("LandXML");
  w.Text("xmlns", "http://www.landxml.org/schema/LandXML-1.2");
  w.Text("xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance");
  w.Text("xsi:schemaLocation",
         "http://www.landxml.org/schema/LandXML-1.2 http://www.landxml.org/schema/LandXML-1.2/LandXML-1.2.xsd");
  w.Text("version", "1.2");
  w.Text("date", dateText);
  w.Text("time", timeText);
  w.Open();
  WriteUnits(w, model.units, linear);
  if (!model.projectName.empty()) {
    w.Begin("Project");
    w.Text("name", model.projectName);
    w.Empty();
  }
  if (!model.alignments.empty()) {
    w.Begin("Alignments");
    w.Open();
    for (const CAlignment& alignment : model.alignments) WriteAlignment(w, alignment);
    w.End("Alignments");
  }
  if (!model.surfaces.empty()) {
    w.Begin("Surfaces");
    w.Open();
    for (const CSurface& surface : model.surfaces) WriteSurface(w, surface);
    w.End("Surfaces");
  }
  w.End("LandXML");
}

// A name beside `path` that no other writer picks.
std::filesystem::path TemporaryPath(const std::filesystem::path& path) {
  static std::atomic<unsigned> counter{0};
  std::random_device random;
  std::filesystem::path temporary = path;
  temporary += ".tmp" + std::to_string(random()) + "-" + std::to_string(counter++);
  return temporary;
}

}  // namespace

CWriteResult WriteLandXmlText(const CModel& model, std::string& text, const CWriteOptions& options) {
  CWriteResult result;
  text.clear();
  try {
    WriteDocument(model, options, text);
    result.ok = true;
  } catch (const CWriteFault& fault) {
    text.clear();
    result.error = fault.what;
  } catch (const std::exception& e) {
    text.clear();
    result.error = e.what();
  }
  return result;
}

CWriteResult WriteLandXml(const CModel& model, const std::filesystem::path& path, const CWriteOptions& options) {
  const std::string source = path.string();
  std::string text;
  CWriteResult result = WriteLandXmlText(model, text, options);
  if (!result) {
    result.error = source + ": " + result.error;
    return result;
  }
  result.ok = false;
  std::error_code ec;
  std::filesystem::path temporary;
  try {
    temporary = TemporaryPath(path);
    std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
    if (!file) {
      result.error = source + ": cannot make a file beside it to write into";
      return result;
    }
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    if (!file) {
      std::filesystem::remove(temporary, ec);
      result.error = source + ": writing failed (is the disk full?)";
      return result;
    }
  } catch (const std::exception& e) {
    if (!temporary.empty()) std::filesystem::remove(temporary, ec);
    result.error = source + ": " + e.what();
    return result;
  }
  std::filesystem::rename(temporary, path, ec);
  if (ec) {
    std::error_code ignored;
    std::filesystem::remove(temporary, ignored);
    result.error = source + ": cannot replace it: " + ec.message();
    return result;
  }
  result.ok = true;
  return result;
}

}  // namespace landxml
