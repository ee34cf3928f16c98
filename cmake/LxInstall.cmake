# What `cmake --install` puts where. Six components, each a Debian package (packaging/CMakeLists.txt): RuntimeSDK and
# Runtime (the libraries, apart because the SDK needs no Qt), Development (headers, package files), Viewer, Emulator (the
# programs), Documentation. Everything finds its parts relative to itself, so that the prefix can be chosen
# at installation and moved afterwards.
include(CMakePackageConfigHelpers)

# One root for the headers of both libraries; hosts write <LxGUI/LxDisplayWnd.h>, <LxSystem/LxSystem.h>.
set(LXGUI_INSTALL_HEADERS ${CMAKE_INSTALL_INCLUDEDIR}/LxGUI)
set(LXGUI_INSTALL_PACKAGE ${CMAKE_INSTALL_LIBDIR}/cmake/LxGUI)

set_target_properties(LxSDK LxGUI PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS LxSDK EXPORT LxSDKTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT RuntimeSDK
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT RuntimeSDK NAMELINK_COMPONENT Development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development
  FILE_SET HEADERS DESTINATION ${LXGUI_INSTALL_HEADERS} COMPONENT Development)
install(TARGETS LxGUI EXPORT LxGUITargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development
  FILE_SET HEADERS DESTINATION ${LXGUI_INSTALL_HEADERS} COMPONENT Development
  FILE_SET generated DESTINATION ${LXGUI_INSTALL_HEADERS} COMPONENT Development)

# find_package(LxGUI)
foreach(library LxSDK LxGUI)
  install(EXPORT ${library}Targets NAMESPACE ${library}:: DESTINATION ${LXGUI_INSTALL_PACKAGE} COMPONENT Development)
endforeach()
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/LxGUIConfig.cmake.in ${CMAKE_BINARY_DIR}/LxGUIConfig.cmake
  INSTALL_DESTINATION ${LXGUI_INSTALL_PACKAGE} NO_SET_AND_CHECK_MACRO)
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(compatibility SameMinorVersion)
else()
  set(compatibility SameMajorVersion)
endif()
write_basic_package_version_file(${CMAKE_BINARY_DIR}/LxGUIConfigVersion.cmake COMPATIBILITY ${compatibility})
install(FILES ${CMAKE_BINARY_DIR}/LxGUIConfig.cmake ${CMAKE_BINARY_DIR}/LxGUIConfigVersion.cmake
  DESTINATION ${LXGUI_INSTALL_PACKAGE} COMPONENT Development)

# pkg-config
file(RELATIVE_PATH pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
foreach(library lxsdk lxgui)
  configure_file(${CMAKE_SOURCE_DIR}/cmake/${library}.pc.in ${CMAKE_BINARY_DIR}/${library}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/${library}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
endforeach()

if(LXGUI_BUILD_APPS)
  file(RELATIVE_PATH to_libraries /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(lxgui-viewer PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
  install(TARGETS lxgui-viewer RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Viewer)
  install(TARGETS lxgui-camera-emulator RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Emulator)
endif()

install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Documentation)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Documentation)
