# Installs the libraries, their headers under include/zylcollada, the zyldae tool, the CMake
# package (find_package(zylcollada CONFIG): zylcollada::kit, zylcollada::reader) and a
# pkg-config file (zylcollada.pc).
include(CMakePackageConfigHelpers)

set(ZYL_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zylcollada)
set(ZYL_HEADER_DIR ${CMAKE_INSTALL_INCLUDEDIR}/zylcollada)

file(GLOB ZYL_KIT_HEADERS ${PROJECT_SOURCE_DIR}/kit/*.h)
install(FILES ${ZYL_KIT_HEADERS} ${PROJECT_BINARY_DIR}/generated/kit/version.h DESTINATION ${ZYL_HEADER_DIR}/kit)
install(FILES reader/collada_reader.h DESTINATION ${ZYL_HEADER_DIR}/reader)

install(TARGETS zylkit zylreader EXPORT zylcolladaTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(ZYL_BUILD_TOOLS)
  install(TARGETS zyldae RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT zylcolladaTargets NAMESPACE zylcollada:: DESTINATION ${ZYL_PACKAGE_DIR})
configure_package_config_file(cmake/zylcolladaConfig.cmake.in ${PROJECT_BINARY_DIR}/zylcolladaConfig.cmake
                              INSTALL_DESTINATION ${ZYL_PACKAGE_DIR})
# Before 1.0 only the same minor version promises the same interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zylcolladaConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zylcolladaConfig.cmake ${PROJECT_BINARY_DIR}/zylcolladaConfigVersion.cmake
        DESTINATION ${ZYL_PACKAGE_DIR})

# The .pc file finds its prefix from where it lies, so that the installed tree can move.
set(ZYL_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH ZYL_PKGCONFIG_TO_PREFIX /${ZYL_PKGCONFIG_DIR} /)
configure_file(cmake/zylcollada.pc.in ${PROJECT_BINARY_DIR}/zylcollada.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zylcollada.pc DESTINATION ${ZYL_PKGCONFIG_DIR})
