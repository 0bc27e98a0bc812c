#include "media/codecs/pict/profile_comment.h"

#include "media/codecs/icc.h"
#include "media/codecs/pict/byte_reader.h"

namespace codecs::pict {
namespace {

enum Selector : uint32_t { first = 0, next = 1, end = 2 };  // others refer to profiles kept elsewhere

}  // namespace

void ProfileCollector::add(Bytes data) {
  ByteReader reader(data);
  const uint32_t selector = reader.u32();
  if (reader.failed() || selector > end) return;
  if (selector != next) settle();
  if (selector == end) return;
  const Bytes part = reader.rest();
  if (parts_.size() + part.size() > limits_.profileBytes) return;
  parts_.insert(parts_.end(), part.begin(), part.end());
}

void ProfileCollector::settle() {
  if (whole_.empty() && isProfileFor(parts_, ProfileColours::rgb, limits_)) whole_ = std::move(parts_);
  parts_.clear();
}

std::vector<uint8_t> ProfileCollector::take() {
  settle();
  return std::move(whole_);
}

}  // namespace codecs::pict
