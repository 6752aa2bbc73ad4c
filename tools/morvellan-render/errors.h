// The two ways in which the tool fails: a wrong command line, and a render that could not be done.
#pragma once

#include <stdexcept>
#include <string>

namespace morvellan::tool
{

constexpr int exitOk = 0;
constexpr int exitFailed = 1;
constexpr int exitUsage = 2;

// The message is one sentence: what was wrong, and what to do.
class UsageError : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

class RenderError : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

// ": " and the first line of a library's reasons, where it gave any, without its full stop.
inline std::string because(const std::string& reasons)
{
  std::string first = reasons.substr(0, reasons.find('\n'));
  while (first.ends_with('.') || first.ends_with(' '))
  {
    first.pop_back();
  }
  return first.empty() ? "" : ": " + first;
}

}  // namespace morvellan::tool
