// The dialogs that may be there. Each answers, or gives nothing where it is not at hand.
#pragma once

#include <optional>

#include "files/dialog/file_dialog.h"

namespace morvellan::files
{

// MORVELLAN_FILE_DIALOG; nothing where it is unset or empty.
std::optional<DialogAnswer> askEnvironment();

#if defined(_WIN32)

DialogAnswer askWindows(const DialogRequest& request);

#else

// Nothing without a session bus or a portal on it that offers a file chooser.
std::optional<DialogAnswer> askPortal(const DialogRequest& request);

// Nothing where neither zenity nor kdialog is on the PATH.
std::optional<DialogAnswer> askProgram(const DialogRequest& request);

#endif

}  // namespace morvellan::files
