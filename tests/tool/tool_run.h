// Runs the command-line tool as a user does, and makes and reads the pictures that it works on.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <linux/capability.h>
#include <pty.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>

namespace morvellan::test
{

struct ToolRun
{
  int exitCode = -1;
  long mostMemory = 0;  // KiB in memory at most
  std::string out;
  std::string err;
};

struct ToolSetting
{
  std::string bundle = BAD_PLUGIN_BUNDLE;
  std::map<std::string, std::string> environment = {};
  bool terminal = false;                  // standard error is a terminal; out and err then come as one
  std::string interruptOnceThereIs = {};  // a file
  rlim_t largestFile = RLIM_INFINITY;     // bytes; a write beyond them fails as on a full disk
  bool heldToPermissions = false;         // permissions hold, for root too
};

inline void drain(int pipe, std::string& text)
{
  std::array<char, 4096> buffer{};
  for (ssize_t count = 0; (count = read(pipe, buffer.data(), buffer.size())) > 0;)
  {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  close(pipe);
}

[[noreturn]] inline void becomeTool(const std::vector<std::string>& arguments, const ToolSetting& setting)
{
  for (const char* const inherited :
       {"MORVELLAN_DEVICE", "MORVELLAN_THREADS", "MORVELLAN_TRACE", "BAD_PLUGIN", "BAD_PLUGIN_TELLS"})
  {
    unsetenv(inherited);
  }
  for (const auto& [name, value] : setting.environment)
  {
    setenv(name.c_str(), value.c_str(), 1);
  }
  if (setting.largestFile != RLIM_INFINITY)
  {
    const rlimit limit{setting.largestFile, setting.largestFile};
    setrlimit(RLIMIT_FSIZE, &limit);
    signal(SIGXFSZ, SIG_IGN);
  }
  if (setting.heldToPermissions)
  {
    // What is out of the bounding set, root has not after an exec.
    for (const int power : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH})
    {
      if (geteuid() == 0 && prctl(PR_CAPBSET_READ, power) == 1 && prctl(PR_CAPBSET_DROP, power) != 0)
      {
        _exit(126);
      }
    }
  }
  std::vector<std::string> words{MORVELLAN_RENDER_TOOL, "--bundle", setting.bundle};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words)
  {
    pointers.push_back(word.data());
  }
  pointers.push_back(nullptr);
  execv(pointers[0], pointers.data());
  _exit(127);
}

inline ToolRun runTool(const std::vector<std::string>& arguments, const ToolSetting& setting = {})
{
  std::array<int, 2> out{};
  std::array<int, 2> err{};
  int terminal = -1;
  EXPECT_EQ(pipe(out.data()), 0);
  EXPECT_EQ(pipe(err.data()), 0);
  const pid_t child = setting.terminal ? forkpty(&terminal, nullptr, nullptr, nullptr) : fork();
  if (child == 0)
  {
    if (!setting.terminal)
    {
      dup2(out[1], STDOUT_FILENO);
      dup2(err[1], STDERR_FILENO);
    }
    for (const int end : {out[0], out[1], err[0], err[1]})
    {
      close(end);
    }
    becomeTool(arguments, setting);
  }
  close(out[1]);
  close(err[1]);
  ToolRun run;
  std::jthread interrupt;
  std::atomic<bool> over{false};
  if (!setting.interruptOnceThereIs.empty())
  {
    interrupt = std::jthread(
        [&]
        {
          while (!over && !std::filesystem::exists(setting.interruptOnceThereIs))
          {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
          }
          if (!over)
          {
            kill(child, SIGINT);
          }
        });
  }
  if (setting.terminal)
  {
    drain(terminal, run.err);
  }
  {
    const std::jthread reader([&] { drain(out[0], run.out); });
    drain(err[0], run.err);
  }
  int status = 0;
  over = true;
  if (interrupt.joinable())
  {
    interrupt.join();
  }
  rusage usage{};
  wait4(child, &status, 0, &usage);
  run.mostMemory = usage.ru_maxrss;
  run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return run;
}

// A folder of its own for a test, removed after it.
class ToolTest : public testing::Test
{
protected:
  ToolTest()
  {
    std::string form = testing::TempDir() + "morvellan-tool-XXXXXX";
    folder_ = mkdtemp(form.data());
  }
  ~ToolTest() override
  {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  // Names of the files of the folder, sorted.
  std::vector<std::string> files() const
  {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_))
    {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  void writeFile(const std::string& name, const std::string& content) const
  {
    std::ofstream(path(name), std::ios::binary) << content;
  }

  std::string readFile(const std::string& name) const
  {
    std::ifstream stream(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  std::filesystem::path folder_;
};

struct TestPicture
{
  OIIO::ImageSpec spec;
  std::vector<float> values;  // top row first, interleaved
};

// Values k / (count - 1) for the k-th, which 8, 10 and 16 bits round differently.
inline TestPicture ramp(int width, int height, int channels, OIIO::TypeDesc type)
{
  TestPicture picture{OIIO::ImageSpec(width, height, channels, type), {}};
  const int count = width * height * channels;
  for (int k = 0; k < count; ++k)
  {
    picture.values.push_back(static_cast<float>(k) / static_cast<float>(count - 1));
  }
  picture.spec.attribute("oiio:UnassociatedAlpha", 1);
  return picture;
}

inline void save(const std::string& file, const TestPicture& picture)
{
  const auto output = OIIO::ImageOutput::create(file);
  ASSERT_NE(output, nullptr);
  ASSERT_TRUE(output->open(file, picture.spec)) << output->geterror();
  ASSERT_TRUE(output->write_image(OIIO::TypeDesc::FLOAT, picture.values.data())) << output->geterror();
  output->close();
}

inline TestPicture load(const std::string& file)
{
  OIIO::ImageSpec hints;
  hints.attribute("oiio:UnassociatedAlpha", 1);
  const auto input = OIIO::ImageInput::open(file, &hints);
  if (input == nullptr)
  {
    ADD_FAILURE() << "cannot read " << file << ": " << OIIO::geterror();
    return {};
  }
  TestPicture picture{input->spec(), {}};
  picture.values.resize(picture.spec.image_pixels() * static_cast<std::size_t>(picture.spec.nchannels));
  EXPECT_TRUE(input->read_image(0, 0, 0, picture.spec.nchannels, OIIO::TypeDesc::FLOAT, picture.values.data()));
  return picture;
}

}  // namespace morvellan::test
