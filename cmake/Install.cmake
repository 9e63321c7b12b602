# What is installed where. Three components: runtime (the library), development, tools.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS QOR_DIR_Node
    EXPORT QOR_DIR_NodeTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    PUBLIC_HEADER DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT QOR_DIR_NodeTargets
    NAMESPACE QOR::
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/QOR_DIR_Node
    COMPONENT development)

configure_package_config_file(cmake/QOR_DIR_NodeConfig.cmake.in QOR_DIR_NodeConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/QOR_DIR_Node)
write_basic_package_version_file(QOR_DIR_NodeConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
        ${CMAKE_CURRENT_BINARY_DIR}/QOR_DIR_NodeConfig.cmake
        ${CMAKE_CURRENT_BINARY_DIR}/QOR_DIR_NodeConfigVersion.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/QOR_DIR_Node
    COMPONENT development)
file(RELATIVE_PATH prefixFromPkgconfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/qor-dir-node.pc.in qor-dir-node.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qor-dir-node.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# The host program finds the library beside it wherever the prefix is.
set_target_properties(dir-host PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
install(TARGETS dir-host dir-db DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
install(FILES packaging/dir-host.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT tools)
install(FILES packaging/completions/dir-host packaging/completions/dir-db
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)

install(FILES docs/administrator.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/qor-dir-node-tools COMPONENT tools)
install(DIRECTORY docs/images DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/qor-dir-node-tools COMPONENT tools)
install(DIRECTORY examples/shared-engine USE_SOURCE_PERMISSIONS
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/qor-dir-node-tools/examples COMPONENT tools)

# Version 1.0.0 registered itself under the name of its file, which has to lead to whatever took its place.
set(linkOfFirst ${CMAKE_CURRENT_BINARY_DIR}/libQOR_DIR_Node.so.1.0.0)
file(CREATE_LINK libQOR_DIR_Node.so.1 ${linkOfFirst} SYMBOLIC)
install(FILES ${linkOfFirst} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime)

# What a host developer starts from.
install(FILES docs/hosts.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libqor-dir-node-dev COMPONENT development)
install(DIRECTORY examples/cmake-host DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libqor-dir-node-dev/examples
    COMPONENT development)
install(FILES examples/dlopen-host.cpp examples/late_bound_host.py examples/python_host.py examples/qor_component.py
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libqor-dir-node-dev/examples COMPONENT development)

install(FILES packaging/lintian/libqor-dir-node1
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT runtime)

find_program(GZIP gzip REQUIRED)
foreach(page dir-host dir-db)
    configure_file(packaging/man/${page}.1 ${page}.1 @ONLY)
    add_custom_command(OUTPUT ${page}.1.gz
        COMMAND ${GZIP} -9nc ${page}.1 > ${page}.1.gz
        DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/${page}.1)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${page}.1.gz
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
endforeach()
add_custom_command(OUTPUT changelog.gz
    COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/packaging/changelog > changelog.gz
    DEPENDS ${PROJECT_SOURCE_DIR}/packaging/changelog)
add_custom_target(documents ALL DEPENDS dir-host.1.gz dir-db.1.gz changelog.gz)
foreach(package runtime:libqor-dir-node1 development:libqor-dir-node-dev tools:qor-dir-node-tools)
    string(REPLACE ":" ";" package ${package})
    list(GET package 0 component)
    list(GET package 1 name)
    install(FILES packaging/copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
endforeach()
