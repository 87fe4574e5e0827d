# cmake -DTOLUA=<tolua++> -DEXTENSIONS=<lua file> -DPACKAGE_NAME=<name> -DPACKAGE_FILE=<pkg>
#       -DBINDINGS=<cpp> -DWORKING_DIRECTORY=<dir> -P RunTolua.cmake
#
# Runs tolua++ on the package file. tolua++ exits with status 0 after a parse error, with no
# output file or a truncated one, so the run only counts when tolua++ printed no error and the
# output file was written; it is written under a temporary name and renamed only then. Files
# named by $ifile rows are found from WORKING_DIRECTORY.

foreach(variable TOLUA EXTENSIONS PACKAGE_NAME PACKAGE_FILE BINDINGS WORKING_DIRECTORY)
  if(NOT DEFINED ${variable})
    message(FATAL_ERROR "RunTolua.cmake: ${variable} is not set")
  endif()
endforeach()

set(temporary "${BINDINGS}.partial")
file(REMOVE "${BINDINGS}" "${temporary}")

execute_process(
  COMMAND "${TOLUA}" -L "${EXTENSIONS}" -n "${PACKAGE_NAME}" -o "${temporary}" "${PACKAGE_FILE}"
  WORKING_DIRECTORY "${WORKING_DIRECTORY}"
  RESULT_VARIABLE status
  OUTPUT_VARIABLE output
  ERROR_VARIABLE errors)

set(printed "${output}${errors}")
string(TOLOWER "${printed}" printedLowerCase)
if(NOT status EQUAL 0 OR printedLowerCase MATCHES "error" OR NOT EXISTS "${temporary}")
  file(REMOVE "${temporary}")
  message(FATAL_ERROR "tolua++ failed on ${PACKAGE_FILE} (exit status ${status}):\n${printed}")
endif()
if(NOT printed STREQUAL "")
  message(WARNING "tolua++ on ${PACKAGE_FILE}:\n${printed}")
endif()

file(RENAME "${temporary}" "${BINDINGS}")
