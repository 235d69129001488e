# The files that speaking Wayland beside Qt takes; TARVIK_WAYLAND says whether all of them are here. Qt's
# interface to its own connection is among its private headers.
find_package(PkgConfig QUIET)
if(PkgConfig_FOUND AND NOT WIN32)
  pkg_check_modules(TARVIK_WAYLAND_MODULES IMPORTED_TARGET GLOBAL wayland-client wayland-scanner wayland-protocols)
endif()
if(TARVIK_WAYLAND_MODULES_FOUND AND TARGET Qt6::GuiPrivate)
  pkg_get_variable(TARVIK_WAYLAND_SCANNER wayland-scanner wayland_scanner)
  pkg_get_variable(TARVIK_WAYLAND_PROTOCOLS wayland-protocols pkgdatadir)
  get_target_property(qt_private Qt6::GuiPrivate INTERFACE_INCLUDE_DIRECTORIES)
  find_file(TARVIK_QT_NATIVE_INTERFACE qpa/qplatformnativeinterface.h PATHS ${qt_private} NO_DEFAULT_PATH)
endif()
if(TARVIK_WAYLAND_MODULES_FOUND AND TARVIK_QT_NATIVE_INTERFACE)
  set(TARVIK_WAYLAND ON)
else()
  set(TARVIK_WAYLAND OFF)
endif()

# tarvik_add_wayland_protocols(<target> <files...>)
# The wire code of the protocols: "<name>.h" for what a client calls, and "<name>.inc", which one source file of
# the program includes after the header.
function(tarvik_add_wayland_protocols target)
  set(generated "${CMAKE_CURRENT_BINARY_DIR}/${target}")
  file(MAKE_DIRECTORY "${generated}")
  foreach(file IN LISTS ARGN)
    cmake_path(GET file STEM name)
    add_custom_command(
      OUTPUT "${generated}/${name}.h" "${generated}/${name}.inc"
      COMMAND "${TARVIK_WAYLAND_SCANNER}" client-header "${file}" "${generated}/${name}.h"
      COMMAND "${TARVIK_WAYLAND_SCANNER}" private-code "${file}" "${generated}/${name}.inc"
      DEPENDS "${file}"
      COMMENT "Generating Wayland protocol ${name}"
      VERBATIM)
    list(APPEND outputs "${generated}/${name}.h" "${generated}/${name}.inc")
  endforeach()
  add_library(${target} INTERFACE ${outputs})
  # What is generated is C.
  target_include_directories(${target} SYSTEM INTERFACE "${generated}")
  target_link_libraries(${target} INTERFACE PkgConfig::TARVIK_WAYLAND_MODULES)
endfunction()
