# The program as a desktop application: icons, desktop entry, MIME type,
# AppStream metainfo and manual page, installed where the freedesktop
# specifications look for them, and the Debian package CPack makes of it.
# Included from the top CMakeLists.txt after the targets.

set(TESSERINE_PACKAGING_DIR ${CMAKE_CURRENT_LIST_DIR})
set(TESSERINE_APP_ID app.tesserine.Tesserine)
set(TESSERINE_ICON_NAME tesserine)
set(TESSERINE_ICON_SIZES 16 32 48 64 128 256)

# The PNGs of the icon are rendered from its SVG at build time; the window
# takes them from its resources, the desktop from the hicolor theme.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)
set(icon_svg ${TESSERINE_PACKAGING_DIR}/icons/${TESSERINE_ICON_NAME}.svg)
set(TESSERINE_ICON_PNGS)
foreach(size ${TESSERINE_ICON_SIZES})
  set(png ${CMAKE_BINARY_DIR}/icons/${size}/${TESSERINE_ICON_NAME}.png)
  add_custom_command(OUTPUT ${png}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/icons/${size}
    COMMAND ${RSVG_CONVERT} --width=${size} --height=${size} --output=${png} ${icon_svg}
    DEPENDS ${icon_svg} VERBATIM)
  list(APPEND TESSERINE_ICON_PNGS ${png})
  install(FILES ${png} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
install(FILES ${icon_svg} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
if(TESSERINE_WINDOW)
  qt_add_resources(tesserine_window tesserine_icons PREFIX /icons BASE ${CMAKE_BINARY_DIR}/icons
    FILES ${TESSERINE_ICON_PNGS})
else()
  add_custom_target(tesserine_icons ALL DEPENDS ${TESSERINE_ICON_PNGS})
endif()

# Texts that carry the version, the release date or the address.
configure_file(${TESSERINE_PACKAGING_DIR}/${TESSERINE_APP_ID}.metainfo.xml.in
  ${CMAKE_BINARY_DIR}/packaging/${TESSERINE_APP_ID}.metainfo.xml @ONLY)
configure_file(${TESSERINE_PACKAGING_DIR}/tesserine.1
  ${CMAKE_BINARY_DIR}/packaging/tesserine.1 @ONLY)
execute_process(COMMAND date -u -R -d ${TESSERINE_RELEASE_DATE}
  OUTPUT_VARIABLE TESSERINE_RELEASE_DATE_RFC2822 OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
configure_file(${TESSERINE_PACKAGING_DIR}/changelog.in
  ${CMAKE_BINARY_DIR}/packaging/changelog @ONLY)

# Manual pages and the changelog go compressed, without a time stamp, so
# that two builds of one tree give the same package.
find_program(GZIP gzip REQUIRED)
foreach(name tesserine.1 changelog)
  add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/packaging/${name}.gz
    COMMAND ${GZIP} -9 -n -f -k ${CMAKE_BINARY_DIR}/packaging/${name}
    DEPENDS ${CMAKE_BINARY_DIR}/packaging/${name} VERBATIM)
endforeach()
add_custom_target(tesserine_packaging_texts ALL DEPENDS
  ${CMAKE_BINARY_DIR}/packaging/tesserine.1.gz ${CMAKE_BINARY_DIR}/packaging/changelog.gz)

install(FILES ${TESSERINE_PACKAGING_DIR}/${TESSERINE_APP_ID}.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${TESSERINE_PACKAGING_DIR}/tesserine-project.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${CMAKE_BINARY_DIR}/packaging/${TESSERINE_APP_ID}.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${CMAKE_BINARY_DIR}/packaging/tesserine.1.gz
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${CMAKE_BINARY_DIR}/packaging/changelog.gz ${TESSERINE_PACKAGING_DIR}/copyright
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tesserine)

# cpack -G DEB in the build folder (scripts/package.sh runs it).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tesserine)
set(CPACK_PACKAGE_VENDOR "${TESSERINE_MAINTAINER_NAME}")
set(CPACK_PACKAGE_CONTACT "${TESSERINE_MAINTAINER_NAME} <${TESSERINE_MAINTAINER_EMAIL}>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "design tool for LED video wall pixel maps")
# The long description, under the summary; CPack indents its lines and
# turns the empty one into the paragraph mark.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Tesserine lays out screens, grids of LED cabinets, on the raster that a
video processor outputs, and draws the pixel map: chequered cabinets,
outlines, cabinet IDs, a centring circle, size labels, the data path over
the processor's ports and power figures.

It saves projects and presets, exports PNG, TGA, BMP and JPG pictures, a
layered PSD and a Resolume Arena screen setup, shows the frame full size
on a second monitor, and has a headless command line for scripts.")
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${TESSERINE_HOMEPAGE}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# Library dependencies as dpkg-shlibdeps finds them; Qt's plugins are
# loaded at run time, so the one for TGA pictures is named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-image-formats-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core")
set(CPACK_STRIP_FILES ON)
set(CPACK_SET_DESTDIR OFF)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
include(CPack)
