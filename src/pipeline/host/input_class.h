// The classes of input encodings by which exposure, print and the pipelines tell clips apart.
// Indices are those of the InputGamut choice.
#pragma once

namespace morvellan
{

inline constexpr int inputGamutCount = 49;

// Scene-linear encodings: Rec.709, ACES AP0, ACEScg, Rec.2020.
constexpr bool isLinearInput(int inputGamut)
{
  return inputGamut == 0 || inputGamut == 4 || inputGamut == 5 || inputGamut == 30;
}

// Gamma encodings. Such a clip is display-referred already, so it is never printed.
constexpr bool isGammaInput(int inputGamut)
{
  return inputGamut == 1 || inputGamut == 27 || inputGamut == 29 || (inputGamut >= 31 && inputGamut <= 34) ||
         inputGamut == 46;
}

}  // namespace morvellan
