// Pictures against committed ones that the effect rendered before: every pipeline's main settings, through the tool, on
// every level of the CPU. `scripts/references` renews them.
#include <cmath>

#include <gmock/gmock.h>

#include "tests/tool/tool_run.h"

namespace morvellan::test
{
namespace
{

constexpr int pictureWidth = 64;
constexpr int pictureHeight = 32;

// The steps of arithmetic differ between the levels of the CPU, and between versions of a kernel, by some 1e-6; the
// steep foot of a print makes up to a hundred times of it. A picture holds 16 bits, steps of 1.5e-5.
constexpr float tolerance = 2e-4F;

// A grain at the edge of a pixel's reach may come or go with the last bit: as many values may differ by more.
constexpr double grainShare = 0.005;

struct Reference
{
  std::string name;
  std::vector<std::string> settings;

  bool hasGrain() const { return name.starts_with("grain"); }
  std::string file() const { return MORVELLAN_SOURCE_DIR "/tests/references/" + name + ".png"; }
};

std::vector<Reference> references()
{
  std::vector<Reference> all;
  std::ifstream file(MORVELLAN_SOURCE_DIR "/tests/references/pictures.txt");
  for (std::string line; std::getline(file, line);)
  {
    std::istringstream words(line);
    Reference reference;
    if (!(words >> reference.name) || reference.name == "#")
    {
      continue;
    }
    for (std::string setting; words >> setting;)
    {
      reference.settings.push_back(setting);
    }
    all.push_back(reference);
  }
  return all;
}

// Code values: a ramp from left to right in bands of grey and of the six hues, with a lamp, a dark window and fine
// lines.
TestPicture scene()
{
  TestPicture picture{OIIO::ImageSpec(pictureWidth, pictureHeight, 3, OIIO::TypeDesc::UINT16), {}};
  constexpr std::array<std::array<float, 3>, 7> tints{
      {{0, 0, 0}, {0.12F, 0, 0}, {0, 0.1F, 0}, {0, 0, 0.14F}, {0, 0.1F, 0.1F}, {0.1F, 0, 0.12F}, {0.1F, 0.1F, 0}}};
  for (int y = 0; y < pictureHeight; ++y)
  {
    for (int x = 0; x < pictureWidth; ++x)
    {
      const auto& tint = tints[static_cast<std::size_t>(y * 7 / pictureHeight)];
      float grey = 0.1F + 0.5F * static_cast<float>(x) / pictureWidth;
      const int fromLamp = (x - 46) * (x - 46) + (y - 10) * (y - 10);
      if (fromLamp < 16)
      {
        grey = 0.92F;
      }
      if (x >= 8 && x < 20 && y >= 20 && y < 28)
      {
        grey = 0.07F;
      }
      if (x >= 26 && x < 36 && (x + y / 4) % 2 == 0)
      {
        grey += 0.08F;
      }
      for (const float more : tint)
      {
        picture.values.push_back(grey + more);
      }
    }
  }
  return picture;
}

struct Distance
{
  float greatest = 0.0F;
  std::size_t beyond = 0;  // values outside the tolerance
  std::size_t count = 0;
};

Distance distance(const TestPicture& a, const TestPicture& b)
{
  Distance d;
  d.count = a.values.size();
  for (std::size_t i = 0; i < std::min(a.values.size(), b.values.size()); ++i)
  {
    const float difference = std::abs(a.values[i] - b.values[i]);
    d.greatest = std::max(d.greatest, difference);
    d.beyond += difference <= tolerance ? 0 : 1;
  }
  return d;
}

bool isMatch(const Reference& reference, const Distance& d)
{
  return static_cast<double>(d.beyond) <= (reference.hasGrain() ? grainShare * static_cast<double>(d.count) : 0.0);
}

class References : public ToolTest
{
protected:
  References()
  {
    std::filesystem::create_directory(path("config"));
    writeFile("config/morvellan_natron_gpu_config.txt",
              "Natron GPU selection(0,1,2,3)----------|0\nFilm Grain Depth(0,1,2,3,4,5,6,7)------|0\n");
    save(path("scene.png"), scene());
  }

  TestPicture rendered(const Reference& reference, const std::string& level)
  {
    std::vector<std::string> arguments{path("scene.png"), "-o", path("out.png"), "--depth", "uint16",
                                       "--device",        "cpu"};
    for (const std::string& setting : reference.settings)
    {
      arguments.insert(arguments.end(), {"--set", setting});
    }
    const ToolRun run =
        runTool(arguments, {.bundle = MORVELLAN_BUNDLE,
                            .environment = {{"MORVELLAN_CONFIG_DIR", path("config")}, {"MORVELLAN_CPU_LEVEL", level}}});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    return load(path("out.png"));
  }
};

TEST_F(References, PicturesAreThoseThatWereCommitted)
{
  if (std::getenv("MORVELLAN_RENEW_REFERENCES") != nullptr)
  {
    GTEST_SKIP() << "they are being renewed";
  }
  const std::vector<Reference> all = references();
  ASSERT_GE(all.size(), 15U);
  for (const Reference& reference : all)
  {
    const TestPicture expected = load(reference.file());
    for (const char* const level : {"v2", "v3", "v4"})
    {
      const TestPicture actual = rendered(reference, level);
      ASSERT_EQ(actual.values.size(), expected.values.size()) << reference.name;
      const Distance d = distance(actual, expected);
      EXPECT_TRUE(isMatch(reference, d)) << reference.name << " on " << level << ": " << d.beyond << " of " << d.count
                                         << " values are off, the greatest by " << d.greatest;
    }
  }
}

// A picture that the settings do not change, or a black one, would hold everything.
TEST_F(References, ShowTheirSettings)
{
  const TestPicture source = scene();
  for (const Reference& reference : references())
  {
    if (!std::filesystem::exists(reference.file()))
    {
      continue;  // being renewed
    }
    const TestPicture picture = load(reference.file());
    EXPECT_GT(distance(picture, source).beyond, picture.values.size() / 4) << reference.name;
    double sum = 0.0;
    for (const float value : picture.values)
    {
      sum += value;
    }
    EXPECT_GT(sum / static_cast<double>(picture.values.size()), 0.05) << reference.name;
  }
}

TEST_F(References, Renewed)
{
  if (std::getenv("MORVELLAN_RENEW_REFERENCES") == nullptr)
  {
    GTEST_SKIP() << "scripts/references renews them";
  }
  for (const Reference& reference : references())
  {
    const TestPicture picture = rendered(reference, "v2");
    if (!std::filesystem::exists(reference.file()) || !isMatch(reference, distance(picture, load(reference.file()))))
    {
      std::filesystem::copy_file(path("out.png"), reference.file(), std::filesystem::copy_options::overwrite_existing);
    }
  }
}

}  // namespace
}  // namespace morvellan::test
