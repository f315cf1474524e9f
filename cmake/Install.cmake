# Installs the program and the documents, and configures the packages. module/CMakeLists.txt installs
# the libraries.

include(GNUInstallDirs)

install(TARGETS voxa RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(NOT WIN32)
  set_target_properties(voxa PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
endif()

# Installs a text, compressed with gzip without a time stamp: `compressed(FILE FOLDER)`.
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
