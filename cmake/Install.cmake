# What is installed, and the packages made of it.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(libraries Kestova VOXA KestovaVOXASupport)
install(TARGETS ${libraries} EXPORT KestovaVOXASupport
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS voxa RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(NOT WIN32)
  set_target_properties(${libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
  set_target_properties(voxa PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
endif()

# Headers keep their folders, since that is how they are included.
set(include_folder ${CMAKE_INSTALL_INCLUDEDIR}/KestovaVOXASupport)
foreach(folder host/Kestova params)
  install(DIRECTORY ${folder}/ DESTINATION ${include_folder}/${folder}
    FILES_MATCHING PATTERN "*.h")
endforeach()
install(FILES
  host/VOXA/AudioFormat.h host/VOXA/Export.h host/VOXA/MP4TrackReader.h host/VOXA/Reader.h
  DESTINATION ${include_folder}/host/VOXA)
install(FILES
  loader/VOXAScreenMetaDataFilenameSetter.h loader/VOXAScreenMetaDataLoader.h
  DESTINATION ${include_folder}/loader)
install(FILES stats/VOXAStatsLoader.h DESTINATION ${include_folder}/stats)
install(FILES module/Export.h DESTINATION ${include_folder}/module)

set(config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/KestovaVOXASupport)
install(EXPORT KestovaVOXASupport NAMESPACE KestovaVOXASupport::
  FILE KestovaVOXASupportTargets.cmake DESTINATION ${config_folder})
configure_package_config_file(module/KestovaVOXASupportConfig.cmake.in
  ${PROJECT_BINARY_DIR}/KestovaVOXASupportConfig.cmake INSTALL_DESTINATION ${config_folder})
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/KestovaVOXASupportConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/KestovaVOXASupportConfig.cmake
  ${PROJECT_BINARY_DIR}/KestovaVOXASupportConfigVersion.cmake
  DESTINATION ${config_folder})

file(RELATIVE_PATH prefix_from_pkgconfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(module/KestovaVOXASupport.pc.in ${PROJECT_BINARY_DIR}/KestovaVOXASupport.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/KestovaVOXASupport.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# Installs a text compressed with gzip, without a time stamp: `compressed(FILE FOLDER)`.
function(compressed file folder)
  find_program(GZIP gzip REQUIRED)
  get_filename_component(name ${file} NAME)
  set(result ${PROJECT_BINARY_DIR}/${name}.gz)
  add_custom_command(OUTPUT ${result}
    COMMAND ${GZIP} -9nc ${file} > ${result}
    DEPENDS ${file} VERBATIM)
  add_custom_target(compressed_${name} ALL DEPENDS ${result})
  install(FILES ${result} DESTINATION ${folder})
endfunction()

if(NOT WIN32)
  compressed(${PROJECT_SOURCE_DIR}/docs/voxa.1 ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES tools/voxa/completion/voxa
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES tools/voxa/completion/_voxa
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
  install(FILES tools/voxa/completion/voxa.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endif()
install(FILES README.md CHANGELOG.md SECURITY.md docs/format.md docs/robustness.md docs/serialisation.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_PACKAGE_CONTACT "The developers of KestovaVOXASupport <kestova@example.invalid>")
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-win64)
else()
  set(CPACK_GENERATOR TGZ DEB)
  set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR})
  include(cmake/Debian.cmake)
endif()
include(CPack)
