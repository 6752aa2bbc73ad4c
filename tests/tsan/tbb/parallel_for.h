// What ThreadSanitizer builds have in the place of TBB's loops: the same calls on plain threads. The sanitizer does not
// see how libtbb, which is not compiled for it, hands work from thread to thread, and would report each hand-over; here
// it sees all of it, and so every race of the bodies. The preset tsan puts this folder before the system's.
#pragma once

#include <algorithm>
#include <cstddef>
#include <exception>
#include <thread>
#include <utility>
#include <vector>

#include <tbb/blocked_range.h>
#include <tbb/global_control.h>

namespace tbb
{

namespace plain
{

inline thread_local int threadIndex = 0;

// Several threads also on a machine with one processor, but one where one is asked for.
inline int threadCount()
{
  const auto allowed = static_cast<int>(global_control::active_value(global_control::max_allowed_parallelism));
  return allowed == 1 ? 1 : std::clamp(allowed, 4, 16);
}

// Calls body(i) for each i below count, on each thread those of its turn, so that every thread has some however quick
// they are: the sanitizer finds a race of two that never meet.
template <typename Body>
void run(std::size_t count, const Body& body)
{
  const std::size_t workers = std::min(count, static_cast<std::size_t>(threadCount()));
  std::vector<std::exception_ptr> failures(workers);
  const auto work = [&](std::size_t worker)
  {
    const int before = std::exchange(threadIndex, static_cast<int>(worker));
    try
    {
      for (std::size_t i = worker; i < count; i += workers)
        body(i);
    }
    catch (...)
    {
      failures[worker] = std::current_exception();
    }
    threadIndex = before;
  };
  {
    std::vector<std::jthread> others;
    for (std::size_t worker = 1; worker < workers; ++worker)
      others.emplace_back(work, worker);
    if (workers > 0)
      work(0);
  }
  for (const std::exception_ptr& failure : failures)
    if (failure)
      std::rethrow_exception(failure);
}

}  // namespace plain

// Over the pieces of a range, cut as far as it lets itself be cut, into some dozens at most.
template <typename Range, typename Body>
requires requires(const Range& range)
{
  range.is_divisible();
}
void parallel_for(const Range& range, const Body& body)
{
  constexpr std::size_t most = 64;
  std::vector<Range> pieces;
  if (!range.empty())
    pieces.push_back(range);
  for (std::size_t before = 0; before != pieces.size() && pieces.size() < most;)
  {
    before = pieces.size();
    for (std::size_t i = 0; i < before; ++i)
      if (pieces[i].is_divisible())
      {
        Range second(pieces[i], split());
        pieces.push_back(second);
      }
  }
  plain::run(pieces.size(), [&](std::size_t i) { body(pieces[i]); });
}

template <typename Range, typename Body, typename Partitioner>
requires requires(const Range& range)
{
  range.is_divisible();
}
void parallel_for(const Range& range, const Body& body, const Partitioner&)
{
  parallel_for(range, body);
}

template <typename Function>
void parallel_for(int first, int last, const Function& function)
{
  if (first < last)
    plain::run(static_cast<std::size_t>(last - first), [&](std::size_t i) { function(first + static_cast<int>(i)); });
}

}  // namespace tbb
