// A plain implementation of the nearest-index search, written straight from its description,
// against which the translator's search is compared (tests and benchmark).
#pragma once

#include <cmath>
#include <cstdint>

#include "platform/acad/dbcolor.h"

namespace grref {

struct Hsv {
  float h;
  float s;
  float v;
};

inline Hsv ToHsv(unsigned red, unsigned green, unsigned blue) {
  // Channels below 30 count as 30, then divided by 255 in single precision.
  float r = (red < 30 ? 30 : red) / 255.0f;
  float g = (green < 30 ? 30 : green) / 255.0f;
  float b = (blue < 30 ? 30 : blue) / 255.0f;
  float max = r > g ? (r > b ? r : b) : (g > b ? g : b);
  float min = r < g ? (r < b ? r : b) : (g < b ? g : b);
  float delta = max - min;
  Hsv out{-1.0f, 0.0f, max};
  if (max <= 0.0001f) return out;
  out.s = delta / max;
  if (out.s < 0.0001f) {
    out.s = 0.0f;
    return out;
  }
  float h;
  if (std::fabs(r - max) <= 0.0001f) {
    h = (g - b) / delta;
  } else if (std::fabs(g - max) <= 0.0001f) {
    h = (b - r) / delta + 2.0f;
  } else {
    h = (r - g) / delta + 4.0f;
  }
  out.h = 60.0f * h;
  while (out.h < 0.0f) out.h += 360.0f;
  while (out.h > 360.0f) out.h -= 360.0f;
  return out;
}

// `rgb` packed with red in bits 0-7.
inline unsigned RgbToIndex(std::uint32_t rgb) {
  const Hsv in = ToHsv(rgb & 0xFF, (rgb >> 8) & 0xFF, (rgb >> 16) & 0xFF);
  double bestDistance = 1e100;
  unsigned bestIndex = 1;
  for (unsigned i = 1; i <= 254; ++i) {
    if (i == 7) continue;
    // The palette gives red in bits 16-23.
    const std::uint32_t p = AcCmEntityColor::lookUpRGB(static_cast<Adesk::UInt8>(i));
    const Hsv c = ToHsv((p >> 16) & 0xFF, (p >> 8) & 0xFF, p & 0xFF);
    float dh = std::fabs(in.h - c.h);
    if (dh > 180.0f) dh = 360.0f - dh;
    dh /= 180.0f;
    const float ds = std::fabs(in.s - c.s);
    const float dv = std::fabs(in.v - c.v);
    double distance;
    if (in.s < 0.0001f || c.s < 0.0001f) {
      distance = std::sqrt(0.5 * dv * dv + 0.5 * ds * ds);
    } else {
      distance = std::sqrt(0.33333 * ds * ds + 0.33334 * dh * dh + 0.33333 * dv * dv);
    }
    if (distance < bestDistance) {
      bestDistance = distance;
      bestIndex = i;
    }
  }
  return bestIndex;
}

}  // namespace grref
