# cmake -DPROJECT_DIR=<generator project> -DCONSUMER_DIR=<this directory> -DSTAND_INS_DIR=<dir>
#       -DWORK_DIR=<scratch directory> [-DCXX_COMPILER=<compiler>] -P CheckConsumerBuild.cmake
#
# Copies the consumer project below WORK_DIR, configures it with Unix Makefiles, and checks what
# each build does as its inputs change:
#
#   first build          generates from the consumer's type map and banner, compiles the library
#   second build         does nothing
#   type map touched     generates again; the outputs keep their time stamps, nothing compiles
#   type map comment     the same
#   unread files touched the map in data/ (which the tool never reads) changes nothing; a header
#                        of the library recompiles the library without generating
#   banner changed       generates, replaces the outputs, compiles
#   type added to map    the same, and the new type is in the typedef header

foreach(variable PROJECT_DIR CONSUMER_DIR STAND_INS_DIR WORK_DIR)
  if(NOT DEFINED ${variable})
    message(FATAL_ERROR "CheckConsumerBuild.cmake: ${variable} is not set")
  endif()
endforeach()

set(source "${WORK_DIR}/source")
set(build "${WORK_DIR}/build")
set(typeMap "${source}/LuaContainerPrimitives.xml")
set(unreadTypeMap "${source}/data/LuaContainerPrimitives.xml")
set(banner "${source}/data/tools/Generator/zym_copyright.txt")
set(package "${build}/generated/zymLua/generated_containers.pkg")
set(typedefs "${build}/generated/zymLua/generated_container_typedefs.h")
set(stamp "${build}/generated.stage/generated.stamp")
set(object "${build}/CMakeFiles/consumerContainers.dir/containers.cpp.o")

set(generatedPattern "Generating Lua container declarations")
set(compiledPattern "Building CXX object CMakeFiles/consumerContainers.dir/containers.cpp.o")

cmake_host_system_information(RESULT jobs QUERY NUMBER_OF_LOGICAL_CORES)
if(jobs LESS 2)
  set(jobs 2)
endif()

function(fail text)
  message(FATAL_ERROR "${text}")
endfunction()

# Runs a build; `step` names it in messages and in the log file <WORK_DIR>/<step>.log.
function(run_build step outputVar)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" --build "${build}" --parallel ${jobs}
    RESULT_VARIABLE status
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
  string(REPLACE " " "_" logName "${step}")
  file(WRITE "${WORK_DIR}/${logName}.log" "${output}")
  if(NOT status EQUAL 0)
    fail("${step}: the build failed:\n${output}")
  endif()
  set(${outputVar} "${output}" PARENT_SCOPE)
endfunction()

function(expect_match step output pattern what)
  string(FIND "${output}" "${pattern}" position)
  if(position EQUAL -1)
    fail("${step}: ${what}: no '${pattern}' in the build output:\n${output}")
  endif()
endfunction()

function(expect_no_match step output pattern what)
  string(FIND "${output}" "${pattern}" position)
  if(NOT position EQUAL -1)
    fail("${step}: ${what}: '${pattern}' in the build output:\n${output}")
  endif()
endfunction()

function(expect_file_contains file text)
  file(READ "${file}" content)
  string(FIND "${content}" "${text}" position)
  if(position EQUAL -1)
    fail("${file} does not contain '${text}':\n${content}")
  endif()
endfunction()

function(expect_file_lacks file text)
  file(READ "${file}" content)
  string(FIND "${content}" "${text}" position)
  if(NOT position EQUAL -1)
    fail("${file} contains '${text}':\n${content}")
  endif()
endfunction()

function(time_of file outputVar)
  file(TIMESTAMP "${file}" time "%s.%f" UTC)
  set(${outputVar} "${time}" PARENT_SCOPE)
endfunction()

# After `file` was changed: waits until its time stamp is later than that of `reference`, so
# that make sees the change also where the file system keeps coarse time stamps.
function(make_newer file reference)
  foreach(attempt RANGE 30)
    time_of("${file}" fileTime)
    time_of("${reference}" referenceTime)
    if(fileTime VERSION_GREATER referenceTime)
      return()
    endif()
    execute_process(COMMAND "${CMAKE_COMMAND}" -E sleep 0.1)
    file(TOUCH_NOCREATE "${file}")
  endforeach()
  fail("${file} stays no newer than ${reference}")
endfunction()

function(expect_generated_only step output)
  expect_match("${step}" "${output}" "${generatedPattern}" "the outputs were not generated again")
  expect_no_match("${step}" "${output}" "${compiledPattern}" "unchanged outputs recompiled the library")
  foreach(file package typedefs)
    time_of("${${file}}" time)
    if(NOT time STREQUAL firstTime_${file})
      fail("${step}: ${${file}} was replaced although its content stayed the same")
    endif()
  endforeach()
endfunction()

function(expect_nothing step output)
  foreach(pattern "Generating" "Building" "Linking")
    expect_no_match("${step}" "${output}" "${pattern}" "the build was not a no-op")
  endforeach()
endfunction()

# --- The consumer's tree, configured from scratch.

file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${source}")
file(COPY "${CONSUMER_DIR}/" DESTINATION "${source}" PATTERN "CheckConsumerBuild.cmake" EXCLUDE)

set(configureArguments -S "${source}" -B "${build}" -G "Unix Makefiles" -DCMAKE_BUILD_TYPE=Debug
    "-DLUA_CONTAINER_GENERATOR_DIR=${PROJECT_DIR}" "-DSTAND_INS_DIR=${STAND_INS_DIR}")
if(CXX_COMPILER)
  list(APPEND configureArguments "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}")
endif()
execute_process(
  COMMAND "${CMAKE_COMMAND}" ${configureArguments}
  RESULT_VARIABLE status
  OUTPUT_VARIABLE output
  ERROR_VARIABLE output)
file(WRITE "${WORK_DIR}/configure.log" "${output}")
if(NOT status EQUAL 0)
  fail("configuring the consumer failed:\n${output}")
endif()

# --- First build: from the consumer's own type map and banner.

run_build("first build" output)
expect_match("first build" "${output}" "${generatedPattern}" "nothing was generated")
expect_match("first build" "${output}" "${compiledPattern}" "the library was not compiled")
expect_file_contains("${typedefs}" "Consumer banner")
expect_file_contains("${typedefs}" "typedef zym::VectorPOD< consumer::Particle > ParticleVector;")
expect_file_contains("${typedefs}" "typedef zym::Vector< consumer::physics::Spring > SpringVector;")
expect_file_lacks("${typedefs}" "Decoy")
expect_file_lacks("${typedefs}" "BoundingBox")
expect_file_lacks("${typedefs}" "Copyright (c) the zym authors")
expect_file_contains("${package}" "Consumer banner")
expect_file_contains("${package}" "class ParticleBuffer : public zymData::Buffer")
expect_file_contains("${package}" "$#include <Particle.h>")
time_of("${package}" firstTime_package)
time_of("${typedefs}" firstTime_typedefs)

# --- Second build: nothing to do.

run_build("second build" output)
expect_nothing("second build" "${output}")

# --- The type map touched, then given a comment: generated again, identical, nothing replaced.

file(TOUCH_NOCREATE "${typeMap}")
make_newer("${typeMap}" "${stamp}")
run_build("build after touching the type map" output)
expect_generated_only("build after touching the type map" "${output}")

file(APPEND "${typeMap}" "<!-- A comment changes nothing that the tool writes. -->\n")
make_newer("${typeMap}" "${stamp}")
run_build("build after a comment in the type map" output)
expect_generated_only("build after a comment in the type map" "${output}")

run_build("build after the comment build" output)
expect_nothing("build after the comment build" "${output}")

# --- Files the tool does not read.

file(TOUCH_NOCREATE "${unreadTypeMap}")
make_newer("${unreadTypeMap}" "${stamp}")
run_build("build after touching the type map in data" output)
expect_nothing("build after touching the type map in data" "${output}")

file(TOUCH_NOCREATE "${source}/Particle.h")
make_newer("${source}/Particle.h" "${object}")
run_build("build after touching a header of the library" output)
expect_no_match("build after touching a header of the library" "${output}" "${generatedPattern}"
                "a header of the library generated the outputs again")
expect_match("build after touching a header of the library" "${output}" "${compiledPattern}"
             "the library was not recompiled")

# --- A new banner, then a new type: generated, replaced, compiled.

file(WRITE "${banner}" "/*\n * Second consumer banner.\n */\n")
make_newer("${banner}" "${stamp}")
run_build("build after changing the banner" output)
expect_match("build after changing the banner" "${output}" "${generatedPattern}" "nothing was generated")
expect_match("build after changing the banner" "${output}" "${compiledPattern}" "the library was not recompiled")
expect_file_contains("${typedefs}" "Second consumer banner")
expect_file_contains("${package}" "Second consumer banner")

file(APPEND "${typeMap}" "<Type name=\"Anchor\" namespace=\"consumer\" />\n")
make_newer("${typeMap}" "${stamp}")
run_build("build after adding a type" output)
expect_match("build after adding a type" "${output}" "${generatedPattern}" "nothing was generated")
expect_match("build after adding a type" "${output}" "${compiledPattern}" "the library was not recompiled")
expect_file_contains("${typedefs}" "typedef zym::VectorPOD< consumer::Anchor > AnchorVector;")
expect_file_contains("${package}" "class AnchorVector")

run_build("last build" output)
expect_nothing("last build" "${output}")
