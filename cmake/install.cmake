# What `cmake --install` installs.

install(TARGETS corvane RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS corvane-pdf LIBRARY DESTINATION ${CORVANE_LIBRARIES})
if(CORVANE_WITH_WEB)
    install(TARGETS corvane-web LIBRARY DESTINATION ${CORVANE_LIBRARIES})
endif()
install(TARGETS toolbox LIBRARY DESTINATION ${CORVANE_LIBRARIES} NAMELINK_SKIP)

set(manual ${PROJECT_BINARY_DIR}/manual)
install(FILES ${manual}/corvane.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${manual}/corvane-svg.5.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)

set(share ${CMAKE_INSTALL_DATADIR})
install(FILES ${manual}/corvane.bash DESTINATION ${share}/bash-completion/completions RENAME corvane)
install(FILES ${manual}/_corvane DESTINATION ${share}/zsh/site-functions)
install(FILES ${manual}/corvane.fish DESTINATION ${share}/fish/vendor_completions.d)

install(FILES desktop/corvane.desktop desktop/corvane-page.desktop DESTINATION ${share}/applications)
if(CORVANE_WITH_WEB)
    install(FILES desktop/corvane-browser.desktop DESTINATION ${share}/applications)
endif()
install(FILES desktop/corvane-page.xml DESTINATION ${share}/mime/packages)
install(FILES desktop/corvane.svg DESTINATION ${share}/icons/hicolor/scalable/apps)

file(GLOB extensions CONFIGURE_DEPENDS inkscape/*.inx inkscape/*.py)
install(FILES ${extensions} DESTINATION ${share}/inkscape/extensions)

install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN *.md PATTERN *.png)
file(GLOB examples CONFIGURE_DEPENDS examples/*.pdf examples/*.png)
install(FILES ${examples} examples/tiny_host.cpp DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)

# All that is installed, for who wants no tests.
add_custom_target(installed DEPENDS corvane corvane-pdf toolbox manual $<TARGET_NAME_IF_EXISTS:corvane-web>)
