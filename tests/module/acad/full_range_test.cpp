// Every one of the 16,777,216 colours gives the translator's index and the plain reference's
// alike. Slow: it runs only when KD_SLOW_TESTS is set (ctest -L slow).
#include <gtest/gtest.h>

#include <cstdlib>

#include "module/acad/GrAcadPlatformColor.h"
#include "tests/module/acad/RgbToIndexReference.h"

namespace {

TEST(GrAcadColorFullRange, EveryColourAgreesWithThePlainReference) {
  if (std::getenv("KD_SLOW_TESTS") == nullptr) GTEST_SKIP() << "set KD_SLOW_TESTS to run";
  const CGrAcadPlatformColor translator;
  std::uint32_t mismatches = 0;
  for (std::uint32_t rgb = 0; rgb <= 0xFFFFFFu; ++rgb) {
    if (translator.RgbToIndex(rgb) != grref::RgbToIndex(rgb) && ++mismatches <= 10) {
      ADD_FAILURE() << std::hex << "rgb 0x" << rgb << ": " << std::dec << translator.RgbToIndex(rgb) << " against "
                    << grref::RgbToIndex(rgb);
    }
  }
  EXPECT_EQ(mismatches, 0u);
}

}  // namespace
