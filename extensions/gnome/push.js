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

/** What the hand pushes against the held sides, told in batches. */
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
        if (this._timer)
            return;
        this._timer = GLib.timeout_add(GLib.PRIORITY_DEFAULT, PERIOD, () => {
            const pieces = this._pieces;
            this._pieces = [];
            if (pieces.length === 0) {
                this._timer = 0;
                return GLib.SOURCE_REMOVE;
            }
            const real = this._real(pieces);
            if (real.length > 0)
                this._tellBatch(real);
            return GLib.SOURCE_CONTINUE;
        });
    }

    // A game that has locked the pointer moves it nowhere, and the line is told of all the same.
    _real(pieces) {
        const at = where();
        return pieces.filter(({across, told}) => Math.abs(told[across] - at[across]) <= 1).map(({told}) => told);
    }
}
