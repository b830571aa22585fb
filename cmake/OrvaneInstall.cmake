# Installation: the libraries, the public headers, the tools; CMake packages, and a pkg-config file for each library.
include(CMakePackageConfigHelpers)

# A build of a part (scripts/demo, a single target) is installed as far as it goes, and what is missing is said.
function(orvane_install_tool program)
  install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} OPTIONAL)
  orvane_say_if_not_built(${program})
endfunction()

function(orvane_say_if_not_built target)
  install(CODE "if(NOT EXISTS \"$<TARGET_FILE:${target}>\")
  message(STATUS \"Left out: ${target}, which is not built\")
endif()")
endfunction()

# Where the file is found tells its prefix, so that a tree that is installed elsewhere, or moved, stays whole.
function(orvane_pkg_config library description requires headers)
  set(file ${PROJECT_BINARY_DIR}/${library}.pc)
  file(RELATIVE_PATH up /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  string(REGEX REPLACE "/$" "" up "${up}")
  file(WRITE ${file} "prefix=\${pcfiledir}/${up}\nlibdir=\${prefix}/${CMAKE_INSTALL_LIBDIR}\n\
includedir=\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}\n\nName: ${library}\nDescription: ${description}\n\
Version: ${PROJECT_VERSION}\nRequires: ${requires}\nLibs: -L\${libdir} -l${library}\nCflags: -I\${includedir}${headers}\n")
  install(FILES ${file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

function(orvane_install_libraries)
  set(package ${CMAKE_INSTALL_LIBDIR}/cmake/OrvaneCore)
  set_target_properties(orvaneruntime PROPERTIES EXPORT_NAME RunTime)
  set_target_properties(orvanecore PROPERTIES EXPORT_NAME Core)
  set_target_properties(orvanezyl PROPERTIES EXPORT_NAME Zyl)
  install(TARGETS orvaneruntime orvanecore EXPORT OrvaneCoreTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(TARGETS orvanetransport LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/Include/Orvane DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(EXPORT OrvaneCoreTargets NAMESPACE Orvane:: DESTINATION ${package})

  install(TARGETS orvanezyl EXPORT OrvaneZylTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} OPTIONAL)
  orvane_say_if_not_built(orvanezyl)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/OrvaneBase/Source/Serializer/ZYL
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/OrvaneZyl/Serializer FILES_MATCHING PATTERN "*.h")
  install(FILES ${PROJECT_SOURCE_DIR}/OrvaneBase/Source/Base/Assert.h
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/OrvaneZyl/Base)
  install(EXPORT OrvaneZylTargets NAMESPACE Orvane:: DESTINATION ${package})

  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/OrvaneCoreConfig.cmake.in
                                ${PROJECT_BINARY_DIR}/OrvaneCoreConfig.cmake INSTALL_DESTINATION ${package}
                                PATH_VARS CMAKE_INSTALL_LIBDIR)
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrvaneCoreConfigVersion.cmake COMPATIBILITY SameMajorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/OrvaneCoreConfig.cmake ${PROJECT_BINARY_DIR}/OrvaneCoreConfigVersion.cmake
          DESTINATION ${package})

  orvane_pkg_config(orvaneruntime "The process's table of run-time classes" "" "")
  orvane_pkg_config(orvanecore "The base layer of game SDKs" orvaneruntime "")
  orvane_pkg_config(orvanezyl "What generated Zyl classes stand on" orvaneruntime /OrvaneZyl)
endfunction()
