// Both dialogs start in the folder of Looks, which the first of them makes.
#include "entry/look_buttons.h"

#include "files/config_folder.h"
#include "files/dialog/file_dialog.h"

namespace morvellan
{
namespace
{

files::DialogRequest request(files::DialogKind kind)
{
  const std::filesystem::path folder = files::lookFolder();
  // Without the folder the dialog starts elsewhere.
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  return {.kind = kind,
          .filterName = std::string(files::lookFilterName),
          .extension = std::string(files::lookExtension),
          .folder = folder,
          .defaultName = kind == files::DialogKind::save ? std::string(files::lookDefaultName) : ""};
}

std::string withReason(const std::string& text, const files::DialogAnswer& answer)
{
  return answer.reason.empty() ? text : text + ". " + answer.reason;
}

}  // namespace

void pressSaveLook(const params::ParamAccess& access, const files::Tell& tell)
{
  const files::DialogAnswer answer = files::askForFile(request(files::DialogKind::save));
  if (answer.code == files::DialogCode::accepted)
    files::saveLook(answer.path, access, tell);
  else if (answer.code != files::DialogCode::cancelled)
    tell(withReason("Morvellan : Unable to save Look files. Check folder permissions", answer));
}

void pressLoadLook(params::ParamAccess& access, const files::Tell& tell)
{
  const files::DialogAnswer answer = files::askForFile(request(files::DialogKind::open));
  if (answer.code == files::DialogCode::accepted)
    files::loadLook(answer.path, access, tell);
  else if (answer.code != files::DialogCode::cancelled)
    tell(withReason("Morvellan : Unable to load Look file. Check file and/or folder permissions", answer));
}

}  // namespace morvellan
