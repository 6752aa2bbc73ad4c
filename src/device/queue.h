// A queue: the device that work goes to and who watches it. Launches and copies of one queue run in their order.
#pragma once

#include "device/host/launch_observer.h"
#include "device/target.h"

namespace morvellan::MORVELLAN_TARGET
{

struct Queue
{
  int device = 0;
  LaunchObserver* observer = nullptr;
};

// How many devices this target has: software devices on the CPU (setDeviceCount), GPUs on CUDA.
int deviceCount();

// Devices of the CPU target, each the same set of threads; ignored on CUDA. `peerAccess` says whether a device may
// address another's memory. Called once, before the first frame.
void setSoftwareDevices(int count, bool peerAccess);

// The device that allocations and launches without a queue go to, per host thread.
void makeCurrent(int device);
int currentDevice();

bool canAccessPeer(int device, int other);
void enablePeerAccess(int device, int other);

// Blocks until everything that was queued on the current device is done.
void synchronize();

}  // namespace morvellan::MORVELLAN_TARGET
