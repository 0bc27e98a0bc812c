// Waiting for a stream to have written.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>

namespace drav {

inline constexpr int kMostWritePolls = 5000;

// Asks for the status until it is no longer "writing", sleeping in between.
// Gives  the final status; nothing once it has slept kMostWritePolls times in vain.
template <class Status, class Sleep>
std::optional<CFStreamStatus> waitWhileWriting(Status status, Sleep sleep) {
  CFStreamStatus now = status();
  for (int polls = 1; now == kCFStreamStatusWriting; ++polls) {
    if (polls > kMostWritePolls) return std::nullopt;
    sleep();
    now = status();
  }
  return now;
}

}  // namespace drav
