// The life of an instance in the tool.
#include "session.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <future>

#include <fmt/format.h>

#include "errors.h"
#include "project.h"
#include "values.h"
#include "whole_file.h"

namespace morvellan::tool
{
namespace
{

double frameRateOf(const OIIO::ImageSpec& header)
{
  std::array<int, 2> ratio{};
  if (header.getattribute("FramesPerSecond", OIIO::TypeRational, ratio.data()) && ratio[1] != 0)
  {
    return static_cast<double>(ratio[0]) / ratio[1];
  }
  return 24.0;
}

// A usage error of one edit says which edit it was.
std::string inEdit(const Edit& edit, const std::string& what)
{
  return edit.kind == Edit::Kind::Set ? fmt::format("--set {}={}: {}", edit.name, edit.value, what)
                                      : fmt::format("--press {}: {}", edit.name, what);
}

// The plug-in goes on after an error that it tells a person of; a tool without a person to tell does not.
void requireNone(const std::vector<std::string>& errors, const std::string& otherwise)
{
  if (errors.size() == 1)
  {
    throw RenderError(fmt::format("{}: {}", otherwise, errors.front()));
  }
  if (!errors.empty())
  {
    throw RenderError(fmt::format("{}: {} ({} more like it)", otherwise, errors.front(), errors.size() - 1));
  }
}

// A render of a sequence as the plug-in is told of it; a frame that fails ends it too.
class RenderedSequence
{
public:
  RenderedSequence(host::EffectInstance& instance, OfxRangeD frames, double step)
      : instance_(instance), frames_(frames), step_(step)
  {
    instance_.beginSequence(frames_, step_);
  }
  ~RenderedSequence() { instance_.endSequence(frames_, step_); }
  RenderedSequence(const RenderedSequence&) = delete;
  RenderedSequence& operator=(const RenderedSequence&) = delete;

private:
  host::EffectInstance& instance_;
  const OfxRangeD frames_;
  const double step_;
};

}  // namespace

Session::Session(const Options& options, const std::filesystem::path& bundle, Progress& progress)
    : options_(options), progress_(progress), observer_(progress, options.talk), host_(toolTraits(), observer_)
{
  if (options.threads)
  {
    setenv("MORVELLAN_THREADS", std::to_string(*options.threads).c_str(), 1);
    OIIO::attribute("threads", *options.threads);
    OIIO::attribute("exr_threads", *options.threads);
  }
  if (options.trace)
  {
    setenv("MORVELLAN_TRACE", "1", 1);
  }
  try
  {
    plugin_ = std::make_unique<host::LoadedPlugin>(host_, bundle);
    plugin_->load();
    plugin_->describe();
    plugin_->describeIn(kOfxImageEffectContextFilter);
  }
  catch (const host::LoadError& error)
  {
    throw RenderError(error.what());
  }
}

Picture Session::read(const FrameJob& job) const
{
  return readPicture(job.input, options_.components);
}

std::optional<host::Frame> Session::sourceAt(double time)
{
  if (current_ && time == currentTime_)
  {
    return current_->frame;
  }
  const auto job = std::find_if(jobs_.begin(), jobs_.end(), [time](const FrameJob& each) { return each.time == time; });
  return job == jobs_.end() ? std::nullopt : std::optional(read(*job).frame);
}

void Session::attach(const FrameJob& job, const Picture& picture)
{
  current_ = picture;
  currentTime_ = job.time;
  instance_->setCurrentTime(job.time);
  host::Clip& source = instance_->clip(kOfxImageEffectSimpleSourceClipName);
  host::Clip& output = instance_->clip(kOfxImageEffectOutputClipName);
  source.setSource(picture.frame);
  source.setSource([this](double time) { return sourceAt(time); });
  output.regionOfDefinition = source.regionOfDefinition;
  output.setFormat(picture.frame.layout().components, picture.frame.layout().depth);
  output.setSource(picture.frame);  // what the output shows before its first render
}

void Session::createInstance(const std::vector<FrameJob>& jobs)
{
  instance_.reset();
  jobs_ = jobs;
  host::InstanceSettings settings;
  settings.sourceConnected = !jobs.empty();
  std::optional<Picture> first;
  if (!jobs.empty())
  {
    first = read(jobs.front());
    settings.projectSize = {static_cast<double>(first->header.full_width),
                            static_cast<double>(first->header.full_height)};
    settings.pixelAspect = first->header.get_float_attribute("PixelAspectRatio", 1.0F);
    settings.frameRate = frameRateOf(first->header);
    settings.components = first->frame.layout().components;
    const auto [least, most] =
        std::minmax_element(jobs.begin(), jobs.end(), [](const auto& a, const auto& b) { return a.time < b.time; });
    settings.frameRange = {static_cast<double>(least->time), static_cast<double>(most->time)};
  }
  if (options_.project)
  {
    settings.project = loadProject(*options_.project, descriptor().params());
  }
  instance_ = plugin_->newInstance(settings);
  if (first)
  {
    attach(jobs.front(), *first);
  }
  if (const OfxStatus status = instance_->create(); status != kOfxStatOK)
  {
    throw RenderError(fmt::format("the plug-in could not make an instance ({}): {}", host::statusName(status),
                                  observer_.lastComplaint()));
  }
  instance_->clipPreferences();
  instance_->timeDomain();
  for (const Edit& edit : options_.edits)
  {
    runEdit(edit);
  }
}

// The plug-in's file dialog is answered by a variable of the environment instead of a person.
std::vector<std::string> Session::throughDialog(const char* button, const std::filesystem::path& file)
{
  setenv("MORVELLAN_FILE_DIALOG", ("accept:" + std::filesystem::absolute(file).string()).c_str(), 1);
  std::vector<std::string> errors = errorsOfPress(button);
  unsetenv("MORVELLAN_FILE_DIALOG");
  return errors;
}

std::vector<std::string> Session::loadLook(const std::filesystem::path& file)
{
  std::error_code failure;
  if (!std::filesystem::exists(file, failure))
  {
    throw RenderError(fmt::format("the Look {} does not exist; check the name", file.string()));
  }
  return throughDialog("LoadLooks", file);
}

void Session::saveLook(const std::filesystem::path& file)
{
  // The plug-in writes over a file also where its folder takes no new one.
  std::error_code failure;
  if (!std::filesystem::is_regular_file(file, failure))
  {
    prepareFolderOf(file);
  }
  requireNone(throughDialog("SaveLooks", file), fmt::format("the Look {} was not written", file.string()));
}

void Session::runEdit(const Edit& edit)
{
  switch (edit.kind)
  {
  case Edit::Kind::LoadLook:
    requireNone(loadLook(edit.value), fmt::format("the Look {} is not fit for use", edit.value));
    return;
  case Edit::Kind::SaveLook:
    saveLook(edit.value);
    return;
  case Edit::Kind::Press:
    press(edit.name);
    return;
  case Edit::Kind::Set:
    break;
  }
  const host::Param& param = paramNamed(instance_->params(), edit.name, hasValue);
  host::ParamValue value;
  try
  {
    value = parseValue(param, edit.value);
  }
  catch (const UsageError& error)
  {
    throw UsageError(inEdit(edit, error.what()));
  }
  if (!param.hasValue())
  {
    throw UsageError(inEdit(edit, fmt::format("a {} has no value", param.facts().label)));
  }
  const OfxStatus status = instance_->edit(edit.name, value);
  if (status != kOfxStatOK && status != kOfxStatReplyDefault)
  {
    throw RenderError(
        inEdit(edit, fmt::format("the plug-in refused ({}): {}", host::statusName(status), observer_.lastComplaint())));
  }
}

void Session::press(const std::string& name)
{
  requireNone(errorsOfPress(name), fmt::format("--press {} failed", name));
}

std::vector<std::string> Session::errorsOfPress(const std::string& name)
{
  const host::Param& param = paramNamed(instance_->params(), name, isButton);
  if (!isButton(param))
  {
    const std::string instead = hasValue(param) ? fmt::format("use --set {}=VALUE", name) : "see --list-params";
    throw UsageError(fmt::format("{} ({}) is not a button; {}", name, param.facts().label, instead));
  }
  OfxStatus status = kOfxStatOK;
  std::vector<std::string> errors = observer_.errorsOf([&] { status = instance_->press(name); });
  if (status != kOfxStatOK && status != kOfxStatReplyDefault)
  {
    throw RenderError(
        fmt::format("--press {} failed ({}): {}", name, host::statusName(status), observer_.lastComplaint()));
  }
  return errors;
}

Session::Rendered Session::renderOne(const FrameJob& job, const Picture& picture)
{
  attach(job, picture);
  const auto time = static_cast<double>(job.time);
  const OfxRectD region = instance_->regionOfDefinition(time);
  instance_->regionsOfInterest(time, region);
  instance_->framesNeeded(time);
  const auto started = std::chrono::steady_clock::now();
  const auto elapsed = [&]
  { return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started).count(); };
  if (const std::optional<host::Identity> identity = instance_->isIdentity(time))
  {
    const std::optional<host::Frame> source = sourceAt(identity->time);
    if (!source || identity->clip != kOfxImageEffectSimpleSourceClipName)
    {
      throw RenderError(
          fmt::format("frame {} is to be that of time {}, which is not among the inputs", job.time, identity->time));
    }
    return {*source, elapsed()};
  }
  // An effect that leaves its output untouched has decided that nothing is to be done.
  const host::Frame output = picture.frame.clone();
  const OfxStatus status = instance_->render(time, output);
  if (status != kOfxStatOK)
  {
    const std::string complaint = observer_.lastComplaint();
    throw RenderError(fmt::format("frame {} failed ({}){}{}", job.time, host::statusName(status),
                                  complaint.empty() ? "" : ": ", complaint));
  }
  return {output, elapsed()};
}

void Session::render()
{
  watchForInterrupts();
  const OfxRangeD range{static_cast<double>(jobs_.front().time), static_cast<double>(jobs_.back().time)};
  const double step = jobs_.size() > 1 ? static_cast<double>(jobs_[1].time) - jobs_[0].time : 1.0;
  const RenderedSequence sequence(*instance_, range, step);
  progress_.start(jobs_.size());
  // The next picture is read and the last one written while a frame renders.
  std::future<Picture> next;
  std::future<void> written;
  Picture picture = *current_;
  if (!picture.leftOut.empty() && options_.talk != Talk::Quiet)
  {
    progress_.line(fmt::format("{}: left out: {}", jobs_.front().input.string(), picture.leftOut));
  }
  for (std::size_t i = 0; i < jobs_.size(); ++i)
  {
    if (interrupted())
    {
      throw RenderError(fmt::format("interrupted before frame {}", jobs_[i].time));
    }
    if (i + 1 < jobs_.size())
    {
      next = std::async(std::launch::async, [this, i] { return read(jobs_[i + 1]); });
    }
    Rendered rendered = renderOne(jobs_[i], picture);
    if (interrupted())
    {
      throw RenderError(fmt::format("interrupted in frame {}", jobs_[i].time));
    }
    if (written.valid())
    {
      written.get();
    }
    written = std::async(std::launch::async, [this, i, rendered, picture]
                         { writePicture(jobs_[i].output, rendered.frame, picture, options_.depth); });
    if (i + 1 == jobs_.size())
    {
      written.get();
    }
    progress_.frameDone(jobs_[i].output.string(), rendered.milliseconds);
    if (next.valid())
    {
      picture = next.get();
    }
  }
  progress_.finish();
}

void Session::saveProject() const
{
  if (options_.saveProject)
  {
    writeText(*options_.saveProject, formatProject(*instance_));
  }
}

}  // namespace morvellan::tool
