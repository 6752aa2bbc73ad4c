# The warnings our own code is held to. Other people's headers are included as system headers.
add_library(morvellan_warnings INTERFACE)
target_compile_options(morvellan_warnings INTERFACE
  $<$<COMPILE_LANGUAGE:CXX>:-Wall;-Wextra;-Wconversion;-Werror>)
# GCC warns about the attributes of the vector types that SIMD headers pass through templates.
target_compile_options(morvellan_warnings INTERFACE
  $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CXX_COMPILER_ID:GNU>>:-Wno-ignored-attributes;-Wno-psabi>)
