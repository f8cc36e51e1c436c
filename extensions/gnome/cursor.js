import Clutter from 'gi://Clutter';

import {cursorTracker, demand, seat} from './release.js';

/** Where the cursor is, and which modifiers and buttons are down. */
export function where() {
    const [x, y, state] = global.get_pointer();
    return [x, y, state];
}

/**
 * Barriers stop a warp, the shell's own included, so it goes in two legs: first up or down, where at most
 * the panel's are in the way.
 */
export function warp(x, y) {
    const [atX] = where();
    seat().warp_pointer(Math.floor(atX), Math.floor(y));
    seat().warp_pointer(Math.floor(x), Math.floor(y));
}

/** Keeps the cursor from being drawn, and lets nothing else notice. */
export class HiddenCursor {
    constructor() {
        this._isOn = false;
        this._tracker = cursorTracker();
        this._seat = seat();
        demand(this._seat, 'inhibit_unfocus', 'uninhibit_unfocus');
        if (!this._tracker.inhibit_cursor_visibility)
            demand(this._tracker, 'set_pointer_visible', 'get_pointer_visible');
    }

    destroy() {
        this.set(false);
    }

    isOn() {
        return this._isOn;
    }

    set(hidden) {
        if (hidden === this._isOn)
            return;
        this._isOn = hidden;
        if (hidden) {
            // Before 49 whoever else shows the cursor would undo this.
            if (this._tracker.inhibit_cursor_visibility)
                this._tracker.inhibit_cursor_visibility();
            else
                this._hideAndStay();
            this._seat.inhibit_unfocus();
        } else {
            this._seat.uninhibit_unfocus();
            if (this._shown) {
                this._tracker.disconnect(this._shown);
                this._shown = 0;
                this._tracker.set_pointer_visible(true);
            } else {
                this._tracker.uninhibit_cursor_visibility();
            }
        }
    }

    _hideAndStay() {
        this._tracker.set_pointer_visible(false);
        this._shown = this._tracker.connect('visibility-changed', () => {
            if (this._tracker.get_pointer_visible())
                this._tracker.set_pointer_visible(false);
        });
    }
}

/** The bits of a state that tell of modifiers and buttons. */
export const STATE = Clutter.ModifierType.CONTROL_MASK | Clutter.ModifierType.MOD1_MASK |
    Clutter.ModifierType.SHIFT_MASK | Clutter.ModifierType.MOD4_MASK | Clutter.ModifierType.SUPER_MASK |
    Clutter.ModifierType.BUTTON1_MASK | Clutter.ModifierType.BUTTON2_MASK | Clutter.ModifierType.BUTTON3_MASK;
