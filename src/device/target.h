// What a compilation target is. Engine code is compiled once per target, in the namespace morvellan::<target>;
// these are the only macros that it uses.
#pragma once

#ifndef MORVELLAN_TARGET
#error "Engine code is compiled per target: MORVELLAN_TARGET names the namespace (cmake/Engines.cmake)"
#endif

#ifdef MORVELLAN_TARGET_IS_CUDA
#define MORVELLAN_KERNEL __device__
#define MORVELLAN_INLINE __host__ __device__ __forceinline__
#define MORVELLAN_APART __host__ __device__ __forceinline__
#define MORVELLAN_UNROLL
#else
#define MORVELLAN_KERNEL
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// A kernel inlined whole and with a check at every access takes the compiler many minutes.
#define MORVELLAN_INLINE inline
#else
#define MORVELLAN_INLINE inline __attribute__((always_inline))
#endif
// One of many cases of a uniform switch: inlined together they would cost the compiler minutes.
#define MORVELLAN_APART __attribute__((noinline))
// Before a loop of at most 16 rounds over arrays that are to live in registers.
#define MORVELLAN_UNROLL _Pragma("GCC unroll 16")
#endif
