// A host for tests that checks everything and forgives nothing: a misuse that no test asks about fails the test.
// It loads a bundle as any host does and offers what tests need: instances, edits, frames, messages, a log of writes.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/host.h"
#include "ofx/ofxMessage.h"

namespace morvellan::test
{

// A host with guarded images. The four size parameters may be set from a render: the effect cuts them to the image.
host::HostTraits strictTraits();

struct StrictOptions
{
  host::HostTraits traits = strictTraits();
  std::string context = kOfxImageEffectContextFilter;
  // Set while the host lives, before the library is opened; an empty value unsets the variable.
  std::map<std::string, std::string> environment;
  // The answer to each message; kOfxStatOK where there is none.
  std::function<OfxStatus(const host::Message&)> answer;
};

class StrictHost : public host::Observer
{
public:
  // Loads and describes; a failure of either is a host::LoadError.
  explicit StrictHost(const std::filesystem::path& bundle, StrictOptions options = {});
  // Destroys the instances, unloads, and fails the test for every misuse that was not taken.
  ~StrictHost() override;

  host::Host& host() { return *host_; }
  host::LoadedPlugin& plugin() { return *plugin_; }
  const host::EffectDescriptor& descriptor() const { return plugin_->descriptor(); }

  // A created instance, which the host keeps; a failing creation fails the test.
  host::EffectInstance& create(const host::InstanceSettings& settings = {});
  // An instance that is not created yet.
  host::EffectInstance& prepare(const host::InstanceSettings& settings = {});
  void destroy(host::EffectInstance& instance);

  std::vector<std::string> violations() const;
  // The violations so far, which then count as expected.
  std::vector<std::string> takeViolations();

  std::vector<host::Message> messages() const;            // dialogs, oldest first
  std::vector<host::Message> persistentMessages() const;  // oldest first, cleared ones included
  int messageClears() const;
  std::vector<host::ParameterWrite> writes() const;
  std::vector<host::ParameterPropertyWrite> propertyWrites() const;
  // The clips of images that were given back, in that order.
  std::vector<std::string> releases() const;
  // Forgets messages, writes and releases, not violations.
  void clearLog();
  void requestAbort(bool abort);

private:
  class ScopedEnvironment
  {
  public:
    explicit ScopedEnvironment(const std::map<std::string, std::string>& values);
    ~ScopedEnvironment();

  private:
    std::map<std::string, std::optional<std::string>> before_;
  };

  void misuse(const std::string& what) override;
  OfxStatus message(const host::Message& message) override;
  void persistentMessage(const host::Message& message) override;
  void persistentMessageCleared() override;
  void parameterWritten(const host::ParameterWrite& write) override;
  void parameterPropertyWritten(const host::ParameterPropertyWrite& write) override;
  void imageReleased(const std::string& clip) override;
  bool abortRequested() override;

  const StrictOptions options_;
  const ScopedEnvironment environment_;
  mutable std::mutex mutex_;
  std::vector<std::string> violations_;
  std::vector<host::Message> messages_;
  std::vector<host::Message> persistent_;
  int clears_ = 0;
  std::vector<host::ParameterWrite> writes_;
  std::vector<host::ParameterPropertyWrite> propertyWrites_;
  std::vector<std::string> releases_;
  bool abort_ = false;
  std::unique_ptr<host::Host> host_;
  std::unique_ptr<host::LoadedPlugin> plugin_;
  std::vector<std::unique_ptr<host::EffectInstance>> instances_;
};

// EXPECT_TRUE(nothingMisused(host)): lists what was.
testing::AssertionResult nothingMisused(const StrictHost& host);

// A guarded float frame from (0, 0).
host::Frame frameOf(int width, int height, host::Components components = host::Components::Rgba);
// The same with values that differ in every pixel and channel, from 0 to 1.
host::Frame rampOf(int width, int height, host::Components components = host::Components::Rgba);
// An output frame like `frame`, filled with a value that no effect produces.
host::Frame outputLike(const host::Frame& frame);
constexpr float untouched = -12345.0F;

// Puts `source` on the clip Source and renders a frame of its size; a failing render fails the test.
host::Frame renderFrame(host::EffectInstance& instance, const host::Frame& source, double time = 0.0);

// Each job runs in a thread of its own, all started together.
void runTogether(const std::vector<std::function<void()>>& jobs);

// The greatest absolute difference of two float frames of one size.
float greatestDifference(const host::Frame& a, const host::Frame& b);

bool allFinite(const host::Frame& frame);

}  // namespace morvellan::test
