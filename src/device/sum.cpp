// The deterministic sum, in blocks of 8192 values. Everything adds in double: 64 equal floats added in float are off by
// up to 6e-7 already.
#include "device/sum.h"

#include <vector>

#include "device/launch.h"
#include "device/memory.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr ptrdiff_t blockSize = 8192;

// The sum of one block as 16 strided sums, so that every target adds in the same order.
struct sum_block
{
  const float* plane;
  double* partials;
  ptrdiff_t count;

  MORVELLAN_KERNEL void operator()(int block) const
  {
    const ptrdiff_t begin = static_cast<ptrdiff_t>(block) * blockSize;
    const ptrdiff_t end = begin + blockSize < count ? begin + blockSize : count;
    double strided[16] = {};
    ptrdiff_t i = begin;
    for (; i + 16 <= end; i += 16)
      for (int k = 0; k < 16; ++k)
        strided[k] += static_cast<double>(plane[i + k]);
    for (int k = 0; i < end; ++i, ++k)
      strided[k] += static_cast<double>(plane[i]);
    double total = 0.0;
    for (double s : strided)
      total += s;
    partials[block] = total;
  }
};

}  // namespace

double sumPlane(const Queue& queue, const float* plane, ptrdiff_t count)
{
  const int blocks = static_cast<int>((count + blockSize - 1) / blockSize);
  if (blocks <= 0)
    return 0.0;
  const Buffer<double> partials(static_cast<size_t>(blocks));
  launch(queue, items(blocks), sum_block{.plane = plane, .partials = partials.data(), .count = count});
  std::vector<double> host(static_cast<size_t>(blocks));
  copy(host.data(), partials.data(), host.size() * sizeof(double), CopyKind::DeviceToHost);
  double total = 0.0;
  for (double partial : host)
    total += partial;
  return total;
}

}  // namespace morvellan::MORVELLAN_TARGET
