// The log stream. It is a C stream because one fputs is one line, whichever threads write.
#include "entry/log.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace OFX::Log
{

namespace
{

constexpr std::size_t spacesPerLevel = 4;

std::atomic<std::FILE*> stream{nullptr};
std::atomic<int> nestingCounter{0};

// Decided while the library is being loaded, not at the first use.
const std::string nameAtLoad = fileNameFromEnvironment();

}  // namespace

std::string fileNameFromEnvironment()
{
  const char* value = std::getenv(fileVariable);
  return value != nullptr && *value != '\0' ? value : defaultFileName;
}

const std::string& fileName()
{
  return nameAtLoad;
}

bool open(const std::string& path)
{
  close();
  stream = std::fopen(path.c_str(), "w");
  return isOpen();
}

void close()
{
  if (std::FILE* old = stream.exchange(nullptr); old != nullptr)
    std::fclose(old);
}

bool isOpen()
{
  return stream.load() != nullptr;
}

int nesting()
{
  return nestingCounter.load();
}

NestingScope::NestingScope()
{
  ++nestingCounter;
}

NestingScope::~NestingScope()
{
  --nestingCounter;
}

void printLine(std::string_view prefix, std::string_view text)
{
  std::FILE* file = stream.load();
  if (file == nullptr)
    return;
  const auto indent = static_cast<std::size_t>(nestingCounter.load()) * spacesPerLevel;
  const std::string line = fmt::format("{}{}{}\n", std::string(indent, ' '), prefix, text);
  std::fputs(line.c_str(), file);
  std::fflush(file);
}

}  // namespace OFX::Log
