// The local multi-thread suite. A call starts its workers, waits for them and answers with the worst that happened;
// which thread carries which index stands in a table that a critical section guards, the number of workers alive in
// another.
#include "entry/local_multi_thread.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

// A recursive lock that may be destroyed while it is held, and knows when its owner unlocks it.
struct OfxMutex
{
  std::mutex guard;
  std::condition_variable freed;
  std::thread::id owner;
  int count = 0;
};

namespace OFX::MultiThread
{

namespace
{

// A critical section with a busy flag. Its sections are a few instructions long; whoever finds it busy sleeps a second.
class CriticalSection
{
public:
  void lock()
  {
    while (busy_.exchange(true, std::memory_order_acquire))
      std::this_thread::sleep_for(std::chrono::milliseconds(1000));
  }
  void unlock() { busy_.store(false, std::memory_order_release); }

private:
  std::atomic<bool> busy_{false};
};

using Section = std::lock_guard<CriticalSection>;

CriticalSection tableSection;
CriticalSection countSection;

// The index that each spawned thread is working on. An entry is made and dropped by the call that owns the worker; the
// worker moves on to its next index without the section.
using IndexTable = std::map<std::thread::id, const std::atomic<unsigned int>*>;

IndexTable& indexTable()
{
  static IndexTable table;
  return table;
}

unsigned int workersAlive = 0;

unsigned int cpuCount()
{
  return std::max(1u, std::thread::hardware_concurrency());
}

// Workers of one call: as many as asked, but all calls together have at most four a CPU, and every call has at least
// one.
class Reservation
{
public:
  explicit Reservation(unsigned int wanted)
  {
    const Section section(countSection);
    const unsigned int limit = cpuCount() * 4;
    const unsigned int room = workersAlive < limit ? limit - workersAlive : 1;
    count_ = std::max(1u, std::min(wanted, room));
    workersAlive += count_;
  }
  ~Reservation()
  {
    const Section section(countSection);
    workersAlive -= count_;
  }
  Reservation(const Reservation&) = delete;
  Reservation& operator=(const Reservation&) = delete;
  unsigned int count() const { return count_; }

private:
  unsigned int count_ = 1;
};

const std::atomic<unsigned int>* indexOfThisThread()
{
  const Section section(tableSection);
  const auto found = indexTable().find(std::this_thread::get_id());
  return found != indexTable().end() ? found->second : nullptr;
}

// One call of multiThread: the function, and how far its indices are dealt.
struct Batch
{
  OfxThreadFunctionV1* function;
  unsigned int threadMax;
  void* argument;
  std::atomic<unsigned int> next{0};
  std::atomic<bool> failed{false};
  std::atomic<bool> tabled{false};  // no worker starts before the table knows all of them

  void work(std::atomic<unsigned int>& index) noexcept
  {
    tabled.wait(false);
    while ((index = next.fetch_add(1)) < threadMax)
    {
      try
      {
        function(index, threadMax, argument);
      }
      catch (...)
      {
        failed = true;
      }
    }
  }
};

using Indices = std::vector<std::atomic<unsigned int>>;

void enterInTable(const std::vector<std::thread>& threads, const Indices& indices)
{
  const Section section(tableSection);
  try
  {
    for (std::size_t i = 0; i < threads.size(); ++i)
      indexTable()[threads[i].get_id()] = &indices[i];
    if (threads.empty())
      indexTable()[std::this_thread::get_id()] = &indices[0];
  }
  catch (const std::bad_alloc&)
  {
    // The work goes on; a thread without an entry is told that it was not spawned.
  }
}

void runBatch(Batch& batch, unsigned int workers)
{
  Indices indices(workers);
  std::vector<std::thread> threads;
  threads.reserve(workers);
  try
  {
    for (unsigned int i = 0; i < workers; ++i)
      threads.emplace_back([&batch, &index = indices[i]] { batch.work(index); });
  }
  catch (const std::system_error&)
  {
    // Fewer threads than asked: those that run take all indices, or this thread does where none runs.
  }
  enterInTable(threads, indices);
  batch.tabled = true;
  batch.tabled.notify_all();
  if (threads.empty())
    batch.work(indices[0]);
  for (std::thread& thread : threads)
    thread.join();
  const Section section(tableSection);
  std::erase_if(indexTable(), [&](const IndexTable::value_type& entry)
                { return entry.second >= indices.data() && entry.second < indices.data() + indices.size(); });
}

OfxStatus multiThread(OfxThreadFunctionV1 function, unsigned int threadCount, void* argument)
{
  if (function == nullptr)
    return kOfxStatErrBadHandle;
  if (indexOfThisThread() != nullptr)
    return kOfxStatErrExists;  // a spawned thread may not spawn
  try
  {
    Batch batch{.function = function, .threadMax = threadCount == 0 ? cpuCount() : threadCount, .argument = argument};
    const Reservation workers(std::min(batch.threadMax, cpuCount() * 4));
    runBatch(batch, workers.count());
    return batch.failed ? kOfxStatFailed : kOfxStatOK;
  }
  catch (...)
  {
    return kOfxStatErrMemory;
  }
}

OfxStatus multiThreadNumCPUs(unsigned int* count)
{
  if (count == nullptr)
    return kOfxStatErrBadHandle;
  *count = cpuCount();
  return kOfxStatOK;
}

OfxStatus multiThreadIndex(unsigned int* index)
{
  if (index == nullptr)
    return kOfxStatErrBadHandle;
  const std::atomic<unsigned int>* own = indexOfThisThread();
  if (own == nullptr)
    return kOfxStatFailed;
  *index = *own;
  return kOfxStatOK;
}

int multiThreadIsSpawnedThread()
{
  return indexOfThisThread() != nullptr ? 1 : 0;
}

OfxStatus mutexCreate(OfxMutexHandle* mutex, int lockCount)
{
  if (mutex == nullptr)
    return kOfxStatErrBadHandle;
  *mutex = new (std::nothrow) OfxMutex;
  if (*mutex == nullptr)
    return kOfxStatErrMemory;
  if (lockCount > 0)
  {
    (*mutex)->owner = std::this_thread::get_id();
    (*mutex)->count = lockCount;
  }
  return kOfxStatOK;
}

OfxStatus mutexDestroy(const OfxMutexHandle mutex)
{
  if (mutex == nullptr)
    return kOfxStatErrBadHandle;
  delete mutex;
  return kOfxStatOK;
}

void take(OfxMutex& mutex)
{
  mutex.owner = std::this_thread::get_id();
  ++mutex.count;
}

bool isMineOrFree(const OfxMutex& mutex)
{
  return mutex.count == 0 || mutex.owner == std::this_thread::get_id();
}

OfxStatus mutexLock(const OfxMutexHandle mutex)
{
  if (mutex == nullptr)
    return kOfxStatErrBadHandle;
  std::unique_lock lock(mutex->guard);
  mutex->freed.wait(lock, [&] { return isMineOrFree(*mutex); });
  take(*mutex);
  return kOfxStatOK;
}

OfxStatus mutexUnLock(const OfxMutexHandle mutex)
{
  if (mutex == nullptr)
    return kOfxStatErrBadHandle;
  const std::lock_guard lock(mutex->guard);
  if (mutex->count == 0 || mutex->owner != std::this_thread::get_id())
    return kOfxStatFailed;
  if (--mutex->count == 0)
    mutex->freed.notify_one();
  return kOfxStatOK;
}

OfxStatus mutexTryLock(const OfxMutexHandle mutex)
{
  if (mutex == nullptr)
    return kOfxStatErrBadHandle;
  const std::lock_guard lock(mutex->guard);
  if (!isMineOrFree(*mutex))
    return kOfxStatFailed;
  take(*mutex);
  return kOfxStatOK;
}

constexpr OfxMultiThreadSuiteV1 localTable{
    .multiThread = multiThread,
    .multiThreadNumCPUs = multiThreadNumCPUs,
    .multiThreadIndex = multiThreadIndex,
    .multiThreadIsSpawnedThread = multiThreadIsSpawnedThread,
    .mutexCreate = mutexCreate,
    .mutexDestroy = mutexDestroy,
    .mutexLock = mutexLock,
    .mutexUnLock = mutexUnLock,
    .mutexTryLock = mutexTryLock,
};

OfxMultiThreadSuiteV1 mixedTable{
    .multiThread = nullptr,
    .multiThreadNumCPUs = nullptr,
    .multiThreadIndex = nullptr,
    .multiThreadIsSpawnedThread = nullptr,
    .mutexCreate = mutexCreate,
    .mutexDestroy = mutexDestroy,
    .mutexLock = mutexLock,
    .mutexUnLock = mutexUnLock,
    .mutexTryLock = mutexTryLock,
};

bool lacksThreadFunctions(const OfxMultiThreadSuiteV1& suite)
{
  return suite.multiThread == nullptr || suite.multiThreadNumCPUs == nullptr || suite.multiThreadIndex == nullptr ||
         suite.multiThreadIsSpawnedThread == nullptr;
}

bool lacksMutexFunctions(const OfxMultiThreadSuiteV1& suite)
{
  return suite.mutexCreate == nullptr || suite.mutexDestroy == nullptr || suite.mutexLock == nullptr ||
         suite.mutexUnLock == nullptr || suite.mutexTryLock == nullptr;
}

}  // namespace

const OfxMultiThreadSuiteV1& localSuite()
{
  return localTable;
}

const OfxMultiThreadSuiteV1& mixedSuite()
{
  return mixedTable;
}

void repairSuite(const OfxMultiThreadSuiteV1*& current, std::string_view hostName)
{
  if (current != &localTable &&
      (current == nullptr || lacksThreadFunctions(*current) || hostName.starts_with("DaVinciResolve")))
    current = &localTable;
  if (current != &mixedTable && (lacksMutexFunctions(*current) || hostName.starts_with("com.sony.Catalyst.Edit")))
  {
    mixedTable.multiThread = current->multiThread;
    mixedTable.multiThreadNumCPUs = current->multiThreadNumCPUs;
    mixedTable.multiThreadIndex = current->multiThreadIndex;
    mixedTable.multiThreadIsSpawnedThread = current->multiThreadIsSpawnedThread;
    current = &mixedTable;
  }
}

}  // namespace OFX::MultiThread
