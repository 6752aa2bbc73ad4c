// The rules in memory and through the plug-in's interface: from random settings, random edits write the same values in
// the same edit blocks and leave the same page.
#include <random>

#include <gtest/gtest.h>

#include "tests/params/host_page.h"
#include "tests/params/memory_params.h"
#include "tests/params/random_page.h"

namespace morvellan::params
{
namespace
{
// What the plug-in wrote, and what the rules did in memory.
void expectSameWrites(const HostPage& page, const MemoryParams& memory, const std::string& edited)
{
  ASSERT_EQ(page.written(), memory.written()) << "after " << edited;
  for (std::size_t i = 0; i < page.writes.size(); ++i)
  {
    const std::string& name = page.writes[i].name;
    EXPECT_EQ(page.writes[i].block, memory.writes[i].block) << name << " after " << edited;
    EXPECT_EQ(page.rgb(name), memory.rgb(name)) << name << " after " << edited;
  }
}

void expectSamePage(const HostPage& page, const MemoryParams& memory)
{
  EXPECT_EQ(page.layout(), memory.layout());
  for (const Param& param : catalogue())
    if (isValue(param) && isOfThePage(param))
    {
      EXPECT_EQ(page.rgb(param.name), memory.rgb(param.name)) << param.name;
    }
}

TEST(PageParity, RandomEditsOfRandomPages)
{
  std::mt19937 random(19951228);
  std::vector<std::string> edits;
  for (const Param& param : catalogue())
    if (isOfThePage(param))
      edits.push_back(param.name);

  for (int round = 0; round < 60; ++round)
  {
    MemoryParams memory;
    HostPage page;
    randomize(memory, random);
    for (const Param& param : catalogue())
      if (param.kind == Kind::Rgb)
        page.putRgb(param.name, memory.rgb(param.name));
      else if (isValue(param))
        page.put(param.name, memory[param.name]);
    memory.reopen();
    page.reopen();
    expectSamePage(page, memory);
    for (int i = 0; i < 40; ++i)
    {
      const std::string& name = edits[std::uniform_int_distribution<std::size_t>(0, edits.size() - 1)(random)];
      randomizeOne(memory, at(name), random);
      if (at(name).kind == Kind::Rgb)
        page.putRgb(name, memory.rgb(name));
      else if (isValue(at(name)))
        page.put(name, memory[name]);
      memory.press(name);
      page.press(name);
      expectSameWrites(page, memory, name);
    }
    expectSamePage(page, memory);
  }
}
}  // namespace
}  // namespace morvellan::params
