// Whether the system's service for file dialogs can start: proven once, while the effect is described.
#pragma once

namespace morvellan
{

/// Raises std::runtime_error "Failed to initialize COM." where the service of Windows cannot start on this thread.
/// Other systems need no proof.
void proveFileDialogService();

}  // namespace morvellan
