#include "host/SvgWriter.h"

#include <cmath>

#include "host/HostText.h"

namespace host {

CSvgWriter::CSvgWriter(double width, double height, std::string_view title, std::string_view style) {
  out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  out_ += "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"" + Number(width) + "\" height=\"" +
          Number(height) + "\" viewBox=\"0 0 " + Number(width) + " " + Number(height) + "\">\n";
  out_ += "  <title>" + Escaped(title) + "</title>\n";
  out_ += "  <style>" + Escaped(style) + "</style>\n";
  out_ += "  <rect class=\"background\" x=\"0\" y=\"0\" width=\"" + Number(width) + "\" height=\"" + Number(height) +
          "\" fill=\"white\"/>\n";
}

std::string CSvgWriter::Number(double value) {
  std::string text = Fixed(value, 2);
  // 12.50 -> 12.5, 12.00 -> 12: shorter files, same picture.
  if (text.find('.') != std::string::npos) {
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

std::string CSvgWriter::Escaped(std::string_view text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        // Control characters have no place in XML text.
        out += static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t' ? ' ' : c;
    }
  }
  return out;
}

void CSvgWriter::BeginGroup(std::string_view cssClass, std::string_view title) {
  out_.append(2 * depth_, ' ');
  out_ += "<g class=\"" + Escaped(cssClass) + "\">";
  if (!title.empty()) out_ += "<title>" + Escaped(title) + "</title>";
  out_ += '\n';
  ++depth_;
}

void CSvgWriter::EndGroup() {
  --depth_;
  out_.append(2 * depth_, ' ');
  out_ += "</g>\n";
}

void CSvgWriter::Line(CSvgPoint a, CSvgPoint b, std::string_view cssClass) {
  out_.append(2 * depth_, ' ');
  out_ += "<line class=\"" + Escaped(cssClass) + "\" x1=\"" + Number(a.x) + "\" y1=\"" + Number(a.y) + "\" x2=\"" +
          Number(b.x) + "\" y2=\"" + Number(b.y) + "\"/>\n";
}

void CSvgWriter::Points(const std::vector<CSvgPoint>& points) {
  out_ += " points=\"";
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i) out_ += ' ';
    out_ += Number(points[i].x) + "," + Number(points[i].y);
  }
  out_ += '"';
}

void CSvgWriter::Polyline(const std::vector<CSvgPoint>& points, std::string_view cssClass) {
  out_.append(2 * depth_, ' ');
  out_ += "<polyline class=\"" + Escaped(cssClass) + "\"";
  Points(points);
  out_ += "/>\n";
}

void CSvgWriter::Polygon(const std::vector<CSvgPoint>& points, std::string_view cssClass) {
  out_.append(2 * depth_, ' ');
  out_ += "<polygon class=\"" + Escaped(cssClass) + "\"";
  Points(points);
  out_ += "/>\n";
}

void CSvgWriter::Rect(double x, double y, double width, double height, std::string_view cssClass) {
  out_.append(2 * depth_, ' ');
  out_ += "<rect class=\"" + Escaped(cssClass) + "\" x=\"" + Number(x) + "\" y=\"" + Number(y) + "\" width=\"" +
          Number(width) + "\" height=\"" + Number(height) + "\"/>\n";
}

void CSvgWriter::Circle(CSvgPoint centre, double radius, std::string_view cssClass) {
  out_.append(2 * depth_, ' ');
  out_ += "<circle class=\"" + Escaped(cssClass) + "\" cx=\"" + Number(centre.x) + "\" cy=\"" + Number(centre.y) +
          "\" r=\"" + Number(radius) + "\"/>\n";
}

void CSvgWriter::Path(std::string_view data, std::string_view cssClass) {
  out_.append(2 * depth_, ' ');
  out_ += "<path class=\"" + Escaped(cssClass) + "\" d=\"" + std::string(data) + "\"/>\n";
}

void CSvgWriter::Text(CSvgPoint at, std::string_view text, std::string_view cssClass, std::string_view anchor,
                      double rotation) {
  out_.append(2 * depth_, ' ');
  out_ += "<text class=\"" + Escaped(cssClass) + "\" x=\"" + Number(at.x) + "\" y=\"" + Number(at.y) +
          "\" text-anchor=\"" + std::string(anchor) + "\"";
  if (rotation != 0.0)
    out_ += " transform=\"rotate(" + Number(rotation) + " " + Number(at.x) + " " + Number(at.y) + ")\"";
  out_ += '>';
  out_ += Escaped(text);  // appended, not prepended to: GCC 12 at -O3 misreads that as an overlap
  out_ += "</text>\n";
}

void CSvgWriter::TextLines(CSvgPoint at, const std::vector<std::string>& lines, double lineHeight,
                           std::string_view cssClass, std::string_view anchor) {
  out_.append(2 * depth_, ' ');
  out_ += "<text class=\"" + Escaped(cssClass) + "\" x=\"" + Number(at.x) + "\" y=\"" + Number(at.y) +
          "\" text-anchor=\"" + std::string(anchor) + "\">";
  for (std::size_t i = 0; i < lines.size(); ++i) {
    out_ += "<tspan x=\"" + Number(at.x) + "\" y=\"" + Number(at.y + lineHeight * static_cast<double>(i)) + "\">" +
            Escaped(lines[i]) + "</tspan>";
  }
  out_ += "</text>\n";
}

std::string CSvgWriter::Finish() {
  out_ += "</svg>\n";
  return std::move(out_);
}

void CSvgPathData::MoveTo(CSvgPoint p) {
  if (!data_.empty()) data_ += ' ';
  data_ += "M " + CSvgWriter::Number(p.x) + " " + CSvgWriter::Number(p.y);
}

void CSvgPathData::LineTo(CSvgPoint p) { data_ += " L " + CSvgWriter::Number(p.x) + " " + CSvgWriter::Number(p.y); }

void CSvgPathData::ArcTo(double radius, bool largeArc, bool clockwise, CSvgPoint p) {
  const std::string r = CSvgWriter::Number(radius);
  data_ += " A " + r + " " + r + " 0 " + (largeArc ? "1 " : "0 ") + (clockwise ? "1 " : "0 ") +
           CSvgWriter::Number(p.x) + " " + CSvgWriter::Number(p.y);
}

double NiceStep(double least) {
  if (!(least > 0.0) || !std::isfinite(least)) return 1.0;
  const double power = std::pow(10.0, std::floor(std::log10(least)));
  for (double m : {1.0, 2.0, 5.0, 10.0})
    if (m * power >= least * (1.0 - 1e-12)) return m * power;
  return 10.0 * power;
}

double NiceStepBelow(double most) {
  if (!(most > 0.0) || !std::isfinite(most)) return 1.0;
  const double power = std::pow(10.0, std::floor(std::log10(most)));
  for (double m : {10.0, 5.0, 2.5, 2.0, 1.0})
    if (m * power <= most * (1.0 + 1e-12)) return m * power;
  return power;
}

}  // namespace host
