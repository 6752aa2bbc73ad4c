// The kernels of the film laboratory, one for each step of a development cycle. Exposure, density and silver are planes
// of 3 floats a pixel, developer and the diffusion's pictures of it of 1.
#pragma once

#include "film/halation.h"
#include "film/laboratory_process.h"

namespace morvellan::MORVELLAN_TARGET
{

// Latent image of film light: light times silver in [0, 469.799988], NaN as 0, at the laboratory's full scale.
MORVELLAN_INLINE Rgb latentImage(Rgb silver, Rgb light)
{
  const Real zero = Real(0.0f);
  const Real most = Real(logC4Largest);
  const Real scale = Real(labFullScale);
  return {clamp(light.r * silver.r, zero, most) * scale, clamp(light.g * silver.g, zero, most) * scale,
          clamp(light.b * silver.b, zero, most) * scale};
}

// Of a source pixel.
MORVELLAN_INLINE Rgb latentImage(const FilmEntry& entry, Rgb silver, Rgb p)
{
  return latentImage(silver, filmEntry(entry, p));
}

// Fills the planes of a run. With 4 channels alpha goes to its plane; with 3 it is the member _RGB, without one.
struct film_lab_init
{
  const float* source;
  float* exposure;
  float* alpha;
  float* density;
  float* silver;
  float* developer;
  float concentration, silverR, silverG, silverB;
  int width, height, channels;
  FilmEntry entry;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Rgb store = {Real(silverR), Real(silverG), Real(silverB)};
    const Real first = Real(labFirstDensity);
    storeRgb(exposure, at, latentImage(entry, store, loadColour(source, at, channels)));
    if (channels == 4)
      storePlane(alpha, at, loadRgba(source, at).a);
    storeRgb(density, at, {first, first, first});
    storeRgb(silver, at, store);
    storePlane(developer, at, Real(concentration));
  }
};

// In place of a run where the film is bypassed: code values to film light, in place.
struct film_lab_init_pfe
{
  float* buffer;
  int width, height, channels;
  FilmEntry entry;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storeColour(buffer, at, channels, filmLight(entry, loadColour(buffer, at, channels)));
  }
};

// One cycle of a channel: silver and developer make density, and what develops in the light uses up both. Returns the
// consumption, which decides nothing of this cycle.
MORVELLAN_INLINE Real developChannel(Real exposure, Real& density, Real& silver, Real developer, float rate,
                                     float silverUse)
{
  const Real developed = (developer * silver) * Real(rate);
  const Real used = clamp(exposure * (density * (developed * density)), Real(0.0f), Real(labFullScale));
  density = developed + density;
  silver = silver - used * Real(silverUse);
  return used;
}

struct develop_cuda
{
  float* density;
  const float* exposure;
  float* silver;
  float* developer;
  float rate, developerUse, silverUse;
  int width, height;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Rgb e = loadRgb(exposure, at);
    Rgb d = loadRgbInside(density, at);
    Rgb s = loadRgbInside(silver, at);
    const Real c = loadPlaneInside(developer, at);
    const Real r = developChannel(e.r, d.r, s.r, c, rate, silverUse);
    const Real g = developChannel(e.g, d.g, s.g, c, rate, silverUse);
    const Real b = developChannel(e.b, d.b, s.b, c, rate, silverUse);
    storeRgb(density, at, d);
    storeRgb(silver, at, s);
    storePlane(developer, at, max(c - ((r + g) + b) * Real(developerUse), Real(0.0f)));
  }
};

// The developer as a picture in the log of the film, into both planes.
struct film_lab_diffuse_reset_pfe
{
  const float* developer;
  float* detail;
  float* base;
  int width, height;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Real v = loadPlaneInside(developer, at) * Real(0.00113631552f);
    const Real log = logC4EncodeCurve(minNumber(v, Real(logC4Largest)));
    storePlane(detail, at, log);
    storePlane(base, at, log);
  }
};

// detail = (detail - base) * gain in [0, 1], NaN as 0.
struct pitch_sharp_film_lab
{
  float* detail;
  const float* base;
  int width, height;
  float gain;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storePlane(detail, at, clamp01((loadPlaneInside(detail, at) - loadPlaneInside(base, at)) * Real(gain)));
  }
};

// Back from the log; above code value 1, and for NaN, the top value.
struct pitch_accumulate_film_lab_pfe
{
  const float* detail;
  const float* base;
  float* developer;
  int width, height;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Real u = loadPlaneInside(detail, at) + loadPlaneInside(base, at);
    const Real linear =
        (fast_exp2((u - Real(0.092864126f)) * Real(14.0f) * Real(1.10237074f) + Real(6.0f)) - Real(64.0f)) *
        Real(labFullScale) * Real(0.00044806354f);
    storePlane(developer, at, select(u <= Real(1.0f), linear, Real(labFullScale)));
  }
};

// The exchange with the tank: developer = developer * scale + add.
struct developer_to_layer
{
  float* developer;
  float scale, add;
  int count;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storePlane(developer, at, fma(loadPlaneInside(developer, at), Real(scale), Real(add)));
  }
};

struct reservoir_developer_concentration_init_two
{
  float* developer;
  int width, height;
  float value;

  MORVELLAN_KERNEL void operator()(Pixels at) const { storePlane(developer, at, Real(value)); }
};

}  // namespace morvellan::MORVELLAN_TARGET
