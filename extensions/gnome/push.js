import GLib from 'gi://GLib';

import {where} from './cursor.js';

const PERIOD = 8; // milliseconds: a signal for each motion costs the shell a third more

// The coordinate that a side's line stops.
const ACROSS = {left: 0, right: 0, top: 1, bottom: 1};

const WAY_OUT = {
    left: ({dx}) => [Math.min(dx, 0), 0],
    right: ({dx}) => [Math.max(dx, 0), 0],
    top: ({dy}) => [0, Math.min(dy, 0)],
    bottom: ({dy}) => [0, Math.max(dy, 0)],
};

/** What the hand pushes against the held sides: the first is told at once, and what follows in batches. */
export class PushReport {
    constructor(tell) {
        this._tellBatch = tell;
        this._pieces = [];
        this._timer = 0;
    }

    destroy() {
        this.clear();
    }

    clear() {
        this._pieces = [];
        if (this._timer)
            GLib.source_remove(this._timer);
        this._timer = 0;
    }

    /** In a corner two sides are told of one motion, each of what it stopped. */
    add(side, event) {
        const [dx, dy] = WAY_OUT[side](event);
        if (dx === 0 && dy === 0)
            return;
        this._pieces.push({across: ACROSS[side], told: [event.x, event.y, dx, dy, event.time]});
        // Once the other side of a corner has been told of the same motion.
        this._timer ||= GLib.idle_add(GLib.PRIORITY_DEFAULT_IDLE, () => {
            this._tell();
            this._timer = GLib.timeout_add(GLib.PRIORITY_DEFAULT, PERIOD, () => this._tellMore());
            return GLib.SOURCE_REMOVE;
        });
    }

    _tellMore() {
        if (this._pieces.length === 0) {
            this._timer = 0;
            return GLib.SOURCE_REMOVE;
        }
        this._tell();
        return GLib.SOURCE_CONTINUE;
    }

    _tell() {
        const pieces = this._real();
        this._pieces = [];
        if (pieces.length > 0)
            this._tellBatch(pieces);
    }

    // A game that has locked the pointer moves it nowhere, and the line is told of all the same.
    _real() {
        const at = where();
        return this._pieces.filter(({across, told}) => Math.abs(told[across] - at[across]) <= 1)
            .map(({told}) => told);
    }
}
