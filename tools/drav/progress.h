// How far the work on one file is.
#pragma once

#include <chrono>
#include <string>

// A line on standard error that goes away when the work is done; nothing unless that is a terminal.
class Progress {
 public:
  explicit Progress(std::string what);  // "recolouring"
  ~Progress();
  Progress(const Progress &) = delete;
  Progress &operator=(const Progress &) = delete;

  void show(double part);  // 0 to 1

 private:
  std::string what_;
  bool shows_;
  bool drawn_ = false;
  std::chrono::steady_clock::time_point nextDraw_;
};
