// The edge of the C interface: no exception passes it.
#pragma once

#include <exception>
#include <type_traits>
#include <utility>

namespace cf {

// Runs work, and gives what it gives; when it throws, the type's zero: NULL, false, 0, or nothing for void.
// Inside, only memory that runs out throws, so that this is the "NULL if memory runs out" of the headers.
template <class Work>
auto guarded(Work &&work) noexcept -> std::invoke_result_t<Work> {
  using Result = std::invoke_result_t<Work>;
  try {
    return std::forward<Work>(work)();
  } catch (const std::exception &) {
    if constexpr (!std::is_void_v<Result>) return Result{};
  }
}

// The same for functions whose failure is another value, such as -1.
template <class Result, class Work>
Result guardedOr(Result failure, Work &&work) noexcept {
  try {
    return std::forward<Work>(work)();
  } catch (const std::exception &) {
    return failure;
  }
}

}  // namespace cf
