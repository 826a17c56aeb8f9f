# brisk_program(TARGET IDENTITY DESCRIPTION): what the programs that are handed out have in common. They lie
# in the build folder itself. On Windows they get a manifest and a version resource, and a header that names the Windows
# they were written for and not the minute they were built in; scripts/check-executable holds all of it.
function(brisk_program name identity description)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
  if(NOT TARGET programs)
    add_custom_target(programs)
  endif()
  add_dependencies(programs ${name})
  if(NOT WIN32)
    return()
  endif()

  set(folder "${brisk_generated}/programs")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/program.rc.in" "${folder}/${name}.rc" @ONLY)
  configure_file("${PROJECT_SOURCE_DIR}/cmake/program.manifest.in" "${folder}/${name}.manifest" @ONLY)
  target_sources(${name} PRIVATE "${folder}/${name}.rc")
  target_include_directories(${name} PRIVATE "${brisk_generated}")
  # The resource compiler's own dependencies are not looked for.
  set_source_files_properties("${folder}/${name}.rc" PROPERTIES OBJECT_DEPENDS
    "${folder}/${name}.manifest;${brisk_generated}/base/Version.h")

  if(MSVC)
    target_link_options(${name} PRIVATE /MANIFEST:NO /Brepro /SUBSYSTEM:$<IF:$<BOOL:$<TARGET_PROPERTY:WIN32_EXECUTABLE>>,WINDOWS,CONSOLE>,10.0)
    return()
  endif()
  target_link_options(${name} PRIVATE
    -Wl,--tsaware
    -Wl,--major-os-version,10 -Wl,--minor-os-version,0
    -Wl,--major-subsystem-version,10 -Wl,--minor-subsystem-version,0
    -Wl,--no-insert-timestamp
    $<$<AND:$<CONFIG:Release>,$<NOT:$<BOOL:${BRISK_SYMBOLS}>>>:-s>)
  if(BRISK_SYMBOLS)
    add_custom_command(TARGET ${name} POST_BUILD
      COMMAND ${CMAKE_OBJCOPY} --preserve-dates --only-keep-debug $<TARGET_FILE:${name}> $<TARGET_FILE:${name}>.debug
      COMMAND ${CMAKE_STRIP} --preserve-dates --strip-all $<TARGET_FILE:${name}>
      VERBATIM) # Without preserving dates both would write the hour into the header.
  endif()
endfunction()
