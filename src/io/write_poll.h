// Writing through a stream, and waiting for it to have written.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
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

// Opens the stream, hands it all bytes at once and waits. A stream that failed or was given up is not closed:
// it goes as it is, with its owner.
//
// Stream  has open, status, write, sleep and close.
template <class Stream>
void writeThrough(Stream &stream, const uint8_t *bytes, CFIndex length) {
  if (!stream.open()) return;
  const CFStreamStatus opened = stream.status();
  if (opened == kCFStreamStatusOpening || opened == kCFStreamStatusOpen) stream.write(bytes, length);
  const auto last = waitWhileWriting([&] { return stream.status(); }, [&] { stream.sleep(); });
  if (last && *last != kCFStreamStatusError) stream.close();
}

}  // namespace drav
