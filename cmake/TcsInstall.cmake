# Install rules: both shared libraries and the two static codec libraries,
# the public and codec header sets under include/tcspace, a CMake package
# (find_package(tcspace) gives tcspace::tcspace, tcspace::tcsplatform,
# tcspace::tcstimecode and tcspace::tcscmx3600, and tcspace::tcsotio where
# it was built), a pkg-config file, and the tcs tool.
include(CMakePackageConfigHelpers)

set(TCS_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/tcspace")

install(TARGETS tcspace tcsplatform tcstimecode tcscmx3600 EXPORT tcspaceTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(DIRECTORY "${TCS_PUBLIC_INCLUDE_DIR}/" "${TCS_CODEC_INCLUDE_DIR}/"
        DESTINATION "${TCS_INSTALL_INCLUDE_DIR}")
# tcsotio (when built): the static interchange library and its header.
if(TARGET tcsotio)
  install(TARGETS tcsotio EXPORT tcspaceTargets ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
  install(DIRECTORY "${TCS_OTIO_INCLUDE_DIR}/" DESTINATION "${TCS_INSTALL_INCLUDE_DIR}")
endif()
install(EXPORT tcspaceTargets NAMESPACE tcspace:: DESTINATION "${TCS_CMAKE_DIR}")

configure_package_config_file(cmake/tcspaceConfig.cmake.in
  "${PROJECT_BINARY_DIR}/tcspaceConfig.cmake" INSTALL_DESTINATION "${TCS_CMAKE_DIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/tcspaceConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/tcspaceConfig.cmake"
              "${PROJECT_BINARY_DIR}/tcspaceConfigVersion.cmake"
        DESTINATION "${TCS_CMAKE_DIR}")

# pkg-config: the prefix is found from where the .pc file lies, so the
# package works wherever it is installed (cmake --install --prefix DIR).
set(TCS_PC_DIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
if(IS_ABSOLUTE "${TCS_PC_DIR}")
  set(TCS_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH TCS_PC_UP "/root/${TCS_PC_DIR}" "/root")
  string(REGEX REPLACE "/$" "" TCS_PC_UP "${TCS_PC_UP}")
  set(TCS_PC_PREFIX "\${pcfiledir}/${TCS_PC_UP}")
endif()
foreach(kind LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${kind}}")
    set(TCS_PC_${kind} "${CMAKE_INSTALL_${kind}}")
  else()
    set(TCS_PC_${kind} "\${prefix}/${CMAKE_INSTALL_${kind}}")
  endif()
endforeach()
string(APPEND TCS_PC_INCLUDEDIR "/tcspace")
configure_file(cmake/tcspace.pc.in "${PROJECT_BINARY_DIR}/tcspace.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/tcspace.pc" DESTINATION "${TCS_PC_DIR}")

if(TARGET tcs)
  install(TARGETS tcs RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
