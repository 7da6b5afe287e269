# How tests are registered and built.


# Most of a test build's linking is debug information, which this linker copes with best.
find_program(VORRIN_MOLD mold)
if(VORRIN_MOLD AND NOT APPLE)
  add_link_options(-fuse-ld=mold)
endif()

# vorrin_test_program(TARGET [NAME NAME] [SHARDS COUNT] [TIMEOUT SECONDS] [ARGUMENTS ...] [ENVIRONMENT ...]):
# has CTest run the test program, all its cases in one process, or dealt out to COUNT processes that
# may run at the same time. SECONDS (300) is the bound of each of them.
function(vorrin_test_program target)
  cmake_parse_arguments(PARSE_ARGV 1 test "" "NAME;SHARDS;TIMEOUT" "ARGUMENTS;ENVIRONMENT")
  foreach(default NAME=${target} SHARDS=1 TIMEOUT=300)
    string(REGEX MATCH "^[A-Z]+" variable ${default})
    if(NOT test_${variable})
      string(REGEX REPLACE "^[A-Z]+=" "" test_${variable} ${default})
    endif()
  endforeach()
  foreach(number RANGE 1 ${test_SHARDS})
    set(name ${test_NAME})
    if(test_SHARDS GREATER 1)
      string(APPEND name .${number})
    endif()
    math(EXPR index "${number} - 1")
    add_test(NAME ${name} COMMAND ${target} --gtest_brief=1 ${test_ARGUMENTS})
    set_tests_properties(${name} PROPERTIES
      TIMEOUT ${test_TIMEOUT}
      ENVIRONMENT "GTEST_TOTAL_SHARDS=${test_SHARDS};GTEST_SHARD_INDEX=${index};${test_ENVIRONMENT}")
  endforeach()
endfunction()
