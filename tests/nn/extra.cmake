# What the emitter writes is compiled as a part of the test program, with the library's warnings.
add_executable(emit_network ${CMAKE_CURRENT_LIST_DIR}/emit/emit_network.cpp)
target_include_directories(emit_network PRIVATE ${CMAKE_CURRENT_LIST_DIR})
target_link_libraries(emit_network PRIVATE test_support raisedHandDetectorCore)
set(emitted_network ${CMAKE_CURRENT_BINARY_DIR}/every_layer_network.cpp)
add_custom_command(OUTPUT ${emitted_network} COMMAND emit_network ${emitted_network}
                   DEPENDS emit_network)
target_sources(tests_nn PRIVATE ${emitted_network})
