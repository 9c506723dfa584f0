// Selects an input source for Kivra: the shell undoes an XKB group that another program locks, and
// offers no interface of its own.

const {Gio} = imports.gi;
const {getKeyboardManager} = imports.misc.keyboardManager;
const {getInputSourceManager} = imports.ui.status.keyboard;

const name = 'kivra.InputSource';
const path = '/kivra/InputSource';
const description = `<node><interface name="kivra.InputSource">
  <method name="SelectGroup"><arg name="group" type="u" direction="in"/></method>
</interface></node>`;

class Selector {
  SelectGroup(group) {
    const layout = getKeyboardManager().currentLayout?.group[group];
    const manager = getInputSourceManager();
    const source = Object.values(manager.inputSources).find(
        each => each.type === 'xkb' && each.xkbId === layout?.id);
    if (!source || source === manager.currentSource) return;
    // As activate() does, but without holding the keyboard, which reorders what is typed meanwhile.
    // The engine of the input method is the same for all layouts.
    getKeyboardManager().apply(source.xkbId);
    manager._currentInputSourceChanged(source);
    manager._updateMruSettings();
  }
}

let selector = null;
let ownership = 0;

function init() {}

function enable() {
  selector = Gio.DBusExportedObject.wrapJSObject(description, new Selector());
  selector.export(Gio.DBus.session, path);
  ownership = Gio.bus_own_name_on_connection(
      Gio.DBus.session, name, Gio.BusNameOwnerFlags.NONE, null, null);
}

function disable() {
  Gio.bus_unown_name(ownership);
  selector.unexport();
  selector = null;
}
