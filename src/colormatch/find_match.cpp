// A colour against all entries of a list.
#include <algorithm>
#include <array>

#include "colormatch/color_match_list.h"
#include "core/block.h"
#include "foundation/sizes.h"

using namespace drav::colormatch;

namespace {

using Color = std::array<float, kMostComponents>;

// The colour that entries test: the caller's, and from the first entry on that wants it the same in hue,
// saturation, brightness. It then stays so for the entries after it, whether they want it or not: that is how
// lists are written.
class TestedColor {
 public:
  // Components that the list does not have count as 0.
  TestedColor(const float *color, uint32_t componentCount) {
    std::copy_n(color, componentCount, given_.begin());
  }

  // False if memory runs out.
  bool convertToHSB(CFAllocatorRef allocator) {
    if (hsb_) return true;
    hsb_ = drav::Block(allocator, sizeof(Color));
    if (!hsb_) return false;
    std::copy(given_.begin(), given_.end(), converted());
    DRAVConvertRGBToHSV(converted());
    return true;
  }

  [[nodiscard]] const float *components() { return hsb_ ? converted() : given_.data(); }

 private:
  float *converted() { return reinterpret_cast<float *>(hsb_.get()); }

  Color given_{};
  drav::Block hsb_;
};

// The replacements of the entries that matched. As with a list's entries the array is asked for with one byte
// beyond what it holds, and the allocator's tail room takes the rest of the new one.
class Accumulator {
 public:
  explicit Accumulator(CFAllocatorRef allocator)
      : allocator_(allocator), slots_(static_cast<Color *>(CFAllocatorAllocate(allocator, 0, 0))) {}
  ~Accumulator() { CFAllocatorDeallocate(allocator_, slots_); }
  Accumulator(const Accumulator &) = delete;
  Accumulator &operator=(const Accumulator &) = delete;

  explicit operator bool() const { return slots_ != nullptr; }

  // The new last replacement, of zeros; NULL if memory runs out.
  float *add() {
    static_assert(sizeof(Color) <= 1 + 32);
    const cf::Size filled = cf::blockBytes(count_, sizeof(Color));
    void *grown =
        filled ? CFAllocatorReallocate(allocator_, slots_, static_cast<CFIndex>(*filled + 1), 0) : nullptr;
    if (!grown) return nullptr;
    slots_ = static_cast<Color *>(grown);
    return (slots_[count_++] = Color{}).data();
  }

  // Added in the order of the entries, in single precision.
  void writeMean(float *result, uint32_t componentCount) const {
    std::fill_n(result, componentCount, 0.0F);
    for (uint32_t slot = 0; slot < count_; ++slot) {
      for (uint32_t i = 0; i < componentCount; ++i) result[i] += slots_[slot][i];
    }
    for (uint32_t i = 0; i < componentCount; ++i) result[i] /= static_cast<float>(count_);
  }

 private:
  CFAllocatorRef allocator_;
  Color *slots_;
  uint32_t count_ = 0;
};

// Collects the replacements of all entries that match. Gives whether there is a result to be made of them.
bool collect(const __DRAVCFColorMatchList &list, CFAllocatorRef allocator, TestedColor &tested,
             Accumulator &replacements) {
  bool matched = false;
  Color work{};  // not cleared between entries: what an entry does not set stays from the ones before
  for (uint32_t i = 0; i < list.entryCount; ++i) {
    const DRAVCFColorMatchEntry &entry = list.entries[i];
    const bool inHSB = (entry.options & ConvertToHSB) != 0;
    if (inHSB && !tested.convertToHSB(allocator)) return false;
    if (!ReplaceColorForEntry(tested.components(), entry, list.options, FindComponentCountForEntry(entry),
                              list.componentCount, work.data())) {
      if (list.options & AllEntriesMustMatch) return false;
      continue;
    }
    float *replacement = replacements.add();
    if (!replacement) return false;
    std::copy_n(work.begin(), list.componentCount, replacement);
    if (inHSB) DRAVConvertHSVToRGB(replacement);
    matched = true;
  }
  return matched;
}

}  // namespace

int32_t DRAVCFColorMatchListFindMatch(DRAVCFColorMatchListRef list, const float *color, float *result) {
  if (!list || list->componentCount > kMostComponents) return 0;
  if (list->componentCount > 0 && (!color || !result)) return 0;
  CFAllocatorRef allocator = CFGetAllocator(list);
  Accumulator replacements(allocator);
  if (!replacements) return 0;
  TestedColor tested(color, list->componentCount);
  if (!collect(*list, allocator, tested, replacements)) return 0;
  replacements.writeMean(result, list->componentCount);
  return 1;
}
