# Runs the quick tests of the default build under valgrind: ctest --script scripts/memcheck.cmake
# Tests that count by their own malloc(), which valgrind takes the place of, have a label for that.
# What the tests run is looked at too, but for shells, interpreters and servers, which are not ours.
get_filename_component(CTEST_SOURCE_DIRECTORY "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
set(CTEST_BINARY_DIRECTORY "${CTEST_SOURCE_DIRECTORY}/build/default")
find_program(CTEST_MEMORYCHECK_COMMAND valgrind)
set(CTEST_MEMORYCHECK_COMMAND_OPTIONS
  "--quiet --vgdb=no --suppressions=${CMAKE_CURRENT_LIST_DIR}/valgrind.supp --error-exitcode=99 \
--leak-check=full --show-leak-kinds=definite,indirect \
--errors-for-leak-kinds=definite,indirect --num-callers=20 --trace-children=yes \
--trace-children-skip=*/sh,*/bash,*/dash,*/env,*/nm,*/python*,*php*,*nginx*,*squid*,*tinyproxy*")
cmake_host_system_information(RESULT processors QUERY NUMBER_OF_LOGICAL_CORES)
if(NOT DEFINED CORVELLA_MEMCHECK_ONLY)
  set(CORVELLA_MEMCHECK_ONLY ".")
endif()

ctest_start(Experimental QUIET)
ctest_memcheck(
  INCLUDE "${CORVELLA_MEMCHECK_ONLY}"
  EXCLUDE "^(checks|docs|package|scripts)\\.|^tool_lists$|^web\\.reliability_table$"
  EXCLUDE_LABEL "^(slow|package|exhaustive|no_valgrind)$"
  PARALLEL_LEVEL ${processors}
  RETURN_VALUE failed
  DEFECT_COUNT defects)
if(failed OR defects)
  message(FATAL_ERROR "valgrind: ${defects} defects; which tests failed and what was said: "
    "LastTestsFailed_*.log and the others in build/default/Testing/Temporary")
endif()
