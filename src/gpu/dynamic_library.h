// A shared library that is looked for at run time and may be missing.
#pragma once

#include <memory>
#include <string>

namespace morvellan::gpu
{

class DynamicLibrary
{
public:
  DynamicLibrary() = default;

  // An object without a library when none of that name can be loaded.
  [[nodiscard]] static DynamicLibrary open(const std::string& name);

  [[nodiscard]] explicit operator bool() const { return handle_ != nullptr; }

  // The function of that name, null when there is none.
  template <typename Function>
  [[nodiscard]] Function* function(const char* name) const
  {
    return reinterpret_cast<Function*>(address(name));
  }

private:
  [[nodiscard]] void* address(const char* name) const;

  std::shared_ptr<void> handle_;
};

}  // namespace morvellan::gpu
