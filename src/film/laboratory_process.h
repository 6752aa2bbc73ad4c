// The laboratory's numbers of one run: what its settings come to, and the tank of developer that all pixels share.
#pragma once

#include <array>

#include "device/target.h"

namespace morvellan::MORVELLAN_TARGET
{

inline constexpr int labCycles = 13;
inline constexpr float labFullScale = 880.037292f;  // exposure, and developer in the log of its diffusion, at light 1
inline constexpr float labFirstDensity = 9.99999975e-06f;
inline constexpr float labDeveloperUse = 13333333.0f;
inline constexpr float labSilverUse = 4000000.0f;

// Settings in the units of the frame's block of values. `lowWidth` and `detailGain` are what their switch last wrote,
// 0 before it ever did: with only the low diffusion on, the detail term still has whatever gain was left.
struct LabSettings
{
  float silver[3];        // red, green, blue; 1 is the whole store
  float developmentTime;  // 100 by default
  float concentration;    // of the developer at the start
  int agitation;          // 1 to 5 times in the run
  float replenish;        // base of the exchange with the tank, 0.2 to 3.2
  float spectrumBand;     // width of the first diffusion
  bool lowDiffusion, highDiffusion;
  float lowWidth;  // width of the second diffusion
  float detailGain;
  float areaScale;  // width * height / 2400 of the target
  int inputGamut;   // colourspace index of the frame's code values
};

struct LabProcess
{
  float area;         // Q: frame pixels over the area scale, near 2400
  float tank;         // c1: the tank's content
  float mixing;       // K1
  float uptake;       // K2: change of the tank by a change of the sum of all pixels' developer
  float rate;         // development in a cycle, by developer and silver
  float retained;     // m: share of its developer that a pixel keeps in an exchange; above 1 with little replenishment
  float replenished;  // 1 - m
  int period, offset;
  float firstSigma, secondSigma;  // of the diffusion, in pixels

  // Whether the tank is stirred after this cycle, 0 to 12.
  bool agitates(int cycle) const { return (cycle + offset) % period == 0; }
};

LabProcess labProcess(const LabSettings& settings, int width, int height);

// What the exchange after a cycle does to the tank. `before` and `after` are the sums of the developer plane before and
// after its exchange.
double reservoirAfter(const LabProcess& process, int cycle, double reservoir, double before, double after);

}  // namespace morvellan::MORVELLAN_TARGET
