#include "media/codecs/pict/font_names.h"

#include <algorithm>
#include <array>

namespace codecs::pict {
namespace {

struct Numbered {
  int number;
  std::string_view name;
};

constexpr std::array kNumbers = std::to_array<Numbered>({
    {0, "Chicago"},        {1, "Geneva"},         {2, "New York"},
    {3, "Geneva"},         {4, "Monaco"},         {5, "Venice"},
    {6, "London"},         {7, "Athens"},         {8, "San Francisco"},
    {9, "Toronto"},        {11, "Cairo"},         {12, "Los Angeles"},
    {13, "Zapf Dingbats"}, {14, "Bookman"},       {15, "Helvetica Narrow"},
    {16, "Palatino"},      {18, "Zapf Chancery"}, {20, "Times"},
    {21, "Helvetica"},     {22, "Courier"},       {23, "Symbol"},
    {24, "Mobile"},        {33, "Avant Garde"},   {34, "New Century Schoolbook"},
});

constexpr std::string_view kSans = "Helvetica";
constexpr std::string_view kSerif = "Times";
constexpr std::string_view kMono = "Courier";

constexpr std::array<std::string_view, 11> kSerifFamilies{
    "New York", "Venice",   "London",   "Athens",        "Toronto",
    "Bookman",  "Palatino", "Garamond", "Zapf Chancery", "New Century Schoolbook",
    "Times"};
constexpr std::array<std::string_view, 4> kMonoFamilies{"Monaco", "Courier", "Andale Mono", "VT100"};

bool startsWithAny(std::string_view name, auto &families) noexcept {
  return std::ranges::any_of(families, [&](std::string_view family) { return name.starts_with(family); });
}

std::string_view substituteFor(std::string_view name) noexcept {
  if (startsWithAny(name, kSerifFamilies)) return kSerif;
  return startsWithAny(name, kMonoFamilies) ? kMono : kSans;
}

CharacterSet charactersOf(std::string_view name) noexcept {
  if (name == "Symbol") return CharacterSet::symbol;
  return name == "Zapf Dingbats" ? CharacterSet::dingbats : CharacterSet::macRoman;
}

}  // namespace

std::string_view familyNumbered(int number) noexcept {
  const auto *found = std::ranges::find(kNumbers, number, &Numbered::number);
  return found == kNumbers.end() ? kSans : found->name;
}

FontFamily familyNamed(std::string_view name) {
  FontFamily family{std::string(name), std::string(substituteFor(name)), charactersOf(name), false};
  family.isAlwaysBold = name == "Chicago" || name == "Charcoal";
  // Fonts with these names have no code points, or others than ours.
  if (family.characters == CharacterSet::dingbats) family.name = family.substitute = "DejaVu Sans";
  if (family.characters == CharacterSet::symbol) family.name = family.substitute = std::string(kSerif);
  return family;
}

}  // namespace codecs::pict
