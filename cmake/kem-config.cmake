include(${CMAKE_CURRENT_LIST_DIR}/kem-targets.cmake)
