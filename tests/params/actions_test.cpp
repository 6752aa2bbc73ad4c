// What a rule asks of the rest of the plug-in, and the parts of rules that other folders call: in memory, where it can
// be seen.
#include "params/rules.h"

#include "params/choices.h"
#include "params/print_stock.h"
#include "params/stocks.h"
#include "tests/params/memory_params.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvellan::params
{
namespace
{
using testing::ElementsAre;

TEST(Actions, ButtonsAndDeviceChoicesPerformTheirs)
{
  const std::vector<std::pair<std::string, Action>> actions{
      {"SaveLooks", Action::SaveLook},  {"LoadLooks", Action::LoadLook}, {"CudaInfo", Action::CudaReport},
      {"ClipInfo", Action::ClipReport}, {"About", Action::AboutReport},  {"GrainDepth", Action::GrainDepthChosen},
      {"NatronGPU", Action::GpuChosen}};
  for (const auto& [name, action] : actions)
  {
    MemoryParams params;
    params.press(name);
    EXPECT_THAT(params.actions, ElementsAre(action)) << name;
    EXPECT_TRUE(params.writes.empty()) << name;
    for (const Reason reason : {Reason::PluginEdited, Reason::TimeChanged})
    {
      params.change(name, reason);
      EXPECT_TRUE(params.actions.empty()) << name;
    }
  }
}

TEST(Actions, NamesWithoutARuleAreLeftAlone)
{
  for (const std::string_view name : {"Exposure", "PitchBypass", "CameraCast", "SatZoneLow", "PrintGammaRed", "Input",
                                      "SrcClipChanged", "NoSuchName", ""})
  {
    MemoryParams params;
    const auto before = params.layout();
    params.press(name);
    EXPECT_TRUE(params.writes.empty()) << name;
    EXPECT_EQ(params.layout(), before) << name;
  }
}

TEST(Actions, EveryResolutionIsRememberedForTheRenders)
{
  for (const Side side : {Side::Source, Side::Target})
  {
    const std::string choice = side == Side::Source ? "InResolution" : "OutResolution";
    MemoryParams params;
    params.edit(choice, 0);
    EXPECT_EQ(params.resolutions.at(side).size, (Size{1920, 1080})) << "without an image";
    params.setImage(side, {2000, 900});
    params.edit(choice, 0);
    EXPECT_EQ(params.resolutions.size(), 1u);
    EXPECT_EQ(params.resolutions.at(side).choice, 0);
    EXPECT_EQ(params.resolutions.at(side).size, (Size{2000, 900}));
    params.put(side == Side::Source ? "SourceWidth" : "TargetWidth", 640);
    params.edit(choice, 1);
    EXPECT_EQ(params.resolutions.at(side).choice, 1);
    EXPECT_EQ(params.resolutions.at(side).size, (Size{640, 900}));
    for (std::size_t i = 0; i < resolutionPresets().size(); ++i)
    {
      params.edit(choice, firstPreset + static_cast<int>(i));
      EXPECT_EQ(params.resolutions.at(side).choice, firstPreset + static_cast<int>(i));
      EXPECT_EQ(params.resolutions.at(side).size, resolutionPresets()[i].size);
    }
  }
}

TEST(Actions, APrintStockWithoutATableWritesNothing)
{
  for (const int stock : {noStock, 10, 20})
  {
    MemoryParams params;
    writePrintStock(params, stock);
    writePrintStore(params, stock);
    EXPECT_TRUE(params.writes.empty()) << stock;
  }
}
}  // namespace
}  // namespace morvellan::params
