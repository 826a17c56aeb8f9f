# The project's version wherever it is needed: base/Version.h for the sources and the programs' resources, in the build tree's
# folder `generated`.
math(EXPR major "${PROJECT_VERSION_MAJOR}")
math(EXPR minor "${PROJECT_VERSION_MINOR}")
file(READ "${PROJECT_SOURCE_DIR}/include/BriskHost.h" header)
if(NOT header MATCHES "VERSION_MAJOR ${major}\n#define BRISK_HOST_VERSION_MINOR ${minor}\n")
  message(FATAL_ERROR "include/BriskHost.h names another version than ${major}.${minor}")
endif()
set(BRISK_FILE_VERSION "${major}.${minor}.0.0")
string(REPLACE "." "," BRISK_FILE_VERSION_COMMAS "${BRISK_FILE_VERSION}")

set(brisk_generated "${CMAKE_BINARY_DIR}/generated")
configure_file("${PROJECT_SOURCE_DIR}/src/base/Version.h.in" "${brisk_generated}/base/Version.h" @ONLY)
