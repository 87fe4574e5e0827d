# The two steps of lua_container_generate(), run as cmake -DSTEP=<step> ... -P LuaContainersStep.cmake:
#
#   generate  -DTOOL=<generator> -DCHECK=<checker> -DSTAGE=<dir> -DTYPE_MAP=<file> -DBANNER=<file or "">:
#             copies the type map and the banner into the staging directory, runs the generator there
#             and the checker behind it, and writes <dir>/generated.stamp when both files are whole
#             and the sources did not change meanwhile. Otherwise it prints "<file>[:<row>]: error:
#             <reason>", then what the generator printed, and writes no stamp: the command behind it
#             fails on that, and the next build generates again.
#   publish   -DSTAGE=<dir> -DFILE=<path>: puts the staged file of that name at <path> if its text
#             differs from the file there, by renaming a whole copy of its own into place, so that a
#             reader, or another build that publishes the same file, sees the old file or a new one.
#
# Both hold a lock on the staging directory, so that no two runs on it overlap.

cmake_minimum_required(VERSION 3.21)

# Copies `source` to `copy`. A source that is no regular file (a FIFO, a device) has the size 0 and
# is copied as an empty file without being read.
function(copy_source source copy)
  file(SIZE "${source}" size)
  if(size EQUAL 0)
    file(WRITE "${copy}" "")
  else()
    file(COPY_FILE "${source}" "${copy}")
  endif()
endfunction()

# Whether `copy` no longer holds what `source` holds, read as copy_source reads it.
function(source_changed resultVar source copy)
  file(SIZE "${source}" sourceSize)
  file(SIZE "${copy}" copySize)
  set(differs 0)
  if(NOT sourceSize EQUAL copySize)
    set(differs 1)
  elseif(sourceSize GREATER 0)
    execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${source}" "${copy}" RESULT_VARIABLE differs
                    OUTPUT_QUIET ERROR_QUIET)
  endif()
  set(${resultVar} ${differs} PARENT_SCOPE)
endfunction()

# The line that tells where the generation failed: the type map's place and the reason, taken from
# what the generator printed, or the failure of the generator itself.
function(report_failure tool status errors)
  set(place "${TYPE_MAP}")
  if(errors MATCHES "full file path: '[^']*'\\)\\. Error on row ([1-9][0-9]*): ([^\n]*)")
    set(place "${TYPE_MAP}:${CMAKE_MATCH_1}")
    set(reason "${CMAKE_MATCH_2}")
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
    set(reason "${tool} exited with status ${status} and wrote no files")
  endif()
  string(REGEX REPLACE "\n+$" "" errors "${errors}")
  message(NOTICE "${place}: error: ${reason}\n${errors}")
endfunction()

if(STEP STREQUAL "generate")
  file(MAKE_DIRECTORY "${STAGE}")
  file(LOCK "${STAGE}" DIRECTORY GUARD PROCESS TIMEOUT 600)
  set(stamp "${STAGE}/generated.stamp")
  set(typeMap "${STAGE}/LuaContainerPrimitives.xml")
  set(banner "${STAGE}/tools/Generator/zym_copyright.txt")
  set(package "${STAGE}/generated_containers.pkg")
  set(typedefs "${STAGE}/generated_container_typedefs.h")
  file(REMOVE "${stamp}" "${typeMap}" "${banner}" "${package}" "${typedefs}")

  # Both files come from one copy of the sources, which nothing else writes. The generator refuses
  # a type map of more than 256 MiB without reading it, and so does this copy.
  file(SIZE "${TYPE_MAP}" size)
  if(size GREATER 268435456)
    message(NOTICE "${TYPE_MAP}: error: File larger than 256 MiB.")
    return()
  endif()
  copy_source("${TYPE_MAP}" "${typeMap}")
  if(BANNER)
    file(MAKE_DIRECTORY "${STAGE}/tools/Generator")
    copy_source("${BANNER}" "${banner}")
  endif()

  execute_process(COMMAND "${TOOL}" "${package}" "${typedefs}" WORKING_DIRECTORY "${STAGE}"
                  RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE errors)
  if(NOT status STREQUAL "0" OR NOT errors STREQUAL "" OR NOT EXISTS "${package}" OR NOT EXISTS "${typedefs}")
    report_failure("${TOOL}" "${status}" "${errors}")
    return()
  endif()
  # The generator reports no failed write: its files are compared with their texts made again.
  execute_process(COMMAND "${CHECK}" "${package}" "${typedefs}" WORKING_DIRECTORY "${STAGE}"
                  RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE errors)
  if(NOT status STREQUAL "0")
    string(REGEX REPLACE "\n+$" "" errors "${errors}")
    message(NOTICE "${errors}")
    return()
  endif()

  # The stamp goes first: a source that changes after this comparison is newer than the stamp.
  file(TOUCH "${stamp}")
  source_changed(mapChanged "${TYPE_MAP}" "${typeMap}")
  set(bannerChanged 0)
  if(BANNER)
    source_changed(bannerChanged "${BANNER}" "${banner}")
  endif()
  if(mapChanged OR bannerChanged)
    file(REMOVE "${stamp}")
    message(NOTICE "${TYPE_MAP}: error: the type map or the banner changed while the files were generated "
                   "from them; build again.")
    return()
  endif()
  file(STRINGS "${typedefs}" typedef REGEX "^ *typedef zymData::Array< " LIMIT_COUNT 1)
  if(NOT typedef)
    message(NOTICE "${TYPE_MAP}: warning: no Type element at the top level, so no containers: the Type elements "
                   "of a type map stand side by side, not inside a root element.")
  endif()
elseif(STEP STREQUAL "publish")
  file(LOCK "${STAGE}" DIRECTORY GUARD PROCESS TIMEOUT 600) # no generation of this tree meanwhile
  get_filename_component(name "${FILE}" NAME)
  get_filename_component(directory "${FILE}" DIRECTORY)
  execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${STAGE}/${name}" "${FILE}"
                  RESULT_VARIABLE differs OUTPUT_QUIET ERROR_QUIET)
  if(differs)
    file(MAKE_DIRECTORY "${directory}")
    string(RANDOM LENGTH 16 suffix)
    set(copy "${directory}/.${name}.${suffix}")
    file(COPY_FILE "${STAGE}/${name}" "${copy}" RESULT copied)
    execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${STAGE}/${name}" "${copy}"
                    RESULT_VARIABLE differs OUTPUT_QUIET ERROR_QUIET)
    if(differs)
      file(REMOVE "${copy}")
      if(copied STREQUAL "0")
        set(copied "the copy was cut short (no space left on the device?)")
      endif()
      message(FATAL_ERROR "${FILE}: error: not published: ${copied}")
    endif()
    file(RENAME "${copy}" "${FILE}")
  endif()
else()
  message(FATAL_ERROR "LuaContainersStep.cmake: unknown STEP '${STEP}'")
endif()
