// One entry against one colour. Which operations are single and which double precision is part of the
// results.
#include <cmath>
#include <optional>

#include "colormatch/color_match_list.h"

namespace drav::colormatch {
namespace {

// How far the value lies above target + range, of the way from there to 1.
float shareAbove(float difference, float target, float range) {
  const double span = 1.0 - static_cast<double>(target) - static_cast<double>(range);
  return static_cast<float>(static_cast<double>(difference - range) / span);
}

// How far the value lies below target - range, of the way from there to 0.
float shareBelow(float value, float target, float range) { return 1.0F - value / (target - range); }

float shareInside(float distance, float range) { return range == 0.0F ? 1.0F : 1.0F - distance / range; }

float shareOutside(float value, float target, float range) {
  if (range == 0.0F) return 0.0F;
  if (value < target) return shareBelow(value, target, range);
  if (value > target) return shareAbove(value - target, target, range);
  return 0.0F;
}

// "Less than" looks at the same signed difference as "greater than": a value may lie above its target by up
// to the range and still count as less.
bool isGreater(float difference, float target, float range) {
  return difference >= range && target + range != 1.0F;
}
bool isLess(float difference, float target, float range) {
  return difference <= range && target - range != 0.0F;
}

// What the replacement is multiplied by; nothing where the value does not match. Every comparison with NaN is
// false, so that NaN matches only what always matches.
std::optional<float> matchFactor(float value, const DRAVCFColorMatchComponent &test) {
  const float target = test.target, range = test.range;
  const float difference = value - target, distance = std::fabs(difference);
  const auto when = [](bool matches, auto factor) {
    return matches ? std::optional<float>(factor()) : std::nullopt;
  };
  const auto whole = [] { return 1.0F; };
  switch (test.matchMode) {
    case ProportionallyIfWithinRange:
      return when(distance <= range, [&] { return shareInside(distance, range); });
    case ProportionallyIfNotWithinRange:
      return when(distance > range, [&] { return shareOutside(value, target, range); });
    case AbsolutelyIfWithinRange:
      return when(distance <= range, whole);
    case AbsolutelyIfNotWithinRange:
      return when(distance > range, whole);
    case ProportionallyIfGreaterThan:
      return when(isGreater(difference, target, range),
                  [&] { return shareAbove(difference, target, range); });
    case ProportionallyIfLessThan:
      return when(isLess(difference, target, range), [&] { return shareBelow(value, target, range); });
    case AbsolutelyIfGreaterThan:
      return when(isGreater(difference, target, range), whole);
    case AbsolutelyIfLessThan:
      return when(isLess(difference, target, range), whole);
    case AlwaysMatches:
      return 1.0F;
    default:
      return std::nullopt;
  }
}

}  // namespace

bool GetReplacementComponent(float value, const DRAVCFColorMatchComponent &test, float replacement,
                             DRAVCFColorMatchEntryOptions /*entryOptions*/, float *destination) {
  const std::optional<float> factor = matchFactor(value, test);
  if (factor) *destination = replacement * *factor;
  return factor.has_value();
}

bool ReplaceColorForEntry(const float *testedColor, const DRAVCFColorMatchEntry &entry,
                          DRAVCFColorMatchListOptions /*listOptions*/, uint32_t findCount,
                          uint32_t componentCount, float *workColor) {
  bool any = false;
  for (uint32_t i = 0; i < findCount; ++i) {
    const float replacement = i < componentCount ? entry.replaceComponents[i] : 0.0F;
    if (GetReplacementComponent(testedColor[i], entry.findComponents[i], replacement, entry.options,
                                &workColor[i])) {
      any = true;
    } else if (entry.options & AllComponentsMustMatch) {
      return false;
    }
  }
  if (!any) return false;
  if ((entry.options & IgnoringAlpha) && componentCount == 4) workColor[3] = entry.replaceComponents[3];
  if (entry.options & IgnoringIntensities) {
    for (uint32_t i = 0; i < componentCount; ++i) workColor[i] = entry.replaceComponents[i];
  }
  return true;
}

}  // namespace drav::colormatch
