# Three Debian packages: cpack -G DEB in the build folder of the release preset.

# Both change logs begin with the version that is built.
function(qor_check_change_log file line)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    file(STRINGS ${file} entries REGEX "^(qor-dir-node \\(|## )")
    list(GET entries 0 newest)
    if(NOT newest MATCHES "${line}")
        message(FATAL_ERROR "${file} begins with \"${newest}\", but this is version ${PROJECT_VERSION}.")
    endif()
endfunction()
string(REPLACE "." "\\." versionPattern ${PROJECT_VERSION})
qor_check_change_log(packaging/changelog "^qor-dir-node \\(${versionPattern}\\)")
qor_check_change_log(CHANGELOG.md "^## ${versionPattern}(,|$)")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "QOR_DIR_Node")
set(CPACK_PACKAGE_CONTACT "QOR_DIR_Node maintainers <maintainers@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development tools)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The other packages are looked up in this build, not in the system.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

# The library tells the loader of itself, and other packages what to depend on: the version in shlibs is the first one
# that has today's entry points.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/packaging/triggers ${PROJECT_SOURCE_DIR}/packaging/shlibs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libqor-dir-node1)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "libqt6sql6-sqlite")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "libqt6sql6-psql")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "fonts-dejavu-core, fonts-dejavu-extra")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "directory node editor (component)
The editor that a configuration builder of a voice-messaging and
auto-attendant system opens with one call to keep a dial-by-name directory.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libqor-dir-node-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libqor-dir-node1 (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "directory node editor (development files)
The public header, the link to the shared library, and the CMake and
pkg-config files for programs that open the directory node editor.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME qor-dir-node-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "libqor-dir-node1 (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS "libqt6sql6-psql")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "directory node editor (host program and database tool)
dir-host opens the directory node editor on one node; dir-db makes, checks,
shows and converts its configuration databases.")

include(CPack)
