// File dialogs: a person, or the environment in their place, names one file to open or to save.
// The dialogs of the desktop stand behind one function; which of them answers is decided when it is called.
#pragma once

#include <filesystem>
#include <string>

namespace morvellan::files
{

enum class DialogKind
{
  open,
  save
};

// One filter, and where the dialog starts.
struct DialogRequest
{
  DialogKind kind = DialogKind::open;
  std::string filterName;  // for a person
  std::string extension;   // without its full stop
  std::filesystem::path folder;
  std::string defaultName;  // of a file to save; empty: none
};

enum class DialogCode
{
  accepted = 1,
  cancelled = 2,
  failed = 3
};

struct DialogAnswer
{
  DialogCode code = DialogCode::failed;
  std::filesystem::path path;  // where accepted
  std::string reason;          // where failed: what was wrong and what to do; may be empty

  static DialogAnswer accepted(std::filesystem::path path) { return {DialogCode::accepted, std::move(path), {}}; }
  static DialogAnswer cancelled() { return {DialogCode::cancelled, {}, {}}; }
  static DialogAnswer failed(std::string reason) { return {DialogCode::failed, {}, std::move(reason)}; }
};

// Blocks until the person has answered. MORVELLAN_FILE_DIALOG answers in their place: "accept:PATH" or "cancel".
// Otherwise the dialog of Windows; elsewhere that of the desktop portal (org.freedesktop.portal.FileChooser on the
// session's D-Bus), else of zenity or kdialog, whichever is found first.
DialogAnswer askForFile(const DialogRequest& request);

}  // namespace morvellan::files
