# The build for this machine: the headers of the simulated Windows for every target, and its libraries' names.
target_include_directories(brisk_settings SYSTEM INTERFACE "${PROJECT_SOURCE_DIR}/tests/host/windows")
add_library(version INTERFACE)
