add_test(NAME package.exports COMMAND ${CMAKE_COMMAND}
  -DNM=${CMAKE_NM} -DLIBRARY=$<TARGET_FILE:raisedHandDetectorFull>
  "-DHEADERS=${PROJECT_SOURCE_DIR}/include/VI_Interface.h;${PROJECT_SOURCE_DIR}/include/GRE_Interface.h"
  "-DOBJECTS=minDistance;maxDistance;fovAngle;isFlip;frameSize;roi;cameraAccel;cameraLastAccel;cameraAngle;angleHist;averageSpeed;useSmoothing"
  -P ${CMAKE_CURRENT_LIST_DIR}/check_exports.cmake)

if(RHD_INSTALL)
  add_test(NAME package.consumer COMMAND ${CMAKE_COMMAND}
    -DBUILD=${PROJECT_BINARY_DIR} -DWORK=${CMAKE_CURRENT_BINARY_DIR}/package
    -DCONSUMER=${CMAKE_CURRENT_LIST_DIR}/consumer -DLIBDIR=${CMAKE_INSTALL_LIBDIR}
    "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}" "-DTOOLCHAIN=${CMAKE_TOOLCHAIN_FILE}"
    -DC_COMPILER=${CMAKE_C_COMPILER}
    -P ${CMAKE_CURRENT_LIST_DIR}/install_consumer.cmake)
endif()
