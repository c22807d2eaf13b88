# The reference of the public headers, as pages in reference/html of the build.
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
  message(FATAL_ERROR "kem: KEM_BUILD_DOCS needs doxygen")
endif()
file(GLOB headers CONFIGURE_DEPENDS include/*.h include/kem/*.h)
add_custom_command(OUTPUT reference/html/index.html
  COMMAND ${CMAKE_COMMAND} -E env KEM_REFERENCE=${PROJECT_BINARY_DIR}/reference KEM_VERSION=${PROJECT_VERSION}
          $<TARGET_FILE:Doxygen::doxygen> docs/Doxyfile
  DEPENDS ${headers} docs/Doxyfile
  WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
  COMMENT "Making the reference of the headers"
  VERBATIM)
add_custom_target(reference ALL DEPENDS reference/html/index.html)
