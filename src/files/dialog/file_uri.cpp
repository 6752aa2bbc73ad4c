// Percent codes are two hexadecimal digits of one byte.
#include "files/dialog/file_uri.h"

#include <charconv>

namespace morvellan::files
{

std::optional<std::string> pathOfFileUri(std::string_view uri)
{
  for (const std::string_view start : {"file://localhost/", "file:///"})
  {
    if (!uri.starts_with(start))
      continue;
    std::string path;
    for (std::size_t i = start.size() - 1; i < uri.size(); ++i)
    {
      if (uri[i] == '\0')
        return std::nullopt;
      if (uri[i] != '%')
      {
        path += uri[i];
        continue;
      }
      unsigned char byte = 0;
      const std::string_view digits = uri.substr(i + 1, 2);
      const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
      if (error != std::errc{} || digits.size() != 2 || end != digits.data() + 2 || byte == 0)
        return std::nullopt;
      path += static_cast<char>(byte);
      i += 2;
    }
    return path;
  }
  return std::nullopt;
}

}  // namespace morvellan::files
