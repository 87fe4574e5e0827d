# The Lua container generator in a library's build. Adding the LuaContainerGenerator project with
# add_subdirectory() defines these two functions.
#
#   lua_container_generate(<name> [SOURCE_ROOT <dir>] [OUTPUT_DIRECTORY <dir>] [TOOL <target or path>])
#
# Generates the package file and the typedef header from the type map under SOURCE_ROOT, and
# adds the INTERFACE library <name>. Linking <name> is all that a target needs: it carries the
# include directory from which #include <zymLua/generated_container_typedefs.h> resolves, and the
# order after the generation, for the target's sources, its file sets and its custom commands.
# Sets <name>_PACKAGE and <name>_TYPEDEFS, the two files in <dir>/zymLua/, <name>_INCLUDE_DIR,
# <dir>, which is ${CMAKE_CURRENT_BINARY_DIR}/<name> unless OUTPUT_DIRECTORY is given, and
# <name>_TOLUA_EXTENSIONS, the extension that tolua++ needs for the package file (-L).
#
# The tool looks for the type map LuaContainerPrimitives.xml in <root>/, else in <root>/data/, and
# for the optional banner tools/Generator/zym_copyright.txt below the same two directories. The
# tool is built for SOURCE_ROOT; without SOURCE_ROOT it is LuaContainers::Generator, which searches
# ZYM_SOURCE_ROOT, this project's tree unless set. A TOOL built elsewhere, as a cross build needs,
# comes with the SOURCE_ROOT that it was built for.
#
# The generation runs when the tool, the type map or the banner changes, once for all the targets
# that link <name>. A file whose text did not change keeps its time stamp, so that nothing that
# depends on it runs again. A map that the tool cannot use fails the build with a line
# "<type map>:<row>: error: <reason>" and then the tool's own words.
#
#   add_lua_container_generator(<name> ROOT <dir>)
#
# Adds the executable <name>, a build of the tool that searches <dir>.

include_guard(GLOBAL)

function(add_lua_container_generator name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "ROOT" "")
  if(arg_UNPARSED_ARGUMENTS OR NOT DEFINED arg_ROOT)
    message(FATAL_ERROR "add_lua_container_generator(<name> ROOT <dir>): got ${ARGV}")
  endif()
  string(REGEX REPLACE "([\\\"])" "\\\\\\1" root "${arg_ROOT}") # a C string of the path, whatever it holds
  add_executable(${name} "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../tools/Generator/SourceRoot.cpp")
  target_compile_definitions(${name} PRIVATE "ZYM_SOURCE_ROOT=\"${root}\"")
  target_link_libraries(${name} PRIVATE lua_containers_code)
  set_target_properties(${name} PROPERTIES LUA_CONTAINERS_SOURCE_ROOT "${arg_ROOT}")
endfunction()

# The first of the candidates that is a regular file or a link to one, as the tool takes them, or "".
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

# Whether `target` links `library`, itself or through the libraries that it links.
function(_lua_container_links resultVar target library)
  set(pending ${target})
  set(seen "")
  while(pending)
    list(POP_FRONT pending current)
    if(current STREQUAL library)
      set(${resultVar} TRUE PARENT_SCOPE)
      return()
    elseif(TARGET "${current}" AND NOT current IN_LIST seen)
      list(APPEND seen ${current})
      get_target_property(links ${current} LINK_LIBRARIES)
      get_target_property(interfaceLinks ${current} INTERFACE_LINK_LIBRARIES)
      string(REGEX REPLACE "\\$<LINK_ONLY:([^>]*)>" "\\1" links "${links};${interfaceLinks}")
      list(APPEND pending ${links})
    endif()
  endwhile()
  set(${resultVar} FALSE PARENT_SCOPE)
endfunction()

# Run once the whole tree is configured. A target that lists the generated files among its
# sources without linking <name> would not wait for the generation: that is an error.
function(_lua_container_check name files directory)
  set(directories "${directory}")
  while(directories)
    list(POP_FRONT directories current)
    get_property(subdirectories DIRECTORY "${current}" PROPERTY SUBDIRECTORIES)
    get_property(targets DIRECTORY "${current}" PROPERTY BUILDSYSTEM_TARGETS)
    list(APPEND directories ${subdirectories})
    foreach(target IN LISTS targets)
      get_target_property(sources ${target} SOURCES)
      foreach(file IN LISTS files)
        if(file IN_LIST sources AND NOT target STREQUAL "${name}_generate")
          _lua_container_links(links ${target} ${name})
          if(NOT links)
            message(FATAL_ERROR "Target ${target} lists ${file} among its sources without linking ${name}: "
                                "link ${name} (lua_container_generate) instead.")
          endif()
        endif()
      endforeach()
    endforeach()
  endwhile()
endfunction()

function(lua_container_generate name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "SOURCE_ROOT;OUTPUT_DIRECTORY;TOOL" "")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "lua_container_generate(${name}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  set(call "lua_container_generate(${name}) in ${CMAKE_CURRENT_LIST_FILE}")
  get_filename_component(project "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/.." ABSOLUTE)

  # The tool and the root that it searches, relative to the directory that it runs in.
  if(arg_TOOL AND NOT TARGET "${arg_TOOL}" AND NOT IS_ABSOLUTE "${arg_TOOL}")
    message(FATAL_ERROR "${call}: TOOL ${arg_TOOL} is neither a target nor an absolute path.")
  elseif(arg_TOOL AND TARGET "${arg_TOOL}" AND NOT DEFINED arg_SOURCE_ROOT)
    get_target_property(arg_SOURCE_ROOT ${arg_TOOL} LUA_CONTAINERS_SOURCE_ROOT)
  endif()
  if(arg_TOOL AND NOT arg_SOURCE_ROOT)
    message(FATAL_ERROR "${call}: TOOL ${arg_TOOL} was built elsewhere: give the SOURCE_ROOT it was built for.")
  elseif(NOT arg_TOOL AND DEFINED arg_SOURCE_ROOT)
    get_filename_component(arg_SOURCE_ROOT "${arg_SOURCE_ROOT}" ABSOLUTE)
    string(MD5 key "${arg_SOURCE_ROOT}")
    string(SUBSTRING "${key}" 0 12 key)
    set(arg_TOOL lua_containers_generator_${key})
    if(NOT TARGET ${arg_TOOL})
      add_lua_container_generator(${arg_TOOL} ROOT "${arg_SOURCE_ROOT}")
    endif()
  elseif(NOT arg_TOOL)
    set(arg_TOOL lua_containers_generator)
    get_target_property(arg_SOURCE_ROOT ${arg_TOOL} LUA_CONTAINERS_SOURCE_ROOT)
  endif()
  get_filename_component(root "${arg_SOURCE_ROOT}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
  get_property(warned GLOBAL PROPERTY _LUA_CONTAINERS_WARNED)
  if(root STREQUAL project AND NOT PROJECT_NAME STREQUAL "LuaContainerGenerator" AND NOT warned)
    set_property(GLOBAL PROPERTY _LUA_CONTAINERS_WARNED TRUE)
    message(WARNING "${call} generates from the LuaContainerGenerator project's own type map: give "
                    "SOURCE_ROOT, the directory of the library's LuaContainerPrimitives.xml.")
  endif()
  if(TARGET "${arg_TOOL}")
    set(tool "$<TARGET_FILE:${arg_TOOL}>")
  else()
    set(tool "${arg_TOOL}")
  endif()

  # The type map and banner that the tool will read, found as it finds them. Adding a file to one
  # of the directories it searches changes the directory, and CMake runs again.
  _lua_container_first_file(typeMap "${root}/LuaContainerPrimitives.xml" "${root}/data/LuaContainerPrimitives.xml")
  if(typeMap STREQUAL "")
    message(FATAL_ERROR "${call}: neither ${root}/LuaContainerPrimitives.xml nor "
                        "${root}/data/LuaContainerPrimitives.xml is a file.")
  endif()
  _lua_container_first_file(banner "${root}/tools/Generator/zym_copyright.txt"
                            "${root}/data/tools/Generator/zym_copyright.txt")
  foreach(directory "" /data /tools /tools/Generator /data/tools /data/tools/Generator)
    if(IS_DIRECTORY "${root}${directory}")
      set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${root}${directory}")
    endif()
  endforeach()

  # One output directory for each call, and the staging directory inside the build tree.
  if(NOT arg_OUTPUT_DIRECTORY)
    set(arg_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/${name}")
  endif()
  get_filename_component(outputDir "${arg_OUTPUT_DIRECTORY}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
  get_property(earlier GLOBAL PROPERTY "_LUA_CONTAINERS_OUTPUT_${outputDir}")
  if(earlier)
    message(FATAL_ERROR "${call} writes into ${outputDir}, as ${earlier} does already: give one of them another "
                        "OUTPUT_DIRECTORY.")
  endif()
  set_property(GLOBAL PROPERTY "_LUA_CONTAINERS_OUTPUT_${outputDir}" "${call}")
  set(stage "${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${name}.stage")
  set(step "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/LuaContainersStep.cmake")
  set(files "${outputDir}/zymLua/generated_containers.pkg" "${outputDir}/zymLua/generated_container_typedefs.h")

  # The tool runs into the staging directory, and each file is published from there when its text
  # changed. One command per file: make would touch a second output of one command whenever the
  # first changed. Only the target <name>_generate carries these rules, so that the tool runs once.
  add_custom_command(OUTPUT "${stage}/generated.stamp"
    COMMAND "${CMAKE_COMMAND}" "-DTOOL=${tool}" "-DSTAGE=${stage}" "-DTYPE_MAP=${typeMap}" -DSTEP=generate -P "${step}"
    COMMAND "${CMAKE_COMMAND}" -E compare_files "${stage}/generated.stamp" "${stage}/generated.stamp"
    DEPENDS ${arg_TOOL} "${typeMap}" ${banner} "${step}"
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
  cmake_language(EVAL CODE "cmake_language(DEFER DIRECTORY [[${CMAKE_SOURCE_DIR}]] CALL _lua_container_check
                            [[${name}]] [[${files}]] [[${CMAKE_SOURCE_DIR}]])")

  list(GET files 0 package)
  list(GET files 1 typedefs)
  set(${name}_PACKAGE "${package}" PARENT_SCOPE)
  set(${name}_TYPEDEFS "${typedefs}" PARENT_SCOPE)
  set(${name}_INCLUDE_DIR "${outputDir}" PARENT_SCOPE)
  set(${name}_TOLUA_EXTENSIONS "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/LuaContainersTolua.lua" PARENT_SCOPE)
endfunction()
