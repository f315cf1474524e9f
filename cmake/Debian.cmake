# The metadata of the Debian package. A test runs lintian on the package; debian/overrides lists the
# ignored tags with the reasons.

set(CPACK_DEBIAN_PACKAGE_NAME kestova-voxa-support)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"KestovaVOXASupport reads the cursor, keystrokes, rectangles and series that
screen recordings carry in .voxa, .mp4, .mov, .avi, .wav and .dat files.

The package has the module and its headers, and voxa, which prints the
streams and the statistics of a recording.")
# The headers of Boost are needed to compile against the installed headers, but not to run programs.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS libboost${Boost_VERSION_MAJOR}.${Boost_VERSION_MINOR}-dev)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(package_doc ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_PACKAGE_NAME})
configure_file(cmake/debian/changelog ${PROJECT_BINARY_DIR}/changelog @ONLY)
compressed(${PROJECT_BINARY_DIR}/changelog ${package_doc})
install(FILES cmake/debian/copyright DESTINATION ${package_doc})
install(FILES cmake/debian/overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
  RENAME ${CPACK_DEBIAN_PACKAGE_NAME})

if(KESTOVA_PYTHON)
  # Two packages: the Python package and everything else.
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_NAME ${CPACK_DEBIAN_PACKAGE_NAME})
  set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-voxa)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
    "${CPACK_DEBIAN_PACKAGE_NAME} (= ${PROJECT_VERSION}), python3 (>= 3.11), python3 (<< 3.12), python3-numpy")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "python3-pandas, python3-matplotlib")
  set(CPACK_COMPONENT_PYTHON_DESCRIPTION
"screen metadata of recordings as NumPy arrays
voxa reads the cursor, keystrokes, rectangles and series that screen
recordings carry, as NumPy arrays and as keyframed parameters.")
  # Only the main package has shared libraries for the linker's cache.
  set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_CONTROL_EXTRA ${CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA})
  unset(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA)

  set(python_doc ${CMAKE_INSTALL_DATADIR}/doc/python3-voxa)
  install(FILES cmake/debian/copyright DESTINATION ${python_doc} COMPONENT python)
  install(FILES ${PROJECT_BINARY_DIR}/changelog.gz DESTINATION ${python_doc} COMPONENT python)
endif()
