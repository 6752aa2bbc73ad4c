// Which folder holds the configuration file, rule by rule.
#include "files/config_folder.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "files/gpu_config.h"

namespace
{
using namespace morvellan::files;

TEST(ConfigFolder, TheFirstRuleThatAppliesWins)
{
  const ConfigFolderFacts all{.overriding = "/over",
                              .buildSetting = "/build",
                              .machineFolderIsWritable = true,
                              .xdgConfigHome = "/xdg",
                              .home = "/home/ann"};
  EXPECT_EQ(configFolder(all), "/over");
  ConfigFolderFacts facts = all;
  facts.overriding.clear();
  EXPECT_EQ(configFolder(facts), "/build");
  facts.buildSetting.clear();
  EXPECT_EQ(configFolder(facts), "/var/lib/morvellan");
  facts.machineFolderIsWritable = false;
  EXPECT_EQ(configFolder(facts), "/xdg/morvellan");
  facts.xdgConfigHome = "relative";
  EXPECT_EQ(configFolder(facts), "/home/ann/.config/morvellan");
  facts.xdgConfigHome.clear();
  EXPECT_EQ(configFolder(facts), "/home/ann/.config/morvellan");
}

TEST(ConfigFolder, WindowsKeepsToProgramData)
{
  const std::string tail = "\\Blackmagic Design\\DaVinci Resolve\\Support";
  EXPECT_EQ(configFolder({.windows = true, .programData = "D:\\Data", .machineFolderIsWritable = true}),
            "D:\\Data" + tail);
  EXPECT_EQ(configFolder({.windows = true}), "\\ProgramData" + tail);
  EXPECT_EQ(GpuConfigFile("\\ProgramData" + tail).path(), "\\ProgramData" + tail + "\\morvellan_natron_gpu_config.txt");
}

TEST(ConfigFolder, TheEnvironmentOverrides)
{
  setenv("MORVELLAN_CONFIG_DIR", "/elsewhere", 1);
  EXPECT_EQ(configFolder(), "/elsewhere");
  EXPECT_EQ(GpuConfigFile(configFolder()).path(), "/elsewhere/morvellan_natron_gpu_config.txt");
  unsetenv("MORVELLAN_CONFIG_DIR");
  EXPECT_NE(configFolder(), "/elsewhere");
}

TEST(LookFolder, IsAmongTheUsersData)
{
  EXPECT_EQ(lookFolder({.xdgDataHome = "/data", .home = "/home/a"}), "/data/morvellan/looks");
  EXPECT_EQ(lookFolder({.home = "/home/a"}), "/home/a/.local/share/morvellan/looks");
  EXPECT_EQ(lookFolder({.xdgDataHome = "relative", .home = "/home/a"}), "/home/a/.local/share/morvellan/looks");
  EXPECT_EQ(lookFolder({.windows = true}), "C:\\ProgramData\\Blackmagic Design\\DaVinci Resolve\\Support\\");
}

}  // namespace
