# Where an installation puts things, and the packages that cpack makes of one: a .deb and a .tar.gz.
include(GNUInstallDirs)
set(bash_completions ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)

foreach(program trimora trimora-run)
  install(TARGETS ${program})
  install(FILES docs/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()
# One file completes both programs, but bash looks for one under the name of each.
file(CREATE_LINK trimora ${CMAKE_CURRENT_BINARY_DIR}/generated/trimora-run SYMBOLIC)
install(FILES completions/trimora.bash DESTINATION ${bash_completions} RENAME trimora)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/generated/trimora-run DESTINATION ${bash_completions})
install(FILES completions/_trimora DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)

# As in the source, so that the links of README.md lead somewhere.
install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING REGEX "[.]md$|/pictures/[^/]+$")
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} # and not what runs have written there
        FILES_MATCHING REGEX "/[^./]+[.](fas|pir|txt|md)$")

set(CPACK_GENERATOR DEB TGZ)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_VENDOR "Trimora developers")
set(CPACK_PACKAGE_CONTACT "Trimora developers <trimora@trimora.invalid>") # no such mailbox: nobody gets stray mail
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_CURRENT_SOURCE_DIR}/LICENSE)
set(CPACK_RESOURCE_FILE_README ${CMAKE_CURRENT_SOURCE_DIR}/README.md)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
string(TOLOWER ${PROJECT_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}
               CPACK_PACKAGE_FILE_NAME)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON) # a static program depends on nothing
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Trimora reads a multiple alignment of protein, DNA or codon sequences in
NBRF/PIR or FASTA format, decides for every position whether it is conserved,
and selects the blocks of positions that are reliable enough for a
phylogenetic analysis.
.
It writes the alignment reduced to these blocks and a report; on request also
a mask, a map of the blocks, the positions left out, the alignment without its
gapped positions and, for many alignments at once, their concatenation.
trimora asks through menus or takes options; trimora-run takes options only,
and its exit status tells scripts whether the run went through.")
include(CPack)
