// What holds for the writes of every rule: each parameter is written once at most, only where its value changes, and in
// an edit block of its own name, unless the writes are the bulk of a stock or a reset, which stand in none.
#pragma once

#include "params/catalogue.h"

#include <gtest/gtest.h>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace morvellan::params
{
struct PageWrite
{
  std::string name;
  std::optional<std::string> block;  // the edit block's name
  bool changes = true;
  bool bracketed() const { return block.has_value(); }
};

// The edits whose writes are bulk writes.
inline bool isBulk(std::string_view edited)
{
  return at(edited).kind == Kind::PushButton || edited == "CameraStock" || edited == "PrintProfile" ||
         edited == "LableachBypass" || edited == "Bleach";
}

// `page` is as the edit has left it.
template <class Page>
void expectOrderly(const Page& page, std::string_view edited, const std::vector<PageWrite>& writes)
{
  std::set<std::string> names;
  for (const PageWrite& write : writes)
  {
    EXPECT_TRUE(write.changes) << write.name << " written without need after " << edited;
    EXPECT_TRUE(names.insert(write.name).second) << write.name << " written twice after " << edited;
    bool bracketed = !isBulk(edited) || write.name == edited;
    // Where the print side is bypassed, its panel ends the bleach, whichever stock is chosen there.
    if (edited == "PrintProfile" && write.name == "Bleach")
      bracketed = page.number("PrintDisplayBypass") != 0.0 && page.number("PrintProfile") > 1.0;
    EXPECT_EQ(write.block, bracketed ? std::optional(write.name) : std::nullopt) << write.name << " after " << edited;
  }
}
}  // namespace morvellan::params
