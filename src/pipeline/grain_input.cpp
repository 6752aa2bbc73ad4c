// Copies to the rendering device and back, with and without peer access.
#include "pipeline/grain_input.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

const float* lambdaOf(const FrameParams& p, GrainChannel channel)
{
  const float* const tables[] = {p.redLambda, p.greenLambda, p.blueLambda};
  return tables[static_cast<size_t>(channel)];
}

const float* expOf(const FrameParams& p, GrainChannel channel)
{
  const float* const tables[] = {p.redExp, p.greenExp, p.blueExp};
  return tables[static_cast<size_t>(channel)];
}

size_t areaOf(int width, int height)
{
  return static_cast<size_t>(width) * static_cast<size_t>(height);
}

}  // namespace

GrainTable::GrainTable(const float* hostTable, int entries) : host(hostTable), count(entries)
{
  if constexpr (!deviceIsHost)
  {
    memory = Buffer<float>(static_cast<size_t>(count));
    copy(memory.data(), host, memory.size() * sizeof(float), CopyKind::Default);
  }
}

GrainInput::GrainInput(const GrainShare& dealt, const GrainSettings& values, const FrameParams& params,
                       float* homePlane, int w, int h, int home)
    : share(dealt), settings(values), plane(homePlane), width(w), height(h),
      lambda(lambdaOf(params, dealt.channel), params.grainLevels + 1),
      exp(expOf(params, dealt.channel), params.grainLevels + 1), image(areaOf(w, h)),
      offsets(static_cast<size_t>(values.count))
{
  const size_t bytes = areaOf(width, height) * sizeof(float);
  const float* source = plane;
  if (share.device != home && canAccessPeer(share.device, home))
  {
    enablePeerAccess(share.device, home);
  }
  else if (share.device != home)
  {
    privatePlane = Buffer<float>(areaOf(width, height));
    copy(privatePlane.data(), plane, bytes, CopyKind::Default);
    source = privatePlane.data();
  }
  copy(image.data(), source, bytes, CopyKind::Default);
  const std::vector<FilterOffset> list = filterOffsets(settings);
  copy(offsets.data(), list.data(), list.size() * sizeof(FilterOffset), CopyKind::Default);
}

GrainLaunch GrainInput::launch() const
{
  return {.image = {.values = image.data(), .width = width, .height = height},
          .lambda = lambda.texture(),
          .exp = exp.texture(),
          .offsets = offsets.data(),
          .destination = privatePlane ? privatePlane.data() : plane,
          .width = width,
          .height = height,
          .firstRow = share.firstRow,
          .rows = share.rows,
          .settings = settings};
}

void GrainInput::collect()
{
  if (!privatePlane)
    return;
  const size_t first = areaOf(width, share.firstRow);
  copy(plane + first, privatePlane.data() + first, areaOf(width, share.rows) * sizeof(float), CopyKind::Default);
  privatePlane.reset();
}

GrainSettings grainSettings(const FrameParams& p, GrainChannel channel)
{
  const auto c = static_cast<size_t>(channel);
  const int seeds[] = {p.grainSeedRed, p.grainSeedGreen, p.grainSeedBlue};
  return {.seed = static_cast<uint32_t>(seeds[c]),
          .count = p.grainCount[c],
          .soft = p.grainSoft[c],
          .radius = p.grainRadius[c],
          .radiusSquared = p.grainRadiusSquared[c],
          .cell = p.grainCell[c],
          .invCell = p.grainInvCell[c],
          .sigma = p.grainSigma[c],
          .logSigma = p.grainLogSigma[c],
          .logMu = p.grainLogMu[c],
          .radiusMax = p.grainRadiusMax[c],
          .targetScaleX = p.targetScaleX,
          .targetScaleY = p.targetScaleY,
          .levels = p.grainLevels,
          .blendKeep = p.grainBlendKeep[c],
          .strengthPerCount = p.grainStrengthPerCount[c]};
}

GrainSettings luminanceGrainSettings(const FrameParams& p)
{
  return {.seed = static_cast<uint32_t>(p.grainSeedRed),
          .count = p.lumaCount,
          .soft = p.lumaSoft,
          .radius = p.lumaRadius,
          .radiusSquared = p.lumaRadiusSquared,
          .cell = p.lumaCell,
          .invCell = p.lumaInvCell,
          .sigma = p.lumaSigma,
          .logSigma = p.lumaLogSigma,
          .logMu = p.lumaLogMu,
          .radiusMax = p.lumaRadiusMax,
          .targetScaleX = p.targetScaleX,
          .targetScaleY = p.targetScaleY,
          .levels = p.grainLevels,
          .blendKeep = p.lumaBlendKeep,
          .strengthPerCount = p.lumaStrengthPerCount};
}

}  // namespace morvellan::MORVELLAN_TARGET
