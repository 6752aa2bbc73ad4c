// Where the GPU configuration file lives: a machine-wide folder where one can be written, else the user's own.
// The user's folders follow the XDG Base Directory standard, 0.8.
#include "files/config_folder.h"

#include <cstdlib>
#include <filesystem>

#if !defined(_WIN32)
#include <pwd.h>
#include <unistd.h>
#endif

#ifndef MORVELLAN_CONFIG_FOLDER
#define MORVELLAN_CONFIG_FOLDER ""
#endif

namespace morvellan::files
{
namespace
{

// Below the folder of program data.
constexpr const char* windowsFolder = "\\Blackmagic Design\\DaVinci Resolve\\Support";
constexpr const char* machineFolder = "/var/lib/morvellan";

std::string environment(const char* name)
{
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

#if !defined(_WIN32)
std::string homeFolder()
{
  if (std::string home = environment("HOME"); !home.empty())
    return home;
  const passwd* user = getpwuid(getuid());
  return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/tmp";
}

bool isWritableFolder(const char* path)
{
  std::error_code error;
  return std::filesystem::is_directory(path, error) && access(path, W_OK | X_OK) == 0;
}
#endif

}  // namespace

std::string configFolder(const ConfigFolderFacts& facts)
{
  if (!facts.overriding.empty())
    return facts.overriding;
  if (!facts.buildSetting.empty())
    return facts.buildSetting;
  if (facts.windows)
    return (facts.programData.empty() ? "\\ProgramData" : facts.programData) + std::string(windowsFolder);
  if (facts.machineFolderIsWritable)
    return machineFolder;
  // The standard has relative paths ignored.
  if (facts.xdgConfigHome.starts_with('/'))
    return facts.xdgConfigHome + "/morvellan";
  return facts.home + "/.config/morvellan";
}

std::string lookFolder(const ConfigFolderFacts& facts)
{
  if (facts.windows)
    return "C:\\ProgramData" + std::string(windowsFolder) + "\\";
  if (facts.xdgDataHome.starts_with('/'))
    return facts.xdgDataHome + "/morvellan/looks";
  return facts.home + "/.local/share/morvellan/looks";
}

namespace
{

ConfigFolderFacts factsOfThisMachine()
{
  ConfigFolderFacts facts{.overriding = environment("MORVELLAN_CONFIG_DIR"), .buildSetting = MORVELLAN_CONFIG_FOLDER};
#if defined(_WIN32)
  facts.windows = true;
  facts.programData = environment("ProgramData");
#else
  facts.machineFolderIsWritable = isWritableFolder(machineFolder);
  facts.xdgConfigHome = environment("XDG_CONFIG_HOME");
  facts.xdgDataHome = environment("XDG_DATA_HOME");
  facts.home = homeFolder();
#endif
  return facts;
}

}  // namespace

std::string configFolder()
{
  return configFolder(factsOfThisMachine());
}

std::string lookFolder()
{
  return lookFolder(factsOfThisMachine());
}

}  // namespace morvellan::files
