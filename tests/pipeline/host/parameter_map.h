// Parameter values held in a map, at the panel's defaults until a test sets them.
// A name that no control has is an exception, so a misspelt name in the capture fails every test.
#pragma once

#include "pipeline/host/parameter_values.h"

#include <map>
#include <set>
#include <stdexcept>
#include <string>

namespace morvellan::test
{

class ParameterMap : public ParameterValues
{
public:
  ParameterMap()
  {
    addInput();
    addResize();
    addSoup();
    addAttributes("");
    addRefinements();
    addGrain();
    addPrint();
  }

  double number(std::string_view name) const override
  {
    const auto found = values.find(name);
    if (found == values.end())
      throw std::out_of_range("no such parameter: " + std::string(name));
    read.insert(std::string(name));
    return found->second;
  }

  // Set an existing parameter.
  void set(std::string_view name, double value)
  {
    const auto found = values.find(name);
    if (found == values.end())
      throw std::out_of_range("no such parameter: " + std::string(name));
    found->second = value;
  }

  void setChannels(const std::string& stem, double value)
  {
    for (const char* colour : {"Red", "Green", "Blue"})
      set(stem + colour, value);
  }

  // The size of the clip, as the panel keeps it when no resize is asked for.
  void setSizes(int width, int height)
  {
    set("SourceWidth", width);
    set("TargetWidth", width);
    set("SourceHeight", height);
    set("TargetHeight", height);
  }

  bool wasRead(const std::string& name) const { return read.count(name) > 0; }
  void forgetReads() { read.clear(); }

private:
  void add(const std::string& name, double value) { values.emplace(name, value); }

  void addChannels(const std::string& stem, double value)
  {
    for (const char* colour : {"Red", "Green", "Blue"})
      add(stem + colour, value);
  }

  void addInput()
  {
    for (const char* off : {"InputGamut", "ProcessLinear", "HDRcomp", "Exposure", "SoftClips",
                            "CameraHighlightsRecover", "CameraShadowsCeiling", "CameraShadowsRecover"})
      add(off, 0.0);
    add("CameraHighlightsCeiling", 1.0);
    add("HalationBypass", 1.0);
    add("HalationBreadth", 0.25);
    add("HalationSaturation", 1.0);
    add("HalationCyanRed", 1.0);
    add("HalationMagentaGreen", 0.15);
    add("HalationYellowBlue", 0.07);
    for (const char* blend : {"HalationBlendR", "HalationBlendG", "HalationBlendB"})
      add(blend, 0.3);
  }

  void addResize()
  {
    for (const char* choice : {"InResolution", "OutResolution", "SpatialEnhancement", "SpatialEnhancer"})
      add(choice, 0.0);
    for (const char* side : {"Source", "Target"})
    {
      add(side + std::string("Width"), 1920.0);
      add(side + std::string("Height"), 1080.0);
      add(side + std::string("WidthOffset"), 0.5);
      add(side + std::string("HeightOffset"), 0.5);
    }
    for (const char* amount : {"HorizontalEnhancer", "VerticalEnhancer", "CombinedEnhancer", "HorizontalDetails",
                               "VerticalDetails", "CombinedDetails"})
      add(amount, 3.0);
    add("PitchBypass", 1.0);
    for (const char* pitch : {"SopranoPitch", "MezzoSopranoPitch", "AltoPitch", "TenorPitch", "BaritonePitch",
                              "BassPitch", "EnsemblePitch"})
      add(pitch, 3.0);
  }

  void addSoup()
  {
    add("SoupBypass", 1.0);
    add("SoupHighlightCeiling", 1.0);
    for (const char* zero :
         {"SoupHighlightCompress", "SoupShadowFloor", "SoupShadowExpand", "CameraStock", "CameraTintGtoM",
          "CameraTintRtoC", "ColorCorrection", "ColorRefine", "LableachBypass", "SoupFilmicPivot"})
      add(zero, 0.0);
    add("CameraCast", 6504.0);
    addChannels("SoupDmin", 0.584);
    addChannels("SoupDmax", 0.584);
    addChannels("LabSilver", 0.5);
    add("LabDevelop", 0.9);
    add("LabPullPush", 0.5);
    add("LabAgitate", 3.0);
    add("LabReplenish", 1.0);
    add("LabSpectrumBand", 0.5);
    add("LabDiffuseLoMid", 1.0);
    add("LabDiffuseMidHi", 1.0);
    add("ToneCurves", 5.0);
    add("LabBleachPivot", 0.3);
    addChannels("LabBleach", 0.0);
    add("SoupToePivot", 0.669);
    addChannels("SoupToe", 0.02);
    addChannels("SoupKnee", -0.093);
    add("SoupShoulderPivot", 0.334);
    addChannels("SoupShoulder", 0.145);
    add("SoupFilmicSlope", 0.014);
  }

  void addZone(const std::string& stem)
  {
    add(stem, 0.0);
    for (const char* member : {"LowRange", "Low", "HighRange", "High"})
      add(stem + member, 0.5);
  }

  void addBand(const std::string& stem)
  {
    add(stem + "Hue", 180.0);
    add(stem + "Width", 60.0);
    add(stem + "Strength", 0.5);
  }

  void addAttributes(const std::string& prefix)
  {
    const std::map<std::string, std::string> families = {
        {"Saturation", "Sat"}, {"Hue", "Hue"}, {"Chroma", "Chr"}, {"Vibrance", "Vib"}};
    for (const auto& [word, shortWord] : families)
    {
      for (const char* axis : {"Red", "Magenta", "Blue", "Cyan", "Green", "Yellow"})
        add(prefix + word + axis, 0.5);
      add(prefix + word + "Strength", 0.5);
      addBand(prefix + word + "Custom");
      addZone(prefix + shortWord + "Zone");
    }
  }

  void addRefinement(const std::string& stem)
  {
    for (const char* axis : {"Sat", "Hue", "Chr", "Vib"})
      addBand(stem + axis);
    addZone(stem + "Zone");
  }

  void addRefinements()
  {
    for (const char* word :
         {"Two", "Three", "Four", "Five", "Six", "Seven", "Eight", "Nine", "Ten", "Eleven", "Twelve"})
      addRefinement(std::string("Refine") + word);
    for (const char* word : {"Two", "Three", "Four", "Five", "Six", "Seven"})
    {
      addRefinement(std::string("PrintRefine") + word);
      add(std::string("PrintRefine") + word, 1.0);
    }
  }

  void addGrain()
  {
    add("GrainBypass", 1.0);
    add("GrainLinear", 0.0);
    add("DispersionPattern", 0.0);
    add("UniformPattern", 5.0);
    for (const auto& [stem, value] : std::map<std::string, double>{
             {"Granularity", 5.0}, {"Size", 0.01}, {"Soft", 2.0}, {"Variance", 0.0}, {"Strength", 10.0}})
    {
      addChannels(stem, value);
      add(stem + "RGB", value);
    }
  }

  void addPrint()
  {
    addAttributes("Print");
    add("PrintDisplayBypass", 1.0);
    for (const char* zero : {"PrintProfile", "PrintTintGtoM", "PrintTintRtoC", "Bleach", "PrintFilmicPivot",
                             "PrintFilmicSlope", "OutputDisplayGamut", "PrintSat", "PrintHue", "PrintChr", "PrintVib"})
      add(zero, 0.0);
    add("PrintCast", 6504.0);
    add("PrintSaturation", 1.0);
    add("PrintBleachPivot", 0.3);
    addChannels("PrintBleach", 0.0);
    add("PrintPeakBrightness", 0.203);
    addChannels("PrintBlack", 0.141);
    addChannels("PrinterLight", 0.909);
    add("PrintGammaPivot", 0.18);
    addChannels("PrintGamma", 0.4);
    add("PrintCurveShadowPivot", 0.669);
    addChannels("PrintCurveShadow", 0.02);
    addChannels("PrintCurveMidtone", -0.093);
    add("PrintCurveHighlightPivot", 0.334);
    addChannels("PrintCurveHighlight", 0.145);
  }

  std::map<std::string, double, std::less<>> values;
  mutable std::set<std::string> read;
};

}  // namespace morvellan::test
