// The log of the OFX support layer: lines indented by the nesting of the main entry, dropped while the stream is
// closed. Nothing in the effect opens the stream; a developer or a test does.
#pragma once

#include <string>
#include <string_view>

#include <fmt/format.h>

namespace OFX::Log
{

inline constexpr const char* fileVariable = "OFX_PLUGIN_LOGFILE";
inline constexpr const char* defaultFileName = "ofxTestLog.txt";

/// What the environment says now: the value of OFX_PLUGIN_LOGFILE, or "ofxTestLog.txt" where it is unset or empty.
std::string fileNameFromEnvironment();

/// The name decided once, when the library was loaded.
const std::string& fileName();

/// Opens (and truncates) the stream on `path`, by default on fileName(). Returns whether it is open.
bool open(const std::string& path = fileName());
void close();
bool isOpen();

/// How many main entries are running.
int nesting();

/// Counts one main entry for as long as it lives.
class NestingScope
{
public:
  NestingScope();
  ~NestingScope();
  NestingScope(const NestingScope&) = delete;
  NestingScope& operator=(const NestingScope&) = delete;
};

/// Writes one line as it stands, in a single call, so that lines of several threads do not mix.
void printLine(std::string_view prefix, std::string_view text);

template <class... Values>
void print(fmt::format_string<Values...> format, Values&&... values)
{
  if (isOpen())
    printLine("", fmt::format(format, std::forward<Values>(values)...));
}

template <class... Values>
void warning(fmt::format_string<Values...> format, Values&&... values)
{
  if (isOpen())
    printLine("WARNING : ", fmt::format(format, std::forward<Values>(values)...));
}

template <class... Values>
void error(fmt::format_string<Values...> format, Values&&... values)
{
  if (isOpen())
    printLine("ERROR : ", fmt::format(format, std::forward<Values>(values)...));
}

}  // namespace OFX::Log
