// Rules speak of parameters by name; the instance's handles carry them out.
#include "entry/host_param_access.h"

#include "entry/look_buttons.h"
#include "gpu/reports.h"

namespace morvellan
{

double HostParamAccess::number(std::string_view name) const
{
  return change_ ? plugin_.parameters_->numberAt(name, change_->time) : plugin_.parameters_->number(name);
}

params::Rgb HostParamAccess::rgb(std::string_view name) const
{
  return change_ ? plugin_.parameters_->rgbAt(name, change_->time) : plugin_.parameters_->rgb(name);
}

void HostParamAccess::setNumber(std::string_view name, double value)
{
  plugin_.parameters_->setNumber(name, value);
}

void HostParamAccess::setRgb(std::string_view name, const params::Rgb& value)
{
  plugin_.parameters_->setRgb(name, value);
}

void HostParamAccess::setVisible(std::string_view name, bool visible)
{
  plugin_.parameters_->param(name).setHidden(!visible);
}

void HostParamAccess::setSecret(std::string_view name, bool secret)
{
  plugin_.parameters_->param(name).setSecret(secret);
}

void HostParamAccess::beginEdit(std::string_view name)
{
  plugin_.beginEditBlock(std::string(name));
}

void HostParamAccess::endEdit(std::string_view)
{
  plugin_.endEditBlock();
}

std::optional<params::Size> HostParamAccess::imageSize(params::Side side)
{
  const OFX::Clip& clip = side == params::Side::Source ? plugin_.sourceClip_ : plugin_.outputClip_;
  const auto image = clip.fetchImage(change_ ? change_->time : 0.0);
  if (!image)
    return std::nullopt;
  const OfxRectI& bounds = image->bounds();
  return params::Size{bounds.x2 - bounds.x1, bounds.y2 - bounds.y1};
}

void HostParamAccess::rememberResolution(params::Side side, int choice, params::Size size)
{
  FrameParams& frame = plugin_.params_;
  const bool source = side == params::Side::Source;
  (source ? frame.inResolutionChoice : frame.outResolutionChoice) = choice;
  (source ? frame.sourceWidth : frame.targetWidth) = size.width;
  (source ? frame.sourceHeight : frame.targetHeight) = size.height;
}

void HostParamAccess::perform(params::Action action)
{
  const double time = change_ ? change_->time : 0.0;
  const auto tell = [this](const std::string& text) { plugin_.showMessage(OFX::MessageLevel::Error, text); };
  switch (action)
  {
  case params::Action::GrainDepthChosen:
    plugin_.saveGrainDepth(time);
    break;
  case params::Action::GpuChosen:
    plugin_.saveDeviceChoice(time);
    break;
  case params::Action::CudaReport:
    plugin_.showMessage(OFX::MessageLevel::Message, gpu::cudaInfoText(plugin_.environment_.platform));
    break;
  case params::Action::ClipReport:
    plugin_.showClipReport(time, change_ ? change_->renderScale : OfxPointD{1.0, 1.0});
    break;
  case params::Action::AboutReport:
    plugin_.showMessage(OFX::MessageLevel::Message, gpu::aboutText());
    break;
  case params::Action::SaveLook:
    pressSaveLook(*this, tell);
    break;
  case params::Action::LoadLook:
    pressLoadLook(*this, tell);
    break;
  }
}

}  // namespace morvellan
