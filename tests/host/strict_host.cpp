// The strict host: collects what the host library reports, and fails tests for it.
#include "tests/host/strict_host.h"

#include <algorithm>
#include <barrier>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <thread>

#include <fmt/format.h>

namespace morvellan::test
{

host::HostTraits strictTraits()
{
  host::HostTraits traits;
  traits.guardedImages = true;
  traits.writableInRender = {"SourceWidth", "SourceHeight", "TargetWidth", "TargetHeight"};
  return traits;
}

StrictHost::ScopedEnvironment::ScopedEnvironment(const std::map<std::string, std::string>& values)
{
  for (const auto& [name, value] : values)
  {
    const char* const before = std::getenv(name.c_str());
    before_.emplace(name, before == nullptr ? std::nullopt : std::optional<std::string>(before));
    value.empty() ? unsetenv(name.c_str()) : setenv(name.c_str(), value.c_str(), 1);
  }
}

StrictHost::ScopedEnvironment::~ScopedEnvironment()
{
  for (const auto& [name, value] : before_)
  {
    value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
  }
}

StrictHost::StrictHost(const std::filesystem::path& bundle, StrictOptions options)
    : options_(std::move(options)), environment_(options_.environment),
      host_(std::make_unique<host::Host>(options_.traits, *this)),
      plugin_(std::make_unique<host::LoadedPlugin>(*host_, bundle))
{
  plugin_->load();
  plugin_->describe();
  plugin_->describeIn(options_.context);
}

StrictHost::~StrictHost()
{
  instances_.clear();
  plugin_.reset();
  host_.reset();
  for (const std::string& violation : violations_)
  {
    ADD_FAILURE() << "the plug-in misused the interface: " << violation;
  }
}

host::EffectInstance& StrictHost::prepare(const host::InstanceSettings& settings)
{
  return *instances_.emplace_back(plugin_->newInstance(settings));
}

host::EffectInstance& StrictHost::create(const host::InstanceSettings& settings)
{
  host::EffectInstance& instance = prepare(settings);
  const OfxStatus status = instance.create();
  EXPECT_EQ(host::statusName(status), "kOfxStatOK") << "creating an instance";
  instance.clipPreferences();
  return instance;
}

void StrictHost::destroy(host::EffectInstance& instance)
{
  std::erase_if(instances_, [&](const auto& kept) { return kept.get() == &instance; });
}

std::vector<std::string> StrictHost::violations() const
{
  const std::scoped_lock lock(mutex_);
  return violations_;
}

std::vector<std::string> StrictHost::takeViolations()
{
  const std::scoped_lock lock(mutex_);
  return std::exchange(violations_, {});
}

std::vector<host::Message> StrictHost::messages() const
{
  const std::scoped_lock lock(mutex_);
  return messages_;
}

std::vector<host::Message> StrictHost::persistentMessages() const
{
  const std::scoped_lock lock(mutex_);
  return persistent_;
}

int StrictHost::messageClears() const
{
  const std::scoped_lock lock(mutex_);
  return clears_;
}

std::vector<host::ParameterWrite> StrictHost::writes() const
{
  const std::scoped_lock lock(mutex_);
  return writes_;
}

std::vector<host::ParameterPropertyWrite> StrictHost::propertyWrites() const
{
  const std::scoped_lock lock(mutex_);
  return propertyWrites_;
}

std::vector<std::string> StrictHost::releases() const
{
  const std::scoped_lock lock(mutex_);
  return releases_;
}

void StrictHost::clearLog()
{
  const std::scoped_lock lock(mutex_);
  messages_.clear();
  persistent_.clear();
  clears_ = 0;
  writes_.clear();
  propertyWrites_.clear();
  releases_.clear();
}

void StrictHost::requestAbort(bool abort)
{
  const std::scoped_lock lock(mutex_);
  abort_ = abort;
}

void StrictHost::misuse(const std::string& what)
{
  const std::scoped_lock lock(mutex_);
  violations_.push_back(what);
}

OfxStatus StrictHost::message(const host::Message& message)
{
  {
    const std::scoped_lock lock(mutex_);
    messages_.push_back(message);
  }
  return options_.answer ? options_.answer(message) : kOfxStatOK;
}

void StrictHost::persistentMessage(const host::Message& message)
{
  const std::scoped_lock lock(mutex_);
  persistent_.push_back(message);
}

void StrictHost::persistentMessageCleared()
{
  const std::scoped_lock lock(mutex_);
  ++clears_;
}

void StrictHost::parameterWritten(const host::ParameterWrite& write)
{
  const std::scoped_lock lock(mutex_);
  writes_.push_back(write);
}

void StrictHost::parameterPropertyWritten(const host::ParameterPropertyWrite& write)
{
  const std::scoped_lock lock(mutex_);
  propertyWrites_.push_back(write);
}

void StrictHost::imageReleased(const std::string& clip)
{
  const std::scoped_lock lock(mutex_);
  releases_.push_back(clip);
}

bool StrictHost::abortRequested()
{
  const std::scoped_lock lock(mutex_);
  return abort_;
}

testing::AssertionResult nothingMisused(const StrictHost& host)
{
  const std::vector<std::string> violations = host.violations();
  if (violations.empty())
  {
    return testing::AssertionSuccess();
  }
  testing::AssertionResult result = testing::AssertionFailure() << "misuse of the interface:";
  for (const std::string& violation : violations)
  {
    result << "\n  " << violation;
  }
  return result;
}

host::Frame frameOf(int width, int height, host::Components components)
{
  return host::Frame({.bounds = {0, 0, width, height}, .components = components, .guarded = true});
}

host::Frame rampOf(int width, int height, host::Components components)
{
  host::Frame frame = frameOf(width, height, components);
  const auto values = static_cast<float>(std::max(1, width * height * host::countOf(components) - 1));
  float next = 0.0F;
  for (int y = 0; y < height; ++y)
  {
    for (float& value : frame.row(y))
    {
      value = next / values;
      next += 1.0F;
    }
  }
  return frame;
}

host::Frame outputLike(const host::Frame& frame)
{
  host::Frame output(frame.layout());
  output.fill(untouched);
  return output;
}

host::Frame renderFrame(host::EffectInstance& instance, const host::Frame& source, double time)
{
  instance.clip(kOfxImageEffectSimpleSourceClipName).setSource(source);
  instance.clip(kOfxImageEffectOutputClipName).setFormat(source.layout().components, source.layout().depth);
  host::Frame output = outputLike(source);
  const OfxStatus status = instance.render(time, output);
  EXPECT_EQ(host::statusName(status), "kOfxStatOK") << "rendering time " << time;
  return output;
}

void runTogether(const std::vector<std::function<void()>>& jobs)
{
  std::barrier start(static_cast<std::ptrdiff_t>(jobs.size()));
  std::vector<std::jthread> threads;
  threads.reserve(jobs.size());
  for (const auto& job : jobs)
  {
    threads.emplace_back(
        [&start, &job]
        {
          start.arrive_and_wait();
          job();
        });
  }
}

float greatestDifference(const host::Frame& a, const host::Frame& b)
{
  if (a.width() != b.width() || a.height() != b.height() || a.layout().components != b.layout().components)
  {
    return std::numeric_limits<float>::infinity();
  }
  float greatest = 0.0F;
  for (int y = 0; y < a.height(); ++y)
  {
    const auto rowA = a.row(a.layout().bounds.y1 + y);
    const auto rowB = b.row(b.layout().bounds.y1 + y);
    for (std::size_t i = 0; i < rowA.size(); ++i)
    {
      const float difference = std::abs(rowA[i] - rowB[i]);
      greatest = std::isnan(difference) ? std::numeric_limits<float>::infinity() : std::max(greatest, difference);
    }
  }
  return greatest;
}

bool allFinite(const host::Frame& frame)
{
  for (int y = 0; y < frame.height(); ++y)
    if (!std::ranges::all_of(frame.row(frame.layout().bounds.y1 + y), [](float value) { return std::isfinite(value); }))
      return false;
  return true;
}

}  // namespace morvellan::test
