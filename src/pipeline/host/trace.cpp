// The trace's text and its switch.
#include "pipeline/host/trace.h"

#include <cstdlib>

#include <fmt/format.h>

namespace morvellan
{

void Trace::launched(std::string_view kernel, int width, int height, double seconds)
{
  all.push_back({stage, std::string(kernel), width, height, seconds});
}

std::string Trace::text() const
{
  std::string lines;
  for (const TraceEvent& e : all)
    lines += fmt::format("trace: {:<12} {:<48} {:>5}x{:<5} {:9.3f} ms\n", e.stage, e.kernel, e.width, e.height,
                         e.seconds * 1e3);
  return lines;
}

bool Trace::wanted()
{
  const char* value = std::getenv("MORVELLAN_TRACE");
  return value && std::string_view(value) == "1";
}

}  // namespace morvellan
