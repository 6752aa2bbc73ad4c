// The command line, parsed and held against itself.
#include "options.h"

#include <algorithm>
#include <map>
#include <regex>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "errors.h"
#include "frame_numbers.h"

namespace morvellan::tool
{
namespace
{

// The texts of options that become values of other types.
struct RawOptions
{
  std::vector<std::string> sets;
  std::vector<std::string> presses;
  std::vector<std::string> looks;
  std::vector<std::string> savedLooks;
  std::string frames;
  std::string project;
  std::string saveProject;
  std::string components;
  std::string depth;
  std::string bundle;
  int threads = 0;
  bool quiet = false;
  bool verbose = false;
};

constexpr const char* description = "Renders pictures through the Morvellan image effect, as a host would.\n"
                                    "Pixels go in and out as they are: no colour management of any kind.";

constexpr const char* footer = "INPUT and OUTPUT are files, or sequences as shot.%04d.exr or shot.####.exr.\n"
                               "Exit codes: 0 done, 1 the render failed, 2 the command line was wrong.";

void addOptions(CLI::App& app, Options& options, RawOptions& raw)
{
  app.option_defaults()->take_last();  // a later option overrides an earlier one
  app.add_option("INPUT", options.inputs, "Pictures, or a sequence; any format that OpenImageIO reads")->take_all();
  app.add_option("-o,--output", options.output, "The picture or sequence to write: .exr .dpx .tif .png .jpg");
  app.add_option("--frames", raw.frames, "A-B or A-BxSTEP; a frame's number is its render time");
  // One value each: the words after it are inputs again.
  const auto repeated = [&](const char* name, std::vector<std::string>& values, const char* help)
  { app.add_option(name, values, help)->type_size(1)->allow_extra_args(false)->take_all(); };
  repeated("--set", raw.sets, "NAME=VALUE: a user edit, in the order given; a Choice by index or label, RGB as r,g,b");
  repeated("--press", raw.presses, "NAME: a push button, as a user edit");
  repeated("--look", raw.looks, "FILE: loads a Look, as a user edit");
  repeated("--save-look", raw.savedLooks, "FILE: saves a Look, after the edits before it");
  app.add_option("--project", raw.project, "FILE.json: stored values, set before the instance is created");
  app.add_option("--save-project", raw.saveProject, "FILE.json: all values at the end");
  app.add_option("--components", raw.components, "rgb or rgba; default: as the input")
      ->check(CLI::IsMember({"rgb", "rgba"}));
  app.add_option("--depth", raw.depth, "half, float, uint8, uint10 or uint16; default: as the input, where it fits")
      ->check(CLI::IsMember({"half", "float", "uint8", "uint10", "uint16"}));
  app.add_option(
      "--device", options.device,
      "auto (a usable GPU, else the CPU), cuda, cpu, cpu:N (N virtual devices), or host (MORVELLAN_DEVICE as "
      "it stands)");
  app.add_option("--threads", raw.threads, "Worker threads of the CPU")->check(CLI::Range(1, 4096));
  app.add_option("--bundle", raw.bundle, "The plug-in; default: the one built or installed beside the tool");
  app.add_flag("--list-params", options.listParams, "Prints all parameters");
  app.add_flag("--json", options.json, "With --list-params: every property, as JSON");
  app.add_option("--list-choices", options.listChoices, "NAME: prints the options of a Choice");
  app.add_option("--info", options.info, "cuda, clip or about: prints the plug-in's report")
      ->check(CLI::IsMember({"cuda", "clip", "about"}));
  app.add_flag("--trace", options.trace, "Prints what ran for each frame: stage, kernel, size, time");
  app.add_flag("--quiet", raw.quiet, "Errors alone");
  app.add_flag("--verbose", raw.verbose, "Each frame, and every misuse of the interface by the plug-in");
}

// Returns the subcommand; its tasks fill `request`.
CLI::App* addLooks(CLI::App& app, LooksRequest& request)
{
  CLI::App* const looks = app.add_subcommand("looks", "Look files by themselves: show, check, diff");
  looks->require_subcommand(1);
  const auto task = [&](const char* name, const char* help, int least, int most)
  {
    CLI::App* const own = looks->add_subcommand(name, help);
    own->add_option("FILE", request.files, "Look files")->required()->expected(least, most)->take_all();
    own->callback([&request, name] { request.task = name; });
  };
  constexpr int any = 1000;
  task("show", "Prints what a Look sets, by parameter", 1, 1);
  task("check", "Prints what the plug-in's reader complains of; exit code 1 if it does", 1, any);
  task("diff", "Prints the parameters in which two Looks differ", 2, 2);
  return looks;
}

// The edits of the four kinds, in the order in which they stood.
std::vector<Edit> editsInOrder(const CLI::App& app, const RawOptions& raw)
{
  struct Source
  {
    Edit::Kind kind;
    const std::vector<std::string>& values;
    std::size_t next = 0;
  };
  std::map<std::string, Source> sources{{"--set", {Edit::Kind::Set, raw.sets}},
                                        {"--press", {Edit::Kind::Press, raw.presses}},
                                        {"--look", {Edit::Kind::LoadLook, raw.looks}},
                                        {"--save-look", {Edit::Kind::SaveLook, raw.savedLooks}}};
  std::vector<Edit> edits;
  for (const CLI::Option* const option : app.parse_order())
  {
    const auto found = sources.find(option->get_name());
    if (found == sources.end() || found->second.next == found->second.values.size())
    {
      continue;
    }
    Source& source = found->second;
    const std::string& value = source.values[source.next++];
    if (source.kind != Edit::Kind::Set)
    {
      edits.push_back({source.kind, value, value});
      continue;
    }
    const auto equals = value.find('=');
    if (equals == std::string::npos || equals == 0)
    {
      throw UsageError(fmt::format("--set {} is not of the form NAME=VALUE", value));
    }
    edits.push_back({source.kind, value.substr(0, equals), value.substr(equals + 1)});
  }
  return edits;
}

// An empty value, as of a shell variable that is not set, is no value.
void requireValues(const CLI::App& app)
{
  for (const CLI::Option* const option : app.parse_order())
  {
    const std::vector<std::string>& values = option->results();
    if (option->get_expected_max() > 0 && std::find(values.begin(), values.end(), "") != values.end())
    {
      throw UsageError(fmt::format("{} has an empty value; give one or leave it out", option->get_name()));
    }
  }
}

void check(const Options& options, const RawOptions& raw)
{
  static const std::regex devices(R"(auto|cuda|cpu|cpu:(?:[1-9]|1[0-6])|host)");
  if (!std::regex_match(options.device, devices))
  {
    throw UsageError(
        fmt::format("there is no device {}; use auto, cuda, cpu, cpu:N with N from 1 to 16, or host", options.device));
  }
  if (raw.quiet && raw.verbose)
  {
    throw UsageError("--quiet and --verbose contradict each other; give one of them");
  }
  if (options.json && !options.listParams)
  {
    throw UsageError("--json goes with --list-params");
  }
  if (options.listsOnly() || !options.info.empty() || options.looks)
  {
    return;
  }
  if (options.output.empty() && !options.inputs.empty())
  {
    throw UsageError("there is no output; give one with -o");
  }
  if (!options.output.empty() && options.inputs.empty())
  {
    throw UsageError("there is no input; give a picture or a sequence");
  }
  if (options.output.empty() && !options.saveProject && options.edits.empty())
  {
    throw UsageError("there is nothing to do; give an input and -o OUTPUT, or see --help");
  }
}

void checkOutput(const Options& options)
{
  if (options.output.empty())
  {
    return;
  }
  const OutputFormat format = outputFormatOf(FilePattern(options.output).at(0));
  if (options.depth)
  {
    format.require(*options.depth);
  }
  if (!format.alpha && options.components == host::Components::Rgba)
  {
    throw UsageError(fmt::format("{} does not hold an alpha; use --components rgb or another format", format.name));
  }
}

}  // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv)
{
  Options options;
  RawOptions raw;
  CLI::App app(description, "morvellan-render");
  app.footer(footer);
  app.set_version_flag("--version", std::string("morvellan-render ") + MORVELLAN_VERSION);
  addOptions(app, options, raw);
  LooksRequest request;
  const CLI::App* const looks = addLooks(app, request);
  try
  {
    app.parse(argc, argv);
  }
  catch (const CLI::Success& success)
  {
    app.exit(success);
    return std::nullopt;
  }
  catch (const CLI::ParseError& error)
  {
    throw UsageError(fmt::format("{}; see --help", error.what()));
  }
  if (looks->parsed())
  {
    if (request.task == "show" && request.files.size() != 1)
    {
      throw UsageError(fmt::format("looks show shows one Look, not {}", request.files.size()));
    }
    if (request.task == "diff" && request.files.size() != 2)
    {
      throw UsageError(fmt::format("looks diff compares two Looks, not {}", request.files.size()));
    }
    options.looks = request;
  }
  requireValues(app);
  options.edits = editsInOrder(app, raw);
  const auto path = [](const std::string& text)
  { return text.empty() ? std::nullopt : std::optional<std::filesystem::path>(text); };
  options.project = path(raw.project);
  options.saveProject = path(raw.saveProject);
  options.bundle = path(raw.bundle);
  options.frames = raw.frames.empty() ? std::nullopt : std::optional(parseFrames(raw.frames));
  if (!raw.components.empty())
  {
    options.components = raw.components == "rgb" ? host::Components::Rgb : host::Components::Rgba;
  }
  options.depth = outputDepthOf(raw.depth);
  options.threads = raw.threads > 0 ? std::optional(raw.threads) : std::nullopt;
  options.talk = raw.quiet ? Talk::Quiet : raw.verbose ? Talk::Verbose : Talk::Normal;
  check(options, raw);
  checkOutput(options);
  return options;
}

}  // namespace morvellan::tool
