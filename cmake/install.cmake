# What an installation holds: library, headers and their reference, command with its manual page and completion, and
# the files by which find_package and pkg-config find it, all relative to where they lie.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kem-config-version.cmake COMPATIBILITY SameMinorVersion)

set(KEM_PC_LIBRARY kem)
if(WIN32 AND BUILD_SHARED_LIBS)
  set(KEM_PC_LIBRARY :libkem.dll.a)  # under its whole name a linker also finds it where all else is static
endif()
# A static library hands on the system's libraries and its definition.
file(RELATIVE_PATH KEM_PREFIX_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
if(NOT BUILD_SHARED_LIBS)
  set(KEM_PC_CFLAGS " -DKEM_STATIC")
  set(runtime ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
  list(FILTER runtime INCLUDE REGEX "^(stdc\\+\\+|c\\+\\+|m)$")
  list(REMOVE_DUPLICATES runtime)
  list(TRANSFORM runtime PREPEND -l)
  list(JOIN runtime " " KEM_PC_LIBS)
  if(WIN32)
    string(PREPEND KEM_PC_LIBS "-lcomdlg32 ")
  endif()
endif()
configure_file(cmake/kem.pc.in kem.pc @ONLY)

install(TARGETS kem EXPORT kem-targets INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN *.h)
install(EXPORT kem-targets NAMESPACE kem:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kem)
install(FILES cmake/kem-config.cmake ${PROJECT_BINARY_DIR}/kem-config-version.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kem)
install(FILES ${PROJECT_BINARY_DIR}/kem.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(KEM_BUILD_DOCS)
  install(DIRECTORY ${PROJECT_BINARY_DIR}/reference/html DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()

if(KEM_BUILD_TOOLS)
  # The same path before and after installation: CMake pads one that it has to change with empty elements, which
  # mean the current folder.
  set(origin $<IF:$<PLATFORM_ID:Darwin>,@loader_path,$ORIGIN>)
  file(RELATIVE_PATH to_library ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(kem_command PROPERTIES BUILD_WITH_INSTALL_RPATH ON
                        INSTALL_RPATH "${origin};${origin}/${to_library}")
  install(TARGETS kem_command)
  if(NOT WIN32)
    set(help ${PROJECT_BINARY_DIR}/tools/kem)
    install(FILES cmake/kem.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
    install(FILES ${help}/kem.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES ${help}/kem.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME kem)
    install(FILES ${help}/kem.zsh DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions RENAME _kem)
    install(FILES ${help}/kem.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
  endif()
endif()
