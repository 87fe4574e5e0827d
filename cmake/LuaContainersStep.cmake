# The two steps of lua_container_generate(), run as cmake -DSTEP=<step> ... -P LuaContainersStep.cmake:
#
#   generate  -DTOOL=<tool> -DSTAGE=<dir>: runs the tool into the staging directory and touches
#             <dir>/generated.stamp; fails, with what the tool printed, unless the tool exited
#             with status 0, wrote both files and printed nothing on its error stream (after a
#             type map that cannot be loaded it exits with status 0 and writes nothing)
#   publish   -DSTAGE=<dir> -DFILE=<path>: puts the staged file of that name at <path> if its
#             content differs from the file there, by renaming a copy, so that a reader sees
#             either the old file or the new one
#
# Both hold a lock on the staging directory, so that runs of the same rules from several targets
# follow one another.

cmake_minimum_required(VERSION 3.21)

set(files generated_containers.pkg generated_container_typedefs.h)
file(MAKE_DIRECTORY "${STAGE}")
file(LOCK "${STAGE}" DIRECTORY GUARD PROCESS TIMEOUT 600)

if(STEP STREQUAL "generate")
  foreach(file IN LISTS files)
    file(REMOVE "${STAGE}/${file}")
  endforeach()
  execute_process(
    COMMAND "${TOOL}" "${STAGE}/generated_containers.pkg" "${STAGE}/generated_container_typedefs.h"
    RESULT_VARIABLE status
    OUTPUT_VARIABLE output
    ERROR_VARIABLE errors)
  foreach(file IN LISTS files)
    if(NOT EXISTS "${STAGE}/${file}")
      set(status "${status}, no ${file}")
    endif()
  endforeach()
  if(NOT status STREQUAL "0" OR NOT errors STREQUAL "")
    message(FATAL_ERROR "${TOOL} failed (exit status ${status}):\n${errors}${output}")
  endif()
  file(TOUCH "${STAGE}/generated.stamp")
elseif(STEP STREQUAL "publish")
  get_filename_component(name "${FILE}" NAME)
  get_filename_component(directory "${FILE}" DIRECTORY)
  file(MAKE_DIRECTORY "${directory}")
  file(COPY_FILE "${STAGE}/${name}" "${FILE}.new")
  execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${FILE}.new" "${FILE}"
                  RESULT_VARIABLE differs OUTPUT_QUIET ERROR_QUIET)
  if(differs)
    file(RENAME "${FILE}.new" "${FILE}")
  else()
    file(REMOVE "${FILE}.new")
  endif()
else()
  message(FATAL_ERROR "LuaContainersStep.cmake: unknown STEP '${STEP}'")
endif()
