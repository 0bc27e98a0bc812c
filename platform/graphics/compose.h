// The two ways of composing rows: pixel by pixel, which does every pair of form and layout, and in vectors,
// which does the pairs that are drawn often. They give the same bytes.
#pragma once

#include <span>

#include "graphics/surface.h"

namespace cg {

ComposeRow plainComposeRow(SurfaceLayout layout, RowForm form) noexcept;

struct VectorComposeRows {
  // NULL where there is no vector form.
  ComposeRow (*rowFor)(SurfaceLayout layout, RowForm form) noexcept;
};

// The best for this processor, and all that it can run, for tests.
const VectorComposeRows &vectorComposeRows() noexcept;
std::span<const VectorComposeRows *const> allVectorComposeRows() noexcept;

}  // namespace cg
