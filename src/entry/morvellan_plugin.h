// One instance of the effect: its clips and parameters, the values of its frames, and its answers to the host.
#pragma once

#include <memory>
#include <string>

#include "entry/image_effect.h"
#include "entry/instance_environment.h"
#include "entry/instance_tables.h"
#include "entry/parameter_handles.h"
#include "files/gpu_config.h"
#include "pipeline/host/frame_params.h"

namespace morvellan
{

class MorvellanPlugin final : public OFX::ImageEffect
{
public:
  /// Never fails for want of a device, a configuration file or memory for tables: each is a persistent message, and
  /// frames then pass through. Raises Exception::Suite where the host lacks a parameter or a clip.
  explicit MorvellanPlugin(OfxImageEffectHandle handle);
  MorvellanPlugin(OfxImageEffectHandle handle, const InstanceEnvironment& environment);
  ~MorvellanPlugin() override;

  void render(const OFX::RenderArguments& arguments) override;
  bool isIdentity(const OFX::IdentityArguments& arguments, OFX::IdentityAnswer& answer) override;
  void changedParam(const OFX::ChangeArguments& arguments, const std::string& name) override;
  void changedClip(const OFX::ChangeArguments& arguments, const std::string& name) override;

  /// The values of the instance's frames, as the last capture left them.
  const FrameParams& frameParams() const { return params_; }

private:
  friend class HostParamAccess;

  // Construction, in this order.
  void readConfiguration();
  void reportDiscovery();
  void selectDevices();
  void fetchHandles();
  void showStoredSettings();
  void makeTables();

  void fillBlack(const OFX::Image& output, const OfxRectI& window) const;
  void checkFormats(const OFX::Image& source, const OFX::Image& output);
  void renderFrame(double time, const OFX::Image& source, const OFX::Image& output);

  void fitSizes(double time);
  void saveDeviceChoice(double time);
  void saveGrainDepth(double time);
  void showClipReport(double time, const OfxPointD& renderScale);

  void post(const std::string& text) const { setPersistentMessage(OFX::MessageLevel::Error, text); }
  /// Posts the text and ends the action.
  [[noreturn]] void fail(const std::string& text) const;

  const InstanceEnvironment environment_;
  const files::GpuConfigFile configFile_;
  files::GpuConfig config_;
  FrameParams params_{};
  OFX::Clip outputClip_;
  OFX::Clip sourceClip_;
  std::unique_ptr<const ParameterHandles> parameters_;
  InstanceTables tables_;
};

}  // namespace morvellan
