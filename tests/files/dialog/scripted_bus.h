// A session bus of a test's own, and a portal on it that answers as the test says.
#pragma once

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <dbus/dbus.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "files/dialog/dbus_handles.h"

namespace morvellan::test
{

// An environment variable for as long as it lives; no value unsets it.
class Environment
{
public:
  Environment(std::string name, const std::optional<std::string>& value) : name_(std::move(name))
  {
    if (const char* const old = std::getenv(name_.c_str()))
      before_ = old;
    set(value);
  }
  ~Environment() { set(before_); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

private:
  void set(const std::optional<std::string>& value) const
  {
    if (value)
      setenv(name_.c_str(), value->c_str(), 1);
    else
      unsetenv(name_.c_str());
  }
  std::string name_;
  std::optional<std::string> before_;
};

class PrivateBus
{
public:
  PrivateBus()
  {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
      throw std::runtime_error("no pipe");
    process_ = fork();
    if (process_ == 0)
    {
      prctl(PR_SET_PDEATHSIG, SIGTERM);  // it never outlives the test
      dup2(ends[1], STDOUT_FILENO);
      execlp("dbus-daemon", "dbus-daemon", "--session", "--nofork", "--print-address", nullptr);
      _exit(127);
    }
    close(ends[1]);
    for (char letter = 0; read(ends[0], &letter, 1) == 1 && letter != '\n';)
      address_ += letter;
    close(ends[0]);
    environment_.emplace("DBUS_SESSION_BUS_ADDRESS", address_);
  }
  ~PrivateBus() { end(); }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  bool runs() const { return !address_.empty(); }
  void end()
  {
    if (process_ <= 0)
      return;
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
    process_ = -1;
  }

private:
  pid_t process_ = -1;
  std::string address_;
  std::optional<Environment> environment_;
};

// What the portal was asked.
struct PortalCall
{
  std::string member;
  std::string title;
  std::string filterName;
  std::string pattern;
  std::string folder;
  std::string name;
};

class ScriptedPortal
{
public:
  using Script = std::function<void(ScriptedPortal&, DBusMessage& call)>;

  explicit ScriptedPortal(Script script) : connection_(files::openSessionBus(nullptr))
  {
    if (!connection_)
      throw std::runtime_error("the private bus is not there");
    dbus_bus_request_name(connection_.get(), "org.freedesktop.portal.Desktop", 0, nullptr);
    thread_ = std::thread([this, script] { run(script); });
  }
  ~ScriptedPortal()
  {
    stop_ = true;
    thread_.join();
  }
  ScriptedPortal(const ScriptedPortal&) = delete;
  ScriptedPortal& operator=(const ScriptedPortal&) = delete;

  std::vector<PortalCall> calls() const
  {
    const std::scoped_lock lock(mutex_);
    return calls_;
  }

  // For scripts.
  static constexpr const char* request = "/org/freedesktop/portal/desktop/request/1_1/t";
  void returnRequest(DBusMessage& call)
  {
    const files::BusMessage reply(dbus_message_new_method_return(&call));
    const char* path = request;
    dbus_message_append_args(reply.get(), DBUS_TYPE_OBJECT_PATH, &path, DBUS_TYPE_INVALID);
    send(*reply);
  }
  void respond(DBusMessage& call, dbus_uint32_t code, const std::optional<std::string>& uri, const char* path = request)
  {
    const files::BusMessage signal(dbus_message_new_signal(path, "org.freedesktop.portal.Request", "Response"));
    dbus_message_set_destination(signal.get(), dbus_message_get_sender(&call));
    {
      files::BusWriter arguments(*signal);
      arguments.number(code);
      files::BusWriter results(arguments, DBUS_TYPE_ARRAY, "{sv}");
      {
        files::BusWriter entry(results, DBUS_TYPE_DICT_ENTRY, nullptr);
        entry.text("choices_made");
        files::BusWriter variant(entry, DBUS_TYPE_VARIANT, "s");
        variant.text("none");
      }
      if (uri)
      {
        files::BusWriter entry(results, DBUS_TYPE_DICT_ENTRY, nullptr);
        entry.text("uris");
        files::BusWriter variant(entry, DBUS_TYPE_VARIANT, "as");
        files::BusWriter uris(variant, DBUS_TYPE_ARRAY, "s");
        uris.text(*uri);
      }
    }
    send(*signal);
  }
  void refuse(DBusMessage& call, const char* error)
  {
    send(*files::BusMessage(dbus_message_new_error(&call, error, "as the script says")));
  }
  void leave() { dbus_bus_release_name(connection_.get(), "org.freedesktop.portal.Desktop", nullptr); }
  void send(DBusMessage& message)
  {
    dbus_connection_send(connection_.get(), &message, nullptr);
    dbus_connection_flush(connection_.get());
  }

private:
  void run(const Script& script)
  {
    while (!stop_ && dbus_connection_read_write(connection_.get(), 20) != 0)
      while (const files::BusMessage message{dbus_connection_pop_message(connection_.get())})
        if (dbus_message_get_type(message.get()) == DBUS_MESSAGE_TYPE_METHOD_CALL)
        {
          note(*message);
          script(*this, *message);
        }
  }

  static std::string textOf(DBusMessageIter& iter)
  {
    const char* text = "";
    dbus_message_iter_get_basic(&iter, static_cast<void*>(&text));
    return text;
  }
  void note(DBusMessage& message)
  {
    PortalCall call;
    call.member = dbus_message_get_member(&message);
    DBusMessageIter arguments;
    DBusMessageIter entry;
    dbus_message_iter_init(&message, &arguments);
    dbus_message_iter_next(&arguments);
    call.title = textOf(arguments);
    dbus_message_iter_next(&arguments);
    for (dbus_message_iter_recurse(&arguments, &entry); dbus_message_iter_get_arg_type(&entry) != DBUS_TYPE_INVALID;
         dbus_message_iter_next(&entry))
      noteOption(call, entry);
    const std::scoped_lock lock(mutex_);
    calls_.push_back(call);
  }
  static void noteOption(PortalCall& call, DBusMessageIter& entry)
  {
    DBusMessageIter field;
    DBusMessageIter value;
    DBusMessageIter inner;
    dbus_message_iter_recurse(&entry, &field);
    const std::string name = textOf(field);
    dbus_message_iter_next(&field);
    dbus_message_iter_recurse(&field, &value);
    if (name == "current_name")
      call.name = textOf(value);
    if (name == "current_folder")
    {
      const char* bytes = nullptr;
      int count = 0;
      dbus_message_iter_recurse(&value, &inner);
      dbus_message_iter_get_fixed_array(&inner, static_cast<void*>(&bytes), &count);
      call.folder.assign(bytes, static_cast<std::size_t>(count));
    }
    if (name == "filters")
    {
      DBusMessageIter filter;
      DBusMessageIter patterns;
      DBusMessageIter pattern;
      dbus_message_iter_recurse(&value, &inner);
      dbus_message_iter_recurse(&inner, &filter);
      call.filterName = textOf(filter);
      dbus_message_iter_next(&filter);
      dbus_message_iter_recurse(&filter, &patterns);
      dbus_message_iter_recurse(&patterns, &pattern);
      dbus_message_iter_next(&pattern);
      call.pattern = textOf(pattern);
    }
  }

  files::BusConnection connection_;
  std::thread thread_;
  std::atomic<bool> stop_{false};
  mutable std::mutex mutex_;
  std::vector<PortalCall> calls_;
};

}  // namespace morvellan::test
