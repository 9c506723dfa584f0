# What wayland-scanner makes of protocols.

find_program(WAYLAND_SCANNER wayland-scanner REQUIRED)
pkg_check_modules(WAYLAND REQUIRED IMPORTED_TARGET wayland-client)
pkg_get_variable(WAYLAND_PROTOCOLS wayland-protocols pkgdatadir)

# kivra_wayland_protocols(<library> <file>...) makes a library of the client's side of the protocols:
# <protocol>-client-protocol.h for each <protocol>.xml.
function(kivra_wayland_protocols library)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/${library})
  file(MAKE_DIRECTORY ${folder})
  set(made "")
  foreach(file ${ARGN})
    get_filename_component(name ${file} NAME_WLE)
    foreach(kind client-header private-code)
      set(output ${folder}/${name}-client-protocol.h)
      if(kind STREQUAL private-code)
        set(output ${folder}/${name}-protocol.c)
      endif()
      add_custom_command(OUTPUT ${output}
                         COMMAND ${WAYLAND_SCANNER} ${kind} ${file} ${output}
                         DEPENDS ${file}
                         VERBATIM)
      list(APPEND made ${output})
    endforeach()
  endforeach()
  add_library(${library} STATIC ${made})
  target_include_directories(${library} SYSTEM PUBLIC ${folder})
  target_link_libraries(${library} PUBLIC PkgConfig::WAYLAND)
  # Each file defines the same names for itself.
  set_target_properties(${library} PROPERTIES UNITY_BUILD OFF)
endfunction()
