# What an installation holds, in two components. The tree of quillon-simulation is complete in itself and lies apart:
# the loaders look for the runtime libraries in lib/ beside the folder "Hardware Applets" of the applet in use, so no
# file of the stand-ins can take the place of a bench's own.
include(CMakePackageConfigHelpers)

set(applet_folder "Hardware Applets/fabrixIV")
set(simulation_folder lib/quillon-simulation)
set(package_folder lib/cmake/Quillon)

install(TARGETS Quillon LIBRARY DESTINATION ${applet_folder} COMPONENT quillon)
install(TARGETS quillon RUNTIME DESTINATION bin COMPONENT quillon)
set_target_properties(quillon_host PROPERTIES EXPORT_NAME host)
install(TARGETS quillon_host EXPORT QuillonTargets ARCHIVE DESTINATION lib COMPONENT quillon)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/include/fabrix DESTINATION include COMPONENT quillon)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/tools/host DESTINATION include/quillon COMPONENT quillon
    FILES_MATCHING PATTERN *.h)
install(DIRECTORY ${QUILLON_STAGE}/share/doc/quillon DESTINATION share/doc COMPONENT quillon)
install(DIRECTORY ${QUILLON_STAGE}/share/man ${QUILLON_STAGE}/share/bash-completion ${QUILLON_STAGE}/share/zsh
    ${QUILLON_STAGE}/share/fish DESTINATION share COMPONENT quillon)
file(GLOB manual CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/docs/*.md)
install(FILES ${manual} ${CMAKE_SOURCE_DIR}/CHANGELOG.md DESTINATION share/doc/quillon COMPONENT quillon)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples DESTINATION share/doc/quillon COMPONENT quillon)

install(EXPORT QuillonTargets NAMESPACE Quillon:: DESTINATION ${package_folder} COMPONENT quillon)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/QuillonConfig.cmake.in
    ${CMAKE_BINARY_DIR}/generated/QuillonConfig.cmake INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/generated/QuillonConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
configure_file(${CMAKE_CURRENT_LIST_DIR}/quillon-host.pc.in ${CMAKE_BINARY_DIR}/generated/quillon-host.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/generated/QuillonConfig.cmake ${CMAKE_BINARY_DIR}/generated/QuillonConfigVersion.cmake
    DESTINATION ${package_folder} COMPONENT quillon)
install(FILES ${CMAKE_BINARY_DIR}/generated/quillon-host.pc DESTINATION lib/pkgconfig COMPONENT quillon)

install(TARGETS Quillon LIBRARY DESTINATION ${simulation_folder}/${applet_folder} COMPONENT quillon-simulation)
install(TARGETS tavo_hw haprt LIBRARY DESTINATION ${simulation_folder}/lib COMPONENT quillon-simulation)
install(FILES ${CMAKE_SOURCE_DIR}/simulation/tavo_hw/tavo_sim.h
    DESTINATION ${simulation_folder}/include COMPONENT quillon-simulation)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/simulation/pictures DESTINATION ${simulation_folder}/share
    COMPONENT quillon-simulation FILES_MATCHING PATTERN *.png)
install(FILES ${CMAKE_SOURCE_DIR}/docs/software-board.md ${CMAKE_SOURCE_DIR}/docs/ci-recipe.md
    DESTINATION ${simulation_folder}/share/doc COMPONENT quillon-simulation)
# The pages that the parameters of this tree's applet name.
install(DIRECTORY ${QUILLON_STAGE}/share/doc/quillon
    DESTINATION ${simulation_folder}/share/doc COMPONENT quillon-simulation)

# Packing takes what `./run package` has built, and does not build tests for it.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

# The two Debian packages. They share one prefix of their own, in which the tool finds both trees.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /opt/quillon)
set(CPACK_PACKAGE_CONTACT "Quillon developers <quillon@localhost>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_COMPONENTS_ALL quillon quillon-simulation)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_QUILLON_PACKAGE_NAME quillon)
set(CPACK_DEBIAN_QUILLON_DESCRIPTION "Frame grabber applet library, its command line tool and headers")
set(CPACK_DEBIAN_QUILLON_PACKAGE_SUGGESTS quillon-simulation)
set(CPACK_DEBIAN_QUILLON-SIMULATION_PACKAGE_NAME quillon-simulation)
set(CPACK_DEBIAN_QUILLON-SIMULATION_DESCRIPTION "Software board for Quillon, in a tree of its own")
set(CPACK_DEBIAN_QUILLON-SIMULATION_PACKAGE_RECOMMENDS "quillon (= ${PROJECT_VERSION})")
include(CPack)
