// morvellan-render: pictures in, through the real plug-in, pictures out.
#include <exception>
#include <map>
#include <new>

#include <fmt/format.h>

#include "device.h"
#include "errors.h"
#include "listing.h"
#include "looks.h"
#include "options.h"
#include "session.h"
#include "whole_file.h"

namespace morvellan::tool
{
namespace
{

void printInfo(Session& session, const Options& options, const std::vector<FrameJob>& jobs)
{
  static const std::map<std::string, std::string> buttons{
      {"cuda", "CudaInfo"}, {"clip", "ClipInfo"}, {"about", "About"}};
  session.createInstance(jobs);
  session.observer().collectMessages();
  session.press(buttons.at(options.info));
  for (const std::string& message : session.observer().takeMessages())
  {
    fmt::print("{}\n", message);
  }
}

// The inputs alone, for a report about them.
std::vector<FrameJob> inputOnly(const Options& options)
{
  return options.inputs.empty() ? std::vector<FrameJob>{} : std::vector<FrameJob>{{0, options.inputs.front(), {}}};
}

void run(const Options& options)
{
  Progress progress(options.talk, !options.trace);
  const std::vector<FrameJob> jobs = options.renders() ? planFrames(options) : inputOnly(options);
  if (options.saveProject)
  {
    prepareFolderOf(*options.saveProject);
  }
  const std::filesystem::path bundle = findBundle(options.bundle);
  if (options.looks)
  {
    chooseDevice("cpu", bundle, progress, options.talk);  // no pixel is touched
  }
  else if (!options.listsOnly() || options.device.starts_with("cpu"))  // a list needs no probe of a GPU
  {
    chooseDevice(options.device, bundle, progress, options.talk);
  }
  Session session(options, bundle, progress);
  if (options.listParams)
  {
    fmt::print("{}", options.json ? listParamsAsJson(session.descriptor()) : listParams(session.descriptor()));
    return;
  }
  if (!options.listChoices.empty())
  {
    fmt::print("{}", listChoices(session.descriptor(), options.listChoices));
    return;
  }
  if (!options.info.empty())
  {
    printInfo(session, options, jobs);
    return;
  }
  if (options.looks)
  {
    runLooks(session, *options.looks);
    return;
  }
  session.createInstance(jobs);
  if (options.renders())
  {
    session.render();
  }
  session.saveProject();
}

int complain(const char* what, int code)
{
  fmt::print(stderr, "morvellan-render: {}\n", what);
  return code;
}

int guarded(int argc, const char* const* argv)
{
  try
  {
    if (const std::optional<Options> options = parseOptions(argc, argv))
    {
      run(*options);
    }
    return exitOk;
  }
  catch (const UsageError& error)
  {
    return complain(error.what(), exitUsage);
  }
  catch (const std::bad_alloc&)
  {
    return complain("there is not enough memory for a picture of this size", exitFailed);
  }
  catch (const std::exception& error)
  {
    return complain(error.what(), exitFailed);
  }
}

}  // namespace
}  // namespace morvellan::tool

int main(int argc, char** argv)
{
  return morvellan::tool::guarded(argc, argv);
}
