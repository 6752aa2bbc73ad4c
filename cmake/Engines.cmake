# The engine's sources (device, colour, film, grain, pipeline) are compiled once per target, each time in the namespace
# morvellan::<target>. A "host" folder below them holds what is compiled once for all targets.
# cpu_v2 is in every build: it is what the others are tested against.
set(MORVELLAN_CPU_LEVELS cpu_v2 cpu_v3 cpu_v4)
set(MORVELLAN_CPU_TARGETS "${MORVELLAN_CPU_LEVELS}" CACHE STRING "CPU engines of the build; cpu_v2 has to be one of them")
if(NOT "cpu_v2" IN_LIST MORVELLAN_CPU_TARGETS)
  message(FATAL_ERROR "MORVELLAN_CPU_TARGETS is \"${MORVELLAN_CPU_TARGETS}\"; add cpu_v2, which the other engines are tested against")
endif()
set(MORVELLAN_ENGINE_FOLDERS device colour film grain pipeline)

set(morvellan_flags_cpu_v2 -march=x86-64-v2)
set(morvellan_flags_cpu_v3 -march=x86-64-v3 -maes -mpclmul)
set(morvellan_flags_cpu_v4 -march=x86-64-v4 -maes -mpclmul)

set(MORVELLAN_TARGETS ${MORVELLAN_CPU_TARGETS})
if(MORVELLAN_CUDA)
  if(NOT CMAKE_CUDA_ARCHITECTURES)
    set(CMAKE_CUDA_ARCHITECTURES 75-real 86-real 90)
  endif()
  enable_language(CUDA)
  find_package(CUDAToolkit REQUIRED)
  # CMake 3.25 does not know that newer compilers of CUDA speak C++20.
  set(CMAKE_CUDA20_STANDARD_COMPILE_OPTION "-std=c++20")
  set(CMAKE_CUDA20_EXTENSION_COMPILE_OPTION "-std=c++20")
  list(APPEND MORVELLAN_TARGETS cuda)
endif()

# morvellan_engine_objects(<name> <target> <sources...>): the sources as an object library of one target.
# For cuda each source is compiled by nvcc through a two-line .cu file of the build folder.
function(morvellan_engine_objects name target)
  set(sources ${ARGN})
  if(target STREQUAL cuda)
    set(generated)
    foreach(source IN LISTS sources)
      file(RELATIVE_PATH relative "${CMAKE_SOURCE_DIR}" "${source}")
      string(REGEX REPLACE "\\.cpp$" ".cu" unit "${CMAKE_BINARY_DIR}/cuda_units/${name}/${relative}")
      file(GENERATE OUTPUT "${unit}" CONTENT "#include \"${source}\"\n")
      list(APPEND generated "${unit}")
    endforeach()
    set(sources ${generated})
  endif()
  add_library(${name} OBJECT ${sources})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/src" "${CMAKE_SOURCE_DIR}")
  target_compile_definitions(${name} PRIVATE MORVELLAN_TARGET=${target} MORVELLAN_TARGET_NAME="${target}")
  if(target STREQUAL cuda)
    target_compile_definitions(${name} PRIVATE MORVELLAN_TARGET_IS_CUDA=1)
    # Products and sums are contracted only where the code says fma, as on the CPU.
    target_compile_options(${name} PRIVATE -fmad=false --expt-relaxed-constexpr --extended-lambda
      -Xcompiler=-Wall,-Wextra,-Wno-psabi)
    target_link_libraries(${name} PRIVATE CUDA::cudart_static fmt::fmt TBB::tbb)
  else()
    target_compile_options(${name} PRIVATE ${morvellan_flags_${target}} -ffp-contract=off -fno-math-errno -fno-trapping-math)
    target_link_libraries(${name} PRIVATE morvellan_warnings TBB::tbb fmt::fmt)
  endif()
endfunction()

# morvellan_isolate_engine(<output variable> <target> <object library>): one relocatable object whose only global symbol
# is the engine's table. Templates of the standard library and of TBB that a higher instruction set was allowed for stay
# inside, so that the linker can never hand them to code that runs on a lesser processor.
function(morvellan_isolate_engine output target library)
  set(object "${CMAKE_BINARY_DIR}/engines/${target}.o")
  add_custom_command(
    OUTPUT "${object}"
    COMMAND ${CMAKE_COMMAND} -E make_directory "${CMAKE_BINARY_DIR}/engines"
    COMMAND ld -r --force-group-allocation -o "${object}.all" $<TARGET_OBJECTS:${library}>
    COMMAND ${CMAKE_OBJCOPY} --keep-global-symbol=_ZN9morvellan6${target}6engineE "${object}.all" "${object}"
    DEPENDS ${library} $<TARGET_OBJECTS:${library}>
    COMMAND_EXPAND_LISTS VERBATIM
    COMMENT "Isolating engine ${target}")
  set(${output} "${object}" PARENT_SCOPE)
endfunction()
