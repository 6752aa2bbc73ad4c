// Owners of libdbus objects, and the few steps of building and reading messages that its interface makes long.
#pragma once

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include <dbus/dbus.h>

namespace morvellan::files
{

struct DropConnection
{
  void operator()(DBusConnection* connection) const
  {
    dbus_connection_close(connection);
    dbus_connection_unref(connection);
  }
};
using BusConnection = std::unique_ptr<DBusConnection, DropConnection>;

// A connection of our own to the session's bus, or null: the one that libraries share belongs to the host. The library
// would read the bus's address once for the life of the process; this reads it as it is now.
inline BusConnection openSessionBus(DBusError* error)
{
  const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  BusConnection connection(address != nullptr ? dbus_connection_open_private(address, error)
                                              : dbus_bus_get_private(DBUS_BUS_SESSION, error));
  if (!connection)
    return nullptr;
  dbus_connection_set_exit_on_disconnect(connection.get(), FALSE);
  return dbus_bus_register(connection.get(), error) != 0 ? std::move(connection) : nullptr;
}

struct DropMessage
{
  void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using BusMessage = std::unique_ptr<DBusMessage, DropMessage>;

class BusError
{
public:
  BusError() { dbus_error_init(&error_); }
  ~BusError() { dbus_error_free(&error_); }
  BusError(const BusError&) = delete;
  BusError& operator=(const BusError&) = delete;
  DBusError* get() { return &error_; }
  bool is(const char* name) const { return dbus_error_has_name(&error_, name) != 0; }
  std::string text() const { return error_.message != nullptr ? error_.message : ""; }

private:
  DBusError error_{};
};

// Appends into a container that is open for as long as it lives: an array, a structure, a variant or an entry.
class BusWriter
{
public:
  explicit BusWriter(DBusMessage& message) { dbus_message_iter_init_append(&message, &iter_); }
  BusWriter(BusWriter& outer, int container, const char* contents) : outer_(&outer)
  {
    dbus_message_iter_open_container(&outer.iter_, container, contents, &iter_);
  }
  ~BusWriter()
  {
    if (outer_ != nullptr)
      dbus_message_iter_close_container(&outer_->iter_, &iter_);
  }
  BusWriter(const BusWriter&) = delete;
  BusWriter& operator=(const BusWriter&) = delete;

  void text(const std::string& value)
  {
    const char* const pointer = value.c_str();
    dbus_message_iter_append_basic(&iter_, DBUS_TYPE_STRING, static_cast<const void*>(&pointer));
  }
  void number(dbus_uint32_t value) { dbus_message_iter_append_basic(&iter_, DBUS_TYPE_UINT32, &value); }
  // The bytes with a zero behind them, as paths are sent.
  void path(const std::string& value)
  {
    const char* const pointer = value.c_str();
    dbus_message_iter_append_fixed_array(&iter_, DBUS_TYPE_BYTE, static_cast<const void*>(&pointer),
                                         static_cast<int>(value.size()) + 1);
  }

private:
  DBusMessageIter iter_{};
  BusWriter* outer_ = nullptr;
};

}  // namespace morvellan::files
