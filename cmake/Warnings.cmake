# The warnings our own code is held to. Other people's headers are included as system headers.
add_library(morvellan_warnings INTERFACE)
target_compile_options(morvellan_warnings INTERFACE
  $<$<COMPILE_LANGUAGE:CXX>:-Wall;-Wextra;-Wconversion;-Werror>)
# GCC warns about the attributes of the vector types that SIMD headers pass through templates.
target_compile_options(morvellan_warnings INTERFACE
  $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CXX_COMPILER_ID:GNU>>:-Wno-ignored-attributes;-Wno-psabi>)
# Under the sanitizers GCC takes members of the standard library's regular expressions for uninitialised.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(morvellan_warnings INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-maybe-uninitialized>)
endif()
