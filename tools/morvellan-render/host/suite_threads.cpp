// The multi-thread suite: a team of threads for each call, and mutexes that know who holds them.
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "host/action_scope.h"
#include "host/handles.h"
#include "host/property_set.h"
#include "host/suites.h"

namespace morvellan::host
{
namespace
{

thread_local unsigned int spawnedIndex = 0;
thread_local bool spawned = false;

// A recursive mutex, as the suite's are; its count of locks can be set at its creation.
class SuiteMutex : public Handled<SuiteMutex, OfxMutexHandle>
{
public:
  explicit SuiteMutex(int locks) : count_(locks)
  {
    if (locks > 0)
    {
      owner_ = std::this_thread::get_id();
    }
  }

  void lock()
  {
    std::unique_lock guard(mutex_);
    free_.wait(guard, [this] { return count_ == 0 || owner_ == std::this_thread::get_id(); });
    take();
  }

  bool tryLock()
  {
    const std::scoped_lock guard(mutex_);
    if (count_ > 0 && owner_ != std::this_thread::get_id())
    {
      return false;
    }
    take();
    return true;
  }

  // False if the calling thread does not hold it.
  bool unlock()
  {
    const std::scoped_lock guard(mutex_);
    if (count_ == 0 || owner_ != std::this_thread::get_id())
    {
      return false;
    }
    if (--count_ == 0)
    {
      free_.notify_one();
    }
    return true;
  }

  bool isHeld()
  {
    const std::scoped_lock guard(mutex_);
    return count_ > 0;
  }

private:
  void take()
  {
    owner_ = std::this_thread::get_id();
    ++count_;
  }

  std::mutex mutex_;
  std::condition_variable free_;
  std::thread::id owner_;
  int count_;
};

// The mutexes that a plug-in has made and not destroyed.
struct MutexPool
{
  std::mutex mutex;
  std::map<OfxMutexHandle, std::unique_ptr<SuiteMutex>> mutexes;
};

MutexPool& pool()
{
  static MutexPool instance;
  return instance;
}

unsigned int cpuCount()
{
  return std::max(1U, std::thread::hardware_concurrency());
}

OfxStatus multiThread(OfxThreadFunctionV1 function, unsigned int count, void* argument)
{
  if (function == nullptr)
  {
    reportMisuse("multiThread: the function is null");
    return kOfxStatErrBadHandle;
  }
  if (spawned)
  {
    reportMisuse("multiThread: called from a thread that it started");
    return kOfxStatErrExists;
  }
  const unsigned int threads = count == 0 ? cpuCount() : count;
  ActionScope* const scope = ActionScope::current();
  std::vector<std::jthread> team;
  team.reserve(threads);
  for (unsigned int index = 0; index < threads; ++index)
  {
    team.emplace_back(
        [=]
        {
          const ActionScope::Lend lend(scope);
          spawned = true;
          spawnedIndex = index;
          function(index, threads, argument);
        });
  }
  return kOfxStatOK;
}

OfxStatus multiThreadNumCpus(unsigned int* count)
{
  if (count == nullptr)
  {
    reportMisuse("multiThreadNumCPUs: the place for the answer is null");
    return kOfxStatErrValue;
  }
  *count = cpuCount();
  return kOfxStatOK;
}

OfxStatus multiThreadIndex(unsigned int* index)
{
  if (index == nullptr)
  {
    reportMisuse("multiThreadIndex: the place for the answer is null");
    return kOfxStatErrValue;
  }
  *index = spawnedIndex;
  return kOfxStatOK;
}

int multiThreadIsSpawnedThread()
{
  return spawned ? 1 : 0;
}

OfxStatus mutexCreate(OfxMutexHandle* mutex, int locks)
{
  if (mutex == nullptr || locks < 0)
  {
    reportMisuse("mutexCreate: the place for the answer is null, or the count is negative");
    return kOfxStatErrValue;
  }
  auto made = std::make_unique<SuiteMutex>(locks);
  *mutex = made->handle();
  const std::scoped_lock lock(pool().mutex);
  pool().mutexes.emplace(*mutex, std::move(made));
  return kOfxStatOK;
}

SuiteMutex* livingMutex(OfxMutexHandle handle, const char* call)
{
  SuiteMutex* const mutex = SuiteMutex::living(handle);
  if (mutex == nullptr)
  {
    reportMisuse(fmt::format("{}: the mutex handle is {}", call, handle == nullptr ? "null" : "not alive"));
  }
  return mutex;
}

OfxStatus mutexDestroy(const OfxMutexHandle handle)
{
  SuiteMutex* const mutex = livingMutex(handle, "mutexDestroy");
  if (mutex == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  if (mutex->isHeld())
  {
    reportMisuse("mutexDestroy: the mutex is locked");
  }
  const std::scoped_lock lock(pool().mutex);
  pool().mutexes.erase(handle);
  return kOfxStatOK;
}

OfxStatus mutexLock(const OfxMutexHandle handle)
{
  SuiteMutex* const mutex = livingMutex(handle, "mutexLock");
  if (mutex == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  mutex->lock();
  return kOfxStatOK;
}

OfxStatus mutexUnlock(const OfxMutexHandle handle)
{
  SuiteMutex* const mutex = livingMutex(handle, "mutexUnLock");
  if (mutex == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  if (!mutex->unlock())
  {
    reportMisuse("mutexUnLock: the calling thread does not hold the mutex");
    return kOfxStatFailed;
  }
  return kOfxStatOK;
}

OfxStatus mutexTryLock(const OfxMutexHandle handle)
{
  SuiteMutex* const mutex = livingMutex(handle, "mutexTryLock");
  if (mutex == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  return mutex->tryLock() ? kOfxStatOK : kOfxStatFailed;
}

}  // namespace

std::size_t takeMutexes()
{
  const std::scoped_lock lock(pool().mutex);
  return std::exchange(pool().mutexes, {}).size();
}

const OfxMultiThreadSuiteV1& multiThreadSuite()
{
  static const OfxMultiThreadSuiteV1 suite{
      &multiThread, &multiThreadNumCpus, &multiThreadIndex, &multiThreadIsSpawnedThread, &mutexCreate, &mutexDestroy,
      &mutexLock,   &mutexUnlock,        &mutexTryLock};
  return suite;
}

}  // namespace morvellan::host
