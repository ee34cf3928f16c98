# Mends what CPack writes into the packages: calls of ldconfig where Debian has a trigger, and no Multi-Arch field.
find_program(DPKG_DEB dpkg-deb REQUIRED)

foreach(package_file ${CPACK_PACKAGE_FILES})
  get_filename_component(name ${package_file} NAME)
  string(REGEX REPLACE "_.*" "" package ${name})
  set(tree ${CPACK_TEMPORARY_DIRECTORY}/mended)
  file(REMOVE_RECURSE ${tree})
  execute_process(COMMAND ${DPKG_DEB} --raw-extract ${package_file} ${tree} COMMAND_ERROR_IS_FATAL ANY)
  if(EXISTS ${tree}/DEBIAN/shlibs)
    file(REMOVE ${tree}/DEBIAN/postinst ${tree}/DEBIAN/postrm)
    file(WRITE ${tree}/DEBIAN/triggers "activate-noawait ldconfig\n")
  endif()
  if(package IN_LIST CPACK_LXGUI_SAME_PACKAGES)
    file(READ ${tree}/DEBIAN/control control)
    string(STRIP "${control}" control)  # an empty line would end it
    file(WRITE ${tree}/DEBIAN/control "${control}\nMulti-Arch: same\n")
  endif()
  execute_process(COMMAND ${DPKG_DEB} --root-owner-group -Zxz --build ${tree} ${package_file}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE ${tree})
endforeach()
