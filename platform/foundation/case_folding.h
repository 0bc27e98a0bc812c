#pragma once

namespace cf {

// The character that stands for it and its other cases in a comparison that ignores case: Unicode's simple
// folding, one character for one, the same in every language.
char32_t foldCase(char32_t character) noexcept;

}  // namespace cf
