#include "io/write_poll.h"

#include <gtest/gtest.h>

namespace {

// A stream that says "writing" a given number of times, and then something else.
struct Stream {
  int writingAnswers;
  CFStreamStatus finalStatus;
  int asked = 0;
  int slept = 0;

  std::optional<CFStreamStatus> wait() {
    return drav::waitWhileWriting(
        [this] { return asked++ < writingAnswers ? CFStreamStatus{kCFStreamStatusWriting} : finalStatus; },
        [this] { ++slept; });
  }
};

TEST(WritePoll, AStreamThatHasWrittenIsAskedOnceWithoutASleep) {
  Stream stream{0, kCFStreamStatusOpen};
  EXPECT_EQ(stream.wait(), CFStreamStatus{kCFStreamStatusOpen});
  EXPECT_EQ(stream.asked, 1);
  EXPECT_EQ(stream.slept, 0);
}

TEST(WritePoll, AStreamThatFinishesAtTheLastPollIsNotGivenUp) {
  Stream stream{5000, kCFStreamStatusOpen};
  EXPECT_EQ(stream.wait(), CFStreamStatus{kCFStreamStatusOpen});
  EXPECT_EQ(stream.slept, 5000);
}

TEST(WritePoll, AStreamThatStaysWritingIsGivenUpAfter5000Sleeps) {
  Stream stream{5001, kCFStreamStatusOpen};
  EXPECT_EQ(stream.wait(), std::nullopt);
  EXPECT_EQ(stream.slept, 5000);
}

TEST(WritePoll, AnErrorEndsTheWaiting) {
  Stream stream{3, kCFStreamStatusError};
  EXPECT_EQ(stream.wait(), CFStreamStatus{kCFStreamStatusError});
  EXPECT_EQ(stream.slept, 3);
}

}  // namespace
