# The Debian packages: what stands in them beside what the folders install, and what they say.
# Included last: it ends with the packager's own module.
set(WRENFOLD_MAINTAINER "Wrenfold maintainers <maintainers@wrenfold.org>" CACHE STRING
    "Name and address that packages carry")
set(WRENFOLD_PACKAGE_RELEASE 1)

find_program(GZIP gzip REQUIRED)

# wrenfold_install_compressed(SOURCE FOLDER NAME [COMPONENTS...]): a file as packages want texts.
function(wrenfold_install_compressed source folder name)
  cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${CMAKE_SOURCE_DIR}")
  string(MAKE_C_IDENTIFIER "${name}" id)
  set(output "${CMAKE_BINARY_DIR}/compressed/${name}.gz")
  file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/compressed")
  add_custom_command(OUTPUT "${output}"
    COMMAND "${GZIP}" -9nc "${source}" > "${output}" DEPENDS "${source}" VERBATIM)
  add_custom_target(wrenfold-compressed-${id} ALL DEPENDS "${output}")
  foreach(component IN LISTS ARGN)
    string(REPLACE "@component@" "${component}" destination "${folder}")
    install(FILES "${output}" DESTINATION "${destination}" COMPONENT ${component})
  endforeach()
endfunction()

foreach(program wrenfold wrenfold-spc wrenfold-pic)
  wrenfold_install_compressed("docs/man/${program}.1" "${CMAKE_INSTALL_MANDIR}/man1"
                              "${program}.1" wrenfold)
  install(FILES "${CMAKE_SOURCE_DIR}/data/completions/${program}" COMPONENT wrenfold
          DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
endforeach()

set(data "${CMAKE_SOURCE_DIR}/data")
install(FILES "${data}/wrenfold.desktop" COMPONENT wrenfold
        DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${data}/wrenfold.svg" COMPONENT wrenfold
        DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
install(FILES "${data}/wrenfold-types.xml" COMPONENT wrenfold RENAME wrenfold.xml
        DESTINATION "${CMAKE_INSTALL_DATADIR}/mime/packages")
install(FILES "${data}/org.wrenfold.Wrenfold.metainfo.xml" COMPONENT wrenfold
        DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")

set(packaging "${CMAKE_SOURCE_DIR}/packaging")
wrenfold_install_compressed(packaging/changelog "${CMAKE_INSTALL_DATADIR}/doc/@component@"
                            changelog.Debian wrenfold wrenfold-debugger)
foreach(component wrenfold wrenfold-debugger)
  install(FILES "${packaging}/copyright" COMPONENT ${component}
          DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${component}")
  install(FILES "${packaging}/${component}.lintian-overrides" COMPONENT ${component}
          RENAME ${component} DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides")
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME wrenfold)
set(CPACK_PACKAGE_VENDOR Wrenfold)
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
    GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL wrenfold wrenfold-debugger)
if(NOT TARGET wrenfold-lldb)
  set(CPACK_COMPONENTS_ALL wrenfold)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${WRENFOLD_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_RELEASE ${WRENFOLD_PACKAGE_RELEASE})
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_BINARY_DIR}/bin")

set(this_version "${PROJECT_VERSION}-${WRENFOLD_PACKAGE_RELEASE}")
set(CPACK_DEBIAN_WRENFOLD_PACKAGE_NAME wrenfold)
set(CPACK_DEBIAN_WRENFOLD_PACKAGE_RECOMMENDS "wrenfold-debugger (= ${this_version})")
set(CPACK_DEBIAN_WRENFOLD_PACKAGE_SUGGESTS "fonts-liberation, fonts-wine, fp-compiler, g++, git")
set(CPACK_DEBIAN_WRENFOLD_DESCRIPTION
"workbench and add-ins for form-based Pascal and C++ projects
Opens projects with units and forms as they stand on disk, draws forms and
lets them be changed, builds and runs programs. A suite of add-ins manages
the open units, shows forms and units in a viewer, scans the CPU window and
keeps every setting in an editor of its own. It speaks English, German and
Russian.

The programs wrenfold-spc and wrenfold-pic inspect, convert, check, merge
and draw form files without a display, also for git.")
set(CPACK_DEBIAN_WRENFOLD-DEBUGGER_PACKAGE_NAME wrenfold-debugger)
set(CPACK_DEBIAN_WRENFOLD-DEBUGGER_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_WRENFOLD-DEBUGGER_PACKAGE_DEPENDS "wrenfold (= ${this_version}), lldb-16")
set(CPACK_DEBIAN_WRENFOLD-DEBUGGER_DESCRIPTION
"debugger of the Wrenfold workbench
Lets Wrenfold run programs under control by LLDB: stop at breakpoints, step,
show calls and variables, the instructions, registers, memory and stack of
the processor.")

include(CPack)
