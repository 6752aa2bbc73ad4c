// The buttons that save and load a Look: a file dialog, then the file.
// Every failure is a message and none ends the action.
#pragma once

#include "files/look_file.h"

namespace morvellan
{

void pressSaveLook(const params::ParamAccess& access, const files::Tell& tell);
void pressLoadLook(params::ParamAccess& access, const files::Tell& tell);

}  // namespace morvellan
