// The order in which dialogs are tried, and the answer of the environment.
#include "files/dialog/file_dialog.h"

#include <cstdlib>
#include <string_view>

#include "files/dialog/backends.h"

namespace morvellan::files
{

std::optional<DialogAnswer> askEnvironment()
{
  constexpr std::string_view accept = "accept:";
  const char* const set = std::getenv("MORVELLAN_FILE_DIALOG");
  const std::string_view answer = set != nullptr ? set : "";
  if (answer.empty())
    return std::nullopt;
  if (answer == "cancel")
    return DialogAnswer::cancelled();
  if (answer.starts_with(accept) && answer.size() > accept.size())
    return DialogAnswer::accepted(answer.substr(accept.size()));
  return DialogAnswer::failed("MORVELLAN_FILE_DIALOG is neither accept:PATH nor cancel; correct it or unset it.");
}

DialogAnswer askForFile(const DialogRequest& request)
{
  if (const auto answer = askEnvironment())
    return *answer;
#if defined(_WIN32)
  return askWindows(request);
#else
  if (const auto answer = askPortal(request))
    return *answer;
  if (const auto answer = askProgram(request))
    return *answer;
  return DialogAnswer::failed("No file dialog was found; install xdg-desktop-portal with the backend of your desktop, "
                              "or zenity, or kdialog.");
#endif
}

}  // namespace morvellan::files
