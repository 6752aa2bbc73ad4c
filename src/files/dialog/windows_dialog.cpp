// The dialog of Windows: the common item dialogs of the shell, on COM.
#if defined(_WIN32)
#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include <shobjidl.h>

#include "files/dialog/backends.h"

namespace morvellan::files
{
namespace
{

// COM on this thread for as long as it lives; a thread that another part has initialized otherwise will do.
class Com
{
public:
  Com() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
  ~Com()
  {
    if (SUCCEEDED(result_))
      CoUninitialize();
  }
  Com(const Com&) = delete;
  Com& operator=(const Com&) = delete;
  bool ready() const { return SUCCEEDED(result_) || result_ == RPC_E_CHANGED_MODE; }

private:
  HRESULT result_;
};

struct Release
{
  void operator()(IUnknown* object) const { object->Release(); }
};
template <class Interface>
using Owned = std::unique_ptr<Interface, Release>;

std::wstring wide(const std::string& text)
{
  return std::filesystem::path(reinterpret_cast<const char8_t*>(text.c_str())).wstring();
}

Owned<IFileDialog> makeDialog(DialogKind kind)
{
  IFileDialog* dialog = nullptr;
  CoCreateInstance(kind == DialogKind::save ? CLSID_FileSaveDialog : CLSID_FileOpenDialog, nullptr, CLSCTX_ALL,
                   IID_PPV_ARGS(&dialog));
  return Owned<IFileDialog>(dialog);
}

bool prepare(IFileDialog& dialog, const DialogRequest& request)
{
  const std::wstring name = wide(request.filterName);
  const std::wstring extension = wide(request.extension);
  const std::wstring pattern = L"*." + extension;
  const COMDLG_FILTERSPEC filter{name.c_str(), pattern.c_str()};
  FILEOPENDIALOGOPTIONS options = 0;
  bool good = SUCCEEDED(dialog.SetFileTypes(1, &filter)) && SUCCEEDED(dialog.SetDefaultExtension(extension.c_str())) &&
              SUCCEEDED(dialog.GetOptions(&options)) && SUCCEEDED(dialog.SetOptions(options | FOS_FORCEFILESYSTEM));
  if (!request.defaultName.empty())
    good = good && SUCCEEDED(dialog.SetFileName(wide(request.defaultName).c_str()));
  IShellItem* folder = nullptr;
  // A folder that is not there is no reason to show no dialog.
  if (SUCCEEDED(SHCreateItemFromParsingName(request.folder.c_str(), nullptr, IID_PPV_ARGS(&folder))))
  {
    dialog.SetFolder(folder);
    folder->Release();
  }
  return good;
}

std::optional<std::filesystem::path> chosen(IFileDialog& dialog)
{
  IShellItem* item = nullptr;
  if (FAILED(dialog.GetResult(&item)))
    return std::nullopt;
  const Owned<IShellItem> owned(item);
  PWSTR text = nullptr;
  if (FAILED(item->GetDisplayName(SIGDN_FILESYSPATH, &text)))
    return std::nullopt;
  std::filesystem::path path(text);
  CoTaskMemFree(text);
  return path;
}

}  // namespace

DialogAnswer askWindows(const DialogRequest& request)
{
  const Com com;
  const auto dialog = com.ready() ? makeDialog(request.kind) : nullptr;
  if (!dialog || !prepare(*dialog, request))
    return DialogAnswer::failed("");
  const HRESULT shown = dialog->Show(GetActiveWindow());
  if (shown == HRESULT_FROM_WIN32(ERROR_CANCELLED))
    return DialogAnswer::cancelled();
  const auto path = SUCCEEDED(shown) ? chosen(*dialog) : std::nullopt;
  return path ? DialogAnswer::accepted(*path) : DialogAnswer::failed("");
}

}  // namespace morvellan::files
#endif
