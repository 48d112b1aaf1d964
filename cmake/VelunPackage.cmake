# The Debian package, made by scripts/package with CPack. Included only if VELUN_IS_PACKAGED.

# The libraries of the neural recognizers, downloaded by scripts/setup.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
  set(runtime ${CMAKE_SOURCE_DIR}/node_modules/sherpa-onnx-linux-arm64)
else()
  set(runtime ${CMAKE_SOURCE_DIR}/node_modules/sherpa-onnx-linux-x64)
endif()
if(EXISTS ${runtime})
  # package.json tells the version without loading the library.
  install(FILES ${runtime}/libsherpa-onnx-c-api.so ${runtime}/libonnxruntime.so
      ${runtime}/package.json
    DESTINATION lib/velun/recognizers)
else()
  message(WARNING "The package will lack the neural recognizers; run scripts/setup first")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velun)
set(CPACK_PACKAGE_CONTACT "Velun developers <velun@velun.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# dpkg-shlibdeps finds the packages of the libraries that the programs are linked to.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${runtime})
# Opened by name at run time: PipeWire's settings and modules, Qt's platform plugins and its Korean
# texts, fonts, the certificates that verify downloads. Recommended: librsvg2-common, with which GTK
# bars and GNOME Shell colour the status icon.
string(JOIN ", " CPACK_DEBIAN_PACKAGE_DEPENDS pipewire-bin qt6-qpa-plugins
  qt6-wayland qt6-translations-l10n fonts-noto-cjk ca-certificates)
string(JOIN ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS pipewire wireplumber apertium
  apertium-eng-spa libglib2.0-bin librsvg2-common)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "live captions and translation of the computer's sound")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Velun writes down what is being said: in a call, a video or a lecture that the
computer plays, or in front of the microphone. The captions stand in a small
panel above the other windows, and every finished line can be translated into
a second language as it arrives.

Recognition and translation run on the computer itself; audio is never stored.")

# Documents that only a Debian package has, compressed as its policy demands.
string(TIMESTAMP VELUN_RELEASE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(data/debian/changelog.in debian/changelog @ONLY)
execute_process(COMMAND gzip -9nkf ${CMAKE_BINARY_DIR}/debian/changelog
  ${CMAKE_BINARY_DIR}/data/velun.1 COMMAND_ERROR_IS_FATAL ANY)
install(FILES data/debian/copyright ${CMAKE_BINARY_DIR}/debian/changelog.gz
  DESTINATION share/doc/velun)
install(FILES data/debian/overrides DESTINATION share/lintian/overrides RENAME velun)
install(FILES ${CMAKE_BINARY_DIR}/data/velun.1.gz DESTINATION share/man/man1)

include(CPack)
