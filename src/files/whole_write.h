// Writes a small file whole or not at all: beside its place first, then renamed onto it.
// Safe when several processes write the same file at once: the last one wins, a reader sees one of them entire.
#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace morvellan::files
{

// Replaces `path` by `content`. On an error nothing of the old file is lost and nothing half-written is left behind;
// the folder must exist. What links end at is replaced and they are kept; a file that may be read keeps its
// permissions. A folder in the file's place is an error.
[[nodiscard]] std::error_code writeWhole(const std::filesystem::path& path, std::string_view content);

// The same for a file that the user named: where the folder refuses a new file, it is written in place. A file that is
// protected from writing, and what is no file (a folder, a device, a pipe), is an error.
[[nodiscard]] std::error_code writeWholeOrInPlace(const std::filesystem::path& path, std::string_view content);

}  // namespace morvellan::files
