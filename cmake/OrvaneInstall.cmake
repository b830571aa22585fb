# Installation: the two libraries, the public headers, the tools; a CMake package and a pkg-config file for each library.
include(CMakePackageConfigHelpers)

install(TARGETS orvaneruntime EXPORT OrvaneCoreTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS orvanecore EXPORT OrvaneCoreTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS orvanetransport LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/Include/Orvane DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
set_target_properties(orvaneruntime PROPERTIES EXPORT_NAME RunTime)
set_target_properties(orvanecore PROPERTIES EXPORT_NAME Core)
install(EXPORT OrvaneCoreTargets NAMESPACE Orvane:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrvaneCore)

file(WRITE ${PROJECT_BINARY_DIR}/OrvaneCoreConfig.cmake.in
     "@PACKAGE_INIT@\ninclude(\"\${CMAKE_CURRENT_LIST_DIR}/OrvaneCoreTargets.cmake\")\n")
configure_package_config_file(${PROJECT_BINARY_DIR}/OrvaneCoreConfig.cmake.in ${PROJECT_BINARY_DIR}/OrvaneCoreConfig.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrvaneCore)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrvaneCoreConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OrvaneCoreConfig.cmake ${PROJECT_BINARY_DIR}/OrvaneCoreConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrvaneCore)

function(orvane_pkg_config library description)
  set(file ${PROJECT_BINARY_DIR}/${library}.pc)
  file(WRITE ${file} "prefix=${CMAKE_INSTALL_PREFIX}\nlibdir=\${prefix}/${CMAKE_INSTALL_LIBDIR}\n\
includedir=\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}\n\nName: ${library}\nDescription: ${description}\n\
Version: ${PROJECT_VERSION}\nLibs: -L\${libdir} -l${library}\nCflags: -I\${includedir}\n")
  install(FILES ${file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
orvane_pkg_config(orvaneruntime "The process's table of run-time classes")
orvane_pkg_config(orvanecore "The base layer of game SDKs")
