// What the user sees of a run over several files: bad files, progress, the closing line.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

class Report {
 public:
  // `total` files will be dealt with; one alone shows no progress and no closing line.
  explicit Report(size_t total) noexcept;

  void begin(const std::string &name);                            // this file is next
  void succeed() noexcept { ++done_; }                            // it went well
  void fail(const std::string &name, const std::string &reason);  // it did not

  // Clears the bar and, after several files, prints the closing line: "197 of 200 images <done>, 3
  // failed". Gives the exit status: 1 if any file failed.
  int finish(const std::string &done);

 private:
  void draw(const std::string &name) const;
  void clear() const;

  size_t total_;
  size_t done_ = 0;
  size_t failed_ = 0;
  bool showsBar_;
  std::chrono::steady_clock::time_point nextDraw_{};
};

// The one form of a message about a file or about the command line: "drav: NAME: reason".
void printFailure(const std::string &name, const std::string &reason);
