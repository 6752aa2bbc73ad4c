// Looks shown, checked and compared: each is loaded into an instance of its own, and what the plug-in then holds is
// read.
#include "looks.h"

#include <filesystem>
#include <map>
#include <set>

#include <fmt/format.h>

#include "errors.h"

namespace morvellan::tool
{
namespace
{

struct LoadedLook
{
  std::map<std::string, host::ParamValue> values;
  std::vector<std::string> complaints;
};

LoadedLook loadAlone(Session& session, const std::string& file)
{
  session.createInstance({});
  LoadedLook look{.values = {}, .complaints = session.loadLook(file)};
  for (const auto& param : session.instance().params().params())
  {
    if (param->hasValue())
    {
      look.values.emplace(param->name(), param->value());
    }
  }
  return look;
}

// What the reader sets. It writes what differs from what the page holds, so the page here holds other values than the
// Look's all through.
std::set<std::string> setBy(Session& session, const std::string& file, const LoadedLook& look)
{
  session.createInstance({});
  for (const auto& [name, value] : look.values)
  {
    host::ParamValue other = value;
    other.numbers[0] = value.numbers[0] == 0.0 ? 1.0 : 0.0;
    session.instance().params().at(name).setValue(other);
  }
  session.observer().takeWritten();
  session.loadLook(file);
  return session.observer().takeWritten();
}

// What was read of a Look is shown; that it was not all of it is an error all the same.
void requireWhole(const LoadedLook& look, const std::string& file)
{
  if (!look.complaints.empty())
  {
    throw RenderError(fmt::format("the Look {} is faulty: {}", file, look.complaints.front()));
  }
}

// A Choice's value with its label.
std::string shown(const host::Param& param, const host::ParamValue& value)
{
  if (param.kind() == host::ParamKind::Choice)
  {
    return fmt::format("{} ({})", value.asInt(), param.options().at(static_cast<std::size_t>(value.asInt())));
  }
  return param.kind() == host::ParamKind::Boolean ? (value.asBool() ? "on" : "off") : toText(value);
}

void show(Session& session, const std::string& file)
{
  const LoadedLook look = loadAlone(session, file);
  const std::set<std::string> set = setBy(session, file, look);
  for (const host::Param* const param : session.descriptor().inPageOrder())
  {
    if (set.contains(param->name()))
    {
      fmt::print("{:<28} {}\n", param->name(), shown(*param, look.values.at(param->name())));
    }
  }
  requireWhole(look, file);
}

void check(Session& session, const std::vector<std::string>& files)
{
  std::size_t faulty = 0;
  for (const std::string& file : files)
  {
    std::error_code failure;
    const std::vector<std::string> complaints = std::filesystem::exists(file, failure)
                                                    ? loadAlone(session, file).complaints
                                                    : std::vector<std::string>{"it does not exist; check the name"};
    faulty += complaints.empty() ? 0 : 1;
    for (const std::string& complaint : complaints)
    {
      fmt::print("{}: {}\n", file, complaint);
    }
  }
  if (faulty > 0)
  {
    throw RenderError(
        fmt::format("{} of {} Looks are faulty; save them anew or correct the lines named", faulty, files.size()));
  }
}

void diff(Session& session, const std::string& first, const std::string& second)
{
  const LoadedLook a = loadAlone(session, first);
  const LoadedLook b = loadAlone(session, second);
  for (const host::Param* const param : session.descriptor().inPageOrder())
  {
    if (param->hasValue() && a.values.at(param->name()) != b.values.at(param->name()))
    {
      fmt::print("{:<28} {:<28} {}\n", param->name(), shown(*param, a.values.at(param->name())),
                 shown(*param, b.values.at(param->name())));
    }
  }
  requireWhole(a, first);
  requireWhole(b, second);
}

}  // namespace

void runLooks(Session& session, const LooksRequest& request)
{
  if (request.task == "show")
  {
    show(session, request.files[0]);
  }
  else if (request.task == "check")
  {
    check(session, request.files);
  }
  else
  {
    diff(session, request.files[0], request.files[1]);
  }
}

}  // namespace morvellan::tool
