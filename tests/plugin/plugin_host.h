// The real plug-in on the strict host, with a configuration folder of the test's own.
#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "tests/host/strict_host.h"

namespace morvellan::test
{

/// A folder that lives as long as the object, holding a good configuration file unless told otherwise.
class ConfigFolder
{
public:
  static constexpr const char* firstLine = "Natron GPU selection(0,1,2,3)----------|";
  static constexpr const char* secondLine = "Film Grain Depth(0,1,2,3,4,5,6,7)------|";

  explicit ConfigFolder(const std::optional<std::string>& content = text(0, 0))
      : folder_(std::filesystem::temp_directory_path() /
                ("morvellan-config-" + std::to_string(::getpid()) + "-" + std::to_string(count()++)))
  {
    std::filesystem::create_directories(folder_);
    if (content)
      std::ofstream(file()) << *content;
  }
  ~ConfigFolder() { std::filesystem::remove_all(folder_); }
  ConfigFolder(const ConfigFolder&) = delete;
  ConfigFolder& operator=(const ConfigFolder&) = delete;

  static std::string text(int selection, int depth)
  {
    return firstLine + std::to_string(selection) + "\n" + secondLine + std::to_string(depth) + "\n";
  }
  const std::filesystem::path& path() const { return folder_; }
  std::filesystem::path file() const { return folder_ / "morvellan_natron_gpu_config.txt"; }
  std::string content() const
  {
    std::ostringstream all;
    all << std::ifstream(file()).rdbuf();
    return all.str();
  }

private:
  static int& count()
  {
    static int number = 0;
    return number;
  }
  std::filesystem::path folder_;
};

/// `device` is the value of MORVELLAN_DEVICE.
inline StrictOptions pluginOptions(const ConfigFolder& folder, const std::string& device)
{
  StrictOptions options;
  options.environment["MORVELLAN_CONFIG_DIR"] = folder.path().string();
  options.environment["MORVELLAN_DEVICE"] = device;
  return options;
}

/// The texts of messages, oldest first.
inline std::vector<std::string> textsOf(const std::vector<host::Message>& messages)
{
  std::vector<std::string> texts;
  texts.reserve(messages.size());
  for (const host::Message& message : messages)
    texts.push_back(message.text);
  return texts;
}

/// The plug-in loaded, on the software device unless told otherwise.
class PluginTest : public testing::Test
{
protected:
  explicit PluginTest(const std::string& device = "cpu") : host_(MORVELLAN_BUNDLE, pluginOptions(folder_, device)) {}

  ConfigFolder folder_;
  StrictHost host_;
};

/// One instance for many stored projects: a project's values are in place without the rules of an edit, and what it
/// does not name is at its default. Making an instance takes a strict host longer than rendering a small frame.
class ProjectRenderer
{
public:
  using Project = std::map<std::string, host::ParamValue>;

  explicit ProjectRenderer(StrictHost& strict, const Project& always = {}) : effect_(strict.create({.project = always}))
  {
  }

  host::Frame render(const Project& project, const host::Frame& source, double time = 0.0)
  {
    for (const std::string& name : set_)
      effect_.params().at(name).setValue(effect_.params().at(name).defaultValue());
    set_.clear();
    for (const auto& [name, value] : project)
    {
      effect_.params().at(name).setValue(value);
      set_.push_back(name);
    }
    return renderFrame(effect_, source, time);
  }

private:
  host::EffectInstance& effect_;
  std::vector<std::string> set_;
};

}  // namespace morvellan::test
