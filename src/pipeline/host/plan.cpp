// The planner: one pass down the stages, carrying what the image is at each point (its slot, whether it is decoded to
// linear light, whether it is range compressed), so that every way in finds the way out that inverts it.
#include "pipeline/host/plan.h"

#include <array>
#include <utility>

#include "pipeline/host/film_choice.h"
#include "pipeline/host/input_class.h"
#include "pipeline/host/plan_names.h"

namespace morvellan
{

std::string_view stageName(Stage stage)
{
  static constexpr std::array<std::string_view, 7> names{"upload", "geometry", "input",   "pitch",
                                                         "look",   "grain",    "download"};
  return names[static_cast<size_t>(stage)];
}

std::string_view slotName(Slot slot)
{
  static constexpr std::array<std::string_view, 8> names{"",       "host",    "frameA",        "frameB",
                                                         "frameB", "cropped", "ChannelPlanes", "output"};
  return names[static_cast<size_t>(slot)];
}

namespace
{

class Planner
{
public:
  Planner(FrameRoute route, const FrameParams& params) : p(params), name(params), route(route)
  {
    linear = isLinearInput(p.inputGamut);
    look = !p.soupBypassed || !p.printBypassed;
    pitch = !p.pitchBypassed && p.ensemblePitchGain != 1.0f;
    grain = !p.grainBypassed && p.grainChannelCount != 0;
    resized = p.resizeMode != 0;
    enhanced = route != FrameRoute::ReducePipeline && (p.enhancerHorizontal != 0.0f || p.enhancerVertical != 0.0f);
    cameraClip = p.cameraSoftClipActive != 0;
    soupClip = look && p.soupSoftClipActive;
    // Plain linear grain wants no compression; with nothing but exposure, halation or a clip on there is none either.
    const bool plainGrain = grain && p.grainLinear && !look;
    wantsCompression = linear && p.hdrCompress && !plainGrain && (look || pitch || grain || resized || enhanced);
  }

  std::vector<Step> plan()
  {
    upload();
    if (resized)
      cropAndResample();
    else if (enhanced)
      enhanceAtUnitScale();
    else if (!look && !pitch && !grain)
    {
      inputToOtherFrame();
      download();
      return std::move(steps);
    }
    else
      inputInPlace();
    if (pitch)
      pitchBands();
    if (decoded)
      encode();
    if (look && grain && p.grainLinear)
      lookAroundLinearGrain();
    else if (look)
      lookThenGrain();
    else if (grain)
      grainAlone();
    else if (compressed)
      expand();
    download();
    return std::move(steps);
  }

private:
  const FrameParams& p;
  PlanNames name;
  FrameRoute route;
  std::vector<Step> steps;

  // What the settings ask for.
  bool linear, look, pitch, grain, resized, enhanced, cameraClip, soupClip, wantsCompression;

  // What the image is now.
  Slot image = Slot::FrameA;
  bool decoded = false;     // a log or gamma clip carried in linear light
  bool compressed = false;  // range compressed linear light
  std::string planesSplit;  // set when the way out of Pitch has split the image already

  bool fourChannels() const { return p.channelCount == 4; }
  Slot other() const { return image == Slot::FrameA ? Slot::FrameB : Slot::FrameA; }

  void add(Stage stage, Work work, std::string kernel, Slot from, Slot to, ClipFields clip = ClipFields::None,
           int channels = 4)
  {
    steps.push_back({stage, work, std::move(kernel), from, to, clip, channels});
  }

  void inPlace(Stage stage, std::string kernel, ClipFields clip = ClipFields::None)
  {
    add(stage, Work::Colour, std::move(kernel), image, image, clip);
  }

  // The image moves to the other frame.
  void across(Stage stage, std::string kernel, ClipFields clip = ClipFields::None)
  {
    add(stage, Work::Colour, std::move(kernel), image, other(), clip);
    image = other();
  }

  void upload()
  {
    if (fourChannels())
      add(Stage::Upload, Work::Upload, "", Slot::Host, Slot::FrameA);
    else
    {
      add(Stage::Upload, Work::Upload, "", Slot::Host, Slot::Packed, ClipFields::None, 3);
      add(Stage::Upload, Work::Colour, "RGB_RGBA_Kernel", Slot::Packed, Slot::FrameA);
    }
  }

  // Exposure, halation and the camera's soft clip, each only if it is on.
  void exposureInPlace()
  {
    if (p.exposureValue != 0.0f)
      inPlace(Stage::Input, name.exposure());
  }

  void halation()
  {
    if (!p.halationBypassed)
      add(Stage::Input, Work::Halation, "halation", image, image);
  }

  void softClipInPlace(bool& pending, ClipFields fields)
  {
    if (std::exchange(pending, false))
      inPlace(Stage::Input, "highlights_shadows_Kernel", fields);
  }

  // With nothing after them, the last input kernel writes straight to the frame that is downloaded.
  void inputToOtherFrame()
  {
    if (p.exposureValue != 0.0f)
    {
      if (cameraClip || !p.halationBypassed)
        inPlace(Stage::Input, name.exposure());
      else
        across(Stage::Input, name.exposure() + "_in_out");
    }
    halation();
    if (cameraClip)
      across(Stage::Input, "highlights_shadows_Kernel_in_out", ClipFields::Camera);
    cameraClip = false;
  }

  // On the frame, for the pipelines of unit scale. A soft clip may wait for a kernel that has it folded in: the way
  // into Pitch or the split into planes, in the pipelines with grain.
  void inputInPlace()
  {
    exposureInPlace();
    halation();
    const bool compressorClipsSoup = wantsCompression && soupClip;
    const bool folds = grain && (pitch || !look) && !compressorClipsSoup;
    if (!folds)
      softClipInPlace(cameraClip, ClipFields::Camera);
    if (compressorClipsSoup && !pitch)
      softClipInPlace(soupClip, ClipFields::Soup);
  }

  // Crop, with the input stages folded in where a kernel has them, and resample to the target size.
  void cropAndResample()
  {
    const bool reduces = route == FrameRoute::ReducePipeline;
    const bool compressorClipsSoup = wantsCompression && soupClip;
    const bool clipFolds = !reduces;
    // Of two clips the Soup's is the one next to the compressor.
    const bool cropClipsSoup = clipFolds && compressorClipsSoup;
    const bool cropClipsCamera = clipFolds && cameraClip && !compressorClipsSoup;
    const bool clips = cropClipsSoup || cropClipsCamera;
    decoded = p.processLinear && !linear;
    compressed = wantsCompression;
    const bool exposureFolds = !reduces && p.exposureValue != 0.0f && p.exposureKind == 1 && p.halationBypassed &&
                               !decoded && (clips || compressed) && !(cropClipsSoup && cameraClip);
    if (!exposureFolds)
      exposureInPlace();
    halation();
    if (!cropClipsCamera)
      softClipInPlace(cameraClip, ClipFields::Camera);
    if (compressorClipsSoup && !cropClipsSoup)
      softClipInPlace(soupClip, ClipFields::Soup);
    const ClipFields fields =
        cropClipsSoup ? ClipFields::Soup : (cropClipsCamera ? ClipFields::Camera : ClipFields::None);
    add(Stage::Geometry, Work::Colour, name.crop(clips, decoded, compressed, exposureFolds), image, Slot::Cropped,
        fields);
    cameraClip = false;
    if (compressorClipsSoup)
      soupClip = false;
    add(Stage::Geometry, Work::Resample, "ResizeTBB", Slot::Cropped, Slot::FrameA);
    if (enhanced)
      add(Stage::Geometry, Work::Enhance, name.enhancer(), Slot::FrameA, Slot::FrameA);
    image = Slot::FrameA;
  }

  void enhanceAtUnitScale()
  {
    exposureInPlace();
    halation();
    softClipInPlace(cameraClip, ClipFields::Camera);
    if (p.processLinear && !linear)
    {
      inPlace(Stage::Input, "To_Linear_Kernel_RGBA");
      decoded = true;
    }
    if (wantsCompression)
      compress(Stage::Input);
    add(Stage::Geometry, Work::Resample, "ResizeTBB", image, Slot::FrameA);
    add(Stage::Geometry, Work::Enhance, name.enhancer(), Slot::FrameA, Slot::FrameA);
    image = Slot::FrameA;
  }

  // The Soup's clip, if it is due, and the range compressor: it writes both frames.
  void compress(Stage stage)
  {
    softClipInPlace(soupClip, ClipFields::Soup);
    add(stage, Work::Colour, name.ofGamut("RGBA_", "_compress"), image, other());
    compressed = true;
  }

  void expand()
  {
    across(Stage::Look, name.ofGamut("RGBA_", "_expand_sRGB"));
    compressed = false;
  }

  void bands(std::string wayIn, ClipFields fields = ClipFields::None)
  {
    add(Stage::Pitch, Work::Colour, std::move(wayIn), image, other(), fields);
    add(Stage::Pitch, Work::Bands, "pitch", image, other());
    image = other();
  }

  ClipFields takeCameraClip() { return std::exchange(cameraClip, false) ? ClipFields::Camera : ClipFields::None; }

  void pitchBands()
  {
    if (decoded)
    {
      bands("ColorSpace_Linear_LAB");
      across(Stage::Pitch, "LAB_Linear_Colorspace_in_out");
      return;
    }
    if (linear)
      pitchOfLinearClip();
    else
      pitchOfCodedClip();
  }

  void pitchOfLinearClip()
  {
    if (grain && !look && !compressed)
    {
      // The way out is a per-index kernel, so the way in has its rows.
      const ClipFields fields = takeCameraClip();
      bands(fields == ClipFields::None ? name.linearLab() : name.ofGamut("Lin_", "_soft_clip_LAB"), fields);
      if (p.grainLinear)
        split(name.channels("LAB_Linear_Colorspace_", "_Kernel"));
      else if (p.hdrCompress)
      {
        split(name.channels("LAB_XYZ_compress_"));
        compressed = true;
      }
      else
        across(Stage::Pitch, "LAB_Linear_Colorspace_in_out");
      return;
    }
    if (wantsCompression && !compressed)
    {
      ClipFields fields = ClipFields::None;
      if (soupClip)
      {
        softClipInPlace(cameraClip, ClipFields::Camera);
        softClipInPlace(soupClip, ClipFields::Soup);
      }
      else
        fields = takeCameraClip();
      bands(name.ofGamut("Lin_", fields == ClipFields::None ? "_compress_LAB" : "_soft_clip_compress_LAB"), fields);
      compressed = true;
    }
    else if (cameraClip)
    {
      bands(name.ofGamut("Lin_", "_soft_clip_LAB"), takeCameraClip());
      across(Stage::Pitch, "LAB_Linear_Colorspace_in_out");
      return;
    }
    else
      bands(name.ofGamut("", "_LAB"));
    const bool expandsHere = compressed && !look && (!grain || p.grainLinear);
    inPlace(Stage::Pitch, expandsHere ? name.ofGamut("LAB_Lin_", "_expand") : name.labToLinear());
    if (expandsHere)
      compressed = false;
  }

  void pitchOfCodedClip()
  {
    if (resized && p.inputGamut == 10)
      inPlace(Stage::Pitch, "Clip_min_max");
    const ClipFields fields = takeCameraClip();
    bands(fields == ClipFields::None ? "ColorSpace_LAB" : "ColorSpace_LAB_softclips", fields);
    if (!grain || look)
      inPlace(Stage::Pitch, "LAB_Colorspace");
    else if (p.grainLinear)
    {
      split(name.channels("LAB_XYZ_compress_"));
      compressed = true;
    }
    else if (fourChannels() && !name.fullTableInvertsLab())
      inPlace(Stage::Pitch, "LAB_Colorspace");
    else
      split(name.channels("LAB_Colorspace_"));
  }

  void encode()
  {
    inPlace(Stage::Pitch, "To_Log_Kernel");
    decoded = false;
  }

  // Into the channel planes.
  void split(std::string kernel, ClipFields fields = ClipFields::None)
  {
    planesSplit = kernel;
    add(Stage::Grain, Work::Colour, std::move(kernel), image, Slot::Planes, fields);
  }

  bool luminance() const { return p.grainMode == 2 || p.grainMode == 4; }

  void render()
  {
    if (luminance())
    {
      add(Stage::Grain, Work::Colour, "RGB_RGB_Kernel_Y", Slot::Planes, Slot::Planes);
      add(Stage::Grain, Work::Render, p.lumaSigma == 0.0f ? "render_pixelR" : "render_variance", Slot::Planes,
          Slot::Planes);
      return;
    }
    bool plain = false, varying = false;
    for (int c = 0; c < 3; ++c)
      if (p.grainChannelOn[c])
        (p.grainSigma[c] == 0.0f ? plain : varying) = true;
    add(Stage::Grain, Work::Render,
        plain && varying ? "render_pixelR, render_variance" : (plain ? "render_pixelR" : "render_variance"),
        Slot::Planes, Slot::Planes);
  }

  // Out of the planes: the last join of an RGB clip packs it.
  void join(const std::string& rgbaName, const std::string& rgbName, bool last)
  {
    const std::string kernel = (luminance() ? "Y_" : "") + (fourChannels() ? rgbaName : rgbName);
    const bool packs = last && !fourChannels();
    add(Stage::Grain, Work::Colour, kernel, Slot::Planes, packs ? Slot::Packed : Slot::FrameB, ClipFields::None,
        packs ? 3 : 4);
    image = packs ? Slot::Packed : Slot::FrameB;
  }

  void grainAlone()
  {
    if (linear)
      grainOnLinearClip();
    else
      grainOnCodedClip();
  }

  void grainOnLinearClip()
  {
    if (p.grainLinear)
    {
      if (planesSplit.empty())
      {
        if (compressed)
          expand();
        splitPlain();
      }
      render();
      join("RGBA_src_Kernel", "RGB_src_Kernel", true);
    }
    else if (p.hdrCompress)
    {
      if (planesSplit.empty())
      {
        if (compressed)
          splitPlain();
        else
        {
          const ClipFields fields = takeCameraClip();
          split(name.channels(name.ofGamut("Lin_", fields == ClipFields::None ? "_compress_" : "_soft_clip_compress_")),
                fields);
        }
      }
      render();
      join("RGBA_expand_src", "RGB_expand_src", true);
    }
    else
    {
      splitWorkingLog();
      render();
      joinWorkingLog(true);
    }
  }

  void grainOnCodedClip()
  {
    if (!p.grainLinear)
    {
      if (planesSplit.empty())
        splitPlain();
      render();
      join("RGBA_src_Kernel", "RGB_src_Kernel", true);
      return;
    }
    const bool fromPitch = !planesSplit.empty();
    if (!fromPitch)
    {
      const ClipFields fields = takeCameraClip();
      split(name.channels(fields == ClipFields::None ? "XYZ_compress_" : "Softclips_XYZ_compress_"), fields);
    }
    render();
    const bool shortRows = fromPitch && !luminance() && name.shortTableExpands();
    join("RGB_expand_RGBA", shortRows ? "XYZ_expand_RGB" : "RGB_expand_RGB", true);
  }

  void splitPlain()
  {
    const ClipFields fields = takeCameraClip();
    if (fields == ClipFields::None)
      split(fourChannels() ? "src_RGBA_Kernel" : "src_RGBA_Kernel_RGB");
    else
      split(name.channels("highlights_shadows_Kernel_"), fields);
  }

  void splitWorkingLog()
  {
    const ClipFields fields = takeCameraClip();
    split(fields == ClipFields::None ? (fourChannels() ? "Linear_to_RGBA_log" : "Linear_to_RGB_log")
                                     : name.channels("Linear_soft_clip_to_Log_"),
          fields);
  }

  void joinWorkingLog(bool last) { join("Log_RGBA_to_Linear_src_Kernel", "Log_RGB_to_Linear_src_Kernel", last); }

  // What every look starts with: the clips and the compressor, if they are still due.
  void enterLook()
  {
    softClipInPlace(cameraClip, ClipFields::Camera);
    if (wantsCompression && !compressed)
      compress(Stage::Look);
    softClipInPlace(soupClip, ClipFields::Soup);
  }

  void negative(std::string soupKernel)
  {
    if (p.soupBypassed)
    {
      add(Stage::Look, Work::Lab, "film_lab_init_pfe", image, image);
      return;
    }
    add(Stage::Look, Work::Lab, "film_lab", image, Slot::None);
    add(Stage::Look, Work::Soup, std::move(soupKernel), Slot::None, image);
  }

  // filmStage, with grain between negative and print, or after a negative that is not printed.
  void lookThenGrain()
  {
    enterLook();
    negative(std::string(soupKernel(p)));
    const bool printed = !p.printBypassed;
    if (grain && printed)
    {
      splitWorkingLog();
      render();
      joinWorkingLog(false);
    }
    if (printed)
      add(Stage::Look, Work::Print, std::string(printKernel(p)), image, image);
    else if (compressed)
      expand();
    if (!grain || printed)
      return;
    if (linear)
    {
      splitWorkingLog();
      render();
      joinWorkingLog(true);
    }
    else
    {
      splitPlain();
      render();
      join("RGBA_src_Kernel", "RGB_src_Kernel", true);
    }
  }

  // The look cut in two, with grain on range compressed linear light between the halves.
  void lookAroundLinearGrain()
  {
    enterLook();
    const bool printed = !p.printBypassed;
    if (printed)
    {
      negative(std::string(grainNegativeKernel(p)));
      add(Stage::Grain, Work::Print, std::string(grainPrintKernel(p)), image, Slot::Planes);
    }
    else
    {
      add(Stage::Look, Work::Lab, "film_lab", image, Slot::None);
      add(Stage::Grain, Work::Soup, std::string(grainRangeKernel(p)), Slot::None, Slot::Planes);
    }
    render();
    const std::string kernel = expandKernel(p) + name.expandSuffix(luminance());
    const bool expandsAfter = compressed && !printed;
    const bool packs = !fourChannels() && !expandsAfter;
    add(Stage::Grain, Work::Expand, kernel, Slot::Planes, packs ? Slot::Packed : Slot::FrameB, ClipFields::None,
        packs ? 3 : 4);
    image = packs ? Slot::Packed : Slot::FrameB;
    if (expandsAfter)
      expand();
  }

  void download()
  {
    const bool packed = image == Slot::Packed;
    if (p.targetWidth != p.frameWidth || p.targetHeight != p.frameHeight)
    {
      add(Stage::Download, Work::Clear, "", Slot::None, Slot::Output, ClipFields::None, packed ? 3 : 4);
      add(Stage::Download, Work::Pad, packed ? "Pad2DArrayRGB" : "Pad2DArrayRGBA", image, Slot::Output,
          ClipFields::None, packed ? 3 : 4);
      image = Slot::Output;
    }
    if (!fourChannels() && !packed)
    {
      // The frame that is not in use takes the packed pixels.
      const Slot to = image == Slot::FrameB ? Slot::FrameA : Slot::FrameB;
      add(Stage::Download, Work::Colour, "RGBA_RGB_Kernel", image, to, ClipFields::None, 3);
      image = to;
    }
    add(Stage::Download, Work::Download, "", image, Slot::Host, ClipFields::None, p.channelCount);
  }
};

}  // namespace

std::vector<Step> planFrame(FrameRoute route, const FrameParams& params)
{
  return Planner(route, params).plan();
}

}  // namespace morvellan
