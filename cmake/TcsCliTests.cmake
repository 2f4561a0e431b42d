# Tests that run the built programs as a user would: the tcs tool on the
# bundled example and on broken input, names and long timecodes it must pass
# through as they are, the README's examples, and the C host example.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

add_test(NAME CliTool
  COMMAND Python3::Interpreter "${PROJECT_SOURCE_DIR}/tests/cli/cli_test.py" $<TARGET_FILE:tcs>
  WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
add_test(NAME ReadmeExamples
  COMMAND Python3::Interpreter "${PROJECT_SOURCE_DIR}/tests/cli/readme_test.py"
          $<TARGET_FILE:tcs> $<TARGET_FILE:host_example>
  WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
add_test(NAME CliValues
  COMMAND Python3::Interpreter "${PROJECT_SOURCE_DIR}/tests/cli/cli_values_test.py" $<TARGET_FILE:tcs>
  WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
