// Any bytes as a project file: it is refused with the tool's own errors, or every value suits its parameter.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "errors.h"
#include "project.h"

namespace
{

using namespace morvellan;

// One parameter of each kind that projects hold, and a button.
const host::ParamSet& described()
{
  static const auto made = []
  {
    auto* const set = new host::ParamSet("fuzz", false);
    host::Param& gain = set->add(host::ParamKind::Double, "Gain");
    gain.properties().put(kOfxParamPropMin, -1.0);
    gain.properties().put(kOfxParamPropMax, 4.0);
    set->add(host::ParamKind::Integer, "Count").properties().put(kOfxParamPropMax, 10);
    set->add(host::ParamKind::Choice, "Mode")
        .properties()
        .put(kOfxParamPropChoiceOption, std::deque<std::string>{"Multiply", "Add"});
    set->add(host::ParamKind::Boolean, "Bypass");
    set->add(host::ParamKind::Rgb, "Tint");
    set->add(host::ParamKind::String, "Note");
    set->add(host::ParamKind::PushButton, "About");
    set->add(host::ParamKind::Group, "Group");
    return set;
  }();
  return *made;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  try
  {
    for (const auto& [name, value] :
         tool::parseProject({reinterpret_cast<const char*>(data), size}, "fuzz.json", described()))
      if (!described().at(name).complaintAbout(value).empty() || !described().at(name).hasValue())
        std::abort();
  }
  catch (const tool::UsageError&)
  {
  }
  catch (const tool::RenderError&)
  {
  }
  return 0;
}
