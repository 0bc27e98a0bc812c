// Which of the forms compiled for kinds of processors this processor can run.
#pragma once

#include <hwy/targets.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace cg {

template <class Table>
class TargetTables {
 public:
  // targets: those compiled. tableAt gives the table at an index of the dispatch table.
  template <class TableAt>
  TargetTables(int64_t targets, TableAt tableAt) noexcept {
    // The lower a processor's bit, the better.
    for (int64_t left = hwy::SupportedTargets() & targets; left != 0; left &= left - 1) {
      hwy::ChosenTarget chosen;
      chosen.Update(left & -left);
      add(tableAt(chosen.GetIndex()));
    }
  }

  void add(const Table *table) noexcept { tables_[count_++] = table; }

  [[nodiscard]] const Table &best() const noexcept { return *tables_[0]; }
  [[nodiscard]] std::span<const Table *const> all() const noexcept { return {tables_.data(), count_}; }

 private:
  std::array<const Table *, HWY_MAX_DYNAMIC_TARGETS + 2> tables_{};
  size_t count_ = 0;
};

}  // namespace cg
