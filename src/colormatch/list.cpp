// Making a list and adding to it.
#include "colormatch/color_match_list.h"
#include "foundation/ref.h"
#include "foundation/sizes.h"

using namespace drav::colormatch;

namespace {

// An array that grows by one entry is asked for with room for one more byte: the allocator's tail room, 32
// bytes behind every block, takes the rest of the new entry.
static_assert(sizeof(DRAVCFColorMatchEntry) <= 1 + 32);

bool growForOneMore(DRAVCFColorMatchListRef list) {
  const cf::Size filled = cf::blockBytes(list->entryCount, sizeof(DRAVCFColorMatchEntry));
  if (!filled || list->entryCount == UINT32_MAX) return false;
  void *grown =
      CFAllocatorReallocate(CFGetAllocator(list), list->entries, static_cast<CFIndex>(*filled + 1), 0);
  if (grown) list->entries = static_cast<DRAVCFColorMatchEntry *>(grown);
  return grown != nullptr;
}

bool isWhole(const DRAVCFColorMatchEntry &entry, uint32_t replacementCount) {
  return entry.findComponents && (entry.replaceComponents || replacementCount == 0);
}

}  // namespace

DRAVCFColorMatchListRef DRAVCFColorMatchListCreate(CFAllocatorRef allocator, uint32_t options,
                                                   uint32_t componentCount) {
  auto list = cf::adopt(ColorMatchListCreatePrivate(allocator));
  if (!list) return nullptr;
  list->options = options;
  list->componentCount = componentCount;
  list->entries = static_cast<DRAVCFColorMatchEntry *>(CFAllocatorAllocate(allocator, 0, 0));
  return list->entries ? list.give() : nullptr;
}

int32_t DRAVCFColorMatchListAddEntry(DRAVCFColorMatchListRef list, const DRAVCFColorMatchEntry *entry) {
  if (!list || !entry || !isWhole(*entry, list->componentCount) || !growForOneMore(list)) return 0;
  DRAVCFColorMatchEntry *added = &list->entries[list->entryCount];
  if (!CopyEntry(CFGetAllocator(list), added, *entry, list->componentCount)) return 0;
  list->entryCount += 1;
  return 1;
}
