import GLib from 'gi://GLib';

import {where} from './cursor.js';
import {cursorTracker} from './release.js';

const PATIENCE = 30; // milliseconds: ten times what it takes
const LOOKS = 4; // so many times that, before the cursor counts as kept
const ANSWER = 300; // for the program to take its crossing back

/**
 * A cursor on its way to another monitor. It is there a moment after it was put, unless the shell draws in
 * between, for which it would wait. So what is drawn anew comes after it. Nor does a cursor come that a game
 * confines, which lasts until something else is below it: what would cover the game waits until the program
 * has taken the crossing back.
 */
export class Crossing {
    /** `kept` is told that the cursor did not come. */
    constructor(kept) {
        this._tellKept = kept;
        this._tracker = cursorTracker();
        this._moved = 0;
        this._late = 0;
        this._isKept = false;
        this._rest = new Map(); // what to do, by whatever it is done to
    }

    destroy() {
        this._stop();
        this._rest.clear();
    }

    begin(area) {
        // What a crossing that is taken back would have covered is not covered for a moment either.
        const isBack = this._isKept;
        if (isBack)
            this._stop();
        else
            this.end();
        this._area = area;
        if (!isBack) {
            this._moved = this._tracker.connect('position-invalidated', () => {
                if (this._hasCome())
                    this.end();
            });
        }
        let looks = 0;
        this._wait(PATIENCE, () => {
            looks += 1;
            if (looks < LOOKS && !this._hasCome())
                return GLib.SOURCE_CONTINUE;
            this._late = 0;
            if (isBack || this._hasCome())
                this.end();
            else
                this._keep();
            return GLib.SOURCE_REMOVE;
        });
    }

    end() {
        this._stop();
        const acts = [...this._rest.values()];
        this._rest.clear();
        for (const act of acts)
            act();
    }

    /** Does it now, or when the cursor has come, if nothing else is to be done to `what` by then. */
    then(what, act) {
        if (!this._late) {
            act();
            return;
        }
        this._rest.delete(what);
        this._rest.set(what, act);
    }

    _hasCome() {
        const [x, y] = where();
        const [left, top, width, height] = this._area;
        return x >= left && x < left + width && y >= top && y < top + height;
    }

    _keep() {
        this._stop();
        this._isKept = true;
        this._wait(ANSWER, () => {
            this._late = 0;
            this.end();
            return GLib.SOURCE_REMOVE;
        });
        this._tellKept();
    }

    _wait(milliseconds, act) {
        this._late = GLib.timeout_add(GLib.PRIORITY_DEFAULT, milliseconds, act);
    }

    _stop() {
        this._isKept = false;
        if (this._moved)
            this._tracker.disconnect(this._moved);
        this._moved = 0;
        if (this._late)
            GLib.source_remove(this._late);
        this._late = 0;
    }
}
