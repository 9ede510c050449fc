// Alignments with spirals, as a LandXML import makes them in the drawing, read back through the
// module: spiral groups give their arcs only, spirals give nothing. The geometry is worked from
// the textbook clothoid series, independent of the platform's own integration.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include "module/interface/ICivil3dAlignment.h"
#include "tests/host/ModuleLibrary.h"

namespace {

constexpr double kPi = std::numbers::pi;

struct Xy {
  double x, y;
};

// A point of a clothoid leaving the origin along +x and turning left, at arc length s, for
// A^2 = R L: x = sum (-1)^n s^(4n+1) / ((4n+1) (2n)! (2A^2)^(2n)), y likewise with odd powers.
Xy Clothoid(double s, double a2) {
  double x = 0.0, y = 0.0, factorial = 1.0;
  for (int n = 0; n < 12; ++n) {
    const double even = std::pow(-1.0, n) * std::pow(s, 4 * n + 1) / ((4 * n + 1) * factorial * std::pow(2 * a2, 2 * n));
    factorial *= 2 * n + 1;
    const double odd =
        std::pow(-1.0, n) * std::pow(s, 4 * n + 3) / ((4 * n + 3) * factorial * std::pow(2 * a2, 2 * n + 1));
    factorial *= 2 * n + 2;
    x += even;
    y += odd;
  }
  return {x, y};
}

Xy Turned(Xy v, double angle) {
  return {v.x * std::cos(angle) - v.y * std::sin(angle), v.x * std::sin(angle) + v.y * std::cos(angle)};
}

std::string Num(double v) {
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "%.17g", v);
  return buffer;
}
std::string Tag(const char* tag, Xy p) { return std::string("<") + tag + ">" + Num(p.y) + " " + Num(p.x) + "</" + tag + ">"; }

// Writes LandXML elements while walking: a spiral from a tangent into radius R, an arc, a spiral
// out of R onto a tangent, each turning left or right.
class Walk {
public:
  Walk(Xy at, double heading) : at_(at), heading_(heading) {}

  void SpiralIn(double length, double radius, bool left) {
    const Xy local = Clothoid(length, radius * length);
    const Xy end = Add(at_, Turned({local.x, left ? local.y : -local.y}, heading_));
    Spiral(length, "INF", Num(radius), left, end);
    heading_ += (left ? 1 : -1) * length / (2 * radius);
  }
  void SpiralOut(double length, double radius, bool left) {
    // Backwards from its end the spiral is a spiral in turning the other way.
    const double endHeading = heading_ + (left ? 1 : -1) * length / (2 * radius);
    const Xy local = Clothoid(length, radius * length);
    const Xy back = Turned({local.x, left ? -local.y : local.y}, endHeading + kPi);
    const Xy end = {at_.x - back.x, at_.y - back.y};
    Spiral(length, Num(radius), "INF", left, end);
    heading_ = endHeading;
  }
  void Arc(double radius, double length, bool left) {
    const Xy centre = Add(at_, Turned({0.0, left ? radius : -radius}, heading_));
    const double sweep = (left ? 1 : -1) * length / radius;
    const Xy end = Add(centre, Turned({at_.x - centre.x, at_.y - centre.y}, sweep));
    xml_ += std::string("<Curve rot=\"") + (left ? "ccw" : "cw") + "\">" + Tag("Start", at_) + Tag("Center", centre) +
            Tag("End", end) + "</Curve>\n";
    arcs_.push_back({centre.x, centre.y});
    at_ = end;
    heading_ += sweep;
  }

  const std::string& Xml() const { return xml_; }
  const std::vector<Xy>& Centres() const { return arcs_; }

private:
  static Xy Add(Xy a, Xy b) { return {a.x + b.x, a.y + b.y}; }
  void Spiral(double length, const std::string& in, const std::string& out, bool left, Xy end) {
    xml_ += "<Spiral length=\"" + Num(length) + "\" radiusStart=\"" + in + "\" radiusEnd=\"" + out + "\" rot=\"" +
            (left ? "ccw" : "cw") + "\" spiType=\"clothoid\">" + Tag("Start", at_) + Tag("End", end) + "</Spiral>\n";
    at_ = end;
  }

  Xy at_;
  double heading_;
  std::string xml_;
  std::vector<Xy> arcs_;
};

std::string Document(const std::vector<std::pair<std::string, std::string>>& alignments) {
  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\" "
      "version=\"1.2\">\n<Units><Metric linearUnit=\"meter\" angularUnit=\"radians\" directionUnit=\"radians\"/>"
      "</Units>\n<Alignments>\n";
  for (const auto& [name, geometry] : alignments)
    out += "<Alignment name=\"" + name + "\" staStart=\"0\"><CoordGeom>\n" + geometry + "</CoordGeom></Alignment>\n";
  return out + "</Alignments>\n</LandXML>\n";
}

struct AlignmentDeleter {
  void operator()(ICivil3dAlignment* a) const { delete a; }
};

class SpiralGroups : public CivilSession {
protected:
  void SetUp() override {
    CivilSession::SetUp();
    // A left spiral-curve-spiral, then at once a right one: one six-part group.
    Walk reverse({1000, 2000}, 0.4);
    reverse.SpiralIn(60, 250, true);
    reverse.Arc(250, 80, true);
    reverse.SpiralOut(60, 250, true);
    reverse.SpiralIn(50, 400, false);
    reverse.Arc(400, 90, false);
    reverse.SpiralOut(50, 400, false);
    single = std::make_unique<Walk>(Xy{-300, 500}, 2.0);
    single->SpiralIn(40, 150, false);
    single->Arc(150, 30, false);
    single->SpiralOut(40, 150, false);
    Walk lone({0, 0}, 1.0);
    lone.SpiralIn(30, 100, true);
    Walk pair({50, 50}, -1.0);
    pair.SpiralIn(30, 100, true);
    pair.SpiralOut(30, 100, true);
    reverseCentres = reverse.Centres();

    path = std::filesystem::temp_directory_path() / ("kd_spiral_groups_" + std::to_string(::getpid()) + ".xml");
    std::ofstream(path) << Document(
        {{"Reverse", reverse.Xml()}, {"Single", single->Xml()}, {"Lone", lone.Xml()}, {"Pair", pair.Xml()}});
    ASSERT_EQ(HeadlessImportLandXml(app, path.string().c_str(), nullptr), 0) << HeadlessLastError(app);
  }
  void TearDown() override {
    std::error_code ec;
    std::filesystem::remove(path, ec);
    CivilSession::TearDown();
  }
  std::vector<CC3dCurve> ReadBack(const wchar_t* name) {
    std::unique_ptr<ICivil3dAlignment, AlignmentDeleter> alignment(session->GetAlignment(name));
    EXPECT_TRUE(alignment);
    if (!alignment) return {};
    CC3dCurve* curves = nullptr;
    int count = -1;
    EXPECT_TRUE(alignment->GetAlignmentGeometry(&curves, &count));
    std::vector<CC3dCurve> out(curves, curves + (count > 0 ? count : 0));
    session->FreeCurves(&curves);
    return out;
  }

  std::filesystem::path path;
  std::unique_ptr<Walk> single;
  std::vector<Xy> reverseCentres;
};

TEST_F(SpiralGroups, GroupsReadBackAsTheirArcsOnly) {
  const auto one = ReadBack(L"Single");
  ASSERT_EQ(one.size(), 1u);
  EXPECT_FALSE(one[0].GetIsLine());
  EXPECT_NEAR(one[0].GetRadius(), 150, 1e-6);
  EXPECT_NEAR(one[0].GetSweep(), -30.0 / 150, 1e-9) << "a right turn";
  EXPECT_NEAR(one[0].GetCenter().x, single->Centres()[0].x, 1e-6);
  EXPECT_NEAR(one[0].GetCenter().y, single->Centres()[0].y, 1e-6);

  const auto two = ReadBack(L"Reverse");
  ASSERT_EQ(two.size(), 2u) << "both arcs of the spiral-curve-spiral-spiral-curve-spiral group";
  EXPECT_NEAR(two[0].GetRadius(), 250, 1e-6);
  EXPECT_NEAR(two[0].GetSweep(), 80.0 / 250, 1e-9);
  EXPECT_NEAR(two[1].GetRadius(), 400, 1e-6);
  EXPECT_NEAR(two[1].GetSweep(), -90.0 / 400, 1e-9);
  EXPECT_NEAR(two[1].GetCenter().x, reverseCentres[1].x, 1e-6);
  EXPECT_NEAR(two[1].GetCenter().y, reverseCentres[1].y, 1e-6);
}

TEST_F(SpiralGroups, SpiralsAloneReadBackAsNothing) {
  EXPECT_TRUE(ReadBack(L"Lone").empty());
  EXPECT_TRUE(ReadBack(L"Pair").empty()) << "two spirals meeting without an arc";
}

}  // namespace
