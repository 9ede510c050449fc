// Shared by the LandXML tests: hand-built documents, reading them, and comparing the geometry of
// two models.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <optional>
#include <string>

#include "landxml/LandXml.h"

namespace lxtest {

// A LandXML 1.2 document around `body`, with a Metric element of the given units.
inline std::string Document(const std::string& body, const std::string& units =
                                                         "linearUnit=\"meter\" angularUnit=\"decimal degrees\" "
                                                         "directionUnit=\"decimal degrees\"") {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\" version=\"1.2\">\n"
         "<Units><Metric " +
         units + "/></Units>\n" + body + "\n</LandXML>\n";
}

// A document with one alignment holding `inner` (CoordGeom, StaEquation, Profile elements).
inline std::string AlignmentDocument(const std::string& inner, const std::string& units = "") {
  const std::string body =
      "<Alignments><Alignment name=\"A\" staStart=\"0\">\n" + inner + "\n</Alignment></Alignments>";
  return units.empty() ? Document(body) : Document(body, units);
}

// Reads a document that must be read; fails the test otherwise.
inline landxml::CModel MustRead(const std::string& text, const landxml::CReadOptions& options = {}) {
  landxml::CReadResult result = landxml::ReadLandXmlText(text, "test.xml", options);
  EXPECT_TRUE(result.model.has_value()) << result.error;
  return result.model ? std::move(*result.model) : landxml::CModel{};
}

// The message of a document that must fail, checking that the failed read built nothing.
inline std::string MustFail(const std::string& text) {
  const landxml::CReadResult result = landxml::ReadLandXmlText(text, "test.xml");
  EXPECT_FALSE(result.model.has_value());
  EXPECT_FALSE(result.error.empty());
  return result.error;
}

inline landxml::CModel WriteAndReread(const landxml::CModel& model, const landxml::CWriteOptions& options = {}) {
  std::string text;
  const landxml::CWriteResult written = landxml::WriteLandXmlText(model, text, options);
  EXPECT_TRUE(written.ok) << written.error;
  return MustRead(text);
}

// Equal within 1e-9 of their magnitude (and 1e-12 absolutely, for values at zero).
inline bool Close(double a, double b) {
  if (std::isinf(a) || std::isinf(b)) return a == b;
  return std::fabs(a - b) <= 1e-9 * std::max(std::fabs(a), std::fabs(b)) + 1e-12;
}
inline ::testing::AssertionResult Close(const landxml::CPoint& a, const landxml::CPoint& b) {
  if (Close(a.x, b.x) && Close(a.y, b.y) && Close(a.z, b.z) && a.hasZ == b.hasZ) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << a << " differs from " << b;
}

// Every coordinate, length, radius, station and angle of `b` matches `a`.
void ExpectSameGeometry(const landxml::CModel& a, const landxml::CModel& b);

// The shared data file, or nothing when KD_SHARED_DIR is unset or the file is absent.
inline std::optional<std::filesystem::path> SharedFile(const std::string& name) {
  const char* root = std::getenv("KD_SHARED_DIR");
  if (!root || !*root) return std::nullopt;
  std::filesystem::path path = std::filesystem::path(root) / "data" / "landxml" / name;
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) return std::nullopt;
  return path;
}

}  // namespace lxtest
