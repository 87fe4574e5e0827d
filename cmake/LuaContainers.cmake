# Generation of the Lua container package file and typedef header as part of a library's build.
#
#   lua_container_generate(<var> [OUTPUT_DIRECTORY <dir>] [TOOL <tool target>] [TARGET <name>])
#
# Sets in the caller's scope:
#
#   <var>              the package file and the typedef header
#   <var>_PACKAGE      the package file, <dir>/zymLua/generated_containers.pkg
#   <var>_TYPEDEFS     the typedef header, <dir>/zymLua/generated_container_typedefs.h
#   <var>_INCLUDE_DIR  <dir>, from which the package file's row
#                      $#include <zymLua/generated_container_typedefs.h> resolves
#
# and adds the custom target <name> (by default <var>) that brings both files up to date. <dir>
# is ${CMAKE_CURRENT_BINARY_DIR}/generated unless given; TOOL is LuaContainerGenerator unless given.
#
# Both files are outputs of a rule of the calling directory: a custom command there may DEPEND on
# them, and a target there may list them as sources. A target of another directory that lists
# them is made to depend on <name>; anything else elsewhere that needs them, a custom command for
# one, belongs to a target that must depend on <name> (add_dependencies).
#
# The tool runs again when it is rebuilt, or when the type map or the banner that it reads
# changes: it looks for them under the source root it was built with (ZYM_SOURCE_ROOT), the type
# map LuaContainerPrimitives.xml in <root>/, else in <root>/data/, the banner
# tools/Generator/zym_copyright.txt below the same two directories, and takes only a regular file
# or a link to one. This function makes the same search when CMake runs: a type map or banner
# put later where the tool looks first counts from the next CMake run.
#
# The tool writes into a staging directory beside <dir>; a file is replaced only where its
# content changed, so that an unchanged output keeps its time stamp and nothing that depends on
# it runs again. A run of the tool that fails, prints an error or does not create both files fails
# the build. A write that fails once a file is open, on a full disk, the tool does not report, and
# the build does not see it.

include_guard(GLOBAL)

# The first of the candidates that is a regular file or a link to one, as the tool takes them,
# or "". CMake itself tells a directory from a file but not a device or pipe; test(1) does.
function(_lua_container_first_file resultVar)
  foreach(candidate IN LISTS ARGN)
    if(EXISTS "${candidate}" AND NOT IS_DIRECTORY "${candidate}")
      execute_process(COMMAND test -f "${candidate}" RESULT_VARIABLE status)
      if(status EQUAL 0)
        set(${resultVar} "${candidate}" PARENT_SCOPE)
        return()
      endif()
    endif()
  endforeach()
  set(${resultVar} "" PARENT_SCOPE)
endfunction()

# Every buildsystem target below `directory`.
function(_lua_container_targets resultVar directory)
  get_property(targets DIRECTORY "${directory}" PROPERTY BUILDSYSTEM_TARGETS)
  get_property(subdirectories DIRECTORY "${directory}" PROPERTY SUBDIRECTORIES)
  foreach(subdirectory IN LISTS subdirectories)
    _lua_container_targets(below "${subdirectory}")
    list(APPEND targets ${below})
  endforeach()
  set(${resultVar} "${targets}" PARENT_SCOPE)
endfunction()

# Run once the whole tree is configured: a target outside `directory` that lists one of `files`
# among its sources cannot see their rule, so it is made to depend on the generating target.
function(_lua_container_connect generator directory files)
  _lua_container_targets(targets "${CMAKE_SOURCE_DIR}")
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    get_target_property(targetDirectory ${target} SOURCE_DIR)
    if(target STREQUAL generator OR type STREQUAL "INTERFACE_LIBRARY" OR targetDirectory STREQUAL directory)
      continue()
    endif()
    get_target_property(sources ${target} SOURCES)
    foreach(file IN LISTS files)
      if(file IN_LIST sources)
        add_dependencies(${target} ${generator})
        break()
      endif()
    endforeach()
  endforeach()
endfunction()

function(lua_container_generate outVar)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "OUTPUT_DIRECTORY;TOOL;TARGET" "")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "lua_container_generate: unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT arg_TOOL)
    set(arg_TOOL LuaContainerGenerator)
  endif()
  if(NOT arg_TARGET)
    set(arg_TARGET ${outVar})
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

  _lua_container_first_file(typeMap "${root}/LuaContainerPrimitives.xml" "${root}/data/LuaContainerPrimitives.xml")
  if(typeMap STREQUAL "")
    message(FATAL_ERROR
      "lua_container_generate: ${arg_TOOL} finds no type map: neither "
      "${root}/LuaContainerPrimitives.xml nor ${root}/data/LuaContainerPrimitives.xml is a file. "
      "ZYM_SOURCE_ROOT names the tree that holds it.")
  endif()
  _lua_container_first_file(banner
    "${root}/tools/Generator/zym_copyright.txt" "${root}/data/tools/Generator/zym_copyright.txt")

  set(step "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/LuaContainersStep.cmake")
  set(stageDir "${outputDir}.stage")
  set(stamp "${stageDir}/generated.stamp")
  set(files "${outputDir}/zymLua/generated_containers.pkg" "${outputDir}/zymLua/generated_container_typedefs.h")

  # The tool runs when its inputs change, and each of its files is published once it has run.
  # One command per file: make would touch a second output of one command whenever the first
  # changed. All steps hold a lock on the staging directory, so that where several targets of
  # the calling directory carry these rules, as they do with make, their runs follow one another.
  add_custom_command(
    OUTPUT "${stamp}"
    COMMAND "${CMAKE_COMMAND}" "-DTOOL=$<TARGET_FILE:${arg_TOOL}>" "-DSTAGE=${stageDir}" -DSTEP=generate
            -P "${step}"
    DEPENDS ${arg_TOOL} "${typeMap}" ${banner} "${step}"
    COMMENT "Generating Lua container declarations from ${typeMap}"
    VERBATIM)
  foreach(file IN LISTS files)
    add_custom_command(
      OUTPUT "${file}"
      COMMAND "${CMAKE_COMMAND}" "-DSTAGE=${stageDir}" "-DFILE=${file}" -DSTEP=publish -P "${step}"
      DEPENDS "${stamp}"
      COMMENT ""
      VERBATIM)
  endforeach()
  add_custom_target(${arg_TARGET} DEPENDS ${files})
  cmake_language(EVAL CODE
    "cmake_language(DEFER DIRECTORY \"${CMAKE_SOURCE_DIR}\" CALL _lua_container_connect
                    [[${arg_TARGET}]] [[${CMAKE_CURRENT_SOURCE_DIR}]] [[${files}]])")

  set(${outVar} ${files} PARENT_SCOPE)
  list(GET files 0 package)
  list(GET files 1 typedefs)
  set(${outVar}_PACKAGE "${package}" PARENT_SCOPE)
  set(${outVar}_TYPEDEFS "${typedefs}" PARENT_SCOPE)
  set(${outVar}_INCLUDE_DIR "${outputDir}" PARENT_SCOPE)
endfunction()
