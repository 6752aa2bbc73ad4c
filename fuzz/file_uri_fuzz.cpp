// Any bytes as the URI that a desktop hands out for a chosen file: no path holds a zero byte or is relative.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "files/dialog/file_uri.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  const auto path = morvellan::files::pathOfFileUri({reinterpret_cast<const char*>(data), size});
  if (path && (!path->starts_with('/') || path->find('\0') != std::string::npos))
    std::abort();
  return 0;
}
