# A test that cannot be built on Mac OS X keeps its line in the report there: skipped, with the
# reason. corvella_left_out(name reason)
function(corvella_left_out name reason)
  add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo "Left out on Mac OS X: ${reason}.")
  set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "^Left out on Mac OS X")
endfunction()
