# Installs the commands, the driver veska.py that run.sh and scr/veska.sh
# start as $VESKA_ROOT/bin/veska.py, the library with the headers a program
# needs to use it, and a package configuration for find_package.
include(CMakePackageConfigHelpers)

set(VESKA_PUBLIC_HEADERS
    src/mmutil/mmutil.h src/mmutil/fatal.h src/fileio/fileio.h src/job_scripts/job_scripts.h
    src/veska_inp/veska_inp.h src/transport/transport.h)
set(VESKA_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/veska_transport)

install(TARGETS veska_transport EXPORT veska_transportTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS ${VESKA_COMMANDS} ${VESKA_MC_COMMANDS} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(PROGRAMS src/app/veska.py DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${VESKA_PUBLIC_HEADERS} DESTINATION ${VESKA_INSTALL_INCLUDEDIR})
install(EXPORT veska_transportTargets NAMESPACE veska_transport::
        DESTINATION ${VESKA_PACKAGE_DIR})

configure_package_config_file(cmake/veska_transportConfig.cmake.in
                              ${CMAKE_CURRENT_BINARY_DIR}/veska_transportConfig.cmake
                              INSTALL_DESTINATION ${VESKA_PACKAGE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/veska_transportConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/veska_transportConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/veska_transportConfigVersion.cmake
        DESTINATION ${VESKA_PACKAGE_DIR})
