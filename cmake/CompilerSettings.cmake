# What every target of the project is compiled and linked with: the target `brisk_settings`.
add_library(brisk_settings INTERFACE)
target_compile_definitions(brisk_settings INTERFACE
  WIN32_LEAN_AND_MEAN NOMINMAX WINVER=0x0A00 _WIN32_WINNT=0x0A00)

if(MSVC)
  set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
  target_compile_options(brisk_settings INTERFACE /W4 /WX /permissive- /utf-8 /Zc:__cplusplus /guard:cf)
  target_link_options(brisk_settings INTERFACE /DYNAMICBASE /HIGHENTROPYVA /NXCOMPAT /guard:cf)
else()
  target_compile_options(brisk_settings INTERFACE
    $<$<COMPILE_LANGUAGE:C,CXX>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Werror>
    $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
    # GCC 12 sees overlaps in std::string's operator+, and the value of an empty std::optional in use, where there is
    # neither; clang and its analyzer see to the latter.
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict -Wno-maybe-uninitialized>
    $<$<COMPILE_LANGUAGE:C,CXX>:-ffunction-sections -fdata-sections>)
  # The folder of a build is nothing that its programs' users need, and would make each build another.
  if(BRISK_SYMBOLS)
    set(symbols -g "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=brisk" "-ffile-prefix-map=${CMAKE_BINARY_DIR}=brisk/build")
    target_compile_options(brisk_settings INTERFACE "$<$<COMPILE_LANGUAGE:C,CXX>:${symbols}>")
  endif()
  if(WIN32)
    target_link_options(brisk_settings INTERFACE
      -static -Wl,--gc-sections -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va)
  endif()
endif()
