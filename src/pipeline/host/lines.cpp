// The choice among the line functions of the CPU levels.
#include "pipeline/host/lines.h"

#include "device/host/cpu_level.h"

namespace morvellan
{

namespace cpu_v2
{
extern const LineFunctions lines;
}
namespace cpu_v3
{
extern const LineFunctions lines;
}
namespace cpu_v4
{
extern const LineFunctions lines;
}

const LineFunctions& lineFunctions(device::CpuLevel level)
{
  switch (level)
  {
  case device::CpuLevel::v4:
    return cpu_v4::lines;
  case device::CpuLevel::v3:
    return cpu_v3::lines;
  default:
    return cpu_v2::lines;
  }
}

const LineFunctions& lineFunctions()
{
  return lineFunctions(device::chosenCpuLevel().level);
}

}  // namespace morvellan
