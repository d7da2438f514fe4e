cmake_minimum_required(VERSION 3.21)

# Installs the library into an empty folder and builds and runs a stranger's C program against it:
# once with find_package, once with pkg-config.
# Variables: BUILD, WORK, CONSUMER, LIBDIR, EMULATOR, TOOLCHAIN, C_COMPILER

function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output
                  ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGV} failed (${result}):\n${output}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix)

set(toolchain "")
if(TOOLCHAIN)
  set(toolchain -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_FIND_ROOT_PATH=${WORK}/prefix)
endif()
run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/build ${toolchain}
    -DCMAKE_PREFIX_PATH=${WORK}/prefix)
run(${CMAKE_COMMAND} --build ${WORK}/build)
run(${EMULATOR} ${WORK}/build/consumer)

find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  set(ENV{PKG_CONFIG_PATH} ${WORK}/prefix/${LIBDIR}/pkgconfig)
  execute_process(COMMAND ${PKG_CONFIG} --cflags --libs raisedHandDetector
                  OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE
                  COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run(${C_COMPILER} ${CONSUMER}/main.c -o ${WORK}/by_pkg_config ${flags}
      -Wl,-rpath,${WORK}/prefix/${LIBDIR})
  run(${EMULATOR} ${WORK}/by_pkg_config)
endif()
