#include "media/codecs/pict/font_files.h"

#include <fontconfig/fontconfig.h>

#include <map>
#include <memory>
#include <mutex>
#include <tuple>

namespace codecs::pict {
namespace {

struct DestroyPattern {
  void operator()(FcPattern *pattern) const noexcept { FcPatternDestroy(pattern); }
};
struct DestroyConfig {
  void operator()(FcConfig *config) const noexcept { FcConfigDestroy(config); }
};
using PatternOwner = std::unique_ptr<FcPattern, DestroyPattern>;

const FcChar8 *textOf(const std::string &text) noexcept {
  return reinterpret_cast<const FcChar8 *>(text.c_str());
}

PatternOwner requestFor(FcConfig *config, const FontFamily &family, bool isBold, bool isItalic) noexcept {
  PatternOwner request(FcPatternCreate());
  if (!request) return nullptr;
  FcPatternAddString(request.get(), FC_FAMILY, textOf(family.name));
  FcPatternAddString(request.get(), FC_FAMILY, textOf(family.substitute));
  FcPatternAddInteger(request.get(), FC_WEIGHT, isBold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(request.get(), FC_SLANT, isItalic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcPatternAddBool(request.get(), FC_SCALABLE, FcTrue);
  FcConfigSubstitute(config, request.get(), FcMatchPattern);
  FcDefaultSubstitute(request.get());
  return request;
}

FontFile search(FcConfig *config, const FontFamily &family, bool isBold, bool isItalic) {
  FontFile found;
  const PatternOwner request = requestFor(config, family, isBold, isItalic);
  if (!request) return found;
  FcResult result = FcResultMatch;
  const PatternOwner match(FcFontMatch(config, request.get(), &result));
  FcChar8 *path = nullptr;
  if (!match || FcPatternGetString(match.get(), FC_FILE, 0, &path) != FcResultMatch) return found;
  int weight = 0, slant = 0;
  FcPatternGetInteger(match.get(), FC_INDEX, 0, &found.index);
  FcPatternGetInteger(match.get(), FC_WEIGHT, 0, &weight);
  FcPatternGetInteger(match.get(), FC_SLANT, 0, &slant);
  found.isBold = weight >= FC_WEIGHT_DEMIBOLD;
  found.isItalic = slant != FC_SLANT_ROMAN;
  found.path = reinterpret_cast<const char *>(path);
  return found;
}

using Key = std::tuple<std::string, bool, bool>;

// Hostile pictures may name as many families as they like.
constexpr size_t kMostRemembered = 256;

// A configuration of our own, so that the host application's stays as it is.
class Catalogue {
 public:
  FontFile find(const FontFamily &family, bool isBold, bool isItalic) {
    const std::lock_guard guard(lock_);
    const Key key{family.name, isBold, isItalic};
    if (const auto known = remembered_.find(key); known != remembered_.end()) return known->second;
    if (!config_) config_.reset(FcInitLoadConfigAndFonts());
    FontFile found;
    if (config_) found = search(config_.get(), family, isBold, isItalic);
    if (remembered_.size() >= kMostRemembered) remembered_.clear();
    remembered_.emplace(key, found);
    return found;
  }

 private:
  std::mutex lock_;
  std::unique_ptr<FcConfig, DestroyConfig> config_;
  std::map<Key, FontFile> remembered_;
};

}  // namespace

FontFile findFontFile(const FontFamily &family, bool isBold, bool isItalic) {
  static Catalogue catalogue;
  return catalogue.find(family, isBold, isItalic);
}

}  // namespace codecs::pict
