# Run by cpack between the installation into its staging folders and the packing: programs without symbols, copyright,
# changelogs and compressed documents, as Debian's policy wants them.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()

function(compress file)
  execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
  set(documents ${share}/doc/${package})

  file(GLOB programs ${share}/../bin/* ${share}/../libexec/vantle/*)
  execute_process(COMMAND ${CPACK_VANTLE_STRIP} --remove-section=.comment --remove-section=.note ${programs}
    COMMAND_ERROR_IS_FATAL ANY)

  file(GLOB_RECURSE pages ${share}/man/*.1)
  foreach(page ${pages})
    compress(${page})
  endforeach()

  configure_file(${CPACK_VANTLE_COPYRIGHT} ${documents}/copyright COPYONLY)
  configure_file(${CPACK_VANTLE_CHANGELOG} ${documents}/changelog COPYONLY)
  compress(${documents}/changelog)
  execute_process(
    COMMAND python3 ${CPACK_VANTLE_CHANGELOG_WRITER} ${package} ${CPACK_DEBIAN_PACKAGE_RELEASE} ${CPACK_PACKAGE_CONTACT}
    INPUT_FILE ${CPACK_VANTLE_CHANGELOG} OUTPUT_FILE ${documents}/changelog.Debian COMMAND_ERROR_IS_FATAL ANY)
  compress(${documents}/changelog.Debian)
endforeach()
