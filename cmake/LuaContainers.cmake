# Generation of the Lua container package file and typedef header as part of a library's build.
#
#   lua_container_generate(<var> [OUTPUT_DIRECTORY <dir>] [TOOL <target>])
#
# Adds to the calling directory a custom command that runs the tool (the target TOOL, by
# default LuaContainerGenerator) and sets in the caller's scope:
#
#   <var>              the files to add to one target of the calling directory: the package
#                      file, the typedef header, and the stamp file whose rule produces both
#   <var>_PACKAGE      the package file, <dir>/zymLua/generated_containers.pkg
#   <var>_TYPEDEFS     the typedef header, <dir>/zymLua/generated_container_typedefs.h
#   <var>_INCLUDE_DIR  <dir>, from which the package file's row
#                      $#include <zymLua/generated_container_typedefs.h> resolves
#
# <dir> is ${CMAKE_CURRENT_BINARY_DIR}/generated unless given. Add <var> to a single target:
# each target that lists the stamp runs the command.
#
# The command runs again when the tool is rebuilt or when the type map or the banner that the
# tool reads changes, and on nothing else. The tool looks for them under the source root it was
# built with (ZYM_SOURCE_ROOT): LuaContainerPrimitives.xml in <root>/, else in <root>/data/, and
# the banner tools/Generator/zym_copyright.txt below the same two directories, taking only a
# regular file or a link to one. This function makes the same search when CMake runs, so a
# type map or banner put later where the tool looks first counts from the next CMake run.
#
# The tool rewrites both files on every run. It writes them to a staging directory beside
# <dir>, and they are copied to <dir> only where their content changed: an unchanged output
# keeps its time stamp and recompiles nothing.

include_guard(GLOBAL)

# The first of the candidates that is a regular file or a link to one, as the tool takes them,
# or "". CMake itself tells a directory from a file but not a device or pipe; test(1) does.
function(_lua_container_first_file resultVar)
  foreach(candidate IN LISTS ARGN)
    if(EXISTS "${candidate}" AND NOT IS_DIRECTORY "${candidate}")
      set(regular TRUE)
      if(CMAKE_HOST_UNIX)
        execute_process(COMMAND test -f "${candidate}" RESULT_VARIABLE status)
        if(NOT status EQUAL 0)
          set(regular FALSE)
        endif()
      endif()
      if(regular)
        set(${resultVar} "${candidate}" PARENT_SCOPE)
        return()
      endif()
    endif()
  endforeach()
  set(${resultVar} "" PARENT_SCOPE)
endfunction()

function(lua_container_generate outVar)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "OUTPUT_DIRECTORY;TOOL" "")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "lua_container_generate: unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT arg_TOOL)
    set(arg_TOOL LuaContainerGenerator)
  endif()
  if(NOT TARGET ${arg_TOOL})
    message(FATAL_ERROR
      "lua_container_generate: there is no target ${arg_TOOL}. Add the LuaContainerGenerator "
      "project with add_subdirectory() before calling it.")
  endif()
  if(NOT arg_OUTPUT_DIRECTORY)
    set(arg_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/generated")
  endif()
  get_filename_component(outputDir "${arg_OUTPUT_DIRECTORY}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")

  # The source root is compiled into the tool; read it from the tool's own definition.
  get_target_property(definitions ${arg_TOOL} COMPILE_DEFINITIONS)
  set(root "")
  foreach(definition IN LISTS definitions)
    if(definition MATCHES "^ZYM_SOURCE_ROOT=\"(.*)\"$")
      set(root "${CMAKE_MATCH_1}")
    endif()
  endforeach()
  if(root STREQUAL "")
    message(FATAL_ERROR "lua_container_generate: ${arg_TOOL} has no ZYM_SOURCE_ROOT definition")
  endif()
  # A relative root is taken from the directory the command runs in, the calling binary directory.
  get_filename_component(root "${root}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")

  _lua_container_first_file(typeMap
    "${root}/LuaContainerPrimitives.xml"
    "${root}/data/LuaContainerPrimitives.xml")
  if(typeMap STREQUAL "")
    message(FATAL_ERROR
      "lua_container_generate: ${arg_TOOL} finds no type map: neither "
      "${root}/LuaContainerPrimitives.xml nor ${root}/data/LuaContainerPrimitives.xml is a file. "
      "ZYM_SOURCE_ROOT names the tree that holds it.")
  endif()
  _lua_container_first_file(banner
    "${root}/tools/Generator/zym_copyright.txt"
    "${root}/data/tools/Generator/zym_copyright.txt")

  set(stageDir "${outputDir}.stage")
  set(stamp "${stageDir}/generated.stamp")
  set(stagedPackage "${stageDir}/generated_containers.pkg")
  set(stagedTypedefs "${stageDir}/generated_container_typedefs.h")
  set(package "${outputDir}/zymLua/generated_containers.pkg")
  set(typedefs "${outputDir}/zymLua/generated_container_typedefs.h")

  # The staged files are removed first: after a failure to read the type map the tool still
  # exits with status 0 and leaves its targets as they were, and the copy then fails.
  add_custom_command(
    OUTPUT "${stamp}"
    BYPRODUCTS "${package}" "${typedefs}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${stageDir}" "${outputDir}/zymLua"
    COMMAND "${CMAKE_COMMAND}" -E rm -f "${stagedPackage}" "${stagedTypedefs}"
    COMMAND ${arg_TOOL} "${stagedPackage}" "${stagedTypedefs}"
    COMMAND "${CMAKE_COMMAND}" -E copy_if_different "${stagedPackage}" "${stagedTypedefs}" "${outputDir}/zymLua"
    COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
    DEPENDS ${arg_TOOL} "${typeMap}" ${banner}
    COMMENT "Generating Lua container declarations from ${typeMap}"
    VERBATIM)

  set(${outVar} "${package}" "${typedefs}" "${stamp}" PARENT_SCOPE)
  set(${outVar}_PACKAGE "${package}" PARENT_SCOPE)
  set(${outVar}_TYPEDEFS "${typedefs}" PARENT_SCOPE)
  set(${outVar}_INCLUDE_DIR "${outputDir}" PARENT_SCOPE)
endfunction()
