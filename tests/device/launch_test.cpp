// Names of kernels in the trace.
#include "device/launch.h"

#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

struct named_by_its_type
{
};

template <typename T, bool Flag>
struct named_without_its_arguments
{
};

namespace
{

struct named_in_private
{
};

struct named_by_itself
{
  static constexpr std::string_view name = "another";
};

}  // namespace

ENGINE_TEST(Launch, KernelsAreNamedByTheirType)
{
  EXPECT_EQ(kernelName<named_by_its_type>(), "named_by_its_type");
  EXPECT_EQ((kernelName<named_without_its_arguments<named_by_its_type, true>>()), "named_without_its_arguments");
  EXPECT_EQ(kernelName<named_in_private>(), "named_in_private");
  EXPECT_EQ(kernelName<named_by_itself>(), "another");
}

}  // namespace morvellan::MORVELLAN_TARGET
