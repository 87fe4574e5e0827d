# cmake -DTOOL=<tool> -DPACKAGE_FILE=<path> -DTYPEDEF_HEADER=<path> -P RunGenerator.cmake
#
# Runs the tool and fails unless it wrote both files and printed nothing on its error stream.
# The tool exits with status 0 after a failure to load the type map or to open a target, and
# it leaves such a target as it was: the targets are removed first, so that an old file is
# never taken for a new one.

foreach(variable TOOL PACKAGE_FILE TYPEDEF_HEADER)
  if(NOT DEFINED ${variable})
    message(FATAL_ERROR "RunGenerator.cmake: ${variable} is not set")
  endif()
endforeach()

file(REMOVE "${PACKAGE_FILE}" "${TYPEDEF_HEADER}")
get_filename_component(packageDirectory "${PACKAGE_FILE}" DIRECTORY)
get_filename_component(typedefDirectory "${TYPEDEF_HEADER}" DIRECTORY)
file(MAKE_DIRECTORY "${packageDirectory}" "${typedefDirectory}")

execute_process(
  COMMAND "${TOOL}" "${PACKAGE_FILE}" "${TYPEDEF_HEADER}"
  RESULT_VARIABLE status
  OUTPUT_VARIABLE output
  ERROR_VARIABLE errors)

if(NOT status EQUAL 0 OR NOT errors STREQUAL "" OR NOT EXISTS "${PACKAGE_FILE}" OR NOT EXISTS "${TYPEDEF_HEADER}")
  file(REMOVE "${PACKAGE_FILE}" "${TYPEDEF_HEADER}")
  message(FATAL_ERROR "${TOOL} failed (exit status ${status}).\nstdout:\n${output}\nstderr:\n${errors}")
endif()
