// Save then load over random settings: everything comes back, but for what is listed here.
#include <random>
#include <set>

#include <gmock/gmock.h>

#include "params/index_classes.h"
#include "params/masters.h"
#include "tests/files/look_text.h"
#include "tests/params/random_page.h"

namespace morvellan::test
{
namespace
{

using params::TestPage;
using testing::IsEmpty;

void randomizeForLook(TestPage& page, std::mt19937& random)
{
  randomize(page, random);
  // The last two resolutions have no place in a Look.
  for (const char* choice : {"InResolution", "OutResolution"})
    if (page[choice] > 33.0)
      page.put(choice, 33.0);
}

// What a load makes of settings that it does not give back as they were.
std::map<std::string, double> exceptions(const TestPage& saved)
{
  const auto on = [&](const char* name) { return saved[name] != 0.0; };
  const int gamut = static_cast<int>(saved["InputGamut"]);
  const bool barred = std::set{1, 8, 27, 29, 31, 32, 33, 34}.contains(gamut);
  std::map<std::string, double> values;
  values["ChrZone"] = values["VibZone"] = saved["HueZone"];
  values["HDRcomp"] = on("HDRcomp") && params::isLinearInput(gamut) ? 1.0 : 0.0;
  values["ProcessLinear"] = on("ProcessLinear") && !params::isLinearInput(gamut) ? 1.0 : 0.0;
  values["CameraStock"] = on("SoupBypass") ? 0.0 : saved["CameraStock"];
  const bool labBleach = on("LableachBypass") && values["CameraStock"] != 0.0;
  values["LableachBypass"] = labBleach ? 1.0 : 0.0;
  values["Bleach"] = on("Bleach") && !on("PrintDisplayBypass") && !labBleach && !barred ? 1.0 : 0.0;
  values["PrintDisplayBypass"] = on("PrintDisplayBypass") || barred ? 1.0 : 0.0;
  values["PrintPeakBrightness"] = std::max(saved["PrintPeakBrightness"], 0.001);
  for (const char* name : {"SoupDmaxRed", "SoupDmaxGreen", "SoupDmaxBlue"})
    values[name] = saved[name] > -0.00005 ? std::max(saved[name], 0.0) : 0.838;

  const std::string source = on("SpatialEnhancement") ? "Enhancer" : on("SpatialEnhancer") ? "Details" : "";
  const double choice = on("SpatialEnhancement") ? saved["SpatialEnhancement"] : saved["SpatialEnhancer"];
  const bool resized = choice != 0.0 && (on("InResolution") || on("OutResolution"));
  values["SpatialEnhancement"] = resized ? choice : 0.0;
  values["SpatialEnhancer"] = resized ? 0.0 : choice;
  for (const std::string word : {"Horizontal", "Vertical", "Combined"})
  {
    const double amount = source.empty() ? 0.0 : saved[word + source];
    values[word + "Enhancer"] = resized ? amount : 0.0;
    values[word + "Details"] = resized ? 0.0 : amount;
  }
  for (const params::Master& master : params::masters())
  {
    if (master.name.starts_with("Combined"))
      continue;
    double sum = 0.0;
    for (const std::string& channel : master.channels)
      sum += values.contains(channel) ? values[channel] : saved[channel];
    values[master.name] = sum / static_cast<double>(master.channels.size());
  }
  values["SaturationCombo"] /= 2.0;
  return values;
}

TEST(LookRoundTrip, AThousandSettingsComeBackToFourDecimals)
{
  std::mt19937 random(20240229);
  // What no Look holds, but the store, which follows from the print stock.
  const std::set<std::string> elsewhere{"NatronGPU", "GrainDepth", "SrcClipChanged"};
  for (int round = 0; round < 1000; ++round)
  {
    TestPage page;
    TestPage loaded;
    randomizeForLook(page, random);
    randomizeForLook(loaded, random);
    const std::string text = saved(page);
    // A maximum density below 0 is the one setting out of range that a page can have.
    for (const std::string& message : load(loaded, text))
      ASSERT_TRUE(message.find("Soup Dmax-") != std::string::npos) << message;
    const std::map<std::string, double> expected = exceptions(page);
    for (const params::Param& param : params::catalogue())
    {
      const bool number = param.kind == params::Kind::Double || param.kind == params::Kind::Integer ||
                          param.kind == params::Kind::Boolean || param.kind == params::Kind::Choice;
      if (!number || param.hidden == params::Hidden::SecretOnly || elsewhere.contains(param.name))
        continue;
      const bool degrees = param.name.ends_with("Hue") || param.name.ends_with("Width");
      // Half of the last decimal, and half a unit of single precision.
      const double tolerance = param.kind != params::Kind::Double ? 0.0 : degrees ? 0.05002 : 0.000052;
      const auto found = expected.find(param.name);
      ASSERT_NEAR(loaded[param.name], found != expected.end() ? found->second : page[param.name], tolerance)
          << param.name << " in round " << round;
    }
    if (round % 20 != 0)
      continue;
    // A second round trip changes nothing any more.
    const std::string again = saved(loaded);
    ASSERT_THAT(load(loaded, again), IsEmpty());
    ASSERT_EQ(saved(loaded), again);
  }
}

TEST(LookRoundTrip, ALoadWritesNoMoreThanItMust)
{
  TestPage params;
  load(params, saved(params));
  params.forget();
  EXPECT_THAT(load(params, saved(params)), IsEmpty());
  EXPECT_THAT(params.written(), IsEmpty());
}

}  // namespace
}  // namespace morvellan::test
