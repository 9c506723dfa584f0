// Kivra's part in GNOME Shell, from version 45 on.

import Clutter from 'gi://Clutter';
import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import IBus from 'gi://IBus';
import Meta from 'gi://Meta';
import Shell from 'gi://Shell';
import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';
import * as Main from 'resource:///org/gnome/shell/ui/main.js';
import {getIBusManager} from 'resource:///org/gnome/shell/misc/ibusManager.js';
import {getKeyboardManager} from 'resource:///org/gnome/shell/misc/keyboardManager.js';
import {getInputSourceManager} from 'resource:///org/gnome/shell/ui/status/keyboard.js';

export default class Kivra extends Extension {
  enable() { this.started = start(); }
  disable() {
    this.started.destroy();
    this.started = null;
  }
}
