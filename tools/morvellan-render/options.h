// The command line of the tool.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/frame.h"
#include "picture.h"
#include "progress.h"

namespace morvellan::tool
{

// One user edit; edits run in the order given.
struct Edit
{
  enum class Kind
  {
    Set,
    Press,
    LoadLook,
    SaveLook,
  };
  Kind kind;
  std::string name;   // of the parameter or button; unused for Looks
  std::string value;  // of a Set; the file of a Look
};

// looks show FILE, looks check FILE..., looks diff FILE FILE.
struct LooksRequest
{
  std::string task;
  std::vector<std::string> files;
};

struct Options
{
  std::vector<std::string> inputs;
  std::string output;
  std::optional<std::vector<int>> frames;
  std::vector<Edit> edits;
  std::optional<std::filesystem::path> project;
  std::optional<std::filesystem::path> saveProject;
  std::optional<host::Components> components;
  std::optional<OutputDepth> depth;
  std::string device = "auto";  // auto, cuda, cpu, cpu:N or host
  std::optional<int> threads;
  std::optional<std::filesystem::path> bundle;
  bool listParams = false;
  bool json = false;
  std::string listChoices;
  std::string info;  // cuda, clip or about
  std::optional<LooksRequest> looks;
  bool trace = false;
  Talk talk = Talk::Normal;

  bool listsOnly() const { return listParams || !listChoices.empty(); }
  bool renders() const { return !listsOnly() && info.empty() && !looks && !output.empty(); }
};

// Nothing: help or the version was asked for and printed. Throws UsageError.
std::optional<Options> parseOptions(int argc, const char* const* argv);

}  // namespace morvellan::tool
