# Cross build for 64-bit Windows with clang and lld, and with the headers and libraries of MinGW-w64's GCC.
include("${CMAKE_CURRENT_LIST_DIR}/mingw-w64-x86_64.cmake")
if(CMAKE_HOST_WIN32)
  return()
endif()

# clang looks for GCC in a folder that is named by a plain number; Debian's is named after the thread model, too.
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-libgcc-file-name OUTPUT_VARIABLE gcc_folder
  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET gcc_folder PARENT_PATH gcc_folder)
cmake_path(GET gcc_folder FILENAME gcc_version)
string(REGEX REPLACE "-.*" "" gcc_version "${gcc_version}")
set(CMAKE_SYSROOT "${CMAKE_BINARY_DIR}/sysroot")
file(MAKE_DIRECTORY "${CMAKE_SYSROOT}/lib/gcc/x86_64-w64-mingw32")
file(CREATE_LINK "${gcc_folder}" "${CMAKE_SYSROOT}/lib/gcc/x86_64-w64-mingw32/${gcc_version}" SYMBOLIC)
file(CREATE_LINK /usr/x86_64-w64-mingw32 "${CMAKE_SYSROOT}/x86_64-w64-mingw32" SYMBOLIC)

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
# LLVM's own does not know how to keep a program's date.
set(CMAKE_STRIP /usr/bin/x86_64-w64-mingw32-strip CACHE FILEPATH "Takes the symbols out of programs" FORCE)
# GCC's library keeps what belongs to a thread in emulated variables.
set(CMAKE_CXX_FLAGS_INIT "-femulated-tls -pthread")
set(CMAKE_C_FLAGS_INIT "-pthread")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-fuse-ld=lld -pthread")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-fuse-ld=lld -pthread")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-fuse-ld=lld -pthread")
