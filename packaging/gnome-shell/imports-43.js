// Kivra's part in GNOME Shell, versions 42 to 44.

const Main = imports.ui.main;
const {Clutter, Gio, GLib, IBus, Meta, Shell} = imports.gi;
const {getIBusManager} = imports.misc.ibusManager;
const {getKeyboardManager} = imports.misc.keyboardManager;
const {getInputSourceManager} = imports.ui.status.keyboard;

let started = null;

function init() {}

function enable() { started = start(); }

function disable() {
  started.destroy();
  started = null;
}
