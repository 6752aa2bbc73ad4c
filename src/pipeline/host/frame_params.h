// The block of values through which one frame's settings reach the pipelines: plain numbers in kernel units, no
// parameter objects. It is included by code of every target, nvcc's too, so it has no includes and no member functions.
//
// Order of colours is red, green, blue in every array of 3; order of hue axes is red, magenta, blue, cyan, green,
// yellow. Flags are bool (one byte). A field of a block that the switches turn off keeps the value of an earlier frame.
#pragma once

namespace morvellan
{

// Intensity zones of an attribute or a refinement.
struct ZoneParams
{
  int mode;         // 0 no zone, 1 low side, 2 high side
  bool both;        // with mode 1: the high side acts too
  float low;        // position, 2 times the parameter
  float lowRange;   // exponent
  float high;       // position, 2 times the parameter
  float highRange;  // exponent
};

// One custom hue band.
struct BandParams
{
  bool live;
  float hue;    // centre in hue units of 60 degrees
  float width;  // half-width in hue units
  float strength;
};

// One attribute: the six hue vectors, the custom band and the zones.
struct AttributeParams
{
  bool vectorLive;
  float axis[6];
  float vectorStrength;
  BandParams custom;
  ZoneParams zone;
};

// The four attributes in the order in which they act.
struct AttributesParams
{
  AttributeParams saturation;
  AttributeParams hue;
  AttributeParams chroma;
  AttributeParams vibrance;
};

// One refinement: a band for each attribute and one pair of zones.
struct RefinementParams
{
  bool live;
  BandParams saturation;
  BandParams hue;
  BandParams chroma;
  BandParams vibrance;
  ZoneParams zone;
};

// The print's tone curve, in code values.
struct PrintCurveParams
{
  bool live;  // any of the nine amounts is not 0
  float shadowPivot;
  float shadow[3];
  float midtone[3];
  float highlightPivot;
  float highlight[3];
};

// Fields stand in the order of the stages that take them, which costs 40 bytes of padding.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding)
struct FrameParams
{
  // Input and geometry.
  int inputGamut;
  float exposureValue;
  int exposureKind;  // 1 multiplies, 2 adds to log code values
  bool hdrCompress;
  int cameraSoftClipActive;
  float cameraHighlightCeiling;
  float cameraHighlightRecover;
  float cameraShadowCeiling;
  float cameraShadowRecover;
  bool processLinear;
  int frameWidth;
  int frameHeight;
  int inResolutionChoice;
  int sourceHeight;
  int sourceWidth;
  float sourceOffsetX;
  float sourceOffsetY;
  int outResolutionChoice;
  int targetHeight;
  int targetWidth;
  float targetOffsetX;
  float targetOffsetY;
  int enhancerMode;  // 0 bypass, 1 textures and details, 2 details only
  int enhancerModeCopy;
  float enhancerHorizontal;
  float enhancerVertical;

  // Pitch: gains, 1.0 is neutral.
  bool pitchBypassed;
  float sopranoPitchGain;
  float mezzoSopranoPitchGain;
  float altoPitchGain;
  float tenorPitchGain;
  float baritonePitchGain;
  float bassPitchGain;
  float ensemblePitchGain;

  // Grain, common.
  bool grainBypassed;
  bool grainLinear;
  int grainChannelCount;
  int grainMode;  // 0 random colour, 1 random mono or colour, 2 random luminance, 3 uniform mono or colour, 4 uniform
                  // luminance
  int grainSeedRed;  // seeds are 32 unsigned bits kept in an int
  int grainSeedGreen;
  int grainSeedBlue;

  // Grain per channel. Radii, cells and spreads are in pixels.
  float grainSoft[3];
  int grainCount[3];
  float grainStrengthPerCount[3];
  float grainInvCell[3];
  float grainSigma[3];
  float grainBlendKeep[3];
  int grainChannelOn[3];
  float grainRadiusSquared[3];
  float grainRadius[3];
  float grainCell[3];
  float grainLogSigma[3];
  float grainLogMu[3];
  float grainRadiusMax[3];

  float targetScaleX;
  float targetScaleY;
  int grainLevels;  // last index of the grain tables
  int channelCount;
  int gpuRed;
  int gpuBlue;
  int gpuGreen;
  int gpuCount;
  int gpuSelection;
  int gpuReady;
  int resizeMode;  // 0 same size, 1 enlarge, 2 reduce

  // Grain of the luminance modes: one set in place of the three channels.
  float lumaSoft;
  int lumaCount;
  float lumaCell;
  float lumaBlendKeep;
  float lumaSigma;
  float lumaStrengthPerCount;
  float lumaInvCell;
  float lumaRadiusSquared;
  float lumaRadius;
  float lumaLogMu;
  float lumaLogSigma;
  float lumaRadiusMax;

  // 256 by 256 products of 8-bit fractions, and the grain tables of grainLevels + 1 entries each. Channels whose grain
  // agrees share one pair of tables: then their addresses are equal. The luminance modes use red's.
  const unsigned char* m_table;
  const float* redLambda;
  const float* redExp;
  const float* greenLambda;
  const float* greenExp;
  const float* blueLambda;
  const float* blueExp;

  // Soup.
  bool soupBypassed;
  bool soupSoftClipActive;
  float soupHighlightCeiling;
  float soupHighlightCompress;
  float soupShadowFloor;
  float soupShadowExpand;
  int cameraStock;
  int cameraCast;  // row of the cast table; 6504 when the cast is off
  bool cameraCastActive;
  float cameraTintGtoM;
  float cameraTintRtoC;
  float soupDmin[3];
  float soupDmax[3];
  bool labBleach;
  float labSilver[3];
  float labPullPush;
  float labDevelop;
  int labAgitate;
  float labReplenish;
  float labSpectrumBand;
  bool labDiffuseLoMidOn;
  bool labDiffuseMidHiOn;
  float labDiffuseLoMid;
  float labDiffuseMidHi;

  // Colour attributes, and the refinements Two to Twelve.
  AttributesParams soupAttributes;
  bool refineActive;
  RefinementParams soupRefinements[11];

  // Bleach and tone.
  float labMidGrey;
  float printMidGrey;
  int toneCurves;
  float labBleachPivot;
  float labBleachGamma[3];
  float soupToePivot;
  float soupToe[3];
  float soupKnee[3];
  float soupShoulderPivot;
  float soupShoulder[3];
  float soupFilmicScale;
  float soupFilmicSlope;
  float labBleachScale[3];
  bool toneCurvesOn;
  float labAreaScale;

  // Halation.
  bool halationBypassed;
  float halationBreadth;
  float halationSaturation;
  float halationCyanRed;
  float halationMagentaGreen;
  float halationYellowBlue;
  float halationKeepRed;
  float halationKeepGreen;
  float halationKeepBlue;

  // Print and display.
  bool printBypassed;
  int printProfile;
  bool printCastActive;
  int printCast;  // row of the cast table; 6504 when the cast is off
  float printTintGtoM;
  float printTintRtoC;
  float printSaturation;
  AttributesParams printAttributes;
  bool printRefineActive;
  RefinementParams printRefinements[6];
  float printGammaPivot;
  float printGamma[3];
  bool printGammaLive[3];
  float printGammaScale[3];
  float printBleachPivot;
  float printBleachGamma[3];
  float printBleachScale[3];
  bool printBleachOn;
  PrintCurveParams printCurve;
  float printBlack[3];
  float printerLight[3];
  float printFilmicScale;
  float printFilmicSlope;
  int outputDisplayGamut;
  float peakBrightness;  // nits
};

}  // namespace morvellan
