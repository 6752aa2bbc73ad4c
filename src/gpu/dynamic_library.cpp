// The loader of POSIX systems and that of Windows behind one face.
#include "gpu/dynamic_library.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace morvellan::gpu
{

DynamicLibrary DynamicLibrary::open(const std::string& name)
{
  DynamicLibrary library;
#if defined(_WIN32)
  // System folders only: a library of that name beside the host is nobody's driver.
  if (HMODULE handle = LoadLibraryExA(name.c_str(), nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32))
    library.handle_ = {handle, [](void* loaded) { FreeLibrary(static_cast<HMODULE>(loaded)); }};
#else
  if (void* handle = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL))
    library.handle_ = {handle, [](void* loaded) { dlclose(loaded); }};
#endif
  return library;
}

void* DynamicLibrary::address(const char* name) const
{
  if (!handle_)
    return nullptr;
#if defined(_WIN32)
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_.get()), name));
#else
  return dlsym(handle_.get(), name);
#endif
}

}  // namespace morvellan::gpu
