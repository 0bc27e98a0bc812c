// Regions as files hold them: rows of inversion points.
#pragma once

#include "media/codecs/pict/budget.h"
#include "media/codecs/pict/region.h"

namespace codecs::pict {

// A region record's size, from its first word, counting that word. damaged when it cannot be one.
Result<size_t> regionBytes(Bytes bytes) noexcept;

// Rows and edges are not checked against the bounding box; unsorted rows and odd counts, which only damaged
// files have, are put right. tooLarge when the rows, written out in full, would take more edges than any
// picture has use for, or than the budget has left.
Fault parseRegion(Bytes record, Budget &budget, Region &region);

}  // namespace codecs::pict
