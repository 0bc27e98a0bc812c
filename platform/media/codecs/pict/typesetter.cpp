#include "media/codecs/pict/typesetter.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <cmath>
#include <map>
#include <tuple>

#include "media/codecs/pict/font_files.h"

namespace codecs::pict {
namespace {

constexpr double kFixed = 65536;         // of the library's matrices
constexpr double kSlant = 0.25;          // of letters leaned over
constexpr double kBoldShare = 1.0 / 18;  // of the size, that letters made bold grow by
constexpr double kUnderlineShare = 1.0 / 12;

// Letters beyond that are coloured areas, whatever their shape.
constexpr double kLargestEm = 16384;

// Against visiting a pixel: looking up a letter, and looking for a family among those installed.
constexpr uint64_t kLetterEffort = 512;
constexpr uint64_t kFamilyEffort = 1 << 20;

struct DoneFace {
  void operator()(FT_Face face) const noexcept { FT_Done_Face(face); }
};
struct DoneLibrary {
  void operator()(FT_Library library) const noexcept { FT_Done_FreeType(library); }
};

struct Font {
  std::unique_ptr<FT_FaceRec_, DoneFace> face;
  bool lacksBold = false;
  bool lacksItalic = false;
};

// Where the letters' spans go.
struct Target {
  Coverage *coverage;

  static void put(int y, int count, const FT_Span *spans, void *self) noexcept {
    Coverage &coverage = *static_cast<Target *>(self)->coverage;
    uint8_t *const row = coverage.row(coverage.box.bottom - 1 - y);
    for (int i = 0; i < count; ++i) {
      for (int x = 0; x < spans[i].len; ++x) {
        uint8_t &value = row[spans[i].x + x];
        value = std::max(value, spans[i].coverage);
      }
    }
  }
};

// The library's coordinates grow upwards, from the lower left corner of the coverage.
void render(FT_Library library, FT_Outline &outline, Coverage &coverage) noexcept {
  Target target{&coverage};
  FT_Raster_Params params{};
  params.flags = FT_RASTER_FLAG_AA | FT_RASTER_FLAG_DIRECT | FT_RASTER_FLAG_CLIP;
  params.gray_spans = Target::put;
  params.user = &target;
  params.clip_box = {0, 0, coverage.box.width(), coverage.box.height()};
  FT_Outline_Render(library, &outline, &params);
}

void underline(const TextStyle &style, double from, double to, double baseline, Coverage &coverage) noexcept {
  const double thickness = std::max(1.0, std::floor(style.size * style.down * kUnderlineShare));
  const auto top = static_cast<int32_t>(std::lround(baseline + std::max(1.0, thickness)));
  const Box line = Box{static_cast<int32_t>(std::lround(from)), top, static_cast<int32_t>(std::lround(to)),
                       top + static_cast<int32_t>(thickness)}
                       .intersected(coverage.box);
  for (int32_t v = line.top; v < line.bottom && line.left < line.right; ++v)
    std::fill_n(coverage.row(v) + (line.left - coverage.box.left), line.width(), uint8_t{255});
}

}  // namespace

struct Typesetter::Fonts {
  std::unique_ptr<FT_LibraryRec_, DoneLibrary> library;
  std::map<std::tuple<std::string, bool, bool>, Font> fonts;

  Fonts() noexcept {
    FT_Library made = nullptr;
    if (FT_Init_FreeType(&made) == 0) library.reset(made);
  }

  const Font *find(const FontFamily &family, bool isBold, bool isItalic, Budget &budget) {
    if (!library) return nullptr;
    const auto [at, isNew] = fonts.try_emplace({family.name, isBold, isItalic});
    if (isNew && !budget.work(kFamilyEffort)) return nullptr;
    if (isNew) open(at->second, findFontFile(family, isBold, isItalic), isBold, isItalic);
    return at->second.face ? &at->second : nullptr;
  }

 private:
  void open(Font &font, const FontFile &file, bool isBold, bool isItalic) noexcept {
    FT_Face face = nullptr;
    if (file.path.empty() || FT_New_Face(library.get(), file.path.c_str(), file.index, &face) != 0) return;
    font.face.reset(face);
    font.lacksBold = isBold && !file.isBold;
    font.lacksItalic = isItalic && !file.isItalic;
    if (!FT_IS_SCALABLE(face) || face->units_per_EM == 0) font.face.reset();
  }
};

namespace {

// One run on its way, letter by letter.
class Setting {
 public:
  Setting(FT_Library library, const Font &font, const TextStyle &style, Coverage &coverage,
          Budget &budget) noexcept
      : library_(library),
        font_(font),
        style_(style),
        coverage_(coverage),
        budget_(budget),
        unit_(style.size / font.face->units_per_EM) {}

  // Draws one character with its start at canvas position (left, baseline), and gives its advance in
  // pixels.
  double letter(uint8_t byte, double left, double baseline) noexcept {
    const char32_t character = characterOf(byte, style_.family.characters);
    if (character == 0) return 0;
    if (!budget_.work(kLetterEffort)) return 0;
    const FT_UInt glyph = FT_Get_Char_Index(font_.face.get(), character);
    if (FT_Load_Glyph(font_.face.get(), glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP) != 0) return 0;
    FT_GlyphSlot slot = font_.face->glyph;
    double advance = static_cast<double>(slot->metrics.horiAdvance) * unit_;
    if (!style_.hasFractionalWidths) advance = std::round(advance);
    advance += style_.characterExtra + (byte == ' ' ? style_.spaceExtra : 0);
    if (slot->format == FT_GLYPH_FORMAT_OUTLINE) draw(slot->outline, left, baseline);
    return advance * style_.across;
  }

 private:
  void draw(FT_Outline &outline, double left, double baseline) noexcept {
    const double across = unit_ * style_.across * 64, down = unit_ * style_.down * 64;
    FT_Matrix matrix{};
    matrix.xx = std::lround(across * kFixed);
    matrix.xy = font_.lacksItalic ? std::lround(across * kSlant * kFixed) : 0;
    matrix.yy = std::lround(down * kFixed);
    FT_Outline_Transform(&outline, &matrix);
    if (font_.lacksBold) {
      const double weight = std::max(1.0, style_.size * style_.across * kBoldShare);
      FT_Outline_EmboldenXY(&outline, std::lround(64 * weight), 0);
    }
    FT_Outline_Translate(&outline, std::lround(64 * (left - coverage_.box.left)),
                         std::lround(64 * (coverage_.box.bottom - baseline)));
    if (canBeSeen(outline)) render(library_, outline, coverage_);
  }

  bool canBeSeen(const FT_Outline &outline) noexcept {
    FT_BBox reach;
    FT_Outline_Get_CBox(&outline, &reach);
    const Box seen = Box{keepNear(reach.xMin >> 6), keepNear(reach.yMin >> 6),
                         keepNear((reach.xMax >> 6) + 1), keepNear((reach.yMax >> 6) + 1)}
                         .intersected({0, 0, coverage_.box.width(), coverage_.box.height()});
    if (seen.isEmpty()) return false;
    const uint64_t area = static_cast<uint64_t>(seen.width()) * static_cast<uint64_t>(seen.height());
    return budget_.work(area + 16 * static_cast<uint64_t>(outline.n_points));
  }

  FT_Library library_;
  const Font &font_;
  const TextStyle &style_;
  Coverage &coverage_;
  Budget &budget_;
  const double unit_;  // drawing units a font unit
};

}  // namespace

// As far as letters can go, those that lean or get hollowed included.
static Box reachOf(const TextStyle &style, const TextRun &run, const TextPlace &place) noexcept {
  const auto edge = [](double at) { return static_cast<int32_t>(std::lround(std::clamp(at, -1e6, 1e6))); };
  const double em = style.size * std::max(style.across, style.down) + 4;
  const double extra = std::abs(style.characterExtra) + std::abs(style.spaceExtra);
  const double length = static_cast<double>(run.text.size()) * (2 * style.size + extra) * style.across;
  const bool canGoBack = style.characterExtra < 0 || style.spaceExtra < 0;
  return {edge(run.left - em - (canGoBack ? length : 0)), edge(place.top - em / 4 - 4),
          edge(run.left + em + length), edge(place.bottom + em / 4 + 4)};
}

Typesetter::Typesetter() = default;
Typesetter::~Typesetter() = default;

Coverage Typesetter::typeset(const TextStyle &style, const TextRun &run, Budget &budget, TextPlace &place) {
  Coverage coverage;
  if (!fonts_) fonts_ = std::make_unique<Fonts>();
  const Font *font =
      fonts_->find(style.family, style.isBold || style.family.isAlwaysBold, style.isItalic, budget);
  const double em = style.size * std::max(style.across, style.down);
  if (!font || run.visible.isEmpty() || !(em < kLargestEm)) return coverage;
  const double unit = style.size / font->face->units_per_EM * style.down;
  place.top = run.baseline - font->face->ascender * unit;
  place.bottom = run.baseline - font->face->descender * unit;
  coverage.box = run.visible.intersected(reachOf(style, run, place));
  if (coverage.box.isEmpty()) return coverage;
  const auto area =
      static_cast<uint64_t>(coverage.box.width()) * static_cast<uint64_t>(coverage.box.height());
  if (!budget.work(area)) return coverage;
  coverage.values.resize(static_cast<size_t>(area));
  Setting setting(fonts_->library.get(), *font, style, coverage, budget);
  double left = run.left;
  for (const uint8_t byte : run.text) {
    if (budget.spent()) break;
    left += setting.letter(byte, left, run.baseline);
  }
  place.left = run.left;
  place.right = left;
  if (style.isUnderlined) underline(style, run.left, left, run.baseline, coverage);
  return coverage;
}

}  // namespace codecs::pict
