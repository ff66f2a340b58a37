# The Debian package: `cmake --build build --target package`, or cmake/package, which builds no tests.

set(CORVANE_MAINTAINER "Corvane maintainers <maintainers@corvane.invalid>" CACHE STRING
    "Name and address in the Debian package")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME corvane)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "edit one page of a PDF as SVG, and save it back")
set(CPACK_PACKAGE_DESCRIPTION "Corvane opens a page of a PDF as artwork for any vector editor: an SVG
with one element for each object, exact coordinates and the page's own
colours. It saves the artwork back into the same file, as an update that
is appended: every old byte stays, and the update can be taken off again.
What no edit concerned stays as it was.")
set(CPACK_PACKAGE_CONTACT ${CORVANE_MAINTAINER})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
# Fonts and code tables that pages name without having them, an editor, what its questions are asked with, and
# what opens the browser.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "inkscape, fonts-urw-base35, poppler-data, zenity | kdialog | python3-gi, xdg-utils")
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian-files.cmake)
include(CPack)
