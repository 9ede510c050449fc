// The document as a whole: encodings, versions and namespaces, XML faults with their line and
// element, and writing files (temporary file then rename, text escaped, 17 digits).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "tests/landxml/LandXmlTestUtil.h"

namespace {

using ::testing::HasSubstr;
using namespace landxml;
using lxtest::MustFail;
using lxtest::MustRead;

const std::string kUnits =
    "<Units><Metric linearUnit=\"meter\" angularUnit=\"radians\" directionUnit=\"radians\"/></Units>";

std::string NamedAlignment(const std::string& declaration, const std::string& name) {
  return declaration + "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\" version=\"1.2\">" + kUnits +
         "<Alignments><Alignment name=\"" + name + "\" staStart=\"0\"/></Alignments></LandXML>";
}

CAlignment Named(std::string name, std::vector<CGeometry> geometry = {}) {
  CAlignment alignment;
  alignment.name = std::move(name);
  alignment.geometry = std::move(geometry);
  return alignment;
}

std::string RootWith(const std::string& attributes) { return "<LandXML " + attributes + ">" + kUnits + "</LandXML>"; }

TEST(Encodings, Latin1IsReadAsItsDeclarationSays) {
  // "Sähkö" in ISO-8859-1 bytes: a-umlaut is 0xE4, o-umlaut 0xF6.
  const CModel latin1 = MustRead(NamedAlignment("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n", "S\xE4hk\xF6"));
  EXPECT_EQ(latin1.alignments.at(0).name, "S\xC3\xA4hk\xC3\xB6");
  // The same name written back is UTF-8 and reads the same.
  EXPECT_EQ(lxtest::WriteAndReread(latin1).alignments.at(0).name, "S\xC3\xA4hk\xC3\xB6");
}

TEST(Encodings, Utf8WithOrWithoutByteOrderMark) {
  const std::string name = "S\xC3\xA4hk\xC3\xB6";
  EXPECT_EQ(
      MustRead(NamedAlignment("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", name)).alignments.at(0).name,
      name);
  EXPECT_EQ(MustRead(NamedAlignment("<?xml version=\"1.0\"?>\n", name)).alignments.at(0).name, name);
  EXPECT_EQ(MustRead(NamedAlignment("\xEF\xBB\xBF", name)).alignments.at(0).name, name);
  EXPECT_EQ(MustRead(NamedAlignment("<?xml version='1.0' encoding='us-ascii'?>", "plain")).alignments.at(0).name,
            "plain");
}

TEST(Encodings, WhatIsNotReadSaysWhy) {
  EXPECT_THAT(MustFail(NamedAlignment("<?xml version=\"1.0\" encoding=\"windows-1252\"?>", "x")),
              HasSubstr("encoding \"windows-1252\" is not read"));
  EXPECT_THAT(MustFail(NamedAlignment("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>", "x")),
              HasSubstr("byte-order mark says UTF-8"));
  EXPECT_THAT(MustFail(std::string("\xFF\xFE<\0?\0", 6)), HasSubstr("UTF-16"));
  // Latin-1 bytes in a document that says (by default) it is UTF-8.
  EXPECT_THAT(MustFail(NamedAlignment("", "S\xE4hk\xF6")),
              HasSubstr("test.xml: line 1: <Alignment>: name is not valid text"));
}

TEST(Versions, LandXmlNamespacesAndNationalProfiles) {
  EXPECT_EQ(MustRead(RootWith("xmlns=\"http://www.landxml.org/schema/LandXML-1.0\" version=\"1.0\"")).version, "1.0");
  EXPECT_EQ(MustRead(RootWith("xmlns=\"http://www.landxml.org/schema/LandXML-1.1\"")).version, "1.1");
  const CModel inframodel = MustRead(RootWith("xmlns=\"http://www.inframodel.fi/inframodel\" version=\"1.2\""));
  EXPECT_EQ(inframodel.version, "1.2");
  EXPECT_EQ(inframodel.namespaceUri, "http://www.inframodel.fi/inframodel");
  EXPECT_EQ(MustRead(RootWith("version=\"1.1\"")).version, "1.1");
  // A prefixed root and prefixed elements are LandXML all the same.
  const CModel prefixed = MustRead(
      "<lx:LandXML xmlns:lx=\"http://www.landxml.org/schema/LandXML-1.2\"><lx:Units><lx:Metric "
      "linearUnit=\"foot\"/></lx:Units>"
      "<lx:Alignments><lx:Alignment name=\"P\" staStart=\"3\"/></lx:Alignments></lx:LandXML>");
  EXPECT_EQ(prefixed.units.linear, LinearUnit::Foot);
  EXPECT_EQ(prefixed.alignments.at(0).name, "P");

  const CReadResult mismatch =
      ReadLandXmlText(RootWith("xmlns=\"http://www.landxml.org/schema/LandXML-1.2\" version=\"1.0\""));
  ASSERT_TRUE(mismatch);
  EXPECT_EQ(mismatch.model->version, "1.2");
  EXPECT_EQ(mismatch.notes.size(), 1u);

  EXPECT_THAT(MustFail(RootWith("xmlns=\"http://www.landxml.org/schema/LandXML-2.0\" version=\"2.0\"")),
              HasSubstr("line 1: <LandXML>: namespace"));
  EXPECT_THAT(MustFail(RootWith("xmlns=\"urn:other\" version=\"2.0\"")), HasSubstr("version=\"2.0\" is not read"));
  EXPECT_THAT(MustFail(RootWith("")), HasSubstr("has neither a LandXML namespace nor a version"));
  EXPECT_THAT(MustFail("<?xml version=\"1.0\"?>\n<Document/>"),
              HasSubstr("test.xml: line 2: <Document>: is the root element"));
}

TEST(XmlFaults, LineAndElementOfTheFault) {
  // CR LF line ends, a mismatched end tag on line 4.
  const std::string broken =
      "<?xml version=\"1.0\"?>\r\n<LandXML version=\"1.2\">\r\n<Alignments>\r\n<Alignment></Alignments>\r\n</LandXML>";
  EXPECT_THAT(MustFail(broken), HasSubstr("test.xml: line 4: <Alignments>: is not well-formed XML"));
  EXPECT_THAT(MustFail(""), HasSubstr("test.xml: line 1: holds no XML element"));
  EXPECT_THAT(MustFail(lxtest::AlignmentDocument(
                  "<CoordGeom><Line staStart=\"1,5\"><Start>0 0</Start><End>1 1</End></Line></CoordGeom>")),
              HasSubstr("line 5: <Line>: staStart=\"1,5\" is not a number"));
  EXPECT_THAT(MustFail(lxtest::AlignmentDocument("<CoordGeom><Line><Start>0 0</Start></Line></CoordGeom>")),
              HasSubstr("<Line>: has no <End>"));
}

TEST(Files, ReadingNamesTheFileThatIsNotThere) {
  const CReadResult missing = ReadLandXml("/nonexistent/road.xml");
  EXPECT_FALSE(missing);
  EXPECT_EQ(missing.error, "/nonexistent/road.xml: no such file");
  EXPECT_THAT(ReadLandXml(std::filesystem::temp_directory_path()).error, HasSubstr("is a folder"));
}

class WriteFile : public ::testing::Test {
protected:
  void SetUp() override {
    folder_ = std::filesystem::temp_directory_path() /
              ("lx_write_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  static std::string Contents(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
  }
  std::size_t FilesInFolder() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder_), std::filesystem::directory_iterator()));
  }

  std::filesystem::path folder_;
};

TEST_F(WriteFile, ReplacesTheFileAndLeavesNoTemporaryBehind) {
  const std::filesystem::path target = folder_ / "out.xml";
  std::ofstream(target) << "old";
  CModel model;
  model.alignments.push_back(Named("A & <B> \"C\"\n\xC3\xA4"));
  const CWriteResult written = WriteLandXml(model, target);
  ASSERT_TRUE(written) << written.error;
  EXPECT_EQ(FilesInFolder(), 1u);
  const CReadResult back = ReadLandXml(target);
  ASSERT_TRUE(back) << back.error;
  EXPECT_EQ(back.model->alignments.at(0).name, "A & <B> \"C\"\n\xC3\xA4");
}

TEST_F(WriteFile, AFailedWriteLeavesTheOldFileAsItWas) {
  const std::filesystem::path target = folder_ / "out.xml";
  std::ofstream(target) << "old";
  CModel model;
  CLine line;
  line.end.x = std::nan("");
  model.alignments.push_back(Named("A", {line}));
  const CWriteResult written = WriteLandXml(model, target);
  EXPECT_FALSE(written);
  EXPECT_EQ(written.error, target.string() + ": a value to write is not a number");
  EXPECT_EQ(Contents(target), "old");
  EXPECT_EQ(FilesInFolder(), 1u);

  const CWriteResult nowhere = WriteLandXml(CModel{}, folder_ / "missing" / "out.xml");
  EXPECT_FALSE(nowhere);
  EXPECT_THAT(nowhere.error, HasSubstr("cannot make a file beside it"));

  model.alignments[0] = Named("bell\x07");
  EXPECT_THAT(WriteLandXml(model, target).error, HasSubstr("control character"));
  EXPECT_EQ(Contents(target), "old");
}

TEST(WriteNumbers, SeventeenSignificantDigitsGiveBackTheSameDouble) {
  CModel model;
  CLine line;
  line.start = {0.1, 24525276.867419001, 1e-7, true};
  line.end = {1.0 / 3.0, 6876935.5492670001, -0.0, true};
  model.alignments.push_back(Named("A", {line}));
  std::string text;
  ASSERT_TRUE(WriteLandXmlText(model, text));
  EXPECT_THAT(text, HasSubstr("<Start>24525276.867419001 0.10000000000000001 9.9999999999999995e-08</Start>")) << text;
  const CLine back = std::get<CLine>(MustRead(text).alignments.at(0).geometry.at(0));
  EXPECT_EQ(back.start, line.start);  // bit for bit
  EXPECT_EQ(back.end, line.end);
}

}  // namespace
