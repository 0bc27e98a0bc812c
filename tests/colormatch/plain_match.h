// Matching written down step by step, in plain arithmetic and without memory of its own: what the library
// must agree with.
#pragma once

#include <DravKit/DravKit.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "colormatch/lists.h"

namespace plain {

struct MatchList {
  uint32_t options = 0;
  uint32_t componentCount = 0;
  std::vector<test::Entry> entries;
};

// Gives 1 and the factor, or 0.
inline int testComponent(float v, uint32_t mode, float t, float r, float *f) {
  const float d = v - t;
  const float a = d < 0.0F ? -d : d;
  const float sum = t + r, rest = t - r;
  const float above = d - r;
  const double room = 1.0 - static_cast<double>(t) - static_cast<double>(r);
  *f = 1.0F;
  if (mode == 0) {
    if (!(a <= r)) return 0;
    if (r != 0.0F) *f = 1.0F - a / r;
    return 1;
  }
  if (mode == 1) {
    if (!(a > r)) return 0;
    if (r == 0.0F) {
      *f = 0.0F;
    } else if (v < t) {
      *f = 1.0F - v / rest;
    } else if (v > t) {
      *f = static_cast<float>(static_cast<double>(above) / room);
    } else {
      *f = 0.0F;
    }
    return 1;
  }
  if (mode == 2) return a <= r;
  if (mode == 3) return a > r;
  if (mode == 4) {
    if (!(d >= r && sum != 1.0F)) return 0;
    *f = static_cast<float>(static_cast<double>(above) / room);
    return 1;
  }
  if (mode == 5) {
    if (!(d <= r && rest != 0.0F)) return 0;
    *f = 1.0F - v / rest;
    return 1;
  }
  if (mode == 6) return d >= r && sum != 1.0F;
  if (mode == 7) return d <= r && rest != 0.0F;
  return mode == 8;
}

// Gives 1 and the result, which has the list's number of components, or 0.
inline int findMatch(const MatchList &list, const float *color, float *result) {
  const uint32_t m = list.componentCount;
  if (m > 4) return 0;
  float given[4] = {0, 0, 0, 0}, hsb[4] = {0, 0, 0, 0}, work[4] = {0, 0, 0, 0};
  for (uint32_t i = 0; i < m; ++i) given[i] = color[i];
  bool hsbMade = false, matched = false;
  std::vector<std::vector<float>> slots;
  for (const test::Entry &entry : list.entries) {
    const uint32_t n = (entry.options & 2) ? 1 : (entry.options & 1) ? 3 : 4;
    if ((entry.options & 8) && !hsbMade) {
      for (int i = 0; i < 4; ++i) hsb[i] = given[i];
      DRAVConvertRGBToHSV(hsb);
      hsbMade = true;
    }
    const float *tested = hsbMade ? hsb : given;
    bool any = false, missed = false;
    for (uint32_t i = 0; i < n && !missed; ++i) {
      float f = 0;
      const float p = i < m ? entry.replacement[i] : 0.0F;
      if (testComponent(tested[i], entry.tests[i].matchMode, entry.tests[i].target, entry.tests[i].range,
                        &f)) {
        work[i] = p * f;
        any = true;
      } else if (entry.options & 4) {
        missed = true;
      }
    }
    if (missed || !any) {
      if (list.options & 1) return 0;
      continue;
    }
    if ((entry.options & 1) && m == 4) work[3] = entry.replacement[3];
    if (entry.options & 2) {
      for (uint32_t i = 0; i < m; ++i) work[i] = entry.replacement[i];
    }
    float slot[4] = {0, 0, 0, 0};
    for (uint32_t i = 0; i < m; ++i) slot[i] = work[i];
    if (entry.options & 8) DRAVConvertHSVToRGB(slot);
    slots.emplace_back(slot, slot + 4);
    matched = true;
  }
  if (!matched) return 0;
  for (uint32_t i = 0; i < m; ++i) {
    float sum = 0.0F;
    for (const std::vector<float> &slot : slots) sum = sum + slot[i];
    result[i] = sum / static_cast<float>(slots.size());
  }
  return 1;
}

}  // namespace plain
