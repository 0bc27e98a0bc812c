#include "graphics/resample_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "buffer_reader.h"
#include "graphics/resample_plain.h"
#include "guarded_memory.h"

namespace cg {
namespace {

AxisFilter someFilter(size_t length, size_t outputs, FilterShape shape) {
  const double scale = static_cast<double>(outputs) / static_cast<double>(length);
  return makeAxisFilter(shape, {scale, 0}, length, 0, outputs);
}

// Words as a first pass leaves them, overshoot included.
std::vector<int16_t> randomWords(std::mt19937 &random, size_t count) {
  std::vector<int16_t> words(count);
  for (int16_t &word : words) word = static_cast<int16_t>(static_cast<int>(random() % 24000) - 4000);
  return words;
}

template <class T>
std::vector<const T *> rowsOf(const std::vector<T> &samples, size_t rows) {
  std::vector<const T *> result;
  for (size_t i = 0; i < rows; ++i) result.push_back(samples.data() + i * (samples.size() / rows));
  return result;
}

TEST(ResampleRows, EveryFormAddsRowsAsPlainCodeDoes) {
  std::mt19937 random(1);
  for (size_t taps = 1; taps <= 7; ++taps) {
    const AxisFilter filter = someFilter(taps, 1, FilterShape::lanczos3);
    const PairWeights weights = makePairWeights(filter);
    const ColumnFilter column{weights.words.data(), filter.taps};
    for (size_t count = 1; count <= 150; ++count) {
      const auto bytes = test::randomPixels(random, filter.taps * count, 1);
      const auto words = randomWords(random, filter.taps * count);
      std::vector<int16_t> wordsExpected(count), wordsGot(count);
      std::vector<uint8_t> bytesExpected(count), bytesGot(count);
      downPlain(rowsOf(bytes, filter.taps).data(), column, count, wordsExpected.data());
      downPlain(rowsOf(words, filter.taps).data(), column, count, bytesExpected.data());
      for (const ResampleRows *rows : allResampleRows()) {
        rows->downBytes(rowsOf(bytes, filter.taps).data(), column, count, wordsGot.data());
        ASSERT_EQ(wordsGot, wordsExpected) << taps << " taps, " << count << " samples";
        rows->downWords(rowsOf(words, filter.taps).data(), column, count, bytesGot.data());
        ASSERT_EQ(bytesGot, bytesExpected) << taps << " taps, " << count << " samples";
      }
    }
  }
}

TEST(ResampleRows, EveryFormWeighsAlongARowAsPlainCodeDoes) {
  std::mt19937 random(2);
  for (FilterShape shape : {FilterShape::triangle, FilterShape::lanczos3}) {
    for (size_t length = 1; length <= 40; ++length) {
      for (size_t outputs = 1; outputs <= 70; outputs += 3) {
        const AxisFilter filter = someFilter(length, outputs, shape);
        const std::vector<int32_t> words = spread(makePairWeights(filter));
        const RowFilter row{filter.first.data(), words.data(), outputs, filter.taps};
        const auto bytes = test::randomPixels(random, length, 4);
        const auto between = randomWords(random, 4 * length);
        std::vector<int16_t> wordsExpected(4 * outputs), wordsGot(4 * outputs);
        std::vector<uint8_t> bytesExpected(4 * outputs), bytesGot(4 * outputs);
        acrossPlain<4>(bytes.data(), row, wordsExpected.data());
        acrossPlain<4>(between.data(), row, bytesExpected.data());
        for (const ResampleRows *rows : allResampleRows()) {
          rows->acrossBytes(bytes.data(), row, wordsGot.data());
          ASSERT_EQ(wordsGot, wordsExpected) << length << " to " << outputs;
          rows->acrossWords(between.data(), row, bytesGot.data());
          ASSERT_EQ(bytesGot, bytesExpected) << length << " to " << outputs;
        }
      }
    }
  }
}

// Enlarged, and mirrored too; the row lies between pages that may not be read.
TEST(ResampleRows, EveryFormEnlargesInEitherDirectionFromItsRowAlone) {
  using testing_support::GuardedMemory;
  std::mt19937 random(3);
  for (size_t length = 1; length <= 24; ++length) {
    for (const size_t outputs : {length + 1, 2 * length, 3 * length - 1, 5 * length}) {
      const double scale = static_cast<double>(outputs) / static_cast<double>(length);
      for (const AxisMap map : {AxisMap{scale, 0}, AxisMap{-scale, static_cast<double>(outputs)}}) {
        const AxisFilter filter = makeAxisFilter(FilterShape::triangle, map, length, 0, outputs);
        const std::vector<int32_t> words = spread(makePairWeights(filter));
        const RowFilter row{filter.first.data(), words.data(), outputs, filter.taps};
        const auto pixels = test::randomPixels(random, length, 4);
        std::vector<int16_t> expected(4 * outputs), got(4 * outputs);
        acrossPlain<4>(pixels.data(), row, expected.data());
        for (const auto edge : {GuardedMemory::Edge::first, GuardedMemory::Edge::last}) {
          const GuardedMemory memory(pixels.size(), edge);
          std::copy(pixels.begin(), pixels.end(), memory.data());
          for (const ResampleRows *rows : allResampleRows()) {
            rows->acrossBytes(memory.data(), row, got.data());
            ASSERT_EQ(got, expected) << length << " to " << outputs << ", scale " << map.scale;
          }
        }
      }
    }
  }
}

TEST(ResampleRows, AConstantStaysThroughEveryPass) {
  const AxisFilter filter = someFilter(31, 12, FilterShape::lanczos3);
  const std::vector<int32_t> words = spread(makePairWeights(filter));
  const RowFilter row{filter.first.data(), words.data(), filter.outputs, filter.taps};
  for (int value = 0; value < 256; ++value) {
    const std::vector<uint8_t> bytes(4 * 31, static_cast<uint8_t>(value));
    std::vector<int16_t> between(4 * filter.outputs);
    resampleRows().acrossBytes(bytes.data(), row, between.data());
    ASSERT_EQ(between, std::vector<int16_t>(between.size(), static_cast<int16_t>(value << kWordFraction)));
  }
}

}  // namespace
}  // namespace cg
