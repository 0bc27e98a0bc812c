#include <cstring>

#include "colormatch/color_match_list.h"
#include "foundation/sizes.h"

namespace drav::colormatch {
namespace {

// A copy of count items, which may be none; NULL if memory runs out.
template <class Item>
Item *copyItems(CFAllocatorRef allocator, const Item *items, uint32_t count) {
  const cf::Size bytes = cf::blockBytes(count, sizeof(Item));
  void *copy = bytes ? CFAllocatorAllocate(allocator, static_cast<CFIndex>(*bytes), 0) : nullptr;
  if (copy && count > 0) std::memcpy(copy, items, *bytes);
  return static_cast<Item *>(copy);
}

}  // namespace

uint32_t FindComponentCountForEntry(const DRAVCFColorMatchEntry &entry) {
  if (entry.options & IgnoringIntensities) return 1;
  return entry.options & IgnoringAlpha ? 3 : 4;
}

bool CopyEntry(CFAllocatorRef allocator, DRAVCFColorMatchEntry *destination,
               const DRAVCFColorMatchEntry &source, uint32_t replacementCount) {
  destination->options = source.options;
  destination->findComponents =
      copyItems(allocator, source.findComponents, FindComponentCountForEntry(source));
  if (!destination->findComponents) return false;
  destination->replaceComponents = copyItems(allocator, source.replaceComponents, replacementCount);
  return destination->replaceComponents != nullptr;
}

}  // namespace drav::colormatch
