// Progress on standard error.
#include "progress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <unistd.h>

#include <fmt/format.h>

namespace morvellan::tool
{
namespace
{

double secondsSince(std::chrono::steady_clock::time_point start)
{
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

Progress::Progress(Talk talk, bool bar) : talk_(talk), bar_(bar && talk != Talk::Quiet && isatty(STDERR_FILENO) != 0) {}

void Progress::start(std::size_t frames)
{
  const std::scoped_lock lock(mutex_);
  frames_ = frames;
  done_ = 0;
  started_ = std::chrono::steady_clock::now();
  if (bar_ && frames_ > 1)
  {
    drawBar();
  }
}

void Progress::frameDone(const std::string& output, double milliseconds)
{
  const std::scoped_lock lock(mutex_);
  ++done_;
  if (talk_ == Talk::Quiet)
  {
    return;
  }
  const bool showBar = bar_ && frames_ > 1;
  if (!showBar || talk_ == Talk::Verbose)
  {
    clearBar();
    fmt::print(stderr, "{} ({} of {}): {:.1f} ms\n", output, done_, frames_, milliseconds);
  }
  if (showBar)
  {
    drawBar();
  }
}

void Progress::finish()
{
  const std::scoped_lock lock(mutex_);
  clearBar();
  if (talk_ != Talk::Quiet && frames_ > 1)
  {
    const double seconds = secondsSince(started_);
    fmt::print(stderr, "{} of {} frames in {:.1f} s, {:.2f} a second\n", done_, frames_, seconds,
               static_cast<double>(done_) / std::max(seconds, 1e-9));
  }
}

void Progress::line(const std::string& text)
{
  const std::scoped_lock lock(mutex_);
  const bool redraw = drawn_;
  clearBar();
  fmt::print(stderr, "{}\n", text);
  if (redraw)
  {
    drawBar();
  }
}

void Progress::drawBar()
{
  constexpr std::size_t cells = 30;
  const std::size_t filled = cells * done_ / frames_;
  const double seconds = secondsSince(started_);
  std::string tail;
  if (done_ > 0 && seconds > 0.0)
  {
    const double rate = static_cast<double>(done_) / seconds;
    const auto left = std::lround(static_cast<double>(frames_ - done_) / rate);
    tail = fmt::format("  {:.2f} frames/s  {}:{:02} left", rate, left / 60, left % 60);
  }
  fmt::print(stderr, "\r\033[K[{:#<{}}{:.<{}}] {}/{}{}", "", filled, "", cells - filled, done_, frames_, tail);
  std::fflush(stderr);
  drawn_ = true;
}

void Progress::clearBar()
{
  if (drawn_)
  {
    fmt::print(stderr, "\r\033[K");
    drawn_ = false;
  }
}

}  // namespace morvellan::tool
