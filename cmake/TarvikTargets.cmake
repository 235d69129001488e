# One function per kind of target, so that every library and program of the tree is built alike.
include(GNUInstallDirs)
include(GenerateExportHeader)

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# What links a library of the tree also sees the packages that the library found.
set(CMAKE_FIND_PACKAGE_TARGETS_GLOBAL ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
# An installed tree can be moved: libraries find each other beside themselves, programs one folder up.
set(CMAKE_INSTALL_RPATH "$ORIGIN" "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(TARVIK_CCACHE ccache)
  if(TARVIK_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${TARVIK_CCACHE}")
  endif()
endif()

function(tarvik_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
                                           -Woverloaded-virtual -Wold-style-cast -Wimplicit-fallthrough -Werror)
endfunction()

# tarvik_add_library(<lib> HEADERS <names...> SOURCES <files...>)
# The shared library tarvik_<lib>. HEADERS are its public headers, named as below include/tarvik/<folder>/;
# FOLDER is <lib> unless given.
function(tarvik_add_library name)
  cmake_parse_arguments(arg "" "FOLDER" "HEADERS;SOURCES" ${ARGN})
  if(NOT arg_FOLDER)
    set(arg_FOLDER ${name})
  endif()
  set(target tarvik_${name})
  string(TOUPPER ${target} upper)
  set(generated "${CMAKE_CURRENT_BINARY_DIR}/include")
  list(TRANSFORM arg_HEADERS PREPEND "include/tarvik/${arg_FOLDER}/")

  add_library(${target} SHARED ${arg_SOURCES})
  add_library(tarvik::${name} ALIAS ${target})
  generate_export_header(${target} EXPORT_MACRO_NAME ${upper}_API
                         EXPORT_FILE_NAME "${generated}/tarvik/${arg_FOLDER}/Export.hpp")
  target_sources(${target} PUBLIC
    FILE_SET HEADERS BASE_DIRS include "${generated}"
    FILES ${arg_HEADERS} "${generated}/tarvik/${arg_FOLDER}/Export.hpp")
  target_compile_features(${target} PUBLIC cxx_std_23)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name}
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} VERIFY_INTERFACE_HEADER_SETS ON)
  if(NOT WIN32)
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
  tarvik_set_warnings(${target})
endfunction()

# tarvik_add_executable(<target> SOURCES <files...> LIBRARIES <targets...>)
function(tarvik_add_executable target)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${target} ${arg_SOURCES})
  target_link_libraries(${target} PRIVATE ${arg_LIBRARIES})
  tarvik_set_warnings(${target})
endfunction()

# tarvik_add_test(<name> TIER <logic|qt|real> SOURCES <files...> LIBRARIES <targets...> [ENVIRONMENT <K=V...>])
# A GoogleTest program; every case is a test of its own for CTest, labelled with its tier: pure logic, Qt with
# the scripted renderer, or the real thing with a window system and a Vulkan driver.
function(tarvik_add_test name)
  cmake_parse_arguments(arg "" "TIER" "SOURCES;LIBRARIES;ENVIRONMENT" ${ARGN})
  tarvik_add_executable(${name} SOURCES ${arg_SOURCES} LIBRARIES ${arg_LIBRARIES} GTest::gtest)
  if(NOT arg_TIER STREQUAL "logic")
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    set(lock RESOURCE_LOCK display)
  else()
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST
    PROPERTIES LABELS ${arg_TIER} TIMEOUT 120 ${lock} ENVIRONMENT "${arg_ENVIRONMENT}"
               SKIP_REGULAR_EXPRESSION "\\[  SKIPPED \\]")
endfunction()

# tarvik_add_compositor_tests(<suite> TIMEOUT <seconds> COMMAND <command...>)
# The command as a test <suite>.<compositor> under each Wayland compositor.
function(tarvik_add_compositor_tests suite)
  cmake_parse_arguments(arg "" "TIMEOUT" "COMMAND" ${ARGN})
  foreach(compositor sway weston)
    add_test(NAME ${suite}.${compositor}
      COMMAND "${PROJECT_SOURCE_DIR}/tests/support/with-${compositor}.sh" ${arg_COMMAND})
    set_tests_properties(${suite}.${compositor} PROPERTIES
      LABELS real TIMEOUT ${arg_TIMEOUT} RESOURCE_LOCK display)
  endforeach()
endfunction()
