# What is installed, and the Debian package. With SOURCE_DATE_EPOCH set the same source gives the same bytes.

set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)  # a package needs no tests
include(GNUInstallDirs)
install(TARGETS brelan2d DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT brelan)
install(DIRECTORY data/ DESTINATION ${CMAKE_INSTALL_DATADIR}/brelan2d/C COMPONENT brelan)
# With the licenses of what is part of the programs.
file(READ ${PROJECT_SOURCE_DIR}/LICENSE licenses)
if(BRELAN_TOOLS)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/brelan/page/CODEMIRROR)
    file(READ ${PROJECT_SOURCE_DIR}/brelan/page/CODEMIRROR of_editor)
    string(APPEND licenses "\n" "${of_editor}")
endif()
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/packed/copyright CONTENT "${licenses}" @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/packed/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT brelan)
install(FILES docs/studies.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT brelan)
install(DIRECTORY docs/tutorial docs/manual examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT brelan
    PATTERN CMakeLists.txt EXCLUDE PATTERN run_tutorial.py EXCLUDE PATTERN walk.py EXCLUDE PATTERN __pycache__ EXCLUDE)

# Man pages and the list of changes are compressed without name and time.
find_program(GZIP gzip REQUIRED)
set(pages ${PROJECT_SOURCE_DIR}/brelan/man/brelan2d.1)
if(BRELAN_TOOLS)
    file(GLOB pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/brelan/man/*.1)
endif()
set(packed)
foreach(text ${pages} ${PROJECT_SOURCE_DIR}/changelog)
    get_filename_component(name ${text} NAME)
    set(target ${PROJECT_BINARY_DIR}/packed/${name}.gz)
    add_custom_command(OUTPUT ${target} DEPENDS ${text} VERBATIM
        COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/packed
        COMMAND sh -c "\"$1\" -9n < \"$2\" > \"$3\"" sh ${GZIP} ${text} ${target})
    list(APPEND packed ${target})
endforeach()
add_custom_target(brelan_texts ALL DEPENDS ${packed})
install(FILES ${PROJECT_BINARY_DIR}/packed/changelog.gz DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT brelan)
list(REMOVE_ITEM packed ${PROJECT_BINARY_DIR}/packed/changelog.gz)
install(FILES ${packed} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT brelan)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brelan2d)
set(CPACK_PACKAGE_VENDOR "The BRELAN-2D founders")
set(CPACK_PACKAGE_CONTACT "The BRELAN-2D founders <brelan2d@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "mesh pre-processor for plane geotechnical finite-element models")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL brelan)  # of the package: not what libraries below install
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_BRELAN_PACKAGE_NAME brelan2d)
set(CPACK_COMPONENT_BRELAN_DESCRIPTION
"BRELAN-2D makes and edits the plane meshes of a geotechnical
finite-element package: graded base meshes, edits by card decks, groups
with walls, joints and stages, and the combination of two meshes.")
if(BRELAN_TOOLS)
    string(APPEND CPACK_COMPONENT_BRELAN_DESCRIPTION " The
command brelan runs decks, shows meshes, checks them, carries them to other
programs and edits decks in a page of the browser.")
endif()
if(BRELAN_PYTHON)
    list(APPEND CPACK_COMPONENTS_ALL python)
    set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-brelan)
    set(CPACK_COMPONENT_PYTHON_DESCRIPTION
"This package reads and changes decks by their cards, runs them in memory
and gives meshes as NumPy arrays, all in Python. It makes meshio read
and write mesh files.")
    set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
    math(EXPR next "${BRELAN_PYTHON_MINOR} + 1")
    set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "python3 (>= 3.${BRELAN_PYTHON_MINOR}), python3 (<< 3.${next}), python3-numpy")
    set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "brelan2d, python3-meshio")
    install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/python3-brelan RENAME copyright COMPONENT python)
    install(FILES ${PROJECT_BINARY_DIR}/packed/changelog.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/python3-brelan COMPONENT python)
endif()
set(CPACK_DEBIAN_PACKAGE_SECTION science)
if(CMAKE_CROSSCOMPILING)
    # dpkg-shlibdeps knows nothing of the cross compiler's libraries: those of Debian 12.
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.36), libgcc-s1 (>= 3.0), libstdc++6 (>= 12)")
    if(BRELAN_TOOLS)
        string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", libcairo2 (>= 1.12.0), libfmt9 (>= 9.1.0+ds1), libpugixml1v5 (>= 1.13), libcpp-httplib0.11 (>= 0.11.4), libsqlite3-0 (>= 3.40), zlib1g (>= 1:1.2.0)")
    endif()
else()
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
endif()
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
include(CPack)
