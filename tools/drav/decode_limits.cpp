#include "decode_limits.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "failure.h"
#include "media/codecs/limits.h"

namespace {

using Limits = CGImageDecodeLimits;

template <auto Field>
bool store(Limits &limits, uint64_t value) noexcept {
  using Number = std::remove_reference_t<decltype(limits.*Field)>;
  if (value > std::numeric_limits<Number>::max()) return false;
  limits.*Field = static_cast<Number>(value);
  return true;
}

struct Row {
  std::string_view name;
  bool (*store)(Limits &, uint64_t) noexcept;  // false: too large a number
};

constexpr Row kRows[] = {
    {"side", store<&Limits::side>},           {"pixels", store<&Limits::pixels>},
    {"memory", store<&Limits::memoryBytes>},  {"scans", store<&Limits::jpegScans>},
    {"tags", store<&Limits::tiffTags>},       {"profile", store<&Limits::profileBytes>},
    {"opcodes", store<&Limits::pictOpcodes>}, {"painted", store<&Limits::paintedFrames>},
};

// Digits, then K, M or G.
std::optional<uint64_t> parseNumber(std::string_view text) noexcept {
  uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return std::nullopt;
  const std::string_view suffix(end, static_cast<size_t>(text.data() + text.size() - end));
  const int shift = suffix.empty() ? 0 : suffix == "K" ? 10 : suffix == "M" ? 20 : suffix == "G" ? 30 : -1;
  if (shift < 0 || number > std::numeric_limits<uint64_t>::max() >> shift) return std::nullopt;
  return number << shift;
}

bool setLimit(Limits &limits, std::string_view setting) noexcept {
  const size_t equals = setting.find('=');
  if (equals == std::string_view::npos) return false;
  const std::optional<uint64_t> value = parseNumber(setting.substr(equals + 1));
  for (const Row &row : kRows) {
    if (value && row.name == setting.substr(0, equals)) return row.store(limits, *value);
  }
  return false;
}

}  // namespace

void setLimits(const std::string &list) {
  Limits limits = CGImageGetDecodeLimits();
  for (size_t start = 0; start <= list.size();) {
    const size_t end = std::min(list.find(',', start), list.size());
    const std::string setting = list.substr(start, end - start);
    if (!setLimit(limits, setting))
      throw UsageError("--limits: " + setting + " is not one of " + limitNames() + ", = and a number");
    start = end + 1;
  }
  CGImageSetDecodeLimits(&limits);
}

std::string limitNames() {
  std::string names;
  for (const Row &row : kRows) names += (names.empty() ? "" : ", ") + std::string(row.name);
  return names;
}
