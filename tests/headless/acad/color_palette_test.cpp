// AutoCAD's colour index palette and current display colours as the headless platform gives
// them, through the platform declarations only.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

#include "headless/api/headless.h"
#include "platform/acad/acedcolors.h"
#include "platform/acad/dbcolor.h"

namespace {

std::uint32_t Rgb(unsigned r, unsigned g, unsigned b) { return (r << 16) | (g << 8) | b; }

// The hue entries as the palette's layout describes them: hue (index / 10 - 1) * 15 degrees;
// within each ten, values 255, 204, 153, 127.5 and 76.5, each at full then half saturation,
// channels truncated.
std::uint32_t HueEntry(int index) {
  const double levels[] = {255.0, 204.0, 153.0, 127.5, 76.5};
  const double value = levels[(index % 10) / 2];
  const double low = index % 2 == 0 ? 0.0 : value / 2.0;
  const double hue = (index / 10 - 1) * 15.0;
  const int sector = static_cast<int>(hue / 60.0);
  const double f = (hue - sector * 60.0) / 60.0;
  const double rising = low + (value - low) * f;
  const double falling = value - (value - low) * f;
  double r = 0, g = 0, b = 0;
  switch (sector) {
    case 0: r = value, g = rising, b = low; break;
    case 1: r = falling, g = value, b = low; break;
    case 2: r = low, g = value, b = rising; break;
    case 3: r = low, g = falling, b = value; break;
    case 4: r = rising, g = low, b = value; break;
    default: r = value, g = low, b = falling; break;
  }
  return Rgb(static_cast<unsigned>(r), static_cast<unsigned>(g), static_cast<unsigned>(b));
}

TEST(ColorPalette, TheStandardColoursComeFirst) {
  const std::uint32_t standard[] = {Rgb(0, 0, 0),     Rgb(255, 0, 0),   Rgb(255, 255, 0),
                                    Rgb(0, 255, 0),   Rgb(0, 255, 255), Rgb(0, 0, 255),
                                    Rgb(255, 0, 255), Rgb(255, 255, 255), Rgb(128, 128, 128), Rgb(192, 192, 192)};
  for (int i = 0; i < 10; ++i) EXPECT_EQ(AcCmEntityColor::lookUpRGB(static_cast<Adesk::UInt8>(i)), standard[i]) << i;
}

TEST(ColorPalette, TwentyFourHuesOfTenShadesFollow) {
  int checked = 0;
  for (int i = 10; i < 250; ++i, ++checked) {
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(static_cast<Adesk::UInt8>(i)), HueEntry(i)) << i;
  }
  EXPECT_EQ(checked, 240);
  // Entries as AutoCAD's published table gives them.
  EXPECT_EQ(AcCmEntityColor::lookUpRGB(11), Rgb(255, 127, 127));
  EXPECT_EQ(AcCmEntityColor::lookUpRGB(12), Rgb(204, 0, 0));
  EXPECT_EQ(AcCmEntityColor::lookUpRGB(44), Rgb(153, 114, 0));
  EXPECT_EQ(AcCmEntityColor::lookUpRGB(160), Rgb(0, 63, 255));
  EXPECT_EQ(AcCmEntityColor::lookUpRGB(182), Rgb(51, 0, 204));
  EXPECT_EQ(AcCmEntityColor::lookUpRGB(227), Rgb(127, 63, 111));
}

TEST(ColorPalette, SixGreysEndIt) {
  const unsigned greys[] = {51, 91, 132, 173, 214, 255};
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(static_cast<Adesk::UInt8>(250 + i)), Rgb(greys[i], greys[i], greys[i]));
  }
}

TEST(ColorPalette, LookUpAciFindsTheNearestEntryAndTheLowestOfEqualOnes) {
  EXPECT_EQ(AcCmEntityColor::lookUpACI(255, 0, 0), 1) << "not its twin at 10";
  EXPECT_EQ(AcCmEntityColor::lookUpACI(255, 255, 255), 7) << "not 255";
  EXPECT_EQ(AcCmEntityColor::lookUpACI(51, 51, 51), 250);
  EXPECT_EQ(AcCmEntityColor::lookUpACI(250, 6, 3), 1);
  EXPECT_EQ(AcCmEntityColor::lookUpACI(130, 131, 133), 252);
  for (int i = 1; i < 256; ++i) {
    const std::uint32_t p = AcCmEntityColor::lookUpRGB(static_cast<Adesk::UInt8>(i));
    const int found = AcCmEntityColor::lookUpACI(p >> 16, (p >> 8) & 0xFF, p & 0xFF);
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(static_cast<Adesk::UInt8>(found)), p) << i;
    EXPECT_LE(found, i);
  }
}

TEST(ColorPalette, AnIndexColourAnswersItsPaletteChannels) {
  AcCmColor color;
  color.setColorIndex(30);
  EXPECT_EQ(color.red(), 255);
  EXPECT_EQ(color.green(), 127);
  EXPECT_EQ(color.blue(), 0);
  color.setRGB(250, 6, 3);
  EXPECT_EQ(color.colorIndex(), 1);
}

class DisplayColors : public testing::Test {
protected:
  void TearDown() override { HeadlessSetModelBackground(0x00302821); }
};

TEST_F(DisplayColors, TheDefaultsAreTheDarkModelAndTheWhiteLayoutBackgrounds) {
  AcColorSettings colors{};
  ASSERT_TRUE(acedGetCurrentColors(&colors));
  EXPECT_EQ(colors.dwGfxModelBkColor, 0x00302821u) << "RGB 33, 40, 48, red in the low byte";
  EXPECT_EQ(colors.dwGfxLayoutBkColor, 0x00FFFFFFu);
  EXPECT_FALSE(acedGetCurrentColors(nullptr));
}

TEST_F(DisplayColors, TheModelBackgroundIsSetForTheWholeProcess) {
  HeadlessSetModelBackground(0x00FFFFFF);
  AcColorSettings colors{};
  ASSERT_TRUE(acedGetCurrentColors(&colors));
  EXPECT_EQ(colors.dwGfxModelBkColor, 0x00FFFFFFu);
  HeadlessSetModelBackground(7);
  ASSERT_TRUE(acedGetCurrentColors(&colors));
  EXPECT_EQ(colors.dwGfxModelBkColor, 7u) << "a small value is kept as it is";
  EXPECT_EQ(colors.dwGfxLayoutBkColor, 0x00FFFFFFu);
}

}  // namespace
