# Makes an interface target of a header-only Debian package. The headers are linked into a folder of their own,
# so that a cross build sees them without the rest of /usr/include.
function(kem_header_only target header)
  find_path(${target}_DIR ${header} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  cmake_path(GET header PARENT_PATH folder)
  set(links ${PROJECT_BINARY_DIR}/header_only/${target})
  file(MAKE_DIRECTORY ${links})
  file(CREATE_LINK ${${target}_DIR}/${folder} ${links}/${folder} SYMBOLIC)
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${links})
endfunction()
