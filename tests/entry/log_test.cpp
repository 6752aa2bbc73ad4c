#include "entry/log.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/entry/log_file.h"

namespace
{

TEST(Log, NameComesFromTheEnvironmentOrIsTheDefault)
{
  ::unsetenv("OFX_PLUGIN_LOGFILE");
  EXPECT_EQ(OFX::Log::fileNameFromEnvironment(), "ofxTestLog.txt");
  ::setenv("OFX_PLUGIN_LOGFILE", "/tmp/elsewhere.txt", 1);
  EXPECT_EQ(OFX::Log::fileNameFromEnvironment(), "/tmp/elsewhere.txt");
}

TEST(Log, NameIsDecidedAtLoad)
{
  const std::string atLoad = OFX::Log::fileName();
  ::setenv("OFX_PLUGIN_LOGFILE", "/tmp/too-late.txt", 1);
  EXPECT_EQ(OFX::Log::fileName(), atLoad);
}

TEST(Log, LinesAreDroppedWhileTheStreamIsClosed)
{
  EXPECT_FALSE(OFX::Log::isOpen());
  OFX::Log::error("dropped");
  const LogFile file;
  OFX::Log::error("kept {}", 1);
  EXPECT_EQ(file.text(), "ERROR : kept 1\n");
}

TEST(Log, PrefixesAndIndentation)
{
  const LogFile file;
  OFX::Log::print("outside");
  {
    const OFX::Log::NestingScope outer;
    OFX::Log::warning("one deep");
    const OFX::Log::NestingScope inner;
    OFX::Log::error("two deep");
    EXPECT_EQ(OFX::Log::nesting(), 2);
  }
  EXPECT_EQ(OFX::Log::nesting(), 0);
  EXPECT_EQ(file.text(), "outside\n    WARNING : one deep\n        ERROR : two deep\n");
}

TEST(Log, AFileThatCannotBeOpenedLeavesItClosed)
{
  EXPECT_FALSE(OFX::Log::open("/no/such/folder/log.txt"));
  OFX::Log::error("dropped");
  EXPECT_FALSE(OFX::Log::isOpen());
}

}  // namespace
