// A write beside the file under a name of its own, a flush to the disk, and a rename.
#include "files/whole_write.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <optional>
#include <random>
#include <string>

#include <fmt/format.h>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace morvellan::files
{
namespace
{

namespace fs = std::filesystem;

struct CloseFile
{
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

std::error_code lastError()
{
  return {errno != 0 ? errno : EIO, std::generic_category()};
}

bool flushToDisk(std::FILE* file)
{
#if defined(_WIN32)
  return _commit(_fileno(file)) == 0;
#else
  return fsync(fileno(file)) == 0;
#endif
}

// A new file beside `path`; the mode "x" fails on a name that exists, so that no two writers share one. Its name does
// not hold that of `path`, which may be as long as a name can be.
File createBeside(const fs::path& path, fs::path& beside)
{
  static std::atomic<unsigned> serial = 0;
  std::random_device random;
  for (int attempt = 0; attempt < 16; ++attempt)
  {
    beside = path.parent_path() / fmt::format(".morvellan-{:08x}{:04x}.tmp", random(), serial++ & 0xffffU);
    errno = 0;
    File file{std::fopen(beside.string().c_str(), "wbx")};
    if (file || errno != EEXIST)
      return file;
  }
  return nullptr;
}

std::error_code fill(File file, std::string_view content)
{
  errno = 0;
  const bool written = std::fwrite(content.data(), 1, content.size(), file.get()) == content.size() &&
                       std::fflush(file.get()) == 0 && flushToDisk(file.get());
  const std::error_code writing = written ? std::error_code{} : lastError();
  const bool closed = std::fclose(file.release()) == 0;
  return !writing && !closed ? lastError() : writing;
}

enum class Stage
{
  creating,
  filling
};

struct Failure
{
  Stage stage = Stage::filling;
  std::error_code error;
};

Failure replace(const fs::path& path, std::string_view content, std::optional<fs::perms> permissions)
{
  fs::path beside;
  File file = createBeside(path, beside);
  if (!file)
    return {Stage::creating, lastError()};
  std::error_code error = fill(std::move(file), content);
  if (!error && permissions)
    fs::permissions(beside, *permissions, error);
  if (!error)
    fs::rename(beside, path, error);
  if (error)
  {
    std::error_code ignored;
    fs::remove(beside, ignored);
  }
  return {Stage::filling, error};
}

// Those of the file that is replaced, so that who may read and change it stays as it was. A file that this process may
// not read is replaced by an ordinary one instead: kept, its permissions would now shut its former owner out.
std::optional<fs::perms> permissionsToKeep(const fs::path& path)
{
  std::error_code ignored;
  const fs::file_status status = fs::status(path, ignored);
  if (!fs::is_regular_file(status) || !File{std::fopen(path.string().c_str(), "rb")})
    return std::nullopt;
  return status.permissions();
}

std::error_code overwrite(std::FILE* file, std::string_view content)
{
  errno = 0;
  const bool written = std::fseek(file, 0, SEEK_SET) == 0 &&
                       std::fwrite(content.data(), 1, content.size(), file) == content.size() &&
                       std::fflush(file) == 0 && flushToDisk(file);
  return written ? std::error_code{} : lastError();
}

// Over the start of the old file, which is cut off at the end only once the content is there; what was overwritten is
// put back where that fails.
std::error_code writeInPlace(const fs::path& path, std::string_view content)
{
  errno = 0;
  File file{std::fopen(path.string().c_str(), "r+b")};
  if (!file)
    return lastError();
  std::error_code error;
  const std::uintmax_t size = fs::file_size(path, error);
  if (error)
    return error;
  std::string before(content.size(), '\0');
  before.resize(std::fread(before.data(), 1, before.size(), file.get()));
  error = overwrite(file.get(), content);
  if (error)
    static_cast<void>(overwrite(file.get(), before));
  file.reset();
  std::error_code cutting;
  fs::resize_file(path, error ? size : content.size(), cutting);
  return error ? error : cutting;
}

// Where a chain of links ends, whether or not there is a file yet.
fs::path followLinks(fs::path path, std::error_code& error)
{
  constexpr int mostLinks = 40;  // as Linux has it
  for (int links = 0; fs::is_symlink(fs::symlink_status(path, error)); ++links)
  {
    if (links == mostLinks)
      error = std::make_error_code(std::errc::too_many_symbolic_link_levels);
    else
      path = path.parent_path() / fs::read_symlink(path, error);
    if (error)
      return path;
  }
  error.clear();  // that nothing is there is for the write to find
  return path;
}

}  // namespace

std::error_code writeWhole(const fs::path& path, std::string_view content)
{
  std::error_code error;
  const fs::path target = followLinks(path, error);
  return error ? error : replace(target, content, permissionsToKeep(target)).error;
}

std::error_code writeWholeOrInPlace(const fs::path& path, std::string_view content)
{
  std::error_code error;
  const fs::path target = followLinks(path, error);
  if (error)
    return error;
  std::error_code ignored;
  const fs::file_status status = fs::status(target, ignored);
  if (!fs::exists(status))
    return writeWhole(target, content);
  // A pipe would wait for its reader.
  if (!fs::is_regular_file(status))
    return std::make_error_code(std::errc::invalid_argument);
  // A rename would succeed on a file that its owner has protected from writing.
  errno = 0;
  if (!File{std::fopen(target.string().c_str(), "r+b")})
    return lastError();
  const Failure failure = replace(target, content, status.permissions());
  const bool refused = failure.error == std::errc::permission_denied ||
                       failure.error == std::errc::operation_not_permitted ||
                       failure.error == std::errc::read_only_file_system;
  if (failure.stage == Stage::creating && refused)
    return writeInPlace(target, content);
  return failure.error;
}

}  // namespace morvellan::files
