
// The shell undoes an XKB group that another program locks in an X11 session, and offers no interface
// of its own.
const selectorName = 'kivra.InputSource';
const selectorPath = '/kivra/InputSource';
const selectorDescription = `<node><interface name="kivra.InputSource">
  <method name="SelectGroup"><arg name="group" type="u" direction="in"/></method>
</interface></node>`;

// In a Wayland session those are told how the desktop is who own these names, nobody else, and nobody
// can ask for anything. The keyboard's guard stands behind the shell's sources while it owns its name.
const guardName = 'app.kivra.Kivra.Keyboard';
const programName = 'app.kivra.Kivra.Session';
const statePath = '/app/kivra/Desktop';
const stateInterface = 'app.kivra.Desktop';
const engine = 'kivra';

// One for each XKB group. Only the guard sends them, with modifiers that no hand holds together. They
// come through the shell's own queue of events, so the layout changes exactly between the keys that
// were sent before and after.
const markers = [6, 7, 8, 9].map(each => `<Control><Alt><Super>XF86Launch${each}`);

// The same for the modifiers that applications get besides those that hands hold: the shell tells them
// of no others, but of those that sticky keys have locked.
const {SHIFT_MASK: shift, CONTROL_MASK: control, MOD1_MASK: alt} = Clutter.ModifierType;
const modifierMarkers = [[6, 0], [7, shift], [8, control], [9, alt], [5, shift | control]];

let modifiersEnd = 0;

function giveModifiers(modifiers) {
  if (modifiersEnd) GLib.source_remove(modifiersEnd);
  modifiersEnd = 0;
  Clutter.get_default_backend().get_default_seat().emit('kbd-a11y-mods-state-changed', 0, modifiers);
  // Whatever becomes of the order that ends them, they do not stay.
  if (modifiers) modifiersEnd = GLib.timeout_add(GLib.PRIORITY_DEFAULT, 1000, () => {
    modifiersEnd = 0;
    giveModifiers(0);
    return GLib.SOURCE_REMOVE;
  });
}

function selectGroup(group) {
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

class Selector {
  constructor() {
    this.object = Gio.DBusExportedObject.wrapJSObject(selectorDescription, this);
    this.object.export(Gio.DBus.session, selectorPath);
    this.ownership = Gio.bus_own_name_on_connection(
        Gio.DBus.session, selectorName, Gio.BusNameOwnerFlags.NONE, null, null);
  }
  SelectGroup(group) { selectGroup(group); }
  destroy() {
    Gio.bus_unown_name(this.ownership);
    this.object.unexport();
  }
}

// Puts Kivra's engine in the place of the one that the shell has behind all its XKB sources. Sources
// with an engine of their own keep it.
class EngineSwap {
  constructor() {
    this.ibus = getIBusManager();
    this.setEngine = this.ibus.setEngine;
    this.ibus.setEngine = (id, ...rest) =>
        this.setEngine.call(this.ibus, id.startsWith('xkb:') ? engine : id, ...rest);
    this.renew();
  }
  renew() {
    const source = getInputSourceManager().currentSource;
    this.ibus.setEngine(source?.type === 'ibus' ? source.id : 'xkb:us::eng');
  }
  destroy() {
    this.ibus.setEngine = this.setEngine;
    this.renew();
  }
}

// Of which the shell tells applications in time only when nothing keeps their keys back.
function isModifier(symbol) { return symbol >= Clutter.KEY_Shift_L && symbol <= Clutter.KEY_Hyper_R; }

// Longer than the guard ever takes, in milliseconds.
const longestAnswer = 1200;

// Keys that an engine has left unanswered at its end would be lost in the shell, and those behind them
// overtake those that are slow to be given up: they go on, in the order of their typing.
class AnswersInOrder {
  constructor() {
    const context = IBus.InputContext.prototype;
    const {process_key_event_async: ask, process_key_event_async_finish: finish} = context;
    const asked = [];
    // Gives the answers up to this one, and those behind it that follow at once.
    const give = last => {
      asked.splice(0, asked.indexOf(last) + 1).forEach(each => each.give?.());
      while (asked[0]?.give) asked.shift().give();
    };
    context.process_key_event_async = function (...question) {
      if (isModifier(question[0])) return ask.call(this, ...question);
      const callback = question.pop();
      const answer = {};
      asked.push(answer);
      return ask.call(this, ...question, (...answered) => {
        answer.give = () => callback(...answered);
        if (!asked.includes(answer)) return answer.give();
        if (asked[0] === answer) return give(answer);
        // Nobody waits for ever for an engine that is stuck.
        return GLib.timeout_add(GLib.PRIORITY_DEFAULT, longestAnswer, () => {
          if (asked.includes(answer)) give(answer);
          return GLib.SOURCE_REMOVE;
        });
      });
    };
    context.process_key_event_async_finish = function (result) {
      try {
        return finish.call(this, result);
      } catch (error) {
        if (error.matches(Gio.IOErrorEnum, Gio.IOErrorEnum.CANCELLED)) throw error;
        return false;
      }
    };
    this.restore = () => {
      context.process_key_event_async = ask;
      context.process_key_event_async_finish = finish;
    };
  }
  destroy() { this.restore(); }
}

class Markers {
  constructor(done) {
    this.count = 0;
    this.orders = new Map();
    markers.forEach((each, group) => this.grab(each, () => {
      ++this.count;
      selectGroup(group);
      done();
    }));
    modifierMarkers.forEach(([number, modifiers]) => this.grab(
        `<Shift><Control><Alt><Super>XF86Launch${number}`, () => giveModifiers(modifiers)));
    this.activated = global.display.connect(
        'accelerator-activated', (_, action) => this.orders.get(action)?.());
  }
  grab(accelerator, order) {
    const action = global.display.grab_accelerator(accelerator, Meta.KeyBindingFlags.NONE);
    Main.wm.allowKeybinding(Meta.external_binding_name_for_action(action), Shell.ActionMode.ALL);
    this.orders.set(action, order);
  }
  destroy() {
    global.display.disconnect(this.activated);
    this.orders.forEach((_, action) => global.display.ungrab_accelerator(action));
    giveModifiers(0);
  }
}

// Tells the listeners of the window in front and of the layout, when they come and with each change.
class Desktop {
  constructor() {
    this.listeners = new Map();
    this.answers = new AnswersInOrder();
    this.watches = [guardName, programName].map(each => Gio.bus_watch_name_on_connection(
        Gio.DBus.session, each, Gio.BusNameWatcherFlags.NONE,
        (_, name, owner) => this.appear(name, owner), (_, name) => this.vanish(name)));
    const tell = () => this.tell();
    this.signals = [
      [global.display, global.display.connect('notify::focus-window', tell)],
      [global.stage, global.stage.connect('notify::key-focus', tell)],
      [Main.sessionMode, Main.sessionMode.connect('updated', tell)],
      [Main.overview, Main.overview.connect('showing', tell)],
      [Main.overview, Main.overview.connect('hidden', tell)],
      [getInputSourceManager(), getInputSourceManager().connect('current-source-changed', tell)],
    ];
  }
  appear(name, owner) {
    this.listeners.set(name, owner);
    if (name === guardName) {
      this.swap = new EngineSwap();
      this.markers = new Markers(() => this.tell());
    }
    this.tellOne(owner);
  }
  vanish(name) {
    if (!this.listeners.delete(name) || name !== guardName) return;
    this.markers.destroy();
    this.markers = null;
    this.swap.destroy();
  }
  tell() {
    const state = this.state();
    if (`${state}` === this.told) return;
    this.told = `${state}`;
    this.listeners.forEach(owner => this.tellOne(owner));
  }
  tellOne(owner) {
    Gio.DBus.session.emit_signal(
        owner, statePath, stateInterface, 'State', new GLib.Variant('(uuus)', this.state()));
  }
  // The XKB group, 99 for a source without one; how many markers have come; the number of the window
  // in front, 0 while the shell itself has the keyboard; its application id.
  state() {
    const source = getInputSourceManager().currentSource;
    const layouts = getKeyboardManager().currentLayout?.group ?? [];
    const group = layouts.findIndex(each => each.id === source?.xkbId);
    const window = global.stage.key_focus === null && Main.actionMode === Shell.ActionMode.NORMAL ?
        global.display.focus_window : null;
    // The first window of all has the number 0.
    return [group < 0 ? 99 : group, this.markers?.count ?? 0,
            window ? window.get_stable_sequence() + 1 : 0, window?.get_wm_class() ?? ''];
  }
  destroy() {
    this.watches.forEach(each => Gio.bus_unwatch_name(each));
    this.signals.forEach(([object, id]) => object.disconnect(id));
    [...this.listeners.keys()].forEach(name => this.vanish(name));
    this.answers.destroy();
  }
}

function start() { return Meta.is_wayland_compositor() ? new Desktop() : new Selector(); }
