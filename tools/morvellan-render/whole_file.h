// Files that are whole or not there at all.
#pragma once

#include <filesystem>
#include <span>
#include <string>

namespace morvellan::tool
{

// Puts these bytes in the file's place, or leaves what is there. They go beside it first, under a name of their own.
// Throws RenderError.
void replaceFile(const std::filesystem::path& file, std::span<const unsigned char> bytes);

void writeText(const std::filesystem::path& file, const std::string& text);

// Makes the folder of a file if it is missing, and makes sure that it can be written. Throws RenderError.
void prepareFolderOf(const std::filesystem::path& file);

}  // namespace morvellan::tool
