import GLib from 'gi://GLib';

import {STATE, where} from './cursor.js';
import {cursorTracker} from './release.js';

const FRAME = 16; // milliseconds
const LOOK = 30;

/** Tells where the cursor goes, and which modifiers and buttons are held: nothing tells of those by itself. */
export class Watch {
    constructor(tell) {
        this._tellAll = tell;
        this._tracker = cursorTracker();
        this._moved = 0;
        this._frame = 0;
        this._look = 0;
        this._lastState = 0;
    }

    destroy() {
        this.set(false, false);
    }

    set(motion, state) {
        if (motion && !this._moved) {
            this._moved = this._tracker.connect('position-invalidated', () => this._invalidated());
        } else if (!motion && this._moved) {
            this._tracker.disconnect(this._moved);
            this._moved = 0;
            if (this._frame)
                GLib.source_remove(this._frame);
            this._frame = 0;
        }
        if (state && !this._look) {
            this._look = GLib.timeout_add(GLib.PRIORITY_DEFAULT, LOOK, () => {
                const [x, y, now] = where();
                if ((now & STATE) !== this._lastState)
                    this._see(x, y, now);
                return GLib.SOURCE_CONTINUE;
            });
        } else if (!state && this._look) {
            GLib.source_remove(this._look);
            this._look = 0;
        }
    }

    _invalidated() {
        this._frame ||= GLib.timeout_add(GLib.PRIORITY_DEFAULT, FRAME, () => {
            this._frame = 0;
            this._see(...where());
            return GLib.SOURCE_REMOVE;
        });
    }

    _see(x, y, state) {
        this._lastState = state & STATE;
        this._tellAll(x, y, this._lastState);
    }
}
