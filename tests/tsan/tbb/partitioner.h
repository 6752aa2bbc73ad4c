// The name of a partitioner, beside the loops of this folder.
#pragma once

namespace tbb
{

struct auto_partitioner
{
};

}  // namespace tbb
