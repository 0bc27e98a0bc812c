#include "media/codecs/jpeg_profile.h"

#include <algorithm>
#include <array>

namespace codecs {
namespace {

// "ICC_PROFILE", a zero byte, the piece's number from 1, how many pieces there are.
constexpr std::array<uint8_t, 12> kSignature{'I', 'C', 'C', '_', 'P', 'R', 'O', 'F', 'I', 'L', 'E', 0};
constexpr size_t kHeaderBytes = kSignature.size() + 2;

using Pieces = std::array<Bytes, 256>;

bool isPiece(const jpeg_marker_struct &marker) noexcept {
  return marker.marker == kProfileMarker && marker.data_length > kHeaderBytes &&
         std::equal(kSignature.begin(), kSignature.end(), marker.data);
}

// Fills `pieces` by number; gives how many there should be.
size_t collect(jpeg_saved_marker_ptr markers, Pieces &pieces) noexcept {
  size_t expected = 0;
  for (; markers; markers = markers->next) {
    if (!isPiece(*markers)) continue;
    const size_t number = markers->data[kSignature.size()];
    if (pieces[number].empty())
      pieces[number] = Bytes(markers->data, markers->data_length).subspan(kHeaderBytes);
    expected = std::max(expected, size_t{markers->data[kSignature.size() + 1]});
  }
  return expected;
}

}  // namespace

std::vector<uint8_t> joinProfile(jpeg_saved_marker_ptr markers, const CGImageDecodeLimits &limits) {
  Pieces pieces{};
  const size_t expected = collect(markers, pieces);
  std::vector<uint8_t> profile;
  for (size_t number = 1; number <= expected; ++number) {
    const Bytes piece = pieces[number];
    if (piece.empty() || profile.size() + piece.size() > limits.profileBytes) return {};
    profile.insert(profile.end(), piece.begin(), piece.end());
  }
  return profile;
}

}  // namespace codecs
