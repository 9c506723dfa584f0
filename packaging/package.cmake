# The Debian package, for cpack.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "Kivra")
set(CPACK_PACKAGE_CONTACT "Kivra maintainers <kivra@example.org>" CACHE STRING
                                                                        "Who answers for packages")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "keyboard companion for Russian and English")
set(CPACK_PACKAGE_DESCRIPTION
    "Kivra watches what is typed and mends, at the end of each word, what went
wrong: a word typed in the wrong keyboard layout, two capitals at the start, a
close misspelling, an entry of the user's own dictionary. A double tap of Shift
takes the last change back. Hotkeys translate and correct the selected text.

It works in X11 sessions, in those of wlroots compositors and in GNOME on
Wayland; kivra-desk runs it without a display.")
set(CPACK_STRIP_FILES ON)
# The autostart entry lies outside the prefix.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What the libraries do not depend on: dictionaries, the tables of the keyboard and of dead keys.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "hunspell-ru, hunspell-en-us, xkb-data, libx11-data")
if(KIVRA_DESKTOP)
  string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS
         ", qt6-wayland, at-spi2-core, default-dbus-session-bus | dbus-session-bus")
  # Used when they are there: the keychain, what opens pages, the offline translator.
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libsecret-1-0, gnome-keyring | kwalletmanager, xdg-utils")
  set(CPACK_DEBIAN_PACKAGE_SUGGESTS "apertium, ibus")
  set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/conffiles)
endif()
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

include(CPack)
