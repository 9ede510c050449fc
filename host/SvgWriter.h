// A small writer of SVG text for the host's pictures: elements are appended as they are drawn,
// coordinates are picture units (pixels, y down), text is escaped.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

struct CSvgPoint {
  double x = 0.0;
  double y = 0.0;
};

class CSvgWriter {
public:
  // `style` is a CSS style sheet for the picture's classes.
  CSvgWriter(double width, double height, std::string_view title, std::string_view style);

  // A group with a class (and an optional tooltip title); close it with EndGroup.
  void BeginGroup(std::string_view cssClass, std::string_view title = {});
  void EndGroup();
  void Line(CSvgPoint a, CSvgPoint b, std::string_view cssClass);
  void Polyline(const std::vector<CSvgPoint>& points, std::string_view cssClass);
  void Polygon(const std::vector<CSvgPoint>& points, std::string_view cssClass);
  void Rect(double x, double y, double width, double height, std::string_view cssClass);
  void Circle(CSvgPoint centre, double radius, std::string_view cssClass);
  // A path from its "d" data, written with PathData below.
  void Path(std::string_view data, std::string_view cssClass);
  // anchor: "start", "middle" or "end"; rotation in degrees about the anchor point.
  void Text(CSvgPoint at, std::string_view text, std::string_view cssClass, std::string_view anchor = "start",
            double rotation = 0.0);
  // Several lines of text, each `lineHeight` below the one before.
  void TextLines(CSvgPoint at, const std::vector<std::string>& lines, double lineHeight, std::string_view cssClass,
                 std::string_view anchor = "start");

  // The finished document.
  std::string Finish();

  static std::string Number(double value);
  static std::string Escaped(std::string_view text);

private:
  void Points(const std::vector<CSvgPoint>& points);
  std::string out_;
  int depth_ = 1;
};

// Builds a path's "d" attribute: moves, lines and circular arcs.
class CSvgPathData {
public:
  void MoveTo(CSvgPoint p);
  void LineTo(CSvgPoint p);
  // A circular arc of the given radius to p; `clockwise` as seen on the picture (y down).
  void ArcTo(double radius, bool largeArc, bool clockwise, CSvgPoint p);
  const std::string& Text() const { return data_; }

private:
  std::string data_;
};

// A "nice" step for a scale, grid or tick: 1, 2 or 5 times a power of ten, the smallest not
// below `least`.
double NiceStep(double least);
// The largest nice step (1, 2, 2.5 or 5 times a power of ten) not above `most`.
double NiceStepBelow(double most);

}  // namespace host
