# The two steps of lua_container_generate(), run as cmake -DSTEP=<step> ... -P LuaContainersStep.cmake:
#
#   generate  -DTOOL=<tool> -DSTAGE=<dir> -DTYPE_MAP=<file>: runs the tool into the staging directory
#             and writes <dir>/generated.stamp when it exited with status 0, wrote both files and
#             printed nothing on its error stream (a type map that cannot be loaded leaves status
#             0 and no files). Otherwise it prints "<type map>:<row>: error: <reason>" (no row where
#             the failure has none) and then what the tool printed, and writes no stamp: the command
#             behind it fails on that.
#   publish   -DSTAGE=<dir> -DFILE=<path>: puts the staged file of that name at <path> if its text
#             differs from the file there, by renaming a copy, so that a reader sees either the
#             old file or the new one
#
# Both hold a lock on the staging directory, so that no two runs on it overlap.

cmake_minimum_required(VERSION 3.21)

set(files generated_containers.pkg generated_container_typedefs.h)
file(MAKE_DIRECTORY "${STAGE}")
file(LOCK "${STAGE}" DIRECTORY GUARD PROCESS TIMEOUT 600)

if(STEP STREQUAL "generate")
  list(TRANSFORM files PREPEND "${STAGE}/" OUTPUT_VARIABLE staged)
  file(REMOVE "${STAGE}/generated.stamp" ${staged})
  execute_process(COMMAND "${TOOL}" ${staged} RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE errors)
  list(GET staged 0 package)
  list(GET staged 1 typedefs)
  if(status STREQUAL "0" AND errors STREQUAL "" AND EXISTS "${package}" AND EXISTS "${typedefs}")
    file(TOUCH "${STAGE}/generated.stamp")
    return()
  endif()

  set(place "${TYPE_MAP}")
  if(errors MATCHES "full file path: '([^']*)'\\)\\. Error on row ([1-9][0-9]*): ([^\n]*)")
    set(place "${CMAKE_MATCH_1}:${CMAKE_MATCH_2}")
    set(reason "${CMAKE_MATCH_3}")
  elseif(errors MATCHES "Error on row [0-9]+: ([^\n]*)")
    set(reason "${CMAKE_MATCH_1}")
  elseif(errors MATCHES "XML error: ([^\n]*)\\. Error at row ([0-9]+)")
    set(place "${TYPE_MAP}:${CMAKE_MATCH_2}")
    set(reason "${CMAKE_MATCH_1}")
  elseif(errors MATCHES "the Type on row ([0-9]+) ([^\n]*)")
    set(place "${TYPE_MAP}:${CMAKE_MATCH_1}")
    set(reason "the Type ${CMAKE_MATCH_2}")
  elseif(errors MATCHES "^(LuaContainerGenerator: )?([^\n]+)")
    set(reason "${CMAKE_MATCH_2}")
  else()
    set(reason "${TOOL} exited with status ${status} and wrote no files")
  endif()
  string(REGEX REPLACE "\n+$" "" errors "${errors}")
  message(NOTICE "${place}: error: ${reason}\n${errors}")
elseif(STEP STREQUAL "publish")
  get_filename_component(name "${FILE}" NAME)
  get_filename_component(directory "${FILE}" DIRECTORY)
  file(MAKE_DIRECTORY "${directory}")
  execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${STAGE}/${name}" "${FILE}"
                  RESULT_VARIABLE differs OUTPUT_QUIET ERROR_QUIET)
  if(differs)
    file(COPY_FILE "${STAGE}/${name}" "${FILE}.new")
    file(RENAME "${FILE}.new" "${FILE}")
  endif()
else()
  message(FATAL_ERROR "LuaContainersStep.cmake: unknown STEP '${STEP}'")
endif()
