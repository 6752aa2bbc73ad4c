# OpenImageIO, which the tool and its tests read and write pictures with.
find_package(OpenImageIO REQUIRED)
# Debian's package names folders of optional libraries that need not be installed.
get_target_property(image_folders OpenImageIO::OpenImageIO INTERFACE_INCLUDE_DIRECTORIES)
set(existing_folders)
foreach(folder IN LISTS image_folders)
  if(EXISTS "${folder}")
    list(APPEND existing_folders "${folder}")
  endif()
endforeach()
set_target_properties(OpenImageIO::OpenImageIO PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${existing_folders}")
