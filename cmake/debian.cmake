# Run by cpack on what it has installed, before it packs: what Debian wants otherwise than GNU.
if(NOT CPACK_GENERATOR STREQUAL DEB)
  return()
endif()
set(share ${CPACK_TEMPORARY_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
set(doc ${share}/doc/${CPACK_PACKAGE_NAME})
file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions) # the other is for local files

# The copyright file: the licence with a blank in front of each line and a dot on the empty ones.
file(READ ${doc}/LICENSE license)
string(REGEX MATCH "Copyright [^\n]*" copyright "${license}")
string(REGEX REPLACE "Copyright (\\(c\\) )?" "" copyright "${copyright}")
string(REGEX REPLACE "^.*Copyright [^\n]*\n\n" "" license "${license}")
string(REGEX REPLACE "\n+$" "" license "${license}")
string(REPLACE "\n\n" "\n.\n" license "${license}")
string(REPLACE "\n" "\n " license "${license}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright.in ${doc}/copyright @ONLY)
file(CREATE_LINK copyright ${doc}/LICENSE SYMBOLIC) # for the link in README.md
file(REMOVE ${share}/${CPACK_PACKAGE_NAME}/engine/LICENSE)     # the same

string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${doc}/changelog "${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}) unstable; urgency=low

  * What has changed for users stands in CHANGELOG.md.

 -- ${CPACK_PACKAGE_CONTACT}  ${now}
")
file(GLOB pages ${share}/man/man1/*)
execute_process(COMMAND gzip -9n ${doc}/changelog ${pages} COMMAND_ERROR_IS_FATAL ANY)
file(GLOB programs ${share}/../bin/*)
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs} COMMAND_ERROR_IS_FATAL ANY)
