// The engines that this binary was built with. Only what links the engines' objects may use this list.
#include <array>

#include "pipeline/host/engine.h"

namespace morvellan
{

namespace cpu_v2
{
extern const Engine engine;
}
namespace cpu_v3
{
extern const Engine engine;
}
namespace cpu_v4
{
extern const Engine engine;
}
#ifdef MORVELLAN_HAS_CUDA
namespace cuda
{
extern const Engine engine;
}
#endif

std::span<const Engine* const> engines()
{
  static const std::array all{&cpu_v2::engine, &cpu_v3::engine, &cpu_v4::engine,
#ifdef MORVELLAN_HAS_CUDA
                              &cuda::engine
#endif
  };
  return all;
}

const Engine* findEngine(std::string_view name)
{
  for (const Engine* engine : engines())
    if (engine->name == name)
      return engine;
  return nullptr;
}

}  // namespace morvellan
