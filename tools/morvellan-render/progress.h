// What a long render shows on standard error: a bar with rate and time left on a terminal, plain lines otherwise.
#pragma once

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>

namespace morvellan::tool
{

enum class Talk
{
  Quiet,  // errors alone
  Normal,
  Verbose,  // each frame, and what the plug-in does wrong
};

// Safe to call from any thread.
class Progress
{
public:
  // `bar` false: plain lines even on a terminal, for output that other lines are mixed into.
  Progress(Talk talk, bool bar);

  void start(std::size_t frames);
  // One frame is done; `milliseconds` is the plug-in's share.
  void frameDone(const std::string& output, double milliseconds);
  void finish();
  // A line of its own, which the bar makes room for.
  void line(const std::string& text);

private:
  void drawBar();
  void clearBar();

  const Talk talk_;
  const bool bar_;
  std::mutex mutex_;
  std::size_t frames_ = 0;
  std::size_t done_ = 0;
  std::chrono::steady_clock::time_point started_;
  bool drawn_ = false;
};

}  // namespace morvellan::tool
