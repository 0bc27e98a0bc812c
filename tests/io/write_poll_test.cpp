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

TEST(WritePoll, TheStatusNumbersAreThoseOfTheInterface) {
  EXPECT_EQ(kCFStreamStatusOpening, 1);
  EXPECT_EQ(kCFStreamStatusOpen, 2);
  EXPECT_EQ(kCFStreamStatusWriting, 4);
  EXPECT_EQ(kCFStreamStatusError, 7);
}

TEST(WritePoll, AnErrorEndsTheWaiting) {
  Stream stream{3, kCFStreamStatusError};
  EXPECT_EQ(stream.wait(), CFStreamStatus{kCFStreamStatusError});
  EXPECT_EQ(stream.slept, 3);
}

// A stream with a script: what it says when it is asked first, and afterwards.
struct ScriptedStream {
  bool opens = true;
  CFStreamStatus first = kCFStreamStatusOpen;
  CFStreamStatus later = kCFStreamStatusOpen;
  int asked = 0, slept = 0, writes = 0, closes = 0;
  CFIndex written = 0;

  [[nodiscard]] bool open() const { return opens; }
  CFStreamStatus status() { return asked++ == 0 ? first : later; }
  void write(const uint8_t *, CFIndex length) {
    ++writes;
    written += length;
  }
  void sleep() { ++slept; }
  void close() { ++closes; }
};

ScriptedStream written(ScriptedStream stream) {
  const uint8_t bytes[5] = {};
  drav::writeThrough(stream, bytes, 5);
  return stream;
}

TEST(WriteThrough, WritesAllBytesInOneCallAndCloses) {
  for (const CFStreamStatus status : {kCFStreamStatusOpening, kCFStreamStatusOpen}) {
    const ScriptedStream stream = written({.first = status});
    EXPECT_EQ(stream.writes, 1);
    EXPECT_EQ(stream.written, 5);
    EXPECT_EQ(stream.slept, 0);
    EXPECT_EQ(stream.closes, 1);
  }
}

TEST(WriteThrough, AStreamThatDoesNotOpenIsLeftAlone) {
  const ScriptedStream stream = written({.opens = false});
  EXPECT_EQ(stream.asked, 0);
  EXPECT_EQ(stream.writes, 0);
  EXPECT_EQ(stream.closes, 0);
}

TEST(WriteThrough, AStreamInAnyOtherStatusIsNotWrittenButClosed) {
  for (const CFStreamStatus status : {kCFStreamStatusNotOpen, kCFStreamStatusReading, kCFStreamStatusWriting,
                                      kCFStreamStatusAtEnd, kCFStreamStatusClosed, kCFStreamStatusError}) {
    const ScriptedStream stream = written({.first = status});
    EXPECT_EQ(stream.writes, 0) << status;
    EXPECT_EQ(stream.closes, 1) << status;
  }
}

TEST(WriteThrough, AStreamThatIsStuckIsAbandonedUnclosed) {
  const ScriptedStream stream = written({.later = kCFStreamStatusWriting});
  EXPECT_EQ(stream.writes, 1);
  EXPECT_EQ(stream.slept, 5000);
  EXPECT_EQ(stream.closes, 0);
}

TEST(WriteThrough, AStreamThatFailedIsNotClosed) {
  const ScriptedStream stream = written({.later = kCFStreamStatusError});
  EXPECT_EQ(stream.writes, 1);
  EXPECT_EQ(stream.slept, 0);
  EXPECT_EQ(stream.closes, 0);
}

}  // namespace
