// What a plug-in described, held against itself: clips, parents, pages, defaults, ranges.
#include <algorithm>
#include <set>

#include <fmt/format.h>

#include "host/effect.h"
#include "host/host.h"
#include "host/property_tables.h"

namespace morvellan::host
{
namespace
{

void report(const std::string& what)
{
  Host::current().observer().misuse(fmt::format("[{}] {}", kOfxImageEffectActionDescribeInContext, what));
}

bool isOneOf(const std::string& value, std::initializer_list<std::string_view> allowed)
{
  return std::find(allowed.begin(), allowed.end(), value) != allowed.end();
}

void verifyEffect(const PropertySet& effect, const std::string& context)
{
  if (effect.getString(kOfxPropLabel).empty())
  {
    report("the effect has no label");
  }
  const auto contexts = effect.getStrings(kOfxImageEffectPropSupportedContexts);
  if (std::find(contexts.begin(), contexts.end(), context) == contexts.end())
  {
    report(fmt::format("the effect does not support the context {}", context));
  }
  const auto depths = effect.getStrings(kOfxImageEffectPropSupportedPixelDepths);
  if (depths.empty())
  {
    report("the effect supports no pixel depth");
  }
  for (const std::string& depth : depths)
  {
    if (!isOneOf(depth, {kOfxBitDepthByte, kOfxBitDepthShort, kOfxBitDepthHalf, kOfxBitDepthFloat}))
    {
      report(fmt::format("the pixel depth {} does not exist", depth));
    }
  }
  if (!isOneOf(effect.getString(kOfxImageEffectPluginRenderThreadSafety),
               {kOfxImageEffectRenderUnsafe, kOfxImageEffectRenderInstanceSafe, kOfxImageEffectRenderFullySafe}))
  {
    report("the render thread safety is no published one");
  }
}

void verifyClips(const Effect& effect)
{
  for (const char* const needed : {kOfxImageEffectOutputClipName, kOfxImageEffectSimpleSourceClipName})
  {
    if (effect.findClip(needed) == nullptr)
    {
      report(fmt::format("the clip {} is not defined", needed));
    }
  }
  for (const auto& clip : effect.clips())
  {
    const auto components = clip->properties().getStrings(kOfxImageEffectPropSupportedComponents);
    if (components.empty())
    {
      report(fmt::format("clip {} supports no components", clip->name()));
    }
    for (const std::string& component : components)
    {
      if (!isOneOf(component, {kOfxImageComponentRGBA, kOfxImageComponentRGB, kOfxImageComponentAlpha}))
      {
        report(fmt::format("clip {}: the components {} do not exist", clip->name(), component));
      }
    }
  }
}

void verifyPlace(const Effect& effect, const Param& param)
{
  const std::string parent = param.properties().getString(kOfxParamPropParent);
  std::set<std::string> seen{param.name()};
  for (std::string name = parent; !name.empty();)
  {
    const Param* const group = effect.params().find(name);
    if (group == nullptr || group->kind() != ParamKind::Group)
    {
      report(fmt::format("parameter {}: the parent {} is no group", param.name(), name));
      return;
    }
    if (!seen.insert(name).second)
    {
      report(fmt::format("parameter {}: its parents form a circle", param.name()));
      return;
    }
    name = group->properties().getString(kOfxParamPropParent);
  }
  if (param.kind() != ParamKind::Page)
  {
    return;
  }
  std::set<std::string> children;
  for (const std::string& child : param.properties().getStrings(kOfxParamPropPageChild))
  {
    if (isOneOf(child, {kOfxParamPageSkipRow, kOfxParamPageSkipColumn}))
    {
      continue;
    }
    const Param* const found = effect.params().find(child);
    if (found == nullptr || found->kind() == ParamKind::Page)
    {
      report(fmt::format("page {}: the child {} is no parameter", param.name(), child));
    }
    if (!children.insert(child).second)
    {
      report(fmt::format("page {}: the child {} stands on it twice", param.name(), child));
    }
  }
}

double numberAt(const PropertySet& set, std::string_view name, ValueFamily family, int index)
{
  return family == ValueFamily::Int ? set.getInt(name, index) : set.getDouble(name, index);
}

void verifyRange(const Param& param)
{
  const PropertySet& set = param.properties();
  const ValueFamily family = param.facts().family;
  for (int i = 0; i < param.facts().dimension; ++i)
  {
    if (numberAt(set, kOfxParamPropMin, family, i) > numberAt(set, kOfxParamPropMax, family, i) ||
        numberAt(set, kOfxParamPropDisplayMin, family, i) > numberAt(set, kOfxParamPropDisplayMax, family, i))
    {
      report(fmt::format("parameter {}: its range is upside down", param.name()));
    }
  }
  if (family == ValueFamily::Double &&
      (set.getInt(kOfxParamPropDigits) < 0 || !(set.getDouble(kOfxParamPropIncrement) > 0)))
  {
    report(fmt::format("parameter {}: its digits or its increment make no sense", param.name()));
  }
}

void verifyParam(const Effect& effect, const Param& param)
{
  verifyPlace(effect, param);
  for (const char* const flag : {kOfxParamPropSecret, kOfxParamPropEnabled})
  {
    const int value = param.properties().getInt(flag);
    if (value != 0 && value != 1)
    {
      report(fmt::format("parameter {}: {} is {}", param.name(), flag, value));
    }
  }
  if (param.kind() == ParamKind::Choice && param.options().empty())
  {
    report(fmt::format("parameter {}: a Choice without options", param.name()));
  }
  if (param.properties().has(kOfxParamPropMin))
  {
    verifyRange(param);
  }
  if (param.hasValue())
  {
    if (const std::string complaint = param.complaintAbout(param.defaultValue()); !complaint.empty())
    {
      report(fmt::format("the default: {}", complaint));
    }
  }
}

}  // namespace

EffectDescriptor::EffectDescriptor(const std::string& bundle) : Effect("effect descriptor", false)
{
  defineEffectProperties(properties(), bundle);
}

void EffectDescriptor::verify(const std::string& context) const
{
  verifyEffect(properties(), context);
  verifyClips(*this);
  for (const auto& param : params().params())
  {
    verifyParam(*this, *param);
  }
}

std::vector<const Param*> EffectDescriptor::inPageOrder() const
{
  std::vector<const Param*> order;
  const auto add = [&](const Param* param)
  {
    if (param != nullptr && std::find(order.begin(), order.end(), param) == order.end())
    {
      order.push_back(param);
    }
  };
  for (const auto& page : params().params())
  {
    if (page->kind() == ParamKind::Page)
    {
      add(page.get());
      for (const std::string& child : page->properties().getStrings(kOfxParamPropPageChild))
      {
        add(params().find(child));
      }
    }
  }
  for (const auto& param : params().params())
  {
    add(param.get());
  }
  return order;
}

}  // namespace morvellan::host
