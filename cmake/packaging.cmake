# Where an installation puts things, and the packages that cpack makes of one: a .deb and a .tar.gz, or a .zip for Windows.
if(WIN32) # one folder, to be put anywhere
  set(CMAKE_INSTALL_BINDIR .)
  set(CMAKE_INSTALL_DOCDIR .)
  set(data .)
endif()
include(GNUInstallDirs)
install(TARGETS trimora trimora-run)

# As in the source, so that the links of README.md lead somewhere.
install(FILES README.md CONTRIBUTING.md CHANGELOG.md CITATION.cff LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING REGEX "[.]md$|/pictures/[^/]+$")
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} # and not what runs have written there
        FILES_MATCHING REGEX "/[^./]+[.](fas|pir|txt|md)$")

if(NOT WIN32)
  set(data ${CMAKE_INSTALL_DATADIR}/${PROJECT_NAME})
  install(FILES docs/trimora.1 docs/trimora-run.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  # One file completes both programs, but bash looks for one under the name of each.
  set(bash_completions ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  set(links ${CMAKE_CURRENT_BINARY_DIR}/generated)
  file(CREATE_LINK trimora ${links}/trimora-run SYMBOLIC)
  install(FILES completions/trimora.bash DESTINATION ${bash_completions} RENAME trimora)
  install(FILES ${links}/trimora-run DESTINATION ${bash_completions})
  install(FILES completions/_trimora DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
  # Documents link to the workflow, and it to its settings.
  foreach(folder workflow config)
    file(RELATIVE_PATH target /${CMAKE_INSTALL_DOCDIR} /${data}/${folder})
    file(CREATE_LINK ${target} ${links}/${folder} SYMBOLIC)
    install(FILES ${links}/${folder} DESTINATION ${CMAKE_INSTALL_DOCDIR})
  endforeach()
endif()

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

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS snakemake)
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
