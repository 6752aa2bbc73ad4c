#include "entry/local_multi_thread.h"

#include <atomic>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using OFX::MultiThread::localSuite;
using OFX::MultiThread::mixedSuite;
using OFX::MultiThread::repairSuite;

OfxMultiThreadSuiteV1 hostSuite()
{
  OfxMultiThreadSuiteV1 suite = localSuite();
  suite.multiThread = [](OfxThreadFunctionV1, unsigned int, void*) { return kOfxStatFailed; };
  suite.multiThreadNumCPUs = [](unsigned int*) { return kOfxStatFailed; };
  suite.multiThreadIndex = [](unsigned int*) { return kOfxStatFailed; };
  suite.multiThreadIsSpawnedThread = [] { return 0; };
  suite.mutexCreate = [](OfxMutexHandle*, int) { return kOfxStatFailed; };
  return suite;
}

TEST(RepairSuite, ACompleteSuiteOfAnotherHostStays)
{
  const OfxMultiThreadSuiteV1 own = hostSuite();
  for (const char* name : {"fr.inria.Natron", "DaVinciResolv", "com.sony.Catalyst.Edi", ""})
  {
    const OfxMultiThreadSuiteV1* current = &own;
    repairSuite(current, name);
    EXPECT_EQ(current, &own) << name;
  }
}

TEST(RepairSuite, AMissingSuiteBecomesTheLocalOne)
{
  const OfxMultiThreadSuiteV1* current = nullptr;
  repairSuite(current, "fr.inria.Natron");
  EXPECT_EQ(current, &localSuite());
}

TEST(RepairSuite, AnyMissingThreadFunctionBringsTheLocalOneWhole)
{
  for (int hole = 0; hole < 4; ++hole)
  {
    OfxMultiThreadSuiteV1 own = hostSuite();
    if (hole == 0)
      own.multiThread = nullptr;
    if (hole == 1)
      own.multiThreadNumCPUs = nullptr;
    if (hole == 2)
      own.multiThreadIndex = nullptr;
    if (hole == 3)
      own.multiThreadIsSpawnedThread = nullptr;
    const OfxMultiThreadSuiteV1* current = &own;
    repairSuite(current, "fr.inria.Natron");
    EXPECT_EQ(current, &localSuite()) << hole;
  }
}

TEST(RepairSuite, AnyMissingMutexFunctionBringsLocalMutexes)
{
  for (int hole = 0; hole < 5; ++hole)
  {
    OfxMultiThreadSuiteV1 own = hostSuite();
    if (hole == 0)
      own.mutexCreate = nullptr;
    if (hole == 1)
      own.mutexDestroy = nullptr;
    if (hole == 2)
      own.mutexLock = nullptr;
    if (hole == 3)
      own.mutexUnLock = nullptr;
    if (hole == 4)
      own.mutexTryLock = nullptr;
    const OfxMultiThreadSuiteV1* current = &own;
    repairSuite(current, "fr.inria.Natron");
    ASSERT_EQ(current, &mixedSuite()) << hole;
    EXPECT_EQ(current->multiThread, own.multiThread);
    EXPECT_EQ(current->mutexCreate, localSuite().mutexCreate);
  }
}

TEST(RepairSuite, DaVinciResolveGetsTheLocalSuiteWhole)
{
  const OfxMultiThreadSuiteV1 own = hostSuite();
  const OfxMultiThreadSuiteV1* current = &own;
  repairSuite(current, "DaVinciResolveStudio");
  EXPECT_EQ(current, &localSuite());
  repairSuite(current, "DaVinciResolveStudio");
  EXPECT_EQ(current, &localSuite());
}

TEST(RepairSuite, CatalystEditKeepsItsThreadFunctions)
{
  const OfxMultiThreadSuiteV1 own = hostSuite();
  for (const char* name : {"com.sony.Catalyst.Edit", "com.sony.Catalyst.Edit.2"})
  {
    const OfxMultiThreadSuiteV1* current = &own;
    repairSuite(current, name);
    ASSERT_EQ(current, &mixedSuite());
    EXPECT_EQ(current->multiThread, own.multiThread);
    EXPECT_EQ(current->multiThreadNumCPUs, own.multiThreadNumCPUs);
    EXPECT_EQ(current->multiThreadIndex, own.multiThreadIndex);
    EXPECT_EQ(current->multiThreadIsSpawnedThread, own.multiThreadIsSpawnedThread);
    EXPECT_EQ(current->mutexCreate, localSuite().mutexCreate);
    EXPECT_EQ(current->mutexDestroy, localSuite().mutexDestroy);
    EXPECT_EQ(current->mutexLock, localSuite().mutexLock);
    EXPECT_EQ(current->mutexUnLock, localSuite().mutexUnLock);
    EXPECT_EQ(current->mutexTryLock, localSuite().mutexTryLock);
    repairSuite(current, name);
    EXPECT_EQ(current, &mixedSuite());
  }
}

struct Seen
{
  std::mutex guard;
  std::multiset<unsigned int> indices;
  std::set<std::thread::id> threads;
  std::atomic<int> wrong{0};
};

TEST(LocalMultiThread, EveryIndexRunsOnceOnASpawnedThread)
{
  Seen seen;
  const auto work = [](unsigned int index, unsigned int count, void* argument)
  {
    Seen& s = *static_cast<Seen*>(argument);
    unsigned int own = 12345;
    if (localSuite().multiThreadIndex(&own) != kOfxStatOK || own != index || count != 3 ||
        localSuite().multiThreadIsSpawnedThread() == 0)
      ++s.wrong;
    const std::lock_guard lock(s.guard);
    s.indices.insert(index);
    s.threads.insert(std::this_thread::get_id());
  };
  EXPECT_EQ(localSuite().multiThread(work, 3, &seen), kOfxStatOK);
  EXPECT_EQ(seen.indices, (std::multiset<unsigned int>{0, 1, 2}));
  EXPECT_EQ(seen.wrong, 0);
  EXPECT_FALSE(seen.threads.contains(std::this_thread::get_id()));
}

TEST(LocalMultiThread, MoreIndicesThanWorkers)
{
  std::atomic<int> calls{0};
  const auto work = [](unsigned int, unsigned int, void* argument) { ++*static_cast<std::atomic<int>*>(argument); };
  EXPECT_EQ(localSuite().multiThread(work, 500, &calls), kOfxStatOK);
  EXPECT_EQ(calls, 500);
}

TEST(LocalMultiThread, NullFunctionIsABadHandle)
{
  EXPECT_EQ(localSuite().multiThread(nullptr, 2, nullptr), kOfxStatErrBadHandle);
}

TEST(LocalMultiThread, ASpawnedThreadMayNotSpawn)
{
  std::atomic<OfxStatus> inner{-1};
  const auto work = [](unsigned int, unsigned int, void* argument)
  {
    *static_cast<std::atomic<OfxStatus>*>(argument) =
        localSuite().multiThread([](unsigned int, unsigned int, void*) {}, 1, nullptr);
  };
  EXPECT_EQ(localSuite().multiThread(work, 1, &inner), kOfxStatOK);
  EXPECT_EQ(inner, kOfxStatErrExists);
}

TEST(LocalMultiThread, TheCallerIsNoSpawnedThread)
{
  unsigned int index = 0;
  EXPECT_EQ(localSuite().multiThreadIsSpawnedThread(), 0);
  EXPECT_EQ(localSuite().multiThreadIndex(&index), kOfxStatFailed);
  EXPECT_EQ(localSuite().multiThreadIndex(nullptr), kOfxStatErrBadHandle);
}

TEST(LocalMultiThread, CountsAtLeastOneCpu)
{
  unsigned int count = 0;
  EXPECT_EQ(localSuite().multiThreadNumCPUs(&count), kOfxStatOK);
  EXPECT_GE(count, 1u);
  EXPECT_EQ(localSuite().multiThreadNumCPUs(nullptr), kOfxStatErrBadHandle);
}

TEST(LocalMutex, LocksAgainInItsThreadAndBarsOthers)
{
  const auto& suite = localSuite();
  OfxMutexHandle mutex = nullptr;
  ASSERT_EQ(suite.mutexCreate(&mutex, 0), kOfxStatOK);
  EXPECT_EQ(suite.mutexLock(mutex), kOfxStatOK);
  EXPECT_EQ(suite.mutexTryLock(mutex), kOfxStatOK);
  const auto tryElsewhere = [&]
  {
    OfxStatus status = kOfxStatOK;
    std::thread(
        [&]
        {
          status = suite.mutexTryLock(mutex);
          if (status == kOfxStatOK)
            suite.mutexUnLock(mutex);
        })
        .join();
    return status;
  };
  EXPECT_EQ(tryElsewhere(), kOfxStatFailed);
  EXPECT_EQ(suite.mutexUnLock(mutex), kOfxStatOK);
  EXPECT_EQ(tryElsewhere(), kOfxStatFailed);
  EXPECT_EQ(suite.mutexUnLock(mutex), kOfxStatOK);
  EXPECT_EQ(tryElsewhere(), kOfxStatOK);
  EXPECT_EQ(suite.mutexUnLock(mutex), kOfxStatFailed);
  EXPECT_EQ(suite.mutexDestroy(mutex), kOfxStatOK);
}

TEST(LocalMutex, IsMadeLockedAsOftenAsAsked)
{
  const auto& suite = localSuite();
  OfxMutexHandle mutex = nullptr;
  ASSERT_EQ(suite.mutexCreate(&mutex, 2), kOfxStatOK);
  EXPECT_EQ(suite.mutexUnLock(mutex), kOfxStatOK);
  EXPECT_EQ(suite.mutexUnLock(mutex), kOfxStatOK);
  EXPECT_EQ(suite.mutexUnLock(mutex), kOfxStatFailed);
  EXPECT_EQ(suite.mutexDestroy(mutex), kOfxStatOK);
}

TEST(LocalMutex, ExcludesOtherThreads)
{
  const auto& suite = localSuite();
  OfxMutexHandle mutex = nullptr;
  ASSERT_EQ(suite.mutexCreate(&mutex, 0), kOfxStatOK);
  long total = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back(
        [&]
        {
          for (int i = 0; i < 5000; ++i)
          {
            suite.mutexLock(mutex);
            ++total;
            suite.mutexUnLock(mutex);
          }
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(total, 20000);
  suite.mutexDestroy(mutex);
}

TEST(LocalMutex, NullIsABadHandle)
{
  const auto& suite = localSuite();
  EXPECT_EQ(suite.mutexCreate(nullptr, 0), kOfxStatErrBadHandle);
  EXPECT_EQ(suite.mutexDestroy(nullptr), kOfxStatErrBadHandle);
  EXPECT_EQ(suite.mutexLock(nullptr), kOfxStatErrBadHandle);
  EXPECT_EQ(suite.mutexUnLock(nullptr), kOfxStatErrBadHandle);
  EXPECT_EQ(suite.mutexTryLock(nullptr), kOfxStatErrBadHandle);
}

}  // namespace
