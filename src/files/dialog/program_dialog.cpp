// The dialogs of zenity and kdialog: programs that show one and print the chosen path.
#if !defined(_WIN32)
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "files/dialog/backends.h"

namespace morvellan::files
{
namespace
{

namespace fs = std::filesystem;

std::optional<fs::path> found(std::string_view program)
{
  const char* const set = std::getenv("PATH");
  for (std::string_view rest = set != nullptr ? set : ""; !rest.empty();)
  {
    const std::size_t end = rest.find(':');
    const fs::path path = fs::path(rest.substr(0, end)) / program;
    std::error_code ignored;
    if (path.is_absolute() && fs::is_regular_file(path, ignored) && access(path.c_str(), X_OK) == 0)
      return path;
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return std::nullopt;
}

std::vector<std::string> zenityWords(const DialogRequest& request)
{
  // A path that ends in a separator is a folder to start in.
  std::vector<std::string> words{"--file-selection", "--filename=" + (request.folder / request.defaultName).string(),
                                 "--file-filter=" + request.filterName + " | *." + request.extension};
  if (request.kind == DialogKind::save)
    words.insert(words.end(), {"--save", "--confirm-overwrite"});
  return words;
}

std::vector<std::string> kdialogWords(const DialogRequest& request)
{
  return {request.kind == DialogKind::save ? "--getsavefilename" : "--getopenfilename",
          (request.folder / request.defaultName).string(), "*." + request.extension + "|" + request.filterName};
}

struct Outcome
{
  int status = -1;  // of waitpid
  std::string out;
};

std::string readAll(int end)
{
  std::string text;
  std::array<char, 4096> buffer{};
  for (;;)
  {
    const ssize_t count = read(end, buffer.data(), buffer.size());
    if (count > 0)
      text.append(buffer.data(), static_cast<std::size_t>(count));
    else if (count == 0 || errno != EINTR)
      return text;
  }
}

std::optional<Outcome> runProgram(const fs::path& program, std::vector<std::string> words)
{
  words.insert(words.begin(), program.string());
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);

  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0)
    return std::nullopt;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  pid_t child = -1;
  const int failure = posix_spawn(&child, program.c_str(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  Outcome outcome;
  if (failure == 0)
  {
    outcome.out = readAll(ends[0]);
    while (waitpid(child, &outcome.status, 0) < 0 && errno == EINTR)
      continue;
  }
  close(ends[0]);
  return failure == 0 ? std::optional(outcome) : std::nullopt;
}

DialogAnswer answerOf(const fs::path& program, const std::optional<Outcome>& outcome)
{
  constexpr int cancelled = 1;  // of both programs
  if (outcome && WIFEXITED(outcome->status) && WEXITSTATUS(outcome->status) == cancelled)
    return DialogAnswer::cancelled();
  std::string path = outcome ? outcome->out : "";
  if (path.ends_with('\n'))
    path.pop_back();
  if (outcome && WIFEXITED(outcome->status) && WEXITSTATUS(outcome->status) == 0 && path.starts_with('/'))
    return DialogAnswer::accepted(path);
  return DialogAnswer::failed("The dialog of " + program.string() + " failed; run it once in a terminal to see why.");
}

}  // namespace

std::optional<DialogAnswer> askProgram(const DialogRequest& request)
{
  if (const auto zenity = found("zenity"))
    return answerOf(*zenity, runProgram(*zenity, zenityWords(request)));
  if (const auto kdialog = found("kdialog"))
    return answerOf(*kdialog, runProgram(*kdialog, kdialogWords(request)));
  return std::nullopt;
}

}  // namespace morvellan::files
#endif
