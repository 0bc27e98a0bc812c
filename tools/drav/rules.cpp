#include "rules.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "failure.h"
#include "rule_words.h"

namespace {

constexpr uint32_t kComponents = 4;
constexpr size_t kAlpha = 3;
constexpr uint32_t kNeverMatches = AlwaysMatches + 1;

struct Option {
  std::string_view name;
  uint32_t bit;
};
constexpr Option kOneSuffices = {"one-suffices", 0};  // the absence of a bit
constexpr Option kOptions[] = {
    {"hsb", ConvertToHSB}, {"ignore-alpha", IgnoringAlpha}, {"first-alone", IgnoringIntensities}};

struct Test {
  std::string_view name;
  uint32_t mode, scaledMode;
  bool needsRange;
};
constexpr Test kTests[] = {
    {"within", AbsolutelyIfWithinRange, ProportionallyIfWithinRange, true},
    {"outside", AbsolutelyIfNotWithinRange, ProportionallyIfNotWithinRange, true},
    {"above", AbsolutelyIfGreaterThan, ProportionallyIfGreaterThan, false},
    {"below", AbsolutelyIfLessThan, ProportionallyIfLessThan, false},
};

constexpr std::array<std::string_view, kComponents> kRGB = {"red", "green", "blue", "alpha"};
constexpr std::array<std::string_view, kComponents> kHSB = {"hue", "saturation", "brightness", "alpha"};

struct Rule {
  Word head;
  uint32_t options = AllComponentsMustMatch;
  bool inHSB = false;  // what its tests are about
  std::array<std::optional<DRAVCFColorMatchComponent>, kComponents> tests;
  std::optional<std::array<float, kComponents>> color;
};

// The words of one line after the first, taken one by one.
class Rest {
 public:
  explicit Rest(const Line &line) : line_(line) {}

  bool done() const noexcept { return next_ == line_.size(); }
  const Word &take(const std::string &expected) {
    if (done()) refuse(line_.back(), expected + " is missing after " + quoted(line_.back()));
    return line_[next_++];
  }
  bool takeIf(std::string_view word) {
    if (done() || line_[next_].text != word) return false;
    ++next_;
    return true;
  }
  void end() const {
    if (!done()) refuse(line_[next_], quoted(line_[next_]) + " is more than belongs here");
  }

 private:
  const Line &line_;
  size_t next_ = 1;
};

DRAVCFColorMatchComponent parseTest(Rest &rest) {
  if (rest.takeIf("any")) return {AlwaysMatches, 0, 0};
  const bool scaled = rest.takeIf("scaled");
  const Word &name = rest.take("a test");
  for (const Test &test : kTests) {
    if (test.name != name.text) continue;
    const float target = numberIn(rest.take("a number"));
    const bool hasRange = test.needsRange || !rest.done();
    return {scaled ? test.scaledMode : test.mode, target, hasRange ? numberIn(rest.take("a range")) : 0.0F};
  }
  refuse(name,
         quoted(name) + " is not a test: within, outside, above, below" + (scaled ? "" : ", any, scaled"));
}

class Parser {
 public:
  void read(const Line &line) {
    const Word &first = line.front();
    if (first.text == "all-rules-must-match") {
      Rest(line).end();
      listOptions_ |= AllEntriesMustMatch;
    } else if (first.text == "rule") {
      startRule(line);
    } else if (first.text == "becomes") {
      readColor(line);
    } else {
      readTest(line);
    }
  }

  MatchList finish() {
    if (rules_.empty()) throw Failure("holds no rule");
    checkLast();
    MatchList list = cf::adopt(DRAVCFColorMatchListCreate(nullptr, listOptions_, kComponents));
    if (!list) throw Failure("out of memory");
    for (const Rule &rule : rules_) addTo(list.get(), rule);
    return list;
  }

 private:
  void startRule(const Line &line) {
    if (!rules_.empty()) checkLast();
    Rule rule;
    rule.head = line.front();
    for (const Word &word : std::span(line).subspan(1)) readOption(rule, word);
    // Once a colour has been converted, all later rules see it so.
    rule.inHSB = (rule.options & ConvertToHSB) || (!rules_.empty() && rules_.back().inHSB);
    rules_.push_back(rule);
  }

  static void readOption(Rule &rule, const Word &word) {
    if (word.text == kOneSuffices.name) {
      rule.options &= ~uint32_t{AllComponentsMustMatch};
      return;
    }
    for (const Option &option : kOptions) {
      if (option.name != word.text) continue;
      rule.options |= option.bit;
      return;
    }
    refuse(word, quoted(word) + " is not an option: hsb, ignore-alpha, first-alone, one-suffices");
  }

  void readTest(const Line &line) {
    const Word &name = line.front();
    Rule &rule = current(name);
    const size_t component = componentNamed(name, rule);
    if (rule.tests[component]) refuse(name, quoted(name) + " is tested already in this rule");
    Rest rest(line);
    rule.tests[component] = parseTest(rest);
    rest.end();
  }

  static size_t componentNamed(const Word &name, const Rule &rule) {
    const auto &names = rule.inHSB ? kHSB : kRGB;
    for (size_t i = 0; i < kComponents; ++i) {
      if (names[i] != name.text) continue;
      if (i >= testCount(rule)) refuse(name, quoted(name) + " is not tested in a rule with this option");
      return i;
    }
    refuse(name, quoted(name) + (rule.inHSB ? " cannot be tested here: hue, saturation, brightness, alpha"
                                            : " cannot be tested here: red, green, blue, alpha"));
  }

  static size_t testCount(const Rule &rule) noexcept {
    if (rule.options & IgnoringIntensities) return 1;
    return rule.options & IgnoringAlpha ? 3 : 4;
  }

  void readColor(const Line &line) {
    Rule &rule = current(line.front());
    if (rule.color) refuse(line.front(), "the rule has a colour already");
    Rest rest(line);
    std::array<float, kComponents> color = {0, 0, 0, 1};
    for (size_t i = 0; i < kAlpha; ++i) color[i] = numberIn(rest.take("a number"));
    if (!rest.done()) color[kAlpha] = numberIn(rest.take("a number"));
    rest.end();
    rule.color = color;
  }

  Rule &current(const Word &word) {
    if (rules_.empty()) refuse(word, quoted(word) + " comes before the first rule");
    return rules_.back();
  }

  void checkLast() const {
    const Rule &rule = rules_.back();
    if (!rule.color) refuse(rule.head, "the rule does not say what the colour becomes");
    const bool tested = std::ranges::any_of(rule.tests, [](const auto &test) { return test.has_value(); });
    if (!(rule.options & AllComponentsMustMatch) && !tested) refuse(rule.head, "the rule tests nothing");
    // Nobody would set its alpha otherwise, and what matches would vanish.
    if (!(rule.options & AllComponentsMustMatch) && testCount(rule) == kComponents && !rule.tests[kAlpha])
      refuse(rule.head, "a rule with one-suffices tests alpha or has ignore-alpha");
  }

  // What a rule does not test matches anything, and alpha stays as it is. Where one test suffices, that
  // would match every colour, and it matches none.
  static DRAVCFColorMatchComponent defaultTest(const Rule &rule, size_t component) noexcept {
    if (!(rule.options & AllComponentsMustMatch)) return {kNeverMatches, 0, 0};
    if (component == kAlpha) return {ProportionallyIfGreaterThan, 0, 0};
    return {AlwaysMatches, 0, 0};
  }

  static void addTo(DRAVCFColorMatchListRef list, const Rule &rule) {
    std::array<DRAVCFColorMatchComponent, kComponents> tests;
    for (size_t i = 0; i < kComponents; ++i) tests[i] = rule.tests[i].value_or(defaultTest(rule, i));
    std::array<float, kComponents> color = *rule.color;
    const DRAVCFColorMatchEntry entry{rule.options, tests.data(), color.data()};
    if (!DRAVCFColorMatchListAddEntry(list, &entry)) throw Failure("out of memory");
  }

  uint32_t listOptions_ = 0;
  std::vector<Rule> rules_;
};

}  // namespace

MatchList parseRules(std::string_view text) {
  Parser parser;
  for (const Line &line : linesOf(text)) parser.read(line);
  return parser.finish();
}
