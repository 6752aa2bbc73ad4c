// Inputs, outputs and times matched.
#include "frame_plan.h"

#include <algorithm>
#include <set>
#include <system_error>

#include <fmt/format.h>

#include "errors.h"
#include "frame_numbers.h"
#include "whole_file.h"

namespace morvellan::tool
{
namespace
{

// Several files are the frames of one sequence: by the numbers in their names, or counted from 0.
std::vector<int> timesOfFiles(const std::vector<std::string>& inputs)
{
  std::vector<int> times;
  for (const std::string& input : inputs)
  {
    if (FilePattern::ofInput(input).isSequence())
    {
      throw UsageError(fmt::format("{} is a sequence among other inputs; give one sequence or several files", input));
    }
    int number = 0;
    if (frameNumberOf(input, number))
    {
      times.push_back(number);
    }
  }
  if (times.size() != inputs.size() || std::set<int>(times.begin(), times.end()).size() != times.size())
  {
    times.clear();
    for (std::size_t i = 0; i < inputs.size(); ++i)
    {
      times.push_back(static_cast<int>(i));
    }
  }
  return times;
}

std::vector<int> timesOf(const Options& options)
{
  if (options.inputs.size() > 1)
  {
    std::vector<int> times = options.frames.value_or(timesOfFiles(options.inputs));
    if (times.size() != options.inputs.size())
    {
      throw UsageError(
          fmt::format("--frames gives {} times to {} inputs; give as many", times.size(), options.inputs.size()));
    }
    return times;
  }
  if (options.frames)
  {
    return *options.frames;
  }
  const FilePattern input = FilePattern::ofInput(options.inputs.front());
  if (!input.isSequence())
  {
    return {0};
  }
  std::vector<int> times = input.existingFrames();
  if (times.empty())
  {
    throw RenderError(fmt::format("there is no frame of {}; check its folder and the number of digits", input.text()));
  }
  return times;
}

std::filesystem::path absolutePath(const std::filesystem::path& file)
{
  return std::filesystem::absolute(file).lexically_normal();
}

void requireInputs(const std::vector<FrameJob>& jobs)
{
  std::size_t missing = 0;
  const FrameJob* first = nullptr;
  std::error_code failure;
  for (const FrameJob& job : jobs)
  {
    if (!std::filesystem::exists(job.input, failure))
    {
      first = missing++ == 0 ? &job : first;
    }
  }
  if (missing > 0)
  {
    throw RenderError(jobs.size() == 1
                          ? fmt::format("{} does not exist; check the name", first->input.string())
                          : fmt::format("{} of {} frames are missing, the first is {}; leave them out with --frames",
                                        missing, jobs.size(), first->input.string()));
  }
}

// `project` is where the values are saved, if they are.
void requireOtherFiles(const std::vector<FrameJob>& jobs, const std::optional<std::filesystem::path>& project)
{
  std::error_code failure;
  const auto same = [&](const std::filesystem::path& a, const std::filesystem::path& b)
  { return std::filesystem::equivalent(a, b, failure) || absolutePath(a) == absolutePath(b); };
  for (const FrameJob& job : jobs)
  {
    if (same(job.input, job.output))
    {
      throw UsageError(fmt::format("{} would be written over itself; give another output", job.input.string()));
    }
    if (project && (same(job.input, *project) || same(job.output, *project)))
    {
      throw UsageError(
          fmt::format("the project {} would be written over a picture; save it elsewhere", project->string()));
    }
  }
}

}  // namespace

std::vector<FrameJob> planFrames(const Options& options)
{
  const std::vector<int> times = timesOf(options);
  const FilePattern output(options.output);
  if (times.size() > 1 && !output.isSequence())
  {
    throw UsageError(fmt::format("{} frames do not go into the one file {}; name a sequence, such as shot.%04d.exr",
                                 times.size(), options.output));
  }
  std::vector<FrameJob> jobs;
  for (std::size_t i = 0; i < times.size(); ++i)
  {
    const FilePattern input = FilePattern::ofInput(options.inputs[options.inputs.size() > 1 ? i : 0]);
    jobs.push_back({times[i], input.at(times[i]), output.at(times[i])});
  }
  requireInputs(jobs);
  requireOtherFiles(jobs, options.saveProject);
  prepareFolderOf(jobs.front().output);
  return jobs;
}

}  // namespace morvellan::tool
