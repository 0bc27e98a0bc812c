#include "ink.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <string_view>

#include "failure.h"

namespace {

struct NamedInk {
  std::string_view name;
  Ink ink;
};

constexpr NamedInk kNamed[] = {
    {"black", {0, 0, 0}},      {"white", {255, 255, 255}}, {"gray", {128, 128, 128}},
    {"red", {255, 0, 0}},      {"green", {0, 128, 0}},     {"blue", {0, 0, 255}},
    {"yellow", {255, 255, 0}}, {"orange", {255, 165, 0}},  {"purple", {128, 0, 128}},
    {"cyan", {0, 255, 255}},   {"magenta", {255, 0, 255}},
};

// Six digits, or three that stand for two each.
std::optional<Ink> inkFromDigits(std::string_view digits) noexcept {
  unsigned number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  const auto byte = [number](int shift) { return static_cast<uint8_t>(number >> shift & 0xff); };
  const auto twice = [number](int shift) { return static_cast<uint8_t>((number >> shift & 0xf) * 0x11); };
  if (digits.size() == 6) return Ink{byte(16), byte(8), byte(0)};
  if (digits.size() == 3) return Ink{twice(8), twice(4), twice(0)};
  return std::nullopt;
}

}  // namespace

std::optional<Ink> parseInk(const std::string &text) {
  if (text == "none") return std::nullopt;
  for (const NamedInk &named : kNamed) {
    if (named.name == text) return named.ink;
  }
  const auto ink = text.starts_with('#') ? inkFromDigits(std::string_view(text).substr(1)) : std::nullopt;
  if (!ink) throw UsageError(text + ": not a colour; #rrggbb or one of " + listOfInks());
  return ink;
}

std::string listOfInks() {
  std::string list = "none";
  for (const NamedInk &named : kNamed) list += ", " + std::string(named.name);
  return list;
}

std::string hexOf(Ink ink) {
  std::array<char, 8> text = {};
  std::snprintf(text.data(), text.size(), "#%02x%02x%02x", ink.red, ink.green, ink.blue);
  return text.data();
}
