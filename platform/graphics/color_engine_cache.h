// The transforms asked for last. A transform costs milliseconds to make, and pictures come in batches that
// share their profile.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <list>
#include <memory>
#include <mutex>
#include <vector>

#include "graphics/color_engine.h"

namespace cg {

class TransformCache {
 public:
  static constexpr std::size_t kMostEntries = 16;
  static constexpr std::size_t kMostKeyBytes = std::size_t{16} << 20;

  struct Key {
    CFDataRef from;
    PixelOrder fromOrder;
    CFDataRef to;
    PixelOrder toOrder;
    uint32_t intent;
  };

  // The transform for the key: the one kept, else what make gives, which is kept then. Two threads that miss
  // at once both make one, so that nobody waits for another's profile.
  template <class Make>
  std::shared_ptr<const ColorTransform> find(const Key &key, Make &&make) noexcept {
    try {
      if (auto known = lookUp(key)) return known;
      std::shared_ptr<const ColorTransform> made = make();
      if (made) keep(key, made);
      return made;
    } catch (const std::exception &) {
      return nullptr;
    }
  }

  [[nodiscard]] std::size_t size() {
    const std::lock_guard lock(mutex_);
    return entries_.size();
  }

 private:
  using Bytes = std::vector<uint8_t>;

  // Profiles are copied: the space that a transform was made for, and its allocator, may go before it.
  struct Entry {
    Bytes from, to;
    PixelOrder fromOrder, toOrder;
    uint32_t intent;
    std::shared_ptr<const ColorTransform> transform;

    [[nodiscard]] std::size_t keyBytes() const noexcept { return from.size() + to.size(); }
    [[nodiscard]] bool matches(const Key &key) const noexcept {
      return fromOrder == key.fromOrder && toOrder == key.toOrder && intent == key.intent &&
             same(from, key.from) && same(to, key.to);
    }
  };

  static bool same(const Bytes &bytes, CFDataRef data) noexcept {
    return bytes.size() == static_cast<std::size_t>(CFDataGetLength(data)) &&
           std::memcmp(bytes.data(), CFDataGetBytePtr(data), bytes.size()) == 0;
  }
  static Bytes bytesOf(CFDataRef data) {
    const uint8_t *bytes = CFDataGetBytePtr(data);
    return Bytes(bytes, bytes + CFDataGetLength(data));
  }

  // The one used last stands in front.
  std::shared_ptr<const ColorTransform> lookUp(const Key &key) {
    const std::lock_guard lock(mutex_);
    for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
      if (!entry->matches(key)) continue;
      entries_.splice(entries_.begin(), entries_, entry);
      return entry->transform;
    }
    return nullptr;
  }

  void keep(const Key &key, std::shared_ptr<const ColorTransform> transform) {
    std::list<Entry> added;
    added.push_back(
        {bytesOf(key.from), bytesOf(key.to), key.fromOrder, key.toOrder, key.intent, std::move(transform)});
    std::list<Entry> dropped;  // whose destructors run when the lock is gone
    const std::lock_guard lock(mutex_);
    keyBytes_ += added.front().keyBytes();
    entries_.splice(entries_.begin(), added);
    while (entries_.size() > kMostEntries || (keyBytes_ > kMostKeyBytes && entries_.size() > 1)) {
      keyBytes_ -= entries_.back().keyBytes();
      dropped.splice(dropped.begin(), entries_, std::prev(entries_.end()));
    }
  }

  std::mutex mutex_;
  std::list<Entry> entries_;
  std::size_t keyBytes_ = 0;
};

}  // namespace cg
