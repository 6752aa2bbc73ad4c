// Handles that a plug-in holds are numbers that name objects and are never used twice. A stale, foreign or invented
// handle is therefore recognised instead of followed.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

namespace morvellan::host
{

inline std::uintptr_t nextHandleNumber()
{
  static std::atomic<std::uintptr_t> next{0x1000};
  return next.fetch_add(16);
}

// Base of every class whose objects a plug-in may hold. `Object` is the class itself, `Handle` the opaque pointer type.
template <class Object, class Handle>
class Handled
{
public:
  Handled(const Handled&) = delete;
  Handled& operator=(const Handled&) = delete;

  Handle handle() const
  {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the number is never followed as a pointer
    return reinterpret_cast<Handle>(number_);
  }

  // Null for a handle that names no living object of this class.
  static Object* living(const void* handle)
  {
    const std::shared_lock lock(table().mutex);
    const auto found = table().objects.find(reinterpret_cast<std::uintptr_t>(handle));
    return found == table().objects.end() ? nullptr : static_cast<Object*>(found->second);
  }

protected:
  Handled()
  {
    const std::unique_lock lock(table().mutex);
    table().objects.emplace(number_, this);
  }

  ~Handled()
  {
    const std::unique_lock lock(table().mutex);
    table().objects.erase(number_);
  }

private:
  struct Table
  {
    std::shared_mutex mutex;
    std::unordered_map<std::uintptr_t, Handled*> objects;
  };

  static Table& table()
  {
    static Table instance;
    return instance;
  }

  const std::uintptr_t number_ = nextHandleNumber();
};

}  // namespace morvellan::host
