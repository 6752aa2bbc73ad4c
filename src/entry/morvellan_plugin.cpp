// The making of an instance, step by step, and its answers to changes of parameters.
#include "entry/morvellan_plugin.h"

#include "entry/exceptions.h"
#include "entry/host_param_access.h"
#include "gpu/discovery.h"
#include "params/edit.h"
#include "params/rules.h"
#include "pipeline/host/capture.h"
#include "pipeline/host/render_switches.h"

namespace morvellan
{

MorvellanPlugin::MorvellanPlugin(OfxImageEffectHandle handle) : MorvellanPlugin(handle, processEnvironment()) {}

MorvellanPlugin::MorvellanPlugin(OfxImageEffectHandle handle, const InstanceEnvironment& environment)
    : ImageEffect(handle), environment_(environment), configFile_(environment.configFolder)
{
  readConfiguration();
  reportDiscovery();
  selectDevices();
  params_.grainLevels = files::grainTableEntries(config_.grainDepth) - 1;
  fetchHandles();
  seedFrameParams(CurrentValues(*parameters_), params_);
  HostParamAccess access(*this, nullptr);
  params::showForValues(access);
  showStoredSettings();
  makeTables();
}

MorvellanPlugin::~MorvellanPlugin() = default;

void MorvellanPlugin::readConfiguration()
{
  const files::GpuConfigFile::Reading reading = configFile_.read();
  for (const std::string& message : reading.messages)
    post(message);
  config_ = reading.values;
}

void MorvellanPlugin::reportDiscovery()
{
  const gpu::Discovery& discovery = environment_.discovery;
  for (const std::string& warning : discovery.warnings)
    setPersistentMessage(OFX::MessageLevel::Warning, warning);
  if (discovery.code != gpu::DiscoveryCode::found)
  {
    post(std::string(gpu::discoveryMessage(discovery.code)));
    return;
  }
  const gpu::DriverCheck driver = gpu::checkDriver(environment_.platform, discovery);
  if (!driver.ready)
    post(driver.message);
  params_.gpuReady = driver.ready ? 1 : 0;
}

void MorvellanPlugin::selectDevices()
{
  const gpu::Selection selection = gpu::selectDevices(environment_.discovery.devices, config_.gpuSelection);
  if (selection.revertMessage)
  {
    if (const auto failure = configFile_.saveReverted(config_.grainDepth))
      post(*failure);
    post(*selection.revertMessage);
  }
  config_.gpuSelection = selection.gpuSelection;
  params_.gpuRed = selection.gpuRed;
  params_.gpuBlue = selection.gpuBlue;
  params_.gpuGreen = selection.gpuGreen;
  params_.gpuCount = selection.gpuCount;
  params_.gpuSelection = selection.gpuSelection;
}

void MorvellanPlugin::fetchHandles()
{
  outputClip_ = fetchClip(kOfxImageEffectOutputClipName);
  sourceClip_ = fetchClip(kOfxImageEffectSimpleSourceClipName);
  parameters_ = std::make_unique<const ParameterHandles>(*this);
}

void MorvellanPlugin::showStoredSettings()
{
  parameters_->setNumber("GrainDepth", config_.grainDepth);
  parameters_->setNumber("NatronGPU", config_.gpuSelection);
}

void MorvellanPlugin::makeTables()
{
  const auto report = [this](const std::optional<std::string>& failure)
  {
    if (!failure)
      return;
    post(*failure);
    params_.gpuReady = 0;
  };
  report(tables_.buildProductTable(environment_.productTableMemory));
  params_.m_table = tables_.productTable();
  if (params_.gpuReady == 1)
    report(
        tables_.allocateGrainTables(environment_.grainTableMemory, static_cast<std::size_t>(params_.grainLevels) + 1));
}

void MorvellanPlugin::fail(const std::string& text) const
{
  post(text);
  throw OFX::Exception::Suite(kOfxStatFailed);
}

bool MorvellanPlugin::isIdentity(const OFX::IdentityArguments& arguments, OFX::IdentityAnswer& answer)
{
  if (!morvellan::isIdentity(ValuesAt(*parameters_, arguments.time), params_.gpuReady == 1))
    return false;
  answer = {.clip = kOfxImageEffectSimpleSourceClipName, .time = arguments.time};
  return true;
}

void MorvellanPlugin::changedParam(const OFX::ChangeArguments& arguments, const std::string& name)
{
  HostParamAccess access(*this, &arguments);
  switch (arguments.reason)
  {
  case OFX::ChangeReason::UserEdit:
    return params::changedParam(access, name, params::Reason::UserEdited);
  case OFX::ChangeReason::PluginEdit:
    return params::changedParam(access, name, params::Reason::PluginEdited);
  case OFX::ChangeReason::Time:
    return params::changedParam(access, name, params::Reason::TimeChanged);
  }
}

// The line that an edit leaves alone is the file's: another instance may have changed it since this one was made.
void MorvellanPlugin::saveGrainDepth(double time)
{
  const files::GpuConfig wanted{.gpuSelection = configFile_.stored().value_or(config_).gpuSelection,
                                .grainDepth = static_cast<int>(parameters_->numberAt("GrainDepth", time))};
  if (const auto failure = configFile_.saveGrainDepth(wanted))
  {
    post(*failure);
    return;
  }
  config_.grainDepth = wanted.grainDepth;
  showMessage(OFX::MessageLevel::Message,
              "Morvellan : To activate Grain Depth Resolution change, reload Morvellan or restart Natron");
}

// The choice takes effect with the next instance; this one renders on as it was made.
void MorvellanPlugin::saveDeviceChoice(double time)
{
  const int slot = static_cast<int>(parameters_->numberAt("NatronGPU", time));
  if (slot >= environment_.discovery.usableCount())
  {
    showMessage(OFX::MessageLevel::Message, gpu::unavailableSlotMessage(slot));
    HostParamAccess access(*this, nullptr);
    params::writeDerived(access, "NatronGPU", params_.gpuSelection);
    return;
  }
  const files::GpuConfig wanted{.gpuSelection = slot, .grainDepth = configFile_.stored().value_or(config_).grainDepth};
  if (const auto failure = configFile_.saveSelection(wanted))
  {
    post(*failure);
    return;
  }
  config_.gpuSelection = params_.gpuSelection = slot;
  showMessage(OFX::MessageLevel::Message, "Morvellan : To activate changes, reload Morvellan or restart Natron");
}

}  // namespace morvellan
