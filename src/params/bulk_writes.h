// Rules that write many parameters, some of them more than once, as the layers of a stock do: the host gets each
// parameter's last value, once, and none that it holds already.
#pragma once

#include "params/param_access.h"

#include <functional>

namespace morvellan::params
{
// Runs the rule, which reads what it has written. What it shows and hides reaches the host at once; its writes follow
// at the end, in the order in which it wrote each parameter first, in edit blocks where it opened them.
void inOneGo(ParamAccess& host, const std::function<void(ParamAccess&)>& rule);
}  // namespace morvellan::params
