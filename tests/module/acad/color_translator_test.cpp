// The AutoCAD colour translator over the headless palette and display colours: installation at
// load, index to RGB with the foreground rule, the nearest-index search against a plain
// reference, the colour conversions and the special codes.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <typeinfo>

#include "headless/api/headless.h"
#include "module/acad/GrAcadPlatformColor.h"
#include "module/graphics/GrColor.h"
#include "platform/acad/dbcolor.h"
#include "tests/module/acad/RgbToIndexReference.h"

namespace {

constexpr unsigned kDefaultBackground = 0x00302821;  // the headless default, RGB 33, 40, 48

std::uint32_t Packed(unsigned r, unsigned g, unsigned b) { return r | (g << 8) | (b << 16); }

class GrAcadColor : public testing::Test {
protected:
  void TearDown() override { HeadlessSetModelBackground(kDefaultBackground); }
  CGrAcadPlatformColor translator;
};

TEST(GrAcadColorInstallation, TheLoadedCodeInstallsAnAutoCadTranslator) {
  // Nothing in this test binary installs one: the static initializer of the translator did.
  IGrPlatformColor* installed = IGrPlatformColor::Installed();
  ASSERT_NE(installed, nullptr);
  EXPECT_EQ(typeid(*installed), typeid(CGrAcadPlatformColor));
  EXPECT_EQ(CGrColor::FromIndex(1).Rgb(), 0x0000FFu) << "a by-index red resolves through it";
  EXPECT_EQ(CGrColor(0x00FF0000u).Index(), 5u) << "a true blue finds its index through it";
}

TEST(GrAcadColorInstallation, InstallingAgainReplacesTheTranslatorWithoutDeletingTheOldOne) {
  IGrPlatformColor* before = IGrPlatformColor::Installed();  // the one made at load, not ours
  CGrAcadPlatformColor* fresh = CGrAcadPlatformColor::Install();
  ASSERT_NE(fresh, nullptr);
  EXPECT_NE(fresh, before);
  EXPECT_EQ(IGrPlatformColor::Installed(), fresh);
  EXPECT_EQ(before->IndexToRgb(1), 0x0000FFu) << "the old translator is still alive";
  // Any translator can be set; null uninstalls, and colours fall back to their stored fields.
  std::unique_ptr<IGrPlatformColor> current(IGrPlatformColor::Install(nullptr));
  EXPECT_EQ(current.get(), fresh);
  EXPECT_EQ(CGrColor::FromIndex(1).Rgb(), 0u);
  IGrPlatformColor::Install(before);
}

TEST_F(GrAcadColor, IndexToRgbIsThePaletteWithRedInTheLowByte) {
  EXPECT_EQ(translator.IndexToRgb(1), 0x0000FFu);
  EXPECT_EQ(translator.IndexToRgb(5), 0xFF0000u);
  EXPECT_EQ(translator.IndexToRgb(30), Packed(255, 127, 0));
  for (std::uint32_t i = 0; i < 256; ++i) {
    if (i == 7) continue;
    const std::uint32_t p = AcCmEntityColor::lookUpRGB(static_cast<Adesk::UInt8>(i));
    EXPECT_EQ(translator.IndexToRgb(i), Packed((p >> 16) & 0xFF, (p >> 8) & 0xFF, p & 0xFF)) << i;
  }
  EXPECT_EQ(translator.IndexToRgb(256 + 5), translator.IndexToRgb(5)) << "the palette takes 8 bits";
}

TEST_F(GrAcadColor, IndexSevenIsWhiteOnADarkPaletteBackgroundAndBlackOnALightOne) {
  const std::vector<std::pair<unsigned, std::uint32_t>> cases = {
      {0, 0xFFFFFF},    // black
      {250, 0xFFFFFF},  // grey 51
      {8, 0xFFFFFF},    // grey 128: brightness below 129
      {252, 0x000000},  // grey 132
      {254, 0x000000},  // grey 214
      {7, 0x000000},    // white
      {5, 0xFFFFFF},    // blue: (0 + 0 + 255) / 3 = 85
      {2, 0x000000},    // yellow: 170
  };
  for (const auto& [background, expected] : cases) {
    HeadlessSetModelBackground(background);
    EXPECT_EQ(translator.IndexToRgb(7), expected) << "background index " << background;
  }
}

TEST_F(GrAcadColor, IndexSevenPassesABackgroundOf256OrMoreThroughAsItIs) {
  EXPECT_EQ(translator.IndexToRgb(7), kDefaultBackground) << "the default dark background itself";
  HeadlessSetModelBackground(256);
  EXPECT_EQ(translator.IndexToRgb(7), 256u);
  HeadlessSetModelBackground(0x00FFFFFF);
  EXPECT_EQ(translator.IndexToRgb(7), 0x00FFFFFFu);
  // Compared as a signed number, a value with the top bit set is below 256: palette index 255.
  HeadlessSetModelBackground(0xFFFFFFFF);
  EXPECT_EQ(translator.IndexToRgb(7), 0x000000u);
}

TEST_F(GrAcadColor, TheStandardColoursFindTheirOwnIndexAheadOfTheirTwinsFurtherOn) {
  // 10, 50, 90, 130, 170 and 210 hold the same colours as 1 to 6: ties go to the lower index.
  EXPECT_EQ(translator.RgbToIndex(Packed(255, 0, 0)), 1u);
  EXPECT_EQ(translator.RgbToIndex(Packed(255, 255, 0)), 2u);
  EXPECT_EQ(translator.RgbToIndex(Packed(0, 255, 0)), 3u);
  EXPECT_EQ(translator.RgbToIndex(Packed(0, 255, 255)), 4u);
  EXPECT_EQ(translator.RgbToIndex(Packed(0, 0, 255)), 5u);
  EXPECT_EQ(translator.RgbToIndex(Packed(255, 0, 255)), 6u);
}

TEST_F(GrAcadColor, WhiteAndBlackCompareOnlyValueAndSaturation) {
  // White is the lightest grey the search offers (7 and 255 are not candidates).
  EXPECT_EQ(translator.RgbToIndex(Packed(255, 255, 255)), 254u);
  // Black is raised to (30, 30, 30) first: everything that floors to it is the same colour.
  const std::uint32_t black = translator.RgbToIndex(Packed(0, 0, 0));
  EXPECT_EQ(black, 250u);
  EXPECT_EQ(translator.RgbToIndex(Packed(30, 30, 30)), black);
  EXPECT_EQ(translator.RgbToIndex(Packed(10, 29, 0)), black);
  // The top byte is not part of the colour.
  EXPECT_EQ(translator.RgbToIndex(0xFF000000u | Packed(255, 0, 0)), 1u);
}

TEST_F(GrAcadColor, RgbToIndexNeverAnswersTheIndicesItMustNot) {
  for (unsigned r = 0; r < 256; r += 5) {
    for (unsigned g = 0; g < 256; g += 5) {
      for (unsigned b = 0; b < 256; b += 5) {
        const std::uint32_t index = translator.RgbToIndex(Packed(r, g, b));
        ASSERT_TRUE(index >= 1 && index <= 254 && index != 7) << index << " for " << r << "," << g << "," << b;
      }
    }
  }
}

TEST_F(GrAcadColor, RgbToIndexAgreesWithThePlainReference) {
  // Every palette colour, a coarse grid and random colours; the whole range is the slow test.
  std::vector<std::uint32_t> inputs;
  for (std::uint32_t i = 0; i < 256; ++i) inputs.push_back(translator.IndexToRgb(i == 7 ? 255 : i));
  for (unsigned r = 0; r < 256; r += 17) {
    for (unsigned g = 0; g < 256; g += 17) {
      for (unsigned b = 0; b < 256; b += 17) inputs.push_back(Packed(r, g, b));
    }
  }
  std::mt19937 random(5);
  for (int i = 0; i < 20000; ++i) inputs.push_back(random() & 0xFFFFFFu);
  for (const std::uint32_t rgb : inputs) {
    ASSERT_EQ(translator.RgbToIndex(rgb), grref::RgbToIndex(rgb)) << std::hex << rgb;
  }
}

TEST_F(GrAcadColor, ColorToIndexTakesTheIndexOfIndexColoursAndSearchesForTheOthers) {
  CGrColor color(200u, Packed(255, 0, 0));
  EXPECT_EQ(translator.ColorToIndex(color), 200u) << "method 3";
  color.SetMethod(grcolor::kMethodByIndex);
  EXPECT_EQ(translator.ColorToIndex(color), 200u);
  color.SetMethod(grcolor::kMethodRgb);
  EXPECT_EQ(translator.ColorToIndex(color), 1u);
  color.SetMethod(grcolor::kMethodNone);
  EXPECT_EQ(translator.ColorToIndex(color), 1u);
}

TEST_F(GrAcadColor, ColorToRgbTakesTheRgbOfTrueColoursAndLooksTheOthersUp) {
  CGrColor color(5u, Packed(1, 2, 3));
  EXPECT_EQ(translator.ColorToRgb(color), Packed(1, 2, 3)) << "method 3";
  color.SetMethod(grcolor::kMethodRgb);
  EXPECT_EQ(translator.ColorToRgb(color), Packed(1, 2, 3));
  color.SetMethod(grcolor::kMethodByIndex);
  EXPECT_EQ(translator.ColorToRgb(color), 0xFF0000u);
  color.SetMethod(grcolor::kMethodNone);
  EXPECT_EQ(translator.ColorToRgb(color), 0xFF0000u);
  HeadlessSetModelBackground(0);
  EXPECT_EQ(translator.ColorToRgb(CGrColor::FromIndex(7)), 0xFFFFFFu);
}

TEST(GrAcadColorCodes, TheSpecialCodesMapOntoByBlockByLayerAndForeground) {
  const std::vector<std::pair<std::int32_t, std::int32_t>> pairs = {{-1, 0}, {-2, 256}, {-3, 7}};
  for (const auto& [code, index] : pairs) {
    EXPECT_EQ(CGrAcadPlatformColor::IndexFromCode(code), index);
    EXPECT_EQ(CGrAcadPlatformColor::CodeFromIndex(index), code);
  }
  for (const std::int32_t other : {5, 1, 255, 257, -4, 0x7FFFFFFF}) {
    EXPECT_EQ(CGrAcadPlatformColor::IndexFromCode(other), other);
    EXPECT_EQ(CGrAcadPlatformColor::CodeFromIndex(other), other);
  }
}

}  // namespace
