// The library's face to the dynamic linker: two symbols, and nothing that it needs of a driver.
#include <array>
#include <cstdio>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace
{

const std::string library = std::string(MORVELLAN_BUNDLE) + "/Contents/Linux-x86-64/Morvellan.ofx";

std::string outputOf(const std::string& command)
{
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  std::string text;
  std::array<char, 4096> block{};
  while (const std::size_t count = pipe ? std::fread(block.data(), 1, block.size(), pipe.get()) : 0)
    text.append(block.data(), count);
  return text;
}

TEST(Exports, ExactlyTheTwoEntryPoints)
{
  std::istringstream lines(outputOf("nm -D --defined-only '" + library + "'"));
  std::set<std::string> names;
  std::string address;
  std::string type;
  std::string name;
  while (lines >> address >> type >> name)
    names.insert(name);
  EXPECT_EQ(names, (std::set<std::string>{"OfxGetNumberOfPlugins", "OfxGetPlugin"}));
}

TEST(Exports, NothingLinksAgainstADriver)
{
  const std::string needed = outputOf("readelf -d '" + library + "'");
  ASSERT_NE(needed.find("NEEDED"), std::string::npos);
  for (const char* driver : {"libcuda.so", "libnvidia-ml", "libnvidia-api"})
    EXPECT_EQ(needed.find(driver), std::string::npos) << driver;
}

}  // namespace
