# The Debian package, made from what `cmake --install` installs:
#     cpack --config build/CPackConfig.cmake
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "Zenko Works Ltd <zf90@zenko-works.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "front end for Fortran 90 and FORTRAN 77")
set(CPACK_PACKAGE_DESCRIPTION
    "zf90 reads a Fortran source file in free or fixed form, reports what is wrong
with it, and writes its meaning as a text file of intermediate language for a
back end to read. zf90-il checks and prints such files.

The package has both commands with their man pages, their completion for bash,
hooks for Vim, Emacs and Visual Studio Code, and the C++ library libzf90il with
its headers, for programs that read the intermediate language.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "g++, cmake")

# Man pages and the changelog are compressed only there.
install(FILES packaging/copyright packaging/changelog DESTINATION ${CMAKE_INSTALL_DOCDIR})
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian_files.cmake)
include(CPack)
