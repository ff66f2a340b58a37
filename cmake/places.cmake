# Where things are installed. Program, plug-in and library find one another by where they lie beside each
# other, so an installed tree can be moved.
include(GNUInstallDirs)

# The plug-in and the library: a folder of our own, as no other program links them.
set(CORVANE_LIBRARIES ${CMAKE_INSTALL_LIBDIR}/corvane)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_LIBDIR
    BASE_DIRECTORY ${CMAKE_INSTALL_BINDIR} OUTPUT_VARIABLE CORVANE_FROM_PROGRAM)
string(APPEND CORVANE_FROM_PROGRAM /corvane)
