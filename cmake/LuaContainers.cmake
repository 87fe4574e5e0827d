# The Lua container generator in a library's build. The LuaContainerGenerator package, or the
# project added with add_subdirectory(), defines this function:
#
#   lua_container_generate(<name> [TYPE_MAP <file> [BANNER <file>] | SOURCE_ROOT <dir>]
#                          [OUTPUT_DIRECTORY <dir>])
#
# Generates the package file and the typedef header from a type map, and adds the INTERFACE library
# <name>: linking it gives a target the include directory of #include <zymLua/generated_container_
# typedefs.h> and makes the target wait for the generation. The type map is TYPE_MAP, with the
# optional banner BANNER; or, as the tool searches its root, LuaContainerPrimitives.xml in SOURCE_ROOT
# (the current source directory unless given) or its data/, and the banner
# tools/Generator/zym_copyright.txt below either. Sets <name>_PACKAGE and <name>_TYPEDEFS, the two
# files in <dir>/zymLua/, <name>_INCLUDE_DIR, <dir>, which is ${CMAKE_CURRENT_BINARY_DIR}/<name>
# unless OUTPUT_DIRECTORY is given, and <name>_TOLUA_EXTENSIONS, the tolua++ extension that the
# package file needs (-L).
#
# The generation runs LuaContainers::Generator on a copy of the type map and the banner, then
# LuaContainers::Check, which fails the build if a file was cut short. It runs when a source or a
# tool changes; a file whose text did not change keeps its time stamp.

include_guard(GLOBAL)

# Refuses a path with a character that CMake, make or ninja cannot carry in its rules.
function(_lua_containers_check_path call what path)
  set(characters "[][;\\#<>|\t\r\n]")
  if(CMAKE_GENERATOR MATCHES "Make")
    set(characters "[][;\\#<>|:\t\r\n]")
  endif()
  string(REGEX MATCH "${characters}" character "${path}")
  if(character MATCHES "[\t\r\n]")
    string(REPLACE "\t" "a tab" character "${character}")
    string(REPLACE "\r" "a carriage return" character "${character}")
    string(REPLACE "\n" "a line feed" character "${character}")
  elseif(NOT character STREQUAL "")
    set(character "'${character}'")
  endif()
  if(NOT character STREQUAL "")
    message(FATAL_ERROR "${call}: ${what} '${path}' holds ${character}, which the build cannot carry.")
  endif()
endfunction()

# The first of the candidates that exists and is no directory, or "".
function(_lua_containers_first_file resultVar)
  foreach(candidate IN LISTS ARGN)
    if(EXISTS "${candidate}" AND NOT IS_DIRECTORY "${candidate}")
      set(${resultVar} "${candidate}" PARENT_SCOPE)
      return()
    endif()
  endforeach()
  set(${resultVar} "" PARENT_SCOPE)
endfunction()

function(lua_container_generate name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "TYPE_MAP;BANNER;SOURCE_ROOT;OUTPUT_DIRECTORY" "")
  set(call "lua_container_generate(${name}) in ${CMAKE_CURRENT_LIST_FILE}")
  if(arg_UNPARSED_ARGUMENTS OR arg_KEYWORDS_MISSING_VALUES OR (DEFINED arg_BANNER AND NOT DEFINED arg_TYPE_MAP)
     OR (DEFINED arg_SOURCE_ROOT AND DEFINED arg_TYPE_MAP))
    message(FATAL_ERROR "${call}: give TYPE_MAP <file> [BANNER <file>] or SOURCE_ROOT <dir>, and "
                        "OUTPUT_DIRECTORY <dir>, each with a value.")
  endif()
  if(NOT DEFINED arg_OUTPUT_DIRECTORY)
    set(arg_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/${name}")
  endif()
  get_filename_component(outputDir "${arg_OUTPUT_DIRECTORY}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")

  # The type map and the banner, given or found as the tool finds them. Any file added to a
  # directory that the tool would search runs CMake again.
  set(banner "")
  if(DEFINED arg_TYPE_MAP)
    get_filename_component(typeMap "${arg_TYPE_MAP}" ABSOLUTE)
    if(DEFINED arg_BANNER)
      get_filename_component(banner "${arg_BANNER}" ABSOLUTE)
    endif()
  else()
    get_filename_component(root "${arg_SOURCE_ROOT}" ABSOLUTE)
    _lua_containers_first_file(typeMap "${root}/LuaContainerPrimitives.xml" "${root}/data/LuaContainerPrimitives.xml")
    _lua_containers_first_file(banner "${root}/tools/Generator/zym_copyright.txt"
                               "${root}/data/tools/Generator/zym_copyright.txt")
    foreach(directory "" /data /tools /tools/Generator /data/tools /data/tools/Generator)
      if(IS_DIRECTORY "${root}${directory}")
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${root}${directory}")
      endif()
    endforeach()
    if(typeMap STREQUAL "")
      set(typeMap "${root}/LuaContainerPrimitives.xml or ${root}/data/LuaContainerPrimitives.xml")
    endif()
  endif()
  foreach(path IN ITEMS arg_TYPE_MAP arg_BANNER arg_SOURCE_ROOT arg_OUTPUT_DIRECTORY typeMap banner outputDir)
    _lua_containers_check_path("${call}" "the path" "${${path}}")
  endforeach()
  foreach(source IN ITEMS typeMap banner)
    if(NOT "${${source}}" STREQUAL "" AND (NOT EXISTS "${${source}}" OR IS_DIRECTORY "${${source}}"))
      message(FATAL_ERROR "${call}: ${${source}} is no file.")
    endif()
  endforeach()

  # The generator built here must search the directory that it runs in, as it does by default.
  if(TARGET lua_containers_generator AND NOT ZYM_SOURCE_ROOT MATCHES "^\\./*$")
    message(FATAL_ERROR "${call}: LuaContainers::Generator searches ZYM_SOURCE_ROOT '${ZYM_SOURCE_ROOT}', but the "
                        "generation runs it where it copied the type map: set ZYM_SOURCE_ROOT to '.'.")
  endif()

  # One output directory for each call, and a staging directory of its own in the build tree, one
  # for each configuration, each with the tool of that configuration.
  file(MAKE_DIRECTORY "${outputDir}/zymLua")
  file(REAL_PATH "${outputDir}/zymLua" realOutputDir)
  get_property(earlier GLOBAL PROPERTY "_LUA_CONTAINERS_OUTPUT_${realOutputDir}")
  if(earlier)
    message(FATAL_ERROR "${call} writes into ${outputDir}, where ${earlier} writes already: give one of them "
                        "another OUTPUT_DIRECTORY.")
  endif()
  set_property(GLOBAL PROPERTY "_LUA_CONTAINERS_OUTPUT_${realOutputDir}" "${call}")
  set(stage "${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${name}.stage")
  get_property(multiConfig GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
  if(multiConfig)
    string(APPEND stage "/$<CONFIG>")
  endif()
  set(step "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/LuaContainersStep.cmake")
  set(files "${outputDir}/zymLua/generated_containers.pkg" "${outputDir}/zymLua/generated_container_typedefs.h")

  # The tool writes into the staging directory, and each file is published from there when its text
  # changed. One command for each file: make would touch a second output of one command whenever
  # the first changed. Only the target <name>_generate carries these rules, so that the tool runs once.
  add_custom_command(OUTPUT "${stage}/generated.stamp"
    COMMAND "${CMAKE_COMMAND}" "-DTOOL=$<TARGET_FILE:LuaContainers::Generator>"
            "-DCHECK=$<TARGET_FILE:LuaContainers::Check>" "-DSTAGE=${stage}" "-DTYPE_MAP=${typeMap}"
            "-DBANNER=${banner}" -DSTEP=generate -P "${step}"
    COMMAND "${CMAKE_COMMAND}" -E compare_files "${stage}/generated.stamp" "${stage}/generated.stamp"
    DEPENDS LuaContainers::Generator LuaContainers::Check "${typeMap}" ${banner} "${step}"
    COMMENT "Generating Lua container declarations from ${typeMap}"
    VERBATIM)
  foreach(file IN LISTS files)
    get_filename_component(fileName "${file}" NAME)
    add_custom_command(OUTPUT "${file}"
      COMMAND "${CMAKE_COMMAND}" "-DSTAGE=${stage}" "-DFILE=${file}" -DSTEP=publish -P "${step}"
      DEPENDS "${stage}/generated.stamp"
      COMMENT "Publishing ${fileName}"
      VERBATIM)
  endforeach()
  add_custom_target(${name}_generate DEPENDS ${files})
  add_library(${name} INTERFACE)
  target_include_directories(${name} INTERFACE "${outputDir}")
  add_dependencies(${name} ${name}_generate)

  list(GET files 0 package)
  list(GET files 1 typedefs)
  set(${name}_PACKAGE "${package}" PARENT_SCOPE)
  set(${name}_TYPEDEFS "${typedefs}" PARENT_SCOPE)
  set(${name}_INCLUDE_DIR "${outputDir}" PARENT_SCOPE)
  set(${name}_TOLUA_EXTENSIONS "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/LuaContainersTolua.lua" PARENT_SCOPE)
endfunction()
