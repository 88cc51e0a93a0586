# Where an installation puts things, and the packages that cpack makes of one: a .tar.gz and three .deb (the programs, the
# shared library, what is needed to build with it), or a .zip for Windows.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME programs)
if(WIN32) # one folder, to be put anywhere
  set(CMAKE_INSTALL_BINDIR .)
  set(CMAKE_INSTALL_DOCDIR .)
  set(data .)
endif()
include(GNUInstallDirs)
install(TARGETS trimora trimora-run)

# The library: one header, the static and the shared one, and what CMake and pkg-config ask for.
include(CMakePackageConfigHelpers)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/trimora)
set(generated ${CMAKE_CURRENT_BINARY_DIR}/generated)
install(FILES include/trimora/trimora.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/trimora COMPONENT development)
install(TARGETS trimora_static EXPORT trimora-static-targets ARCHIVE COMPONENT development)
install(EXPORT trimora-static-targets NAMESPACE trimora:: DESTINATION ${package} COMPONENT development)
if(TARGET trimora_shared)
  install(TARGETS trimora_shared EXPORT trimora-shared-targets LIBRARY COMPONENT runtime NAMELINK_COMPONENT development)
  install(EXPORT trimora-shared-targets NAMESPACE trimora:: DESTINATION ${package} COMPONENT development)
endif()
configure_package_config_file(cmake/trimora-config.cmake.in ${generated}/trimora-config.cmake
                              INSTALL_DESTINATION ${package})
write_basic_package_version_file(${generated}/trimora-config-version.cmake COMPATIBILITY SameMajorVersion)
file(RELATIVE_PATH up /${CMAKE_INSTALL_LIBDIR}/pkgconfig /) # so that the folder can be put anywhere
set(requires)
if(ZLIB_FOUND)
  set(requires zlib)
endif()
configure_file(cmake/trimora.pc.in ${generated}/trimora.pc @ONLY)
install(FILES ${generated}/trimora-config.cmake ${generated}/trimora-config-version.cmake DESTINATION ${package}
        COMPONENT development)
install(FILES ${generated}/trimora.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# As in the source, so that the links of README.md lead somewhere.
install(FILES README.md CONTRIBUTING.md CHANGELOG.md CITATION.cff LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING REGEX "[.]md$|/pictures/[^/]+$")
foreach(face python r web/engine)
  install(FILES ${face}/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/${face} OPTIONAL)
endforeach()

if(NOT WIN32)
  set(data ${CMAKE_INSTALL_DATADIR}/${PROJECT_NAME})
  install(FILES docs/trimora.1 docs/trimora-run.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  # One file completes both programs, but bash looks for one under the name of each.
  set(bash_completions ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  file(CREATE_LINK trimora ${generated}/trimora-run SYMBOLIC)
  install(FILES completions/trimora.bash DESTINATION ${bash_completions} RENAME trimora)
  install(FILES ${generated}/trimora-run DESTINATION ${bash_completions})
  install(FILES completions/_trimora DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
  # Documents link to the examples and to the workflow, and it to its settings. Some systems install no documents: then the
  # links are missing, and not what they lead to.
  foreach(folder examples workflow config)
    file(RELATIVE_PATH target /${CMAKE_INSTALL_DOCDIR} /${data}/${folder})
    file(CREATE_LINK ${target} ${generated}/${folder} SYMBOLIC)
    install(FILES ${generated}/${folder} DESTINATION ${CMAKE_INSTALL_DOCDIR})
  endforeach()
endif()

install(DIRECTORY examples DESTINATION ${data} # and not what runs have written there
        FILES_MATCHING REGEX "/[^./]+[.](fas|pir|txt|md|cpp)$")
install(DIRECTORY workflow config DESTINATION ${data} PATTERN __pycache__ EXCLUDE PATTERN "*.sh" EXCLUDE)
install(PROGRAMS workflow/profiles/slurm/slurm-status.sh DESTINATION ${data}/workflow/profiles/slurm)
# The page and the engine, when scripts/web.sh has made them.
install(FILES build/web/trimora.html DESTINATION ${data} OPTIONAL)
install(DIRECTORY build/web/package/ DESTINATION ${data}/engine OPTIONAL PATTERN "*.tgz" EXCLUDE)

set(CPACK_GENERATOR DEB TGZ)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
endif()
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_VENDOR "Trimora developers")
set(CPACK_PACKAGE_CONTACT "Trimora developers <trimora@trimora.invalid>") # no such mailbox: nobody gets stray mail
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_CURRENT_SOURCE_DIR}/LICENSE)
set(CPACK_RESOURCE_FILE_README ${CMAKE_CURRENT_SOURCE_DIR}/README.md)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
string(TOLOWER ${PROJECT_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}
               CPACK_PACKAGE_FILE_NAME)

set(CPACK_COMPONENTS_ALL programs runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_NAME} built using CMake") # cpack then takes the first line of each below
set(about "Trimora reads a multiple alignment of protein, DNA or codon sequences, decides
for every position whether it is conserved, and selects the blocks of positions
that are reliable enough for a phylogenetic analysis.
.
")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_NAME trimora)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SUGGESTS snakemake)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SHLIBDEPS ON) # a static program depends on nothing
set(CPACK_COMPONENT_PROGRAMS_DESCRIPTION "${PROJECT_DESCRIPTION}
${about}It writes the alignment reduced to these blocks and a report; on request also
a mask, a map of the blocks, the positions left out, the alignment without its
gapped positions and, for many alignments at once, their concatenation.
trimora asks through menus or takes options; trimora-run takes options only,
reads what other programs write, and its exit status tells scripts whether the
run went through.")
set(library libtrimora${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${library})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "${PROJECT_DESCRIPTION} (library)
${about}This package has the shared library.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtrimora-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library} (= ${PROJECT_VERSION})")
if(ZLIB_FOUND)
  string(APPEND CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ", zlib1g-dev") # for the static library
endif()
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "${PROJECT_DESCRIPTION} (C++ headers)
${about}This package has what is needed to build programs with the library.")
include(CPack)
