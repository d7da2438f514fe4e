# One object library a folder of the layout. A module sees the headers of its own folders and of
# the modules that it names, so that an include in the wrong direction does not compile.

add_library(rhd_options INTERFACE)
target_compile_options(rhd_options INTERFACE
  -Wall -Wextra -Wshadow $<$<BOOL:${RHD_WERROR}>:-Werror>
  # The trained data rely on each product and sum being rounded on its own.
  -ffp-contract=off
  -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)

set_property(GLOBAL PROPERTY RHD_MODULES "")

function(rhd_add_module name)
  cmake_parse_arguments(PARSE_ARGV 1 MODULE "" "" "DEPENDS")
  set(sources "")
  set(folders "")
  foreach(folder IN LISTS MODULE_UNPARSED_ARGUMENTS)
    file(GLOB found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp
         ${PROJECT_SOURCE_DIR}/${folder}/*.h)
    list(APPEND sources ${found})
    list(APPEND folders ${PROJECT_SOURCE_DIR}/${folder})
  endforeach()
  if(NOT sources MATCHES "\\.cpp")
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${folders})
    target_link_libraries(${name} INTERFACE rhd_options ${MODULE_DEPENDS})
    return()
  endif()
  add_library(${name} OBJECT ${sources})
  target_include_directories(${name} PUBLIC ${folders})
  target_link_libraries(${name} PUBLIC rhd_options ${MODULE_DEPENDS})
  set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET default)
  set_property(GLOBAL APPEND PROPERTY RHD_MODULES ${name})
endfunction()

# lib/libraisedHandDetectorFull.so, which applications load, and lib/libraisedHandDetectorCore.a,
# the same objects with every name visible, for tests and tools.
function(rhd_add_libraries)
  get_property(modules GLOBAL PROPERTY RHD_MODULES)
  set(objects "")
  foreach(module IN LISTS modules)
    list(APPEND objects $<TARGET_OBJECTS:${module}>)
  endforeach()

  add_library(raisedHandDetectorCore STATIC ${objects})
  set_target_properties(raisedHandDetectorCore PROPERTIES LINKER_LANGUAGE CXX)
  foreach(module IN LISTS modules)
    target_include_directories(raisedHandDetectorCore PUBLIC
      $<TARGET_PROPERTY:${module},INTERFACE_INCLUDE_DIRECTORIES>)
  endforeach()
  target_link_libraries(raisedHandDetectorCore PUBLIC rhd_options m)

  set(exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  add_library(raisedHandDetectorFull SHARED ${objects})
  add_library(raisedHandDetector::raisedHandDetectorFull ALIAS raisedHandDetectorFull)
  set_target_properties(raisedHandDetectorFull PROPERTIES LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINK_DEPENDS ${exports})
  target_include_directories(raisedHandDetectorFull INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  # An application may own a function of the same name; ours keep calling ours.
  target_link_options(raisedHandDetectorFull PRIVATE
    -Wl,--version-script=${exports} -Wl,-Bsymbolic-functions -Wl,--gc-sections)
endfunction()
