// The log of the support layer, opened on a file of its own for one test.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "entry/log.h"

class LogFile
{
public:
  LogFile() : path_(std::filesystem::temp_directory_path() / ("morvellan-log-" + std::to_string(::getpid()) + ".txt"))
  {
    EXPECT_TRUE(OFX::Log::open(path_.string()));
  }
  ~LogFile()
  {
    OFX::Log::close();
    std::filesystem::remove(path_);
  }
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;

  std::string text() const
  {
    std::ifstream file(path_);
    std::ostringstream all;
    all << file.rdbuf();
    return all.str();
  }

private:
  std::filesystem::path path_;
};
