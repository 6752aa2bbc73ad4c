// Look files by themselves, read by the plug-in's own reader.
#pragma once

#include "options.h"
#include "session.h"

namespace morvellan::tool
{

// Runs looks show, check or diff, with the result on standard output. Throws RenderError where check found a fault.
void runLooks(Session& session, const LooksRequest& request);

}  // namespace morvellan::tool
