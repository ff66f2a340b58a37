# What a Debian package has otherwise than a folder that `cmake --install` filled. CPack runs this where
# the files lie that it is about to pack.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)

# zsh of Debian looks there for what packages bring.
file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions)

set(doc ${share}/doc/corvane)
file(COPY_FILE ${CMAKE_CURRENT_LIST_DIR}/debian-copyright ${doc}/copyright)
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${doc}/changelog "corvane (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * Version ${CPACK_PACKAGE_VERSION}.

 -- ${CPACK_PACKAGE_CONTACT}  ${now}
")
execute_process(COMMAND gzip -9n ${doc}/changelog COMMAND_ERROR_IS_FATAL ANY)
file(CHMOD ${doc}/copyright ${doc}/changelog.gz PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
