// Bytes beside their place, then renamed into it.
#include "whole_file.h"

#include <fstream>
#include <system_error>

#include <unistd.h>

#include <fmt/format.h>

#include "errors.h"

namespace morvellan::tool
{

void replaceFile(const std::filesystem::path& file, std::span<const unsigned char> bytes)
{
  const std::filesystem::path beside =
      file.parent_path() / fmt::format(".{}.partial-{}{}", file.stem().string(), getpid(), file.extension().string());
  std::ofstream stream(beside, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  stream.close();
  std::error_code failure;
  if (stream)
  {
    std::filesystem::rename(beside, file, failure);
    if (!failure)
    {
      return;
    }
  }
  std::error_code ignored;
  std::filesystem::remove(beside, ignored);
  throw RenderError(fmt::format("{} cannot be written{}; choose a folder that can be and has room", file.string(),
                                failure ? ": " + failure.message() : ""));
}

void writeText(const std::filesystem::path& file, const std::string& text)
{
  replaceFile(file, {reinterpret_cast<const unsigned char*>(text.data()), text.size()});
}

void prepareFolderOf(const std::filesystem::path& file)
{
  const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
  std::error_code failure;
  std::filesystem::create_directories(folder, failure);
  if (std::filesystem::is_regular_file(folder, failure))
  {
    throw RenderError(
        fmt::format("the output folder {} cannot be written, since it is a file; choose another", folder.string()));
  }
  if (!std::filesystem::is_directory(folder, failure) || access(folder.c_str(), W_OK | X_OK) != 0)
  {
    throw RenderError(fmt::format("the output folder {} cannot be written; choose another or change its permissions",
                                  folder.string()));
  }
  if (std::filesystem::is_directory(file, failure))
  {
    throw RenderError(fmt::format("the output {} is a folder; give a file's name", file.string()));
  }
}

}  // namespace morvellan::tool
