import Clutter from 'gi://Clutter';
import Meta from 'gi://Meta';
import Shell from 'gi://Shell';
import St from 'gi://St';

import {STATE} from './cursor.js';
import {demand} from './release.js';
import {Main} from './shell.js';

/** Combinations that the shell hears wherever the keyboard is. */
export class Accelerators {
    constructor() {
        demand(global.display, 'grab_accelerator', 'ungrab_accelerator');
        demand(Main.wm, 'allowKeybinding');
        this._actions = new Map(); // what to call, by the shell's numbers
        this._activated = global.display.connect('accelerator-activated',
            (_display, action) => this._actions.get(action)?.());
    }

    destroy() {
        for (const action of [...this._actions.keys()])
            this.ungrab(action);
        global.display.disconnect(this._activated);
    }

    /** A number for `ungrab`; null where the combination is taken, or is none. */
    grab(accelerator, pressed) {
        const action = global.display.grab_accelerator(accelerator, Meta.KeyBindingFlags.IGNORE_AUTOREPEAT);
        if (action === Meta.KeyBindingAction.NONE)
            return null;
        Main.wm.allowKeybinding(Meta.external_binding_name_for_action(action), Shell.ActionMode.ALL);
        this._actions.set(action, pressed);
        return action;
    }

    ungrab(action) {
        if (!this._actions.delete(action))
            return;
        const name = Meta.external_binding_name_for_action(action);
        Main.wm.allowKeybinding(name, Shell.ActionMode.NONE);
        // The shell would keep it for ever.
        delete Main.wm._allowedKeybindings?.[name];
        global.display.ungrab_accelerator(action);
    }
}

/** Takes the whole keyboard for as long as a combination is recorded. */
export class Recording {
    constructor(typed) {
        this._typed = typed;
        this._actor = null;
    }

    destroy() {
        this.set(false);
    }

    isOn() {
        return this._actor !== null;
    }

    set(on) {
        if (on && !this._actor)
            return this._begin();
        if (!on && this._actor) {
            Main.popModal(this._grab);
            this._grab = null;
            this._actor.destroy();
            this._actor = null;
        }
        return true;
    }

    _begin() {
        const actor = new St.Widget({width: 1, height: 1, reactive: true, can_focus: true});
        Main.uiGroup.add_child(actor);
        const grab = Main.pushModal(actor, {actionMode: Shell.ActionMode.NONE});
        if ((grab.get_seat_state() & Clutter.GrabState.KEYBOARD) === 0) {
            Main.popModal(grab);
            actor.destroy();
            return false;
        }
        this._actor = actor;
        this._grab = grab;
        this._held = 0;
        actor.connect('key-press-event', (_actor, event) => this._told(event, true));
        actor.connect('key-release-event', (_actor, event) => this._told(event, false));
        actor.grab_key_focus();
        return true;
    }

    // A modifier's own event has the state before it.
    _told(event, down) {
        const own = MODIFIERS[event.get_key_symbol()];
        const state = event.get_state() & STATE;
        if (own)
            this._typed(0, down ? state | own : state & ~own);
        else if (down)
            this._typed(event.get_key_code(), state);
        return Clutter.EVENT_STOP;
    }
}

const {SHIFT_MASK, CONTROL_MASK, MOD1_MASK, MOD4_MASK} = Clutter.ModifierType;
const MODIFIERS = {
    [Clutter.KEY_Shift_L]: SHIFT_MASK,
    [Clutter.KEY_Shift_R]: SHIFT_MASK,
    [Clutter.KEY_Control_L]: CONTROL_MASK,
    [Clutter.KEY_Control_R]: CONTROL_MASK,
    [Clutter.KEY_Alt_L]: MOD1_MASK,
    [Clutter.KEY_Alt_R]: MOD1_MASK,
    [Clutter.KEY_Meta_L]: MOD1_MASK,
    [Clutter.KEY_Meta_R]: MOD1_MASK,
    [Clutter.KEY_Super_L]: MOD4_MASK,
    [Clutter.KEY_Super_R]: MOD4_MASK,
};

/** To the workspace on the left (-1) or on the right (1). */
export function switchWorkspace(step) {
    const active = global.workspace_manager.get_active_workspace();
    const neighbour = active.get_neighbor(step < 0 ? Meta.MotionDirection.LEFT : Meta.MotionDirection.RIGHT);
    if (neighbour !== active)
        Main.wm.actionMoveWorkspace(neighbour);
}
