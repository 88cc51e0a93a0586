# Run by cpack on what it has installed, before it packs: what Debian wants otherwise than GNU. One folder for each package.
if(NOT CPACK_GENERATOR STREQUAL DEB)
  return()
endif()
set(share ${CPACK_TEMPORARY_DIRECTORY}/programs${CPACK_PACKAGING_INSTALL_PREFIX}/share)
file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions) # the other is for local files
file(GLOB pages ${share}/man/man1/*)
execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)

# The copyright file: the licence with a blank in front of each line and a dot on the empty ones.
file(READ ${share}/doc/trimora/LICENSE license)
string(REGEX MATCH "Copyright [^\n]*" copyright "${license}")
string(REGEX REPLACE "Copyright (\\(c\\) )?" "" copyright "${copyright}")
string(REGEX REPLACE "^.*Copyright [^\n]*\n\n" "" license "${license}")
string(REGEX REPLACE "\n+$" "" license "${license}")
string(REPLACE "\n\n" "\n.\n" license "${license}")
string(REPLACE "\n" "\n " license "${license}")
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  set(folder ${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX})
  set(doc ${folder}/share/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright.in ${doc}/copyright @ONLY)
  file(WRITE ${doc}/changelog "trimora (${CPACK_PACKAGE_VERSION}) unstable; urgency=low

  * What has changed for users stands in CHANGELOG.md.

 -- ${CPACK_PACKAGE_CONTACT}  ${now}
")
  execute_process(COMMAND gzip -9n ${doc}/changelog COMMAND_ERROR_IS_FATAL ANY)
endforeach()
file(CREATE_LINK copyright ${share}/doc/trimora/LICENSE SYMBOLIC) # for the link in README.md
file(REMOVE ${share}/trimora/engine/LICENSE)                   # the same

file(GLOB programs ${share}/../bin/*)
file(GLOB_RECURSE shared ${CPACK_TEMPORARY_DIRECTORY}/runtime/*.so.*)
file(GLOB_RECURSE static ${CPACK_TEMPORARY_DIRECTORY}/development/*.a)
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note --strip-unneeded ${shared} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND strip --remove-section=.comment --strip-debug ${static} COMMAND_ERROR_IS_FATAL ANY)
