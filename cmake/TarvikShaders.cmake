find_program(TARVIK_GLSLC glslc REQUIRED)

# tarvik_embed_shaders(<target> DIRECTORY <dir> SHADERS <names...> INCLUDES <names...>)
# Compiles GLSL to SPIR-V at build time. The target's sources can include "<name>.inc": the words of the
# module, separated by commas. INCLUDES are what the shaders include.
function(tarvik_embed_shaders target)
  cmake_parse_arguments(arg "" "DIRECTORY" "SHADERS;INCLUDES" ${ARGN})
  set(source "${CMAKE_CURRENT_SOURCE_DIR}/${arg_DIRECTORY}")
  set(generated "${CMAKE_CURRENT_BINARY_DIR}/${arg_DIRECTORY}")
  file(MAKE_DIRECTORY "${generated}")
  list(TRANSFORM arg_INCLUDES PREPEND "${source}/")
  foreach(shader IN LISTS arg_SHADERS)
    add_custom_command(
      OUTPUT "${generated}/${shader}.inc"
      COMMAND "${TARVIK_GLSLC}" --target-env=vulkan1.3 -O -Werror -mfmt=num
              -o "${generated}/${shader}.inc" "${source}/${shader}"
      DEPENDS "${source}/${shader}" ${arg_INCLUDES}
      COMMENT "Compiling shader ${shader}"
      VERBATIM)
    target_sources(${target} PRIVATE "${generated}/${shader}.inc")
  endforeach()
  target_include_directories(${target} PRIVATE "${generated}")
endfunction()
