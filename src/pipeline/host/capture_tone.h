// Derivations that the negative and the print share: cast, toe, knee and shoulder, gamma about a pivot, filmic gain.
#pragma once

#include "pipeline/host/parameter_names.h"
#include "pipeline/host/parameter_values.h"

namespace morvellan
{

// A cast's row in the cast table; neutral holds its own temperature.
struct Cast
{
  int row;
  bool active;
};

// kelvin: 6504 is neutral.
Cast castOf(int kelvin);

// Parameter names of a tone curve: two pivots and three amounts per channel.
struct ToneNames
{
  FamilyName shadowPivot;
  ChannelNames shadow;
  ChannelNames midtone;
  FamilyName highlightPivot;
  ChannelNames highlight;
};

constexpr ToneNames toneNames(std::string_view prefix, std::string_view shadow, std::string_view midtone,
                              std::string_view highlight)
{
  return {FamilyName(prefix, shadow, "Pivot"), channelNames(FamilyName(prefix, shadow)),
          channelNames(FamilyName(prefix, midtone)), FamilyName(prefix, highlight, "Pivot"),
          channelNames(FamilyName(prefix, highlight))};
}

// Where a tone curve's values go. Pivots are in LogC4 code values.
struct ToneFields
{
  float& shadowPivot;
  float (&shadow)[3];
  float (&midtone)[3];
  float& highlightPivot;
  float (&highlight)[3];
};

void captureTone(const ParameterValues& values, const ToneNames& names, ToneFields fields);

// Where a power about a pivot goes: scale brings the pivot back to itself.
struct GammaFields
{
  float& pivot;
  float (&gamma)[3];
  float (&scale)[3];
};

void captureGamma(const ParameterValues& values, std::string_view pivotName, const ChannelNames& gammaNames,
                  GammaFields fields);

// Gain of the filmic density curve from the parameter that the panel calls contrast.
float filmicScale(double pivot);

}  // namespace morvellan
