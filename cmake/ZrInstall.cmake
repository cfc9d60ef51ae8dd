# Installation: the two shared libraries with their headers, a CMake package and a pkg-config file; the program with its
# manual page and shell completion.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/zrcallouts")
set(installed zrcallouts)
install(DIRECTORY include/zrcallouts DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
if(ZRCALLOUTS_HOST STREQUAL "bundled")
  list(APPEND installed zrhost)
  install(DIRECTORY host/include/ DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zrhost" FILES_MATCHING PATTERN "*.h")
endif()
install(TARGETS ${installed} EXPORT zrcalloutsTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(EXPORT zrcalloutsTargets NAMESPACE zrcallouts:: DESTINATION "${package_dir}")

configure_package_config_file(cmake/zrcalloutsConfig.cmake.in "${CMAKE_CURRENT_BINARY_DIR}/zrcalloutsConfig.cmake"
  INSTALL_DESTINATION "${package_dir}")
# Before 1.0 each minor version may change the interface.
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/zrcalloutsConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/zrcalloutsConfig.cmake"
  "${CMAKE_CURRENT_BINARY_DIR}/zrcalloutsConfigVersion.cmake" DESTINATION "${package_dir}")

configure_file(cmake/zrcallouts.pc.in "${CMAKE_CURRENT_BINARY_DIR}/zrcallouts.pc" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/zrcallouts.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

if(TARGET zrfigure)
  set(shell_support "${PROJECT_SOURCE_DIR}/apps/zrfigure/shell-support")
  install(FILES "${shell_support}/zrfigure.bash" RENAME zrfigure
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
  install(FILES "${shell_support}/_zrfigure" DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions")

  # The page is made of what the program says of itself, so it cannot fall behind.
  find_program(ZR_HELP2MAN help2man)
  if(ZR_HELP2MAN)
    set(page "${CMAKE_CURRENT_BINARY_DIR}/zrfigure.1")
    add_custom_command(OUTPUT "${page}" DEPENDS zrfigure "${shell_support}/zrfigure.h2m" VERBATIM
      COMMAND "${ZR_HELP2MAN}" --no-info --name "numbered figures of CAD assemblies"
        --include "${shell_support}/zrfigure.h2m" --output "${page}" $<TARGET_FILE:zrfigure>)
    add_custom_target(zrfigure_manual ALL DEPENDS "${page}")
    install(FILES "${page}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
  endif()
endif()
