// The page that the tests of the rules work on: parameters in memory, or the real plug-in on the strict host where
// MORVELLAN_PAGE_ON_HOST is defined. Each such test is compiled for both.
#pragma once

#if defined(MORVELLAN_PAGE_ON_HOST)

#include "tests/params/host_page.h"

namespace morvellan::params
{
using TestPage = HostPage;
}  // namespace morvellan::params

#else

#include "tests/params/memory_params.h"

namespace morvellan::params
{
using TestPage = MemoryParams;
}  // namespace morvellan::params

#endif
