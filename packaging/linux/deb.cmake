# Two .deb packages: cpack in the build folder, or scripts/package, which brings what it needs.
set(system_name "")
if(EXISTS /etc/os-release)
  foreach(field ID VERSION_ID)
    file(STRINGS /etc/os-release line REGEX "^${field}=" LIMIT_COUNT 1)
    string(REGEX REPLACE "^${field}=|\"" "" line "${line}")
    string(APPEND system_name "${line}")
  endforeach()
endif()

# packages_to(<list> <purpose>): what packaging/packages.txt names for it, as a dependency field.
function(packages_to list purpose)
  execute_process(COMMAND bash -c ". scripts/common.sh; packages ${purpose}" WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    OUTPUT_VARIABLE names COMMAND_ERROR_IS_FATAL ANY)
  string(STRIP "${names}" names)
  string(REPLACE "\n" ", " names "${names}")
  set(${list} "${names}" PARENT_SCOPE)
endfunction()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/packaging/packages.txt)

string(TIMESTAMP VANTLE_YEAR "%Y")
configure_file(debian/copyright.in copyright @ONLY)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantle)
set(CPACK_PACKAGE_VENDOR "${VANTLE_DEVELOPER}")
set(CPACK_PACKAGE_CONTACT "${VANTLE_DEVELOPER} <${VANTLE_CONTACT}>")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# Each package has a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL application service)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)

# Libraries have other names elsewhere, so a package says which system it was built on.
set(CPACK_DEBIAN_PACKAGE_RELEASE "1~${system_name}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
if(VANTLE_HOMEPAGE)
  set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${VANTLE_HOMEPAGE}")
endif()

packages_to(needs application)
packages_to(recommends recommended)
set(CPACK_DEBIAN_APPLICATION_PACKAGE_NAME vantle)
set(CPACK_DEBIAN_APPLICATION_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_APPLICATION_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_APPLICATION_PACKAGE_DEPENDS "${needs}")
set(CPACK_DEBIAN_APPLICATION_PACKAGE_RECOMMENDS "${recommends}")
set(CPACK_DEBIAN_APPLICATION_PACKAGE_SUGGESTS vantle-service)
set(CPACK_COMPONENT_APPLICATION_DESCRIPTION "small tools for people who work with terminal coding agents
Vantle waits in the tray. Each of its fourteen tools has a keyboard shortcut
and works over whatever program is being used: saved commands typed into the
terminal, conversations with agents found and resumed, projects opened, images
and files turned into links, selected text rewritten, questions answered.

The AI tools work with a provider of the user's own. The vantle command does
the same from a shell.")

packages_to(needs service)
packages_to(postgresql service_recommended)
set(CPACK_DEBIAN_SERVICE_PACKAGE_NAME vantle-service)
set(CPACK_DEBIAN_SERVICE_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_SERVICE_PACKAGE_SECTION net)
set(CPACK_DEBIAN_SERVICE_PACKAGE_DEPENDS "${needs}, adduser")
set(CPACK_DEBIAN_SERVICE_PACKAGE_RECOMMENDS "${postgresql}")
set(CPACK_DEBIAN_SERVICE_PACKAGE_CONTROL_EXTRA
  "${CMAKE_CURRENT_SOURCE_DIR}/debian/postinst;${CMAKE_CURRENT_SOURCE_DIR}/debian/prerm;${CMAKE_CURRENT_SOURCE_DIR}/debian/postrm")
set(CPACK_COMPONENT_SERVICE_DESCRIPTION "links, AI answers and quotas for Vantle, on a host of one's own
What Vantle starts on the user's own computer, for a host that others reach:
it keeps uploaded images and files and serves their links, asks an AI provider
on behalf of its users within their plans, and takes feedback.

It starts once /etc/vantle-service.conf is there. The vantle package brings
its own copy and does not need this one.")

# What only Debian wants of the installed files, done in the staging folders.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/debian/stage.cmake)
set(CPACK_VANTLE_STRIP ${CMAKE_STRIP})
set(CPACK_VANTLE_COPYRIGHT ${CMAKE_CURRENT_BINARY_DIR}/copyright)
set(CPACK_VANTLE_CHANGELOG ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
set(CPACK_VANTLE_CHANGELOG_WRITER ${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog.py)
include(CPack)
