// The folder that holds the GPU configuration file, a machine-wide one where it can be written, else the user's own;
// and the folder of Look files. The rules are a function of plain facts, so that each can be tried on any machine.
#pragma once

#include <string>

namespace morvellan::files
{

// What decides the folder of the file.
struct ConfigFolderFacts
{
  std::string overriding = {};    // MORVELLAN_CONFIG_DIR
  std::string buildSetting = {};  // CMake's MORVELLAN_CONFIG_FOLDER
  bool windows = false;
  std::string programData = {};          // %ProgramData%
  bool machineFolderIsWritable = false;  // /var/lib/morvellan
  std::string xdgConfigHome = {};
  std::string xdgDataHome = {};
  std::string home = {};
};

[[nodiscard]] std::string configFolder(const ConfigFolderFacts& facts);

// The folder on this machine, from the environment as it is now.
[[nodiscard]] std::string configFolder();

// The folder that the dialogs for Look files propose; it need not exist.
[[nodiscard]] std::string lookFolder(const ConfigFolderFacts& facts);
[[nodiscard]] std::string lookFolder();

}  // namespace morvellan::files
