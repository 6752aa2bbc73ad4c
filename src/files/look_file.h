// Look files: the user's settings as a text of 372 lines, written and read through the parameters of an instance.
// Every problem is one message for the user; none ends the action.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "params/param_access.h"

namespace morvellan::files
{

inline constexpr std::string_view lookFilterName = "Morvellan Look file";
inline constexpr std::string_view lookExtension = "prm";
inline constexpr std::string_view lookDefaultName = "Default.prm";

// Takes an error message.
using Tell = std::function<void(const std::string&)>;

// The whole file for the values that the parameters hold. Numbers go through single precision.
[[nodiscard]] std::string formatLook(const params::ParamAccess& access);

// Applies what a Look file holds, line by line, any bytes accepted; at most `lookReadLimit` of them matter. A field is
// set as soon as it is read; a text that ends early leaves the later fields alone; a line without its label ends the
// reading and switches the stocks off. Lays out the panels that the values call for. Gives the value of each field that
// was read, in file order: the file's own, or what was taken instead of one out of range.
std::vector<double> applyLook(std::string_view bytes, params::ParamAccess& access, const Tell& tell);

// 372 lines of at most 44 characters.
inline constexpr std::size_t lookReadLimit = 372 * 44;

// Writes the file whole or not at all.
void saveLook(const std::filesystem::path& path, const params::ParamAccess& access, const Tell& tell);

// As much of a file as a reader takes; nothing where it is no regular file or cannot be read.
[[nodiscard]] std::optional<std::string> readLook(const std::filesystem::path& path);

// Reads the file and applies it.
void loadLook(const std::filesystem::path& path, params::ParamAccess& access, const Tell& tell);

}  // namespace morvellan::files
