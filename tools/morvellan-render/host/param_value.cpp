// The table of parameter kinds, and values as text.
#include "host/param_value.h"

#include <fmt/format.h>

#include "ofx/ofxParam.h"

namespace morvellan::host
{
namespace
{

constexpr std::array<KindFacts, 16> kindTable{{
    {ParamKind::Integer, kOfxParamTypeInteger, "Integer", ValueFamily::Int, 1},
    {ParamKind::Double, kOfxParamTypeDouble, "Double", ValueFamily::Double, 1},
    {ParamKind::Boolean, kOfxParamTypeBoolean, "Boolean", ValueFamily::Int, 1},
    {ParamKind::Choice, kOfxParamTypeChoice, "Choice", ValueFamily::Int, 1},
    {ParamKind::StrChoice, kOfxParamTypeStrChoice, "StrChoice", ValueFamily::String, 1},
    {ParamKind::Rgba, kOfxParamTypeRGBA, "RGBA", ValueFamily::Double, 4},
    {ParamKind::Rgb, kOfxParamTypeRGB, "RGB", ValueFamily::Double, 3},
    {ParamKind::Double2D, kOfxParamTypeDouble2D, "Double2D", ValueFamily::Double, 2},
    {ParamKind::Integer2D, kOfxParamTypeInteger2D, "Integer2D", ValueFamily::Int, 2},
    {ParamKind::Double3D, kOfxParamTypeDouble3D, "Double3D", ValueFamily::Double, 3},
    {ParamKind::Integer3D, kOfxParamTypeInteger3D, "Integer3D", ValueFamily::Int, 3},
    {ParamKind::String, kOfxParamTypeString, "String", ValueFamily::String, 1},
    {ParamKind::Custom, kOfxParamTypeCustom, "Custom", ValueFamily::String, 1},
    {ParamKind::Group, kOfxParamTypeGroup, "Group", ValueFamily::None, 0},
    {ParamKind::Page, kOfxParamTypePage, "Page", ValueFamily::None, 0},
    {ParamKind::PushButton, kOfxParamTypePushButton, "PushButton", ValueFamily::None, 0},
}};

}  // namespace

const KindFacts& factsOf(ParamKind kind)
{
  return kindTable[static_cast<std::size_t>(kind)];
}

std::optional<ParamKind> kindOfType(std::string_view type)
{
  for (const KindFacts& facts : kindTable)
  {
    if (type == facts.type)
    {
      return facts.kind;
    }
  }
  return std::nullopt;
}

std::string toText(const ParamValue& value)
{
  if (value.count == 0)
  {
    return value.text;
  }
  std::string text = fmt::format("{}", value.numbers[0]);
  for (int i = 1; i < value.count; ++i)
  {
    text += fmt::format(",{}", value.numbers[static_cast<std::size_t>(i)]);
  }
  return text;
}

}  // namespace morvellan::host
