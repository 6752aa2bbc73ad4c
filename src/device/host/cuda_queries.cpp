// Holds the table that the cuda engine registers.
#include "device/host/cuda_queries.h"

namespace morvellan::device
{
namespace
{

constinit const CudaQueries* registered = nullptr;

}  // namespace

void registerCudaQueries(const CudaQueries& queries)
{
  registered = &queries;
}

const CudaQueries* cudaQueries()
{
  return registered;
}

}  // namespace morvellan::device
