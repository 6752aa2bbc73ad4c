// The dialog of the desktop portal, version 1 of the interface org.freedesktop.portal.FileChooser: a call that returns
// a request, whose signal Response brings the answer.
#if !defined(_WIN32)
#include <array>
#include <string_view>

#include <dlfcn.h>
#include <fmt/format.h>

#include "files/dialog/backends.h"
#include "files/dialog/dbus_handles.h"
#include "files/dialog/file_uri.h"

namespace morvellan::files
{
namespace
{

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* requestInterface = "org.freedesktop.portal.Request";

// libdbus makes its locks once and keeps them, and the call that frees them is not for one of several users. So it
// stays loaded when the plug-in goes: a later load finds the locks again, where one unloaded leaves them behind.
void keepLibraryLoaded()
{
  if (void* const library = dlopen("libdbus-1.so.3", RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE))
    dlclose(library);
}

template <class Write>
void option(BusWriter& options, const char* name, const char* type, const Write& write)
{
  BusWriter entry(options, DBUS_TYPE_DICT_ENTRY, nullptr);
  entry.text(name);
  BusWriter variant(entry, DBUS_TYPE_VARIANT, type);
  write(variant);
}

// One filter: its name and one pattern of kind 0, a glob.
void writeFilters(BusWriter& variant, const DialogRequest& request)
{
  BusWriter filters(variant, DBUS_TYPE_ARRAY, "(sa(us))");
  BusWriter filter(filters, DBUS_TYPE_STRUCT, nullptr);
  filter.text(request.filterName);
  BusWriter patterns(filter, DBUS_TYPE_ARRAY, "(us)");
  BusWriter pattern(patterns, DBUS_TYPE_STRUCT, nullptr);
  pattern.number(0);
  pattern.text("*." + request.extension);
}

BusMessage makeCall(const DialogRequest& request)
{
  const bool save = request.kind == DialogKind::save;
  BusMessage call(dbus_message_new_method_call(service, "/org/freedesktop/portal/desktop",
                                               "org.freedesktop.portal.FileChooser", save ? "SaveFile" : "OpenFile"));
  BusWriter arguments(*call);
  arguments.text("");  // the parent window, which the interface of effects does not tell
  arguments.text(save ? "Save " + request.filterName : "Open " + request.filterName);
  BusWriter options(arguments, DBUS_TYPE_ARRAY, "{sv}");
  option(options, "filters", "a(sa(us))", [&](BusWriter& variant) { writeFilters(variant, request); });
  option(options, "current_folder", "ay",
         [&](BusWriter& variant) { BusWriter(variant, DBUS_TYPE_ARRAY, "y").path(request.folder.string()); });
  if (save && !request.defaultName.empty())
    option(options, "current_name", "s", [&](BusWriter& variant) { variant.text(request.defaultName); });
  return call;
}

// Errors of a bus without a portal, or of a portal without a chooser: other dialogs are tried then.
bool meansNoPortal(const BusError& error)
{
  constexpr std::array names{DBUS_ERROR_SERVICE_UNKNOWN,         DBUS_ERROR_NAME_HAS_NO_OWNER,
                             DBUS_ERROR_UNKNOWN_METHOD,          DBUS_ERROR_UNKNOWN_INTERFACE,
                             DBUS_ERROR_UNKNOWN_OBJECT,          DBUS_ERROR_SPAWN_EXEC_FAILED,
                             DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND, DBUS_ERROR_SPAWN_CHILD_EXITED};
  for (const char* const name : names)
    if (error.is(name))
      return true;
  return false;
}

// The first of the entry "uris" of the answer's results.
std::string firstUri(DBusMessageIter results)
{
  DBusMessageIter entry;
  for (dbus_message_iter_recurse(&results, &entry); dbus_message_iter_get_arg_type(&entry) == DBUS_TYPE_DICT_ENTRY;
       dbus_message_iter_next(&entry))
  {
    DBusMessageIter field;
    DBusMessageIter variant;
    DBusMessageIter uri;
    const char* text = nullptr;
    dbus_message_iter_recurse(&entry, &field);
    dbus_message_iter_get_basic(&field, static_cast<void*>(&text));
    dbus_message_iter_next(&field);
    dbus_message_iter_recurse(&field, &variant);
    if (std::string_view(text) != "uris" || dbus_message_iter_get_arg_type(&variant) != DBUS_TYPE_ARRAY)
      continue;
    dbus_message_iter_recurse(&variant, &uri);
    if (dbus_message_iter_get_arg_type(&uri) != DBUS_TYPE_STRING)
      continue;
    dbus_message_iter_get_basic(&uri, static_cast<void*>(&text));
    return text;
  }
  return "";
}

DialogAnswer answerOf(DBusMessage& response)
{
  DBusMessageIter arguments;
  dbus_uint32_t code = 2;  // ended in some other way
  if (dbus_message_has_signature(&response, "ua{sv}") == 0)
    return DialogAnswer::failed("The desktop portal gave an answer that is none.");
  dbus_message_iter_init(&response, &arguments);
  dbus_message_iter_get_basic(&arguments, &code);
  dbus_message_iter_next(&arguments);
  if (code == 1)
    return DialogAnswer::cancelled();
  if (code != 0)
    return DialogAnswer::failed("The desktop portal could not show its file dialog.");
  const auto path = pathOfFileUri(firstUri(arguments));
  return path ? DialogAnswer::accepted(*path)
              : DialogAnswer::failed("The desktop portal named no file of this machine.");
}

// The portal is gone: its name has no owner any more.
bool tellsOfTheEnd(DBusMessage& message)
{
  const char* name = nullptr;
  const char* before = nullptr;
  const char* after = nullptr;
  return dbus_message_is_signal(&message, DBUS_INTERFACE_DBUS, "NameOwnerChanged") != 0 &&
         dbus_message_get_args(&message, nullptr, DBUS_TYPE_STRING, &name, DBUS_TYPE_STRING, &before, DBUS_TYPE_STRING,
                               &after, DBUS_TYPE_INVALID) != 0 &&
         std::string_view(name) == service && *after == '\0';
}

// Blocks for as long as the person looks at the dialog. Answers that came before the call returned are in the queue.
DialogAnswer awaitAnswer(DBusConnection& connection, const std::string& request)
{
  constexpr int forever = -1;
  do
  {
    while (const BusMessage message{dbus_connection_pop_message(&connection)})
    {
      if (dbus_message_is_signal(message.get(), requestInterface, "Response") != 0 &&
          dbus_message_has_path(message.get(), request.c_str()) != 0)
        return answerOf(*message);
      if (tellsOfTheEnd(*message))
        return DialogAnswer::failed("The desktop portal ended while its file dialog was open.");
    }
  } while (dbus_connection_read_write(&connection, forever) != 0);
  return DialogAnswer::failed("The connection to the session's D-Bus ended while the file dialog was open.");
}

}  // namespace

std::optional<DialogAnswer> askPortal(const DialogRequest& request)
{
  keepLibraryLoaded();
  BusError error;
  const BusConnection connection = openSessionBus(error.get());
  if (!connection)
    return std::nullopt;
  // Heard before the call is made, so that no answer can be missed.
  for (const std::string& rule :
       {fmt::format("type='signal',interface='{}',member='Response'", requestInterface),
        fmt::format("type='signal',interface='{}',member='NameOwnerChanged',arg0='{}'", DBUS_INTERFACE_DBUS, service)})
    dbus_bus_add_match(connection.get(), rule.c_str(), nullptr);

  const BusMessage call = makeCall(request);
  const BusMessage reply(
      dbus_connection_send_with_reply_and_block(connection.get(), call.get(), DBUS_TIMEOUT_USE_DEFAULT, error.get()));
  if (!reply)
  {
    if (meansNoPortal(error))
      return std::nullopt;
    return DialogAnswer::failed("The desktop portal refused to show a file dialog: " + error.text());
  }
  const char* handle = nullptr;
  if (dbus_message_get_args(reply.get(), nullptr, DBUS_TYPE_OBJECT_PATH, &handle, DBUS_TYPE_INVALID) == 0)
    return DialogAnswer::failed("The desktop portal gave an answer that is none.");
  return awaitAnswer(*connection, handle);
}

}  // namespace morvellan::files
#endif
