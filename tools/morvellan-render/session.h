// The plug-in loaded, an instance of it alive with its project and edits, and frames rendered through it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "frame_plan.h"
#include "host/host.h"
#include "options.h"
#include "picture.h"
#include "progress.h"
#include "tool_host.h"

namespace morvellan::tool
{

class Session
{
public:
  // Loads and describes the plug-in of the bundle. Throws RenderError.
  Session(const Options& options, const std::filesystem::path& bundle, Progress& progress);

  const host::EffectDescriptor& descriptor() const { return plugin_->descriptor(); }
  ToolObserver& observer() { return observer_; }

  // Creates the instance for the frames, which may be none, and runs the edits.
  void createInstance(const std::vector<FrameJob>& jobs);
  // Throws RenderError where the plug-in tells of an error.
  void press(const std::string& name);
  // Gives what the plug-in complains of. Throws RenderError where there is no such file.
  std::vector<std::string> loadLook(const std::filesystem::path& file);
  const host::EffectInstance& instance() const { return *instance_; }
  void render();
  void saveProject() const;

private:
  struct Rendered
  {
    host::Frame frame;
    double milliseconds;
  };

  std::optional<host::Frame> sourceAt(double time);
  void attach(const FrameJob& job, const Picture& picture);
  void runEdit(const Edit& edit);
  std::vector<std::string> errorsOfPress(const std::string& name);
  std::vector<std::string> throughDialog(const char* button, const std::filesystem::path& file);
  void saveLook(const std::filesystem::path& file);
  Rendered renderOne(const FrameJob& job, const Picture& picture);
  Picture read(const FrameJob& job) const;

  const Options& options_;
  Progress& progress_;
  ToolObserver observer_;
  host::Host host_;
  std::unique_ptr<host::LoadedPlugin> plugin_;
  std::unique_ptr<host::EffectInstance> instance_;
  std::vector<FrameJob> jobs_;
  std::optional<Picture> current_;  // the picture of currentTime_
  double currentTime_ = 0.0;
};

}  // namespace morvellan::tool
