# Installs the libraries as the package "tarvik", for find_package(tarvik) and targets named tarvik::<lib>.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/tarvik")

install(TARGETS tarvik_core tarvik_input tarvik_project tarvik_scene tarvik_renderer tarvik_sdk tarvik_appcommon
  EXPORT tarvik FILE_SET HEADERS)
install(EXPORT tarvik NAMESPACE tarvik:: FILE tarvikTargets.cmake DESTINATION "${package_dir}")

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/tarvikConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/tarvikConfig.cmake" INSTALL_DESTINATION "${package_dir}"
  NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
# Until 1.0 a minor version may break its callers.
write_basic_package_version_file("${PROJECT_BINARY_DIR}/tarvikConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/tarvikConfig.cmake" "${PROJECT_BINARY_DIR}/tarvikConfigVersion.cmake"
  DESTINATION "${package_dir}")

# The layout of an editor installation: bin, lib, plugins, include, and the notices.
if(TARGET tarvik-editor)
  install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION .)
endif()
if(TARVIK_BUNDLE)
  get_target_property(qmake Qt6::qmake IMPORTED_LOCATION)
  execute_process(COMMAND "${qmake}" -query QT_INSTALL_PLUGINS OUTPUT_VARIABLE qt_plugins
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  install(CODE "execute_process(COMMAND_ERROR_IS_FATAL ANY COMMAND bash \"${CMAKE_CURRENT_LIST_DIR}/bundle.sh\"
    \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\" \"${CMAKE_INSTALL_LIBDIR}\" \"${qt_plugins}\")")
endif()
