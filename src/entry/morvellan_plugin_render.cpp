// The render action: the two images are fetched and judged, the parameters captured, and the frame sent its way.
#include <cstdio>

#include "entry/exceptions.h"
#include "entry/frame_images.h"
#include "entry/morvellan_plugin.h"
#include "entry/pixel_processor.h"
#include "pipeline/host/capture.h"
#include "pipeline/host/engine.h"
#include "pipeline/host/trace.h"

namespace morvellan
{

void MorvellanPlugin::render(const OFX::RenderArguments& arguments)
{
  const auto output = outputClip_.fetchImage(arguments.time);
  if (!output)
    fail("Morvellan : Natron gave Target clip with wrong render scale properties");
  // Declared after the output, so that it is given back first.
  std::unique_ptr<OFX::Image> source;
  if (sourceClip_ && sourceClip_.isConnected())
    source = sourceClip_.fetchImage(arguments.time);
  if (!source)
  {
    fillBlack(*output, arguments.renderWindow);
    return;
  }
  checkFormats(*source, *output);
  renderFrame(arguments.time, *source, *output);
}

void MorvellanPlugin::fillBlack(const OFX::Image& output, const OfxRectI& window) const
{
  if (output.components() != OFX::PixelComponents::RGBA && output.components() != OFX::PixelComponents::RGB)
    throw OFX::Exception::Suite(kOfxStatErrUnsupported);
  const int channels = OFX::channelCount(output.components());
  if (const auto fault = imageFault(output, channels, "Output"))
    fail(*fault);
  OFX::BlackFiller filler(*this, channels);
  filler.setDestination(output);
  filler.setRenderWindow(window);
  filler.process();
}

void MorvellanPlugin::checkFormats(const OFX::Image& source, const OFX::Image& output)
{
  if (source.depth() != output.depth() || source.components() != output.components())
    fail("Morvellan : Natron gave Input and Output images with different channel counts or pixel depths");
  if (output.components() != OFX::PixelComponents::RGBA && output.components() != OFX::PixelComponents::RGB)
    fail("Morvellan : Morvellan only supports RGB and RGBA clips");
  params_.channelCount = OFX::channelCount(output.components());
  if (output.depth() != OFX::BitDepth::Float)
    fail("Morvellan : Morvellan only supports floating point pixel depths");
  for (const auto& fault :
       {imageFault(source, params_.channelCount, "Input"), imageFault(output, params_.channelCount, "Output")})
    if (fault)
      fail(*fault);
}

void MorvellanPlugin::renderFrame(double time, const OFX::Image& source, const OFX::Image& output)
{
  const SourceRows from = sourceRows(source, params_.channelCount);
  const TargetRows to = targetRows(output, params_.channelCount);
  const FrameRequest request{.width = static_cast<int>(to.width()),
                             .height = static_cast<int>(to.height()),
                             .channels = params_.channelCount,
                             .time = time};
  const CaptureOutcome outcome = captureFrame(CurrentValues(*parameters_), request, params_, tables_.grain());
  for (const SizeCorrection& correction : outcome.corrections.list())
  {
    // A frame smaller than the least of the control: it stands there already, and a write would call for a new render.
    if (parameters_->number(correction.name) != ParameterHandles::heldInRange(correction.name, correction.value))
      parameters_->setNumber(correction.name, correction.value);
  }

  if (outcome.route == FrameRoute::untouched)
    return;
  const Engine* engine = renderingEngine();
  if (outcome.route == FrameRoute::copy || !engine)
  {
    copyByCoordinates(from, to);
    return;
  }
  const SourceFrame sourceFrame(from, to);
  TargetFrame targetFrame(to);
  Trace trace;
  const bool traced = Trace::wanted();
  engine->render({.route = outcome.route,
                  .source = sourceFrame.pixels(),
                  .destination = targetFrame.pixels(),
                  .params = params_,
                  .trace = traced ? &trace : nullptr});
  targetFrame.finish();
  if (traced)
    std::fputs(trace.text().c_str(), stderr);
}

}  // namespace morvellan
