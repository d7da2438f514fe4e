target_link_libraries(tests_evaluate PRIVATE engine_evaluation)
# The drawn photographs of the trainers' tests.
target_include_directories(tests_evaluate PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/tools)
target_compile_definitions(tests_evaluate PRIVATE EVALUATE="$<TARGET_FILE:evaluate>")
add_dependencies(tests_evaluate evaluate)
if(NOT TARGET sample_scene)
  set_source_files_properties(${CMAKE_CURRENT_SOURCE_DIR}/evaluate/LimitsTest.cpp PROPERTIES
    HEADER_FILE_ONLY ON)
endif()

# What the engine keeps on real photographs. Takes half a minute; says "skipped" where the
# photographs are not.
add_test(NAME evaluate.bounds COMMAND evaluate check --skip-if-absent
  --data ${PROJECT_SOURCE_DIR}/../shared/data
  --bounds ${PROJECT_SOURCE_DIR}/data/validation/bounds.json)
set_tests_properties(evaluate.bounds PROPERTIES SKIP_RETURN_CODE 77 LABELS quality TIMEOUT 900)
