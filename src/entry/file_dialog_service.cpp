// The proof that file dialogs can start. On Windows they stand on COM.
#include "entry/file_dialog_service.h"

#if defined(_WIN32)
#include <stdexcept>

#include <objbase.h>
#endif

namespace morvellan
{

#if defined(_WIN32)

void proveFileDialogService()
{
  const HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
  // A thread that COM was started on in another way has it all the same; that start is not ours to end.
  if (result == RPC_E_CHANGED_MODE)
    return;
  if (FAILED(result))
    throw std::runtime_error("Failed to initialize COM.");
  CoUninitialize();
}

#else

void proveFileDialogService() {}

#endif

}  // namespace morvellan
