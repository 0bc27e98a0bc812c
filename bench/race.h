// One operation against others that move or compute as much, each in every round of the same run, so that a
// busy machine slows all of them alike. The counters are ratios of the best rounds: vs_memcpy of 2 means that
// ours took twice as long as memcpy.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace bench {

struct Contender {
  std::string name;
  std::function<void()> run;
  std::function<void()> prepare = [] {};  // before each run, not timed
  double bestSeconds = std::numeric_limits<double>::infinity();

  double round() {
    prepare();
    const auto start = std::chrono::steady_clock::now();
    run();
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    bestSeconds = std::min(bestSeconds, seconds);
    return seconds;
  }
};

inline void race(benchmark::State &state, Contender ours, std::vector<Contender> others, size_t pixels) {
  for (auto _ : state) {
    state.SetIterationTime(ours.round());
    for (Contender &other : others) other.round();
  }
  for (const Contender &other : others)
    state.counters["vs_" + other.name] = ours.bestSeconds / other.bestSeconds;
  state.counters["Mpixel/s"] = static_cast<double>(pixels) / ours.bestSeconds / 1e6;
}

// memcpy of that many bytes, from one buffer into another that has been written to before.
inline Contender copying(size_t bytes) {
  auto from = std::make_shared<std::vector<uint8_t>>(bytes, uint8_t{1});
  auto to = std::make_shared<std::vector<uint8_t>>(bytes, uint8_t{2});
  return {"memcpy", [=] {
            std::memcpy(to->data(), from->data(), bytes);
            benchmark::DoNotOptimize(to->data());
          }};
}

}  // namespace bench
