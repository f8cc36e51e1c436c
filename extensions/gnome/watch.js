import GLib from 'gi://GLib';

import {STATE, where} from './cursor.js';
import {cursorTracker, demand} from './release.js';

const FRAME = 15; // milliseconds: a display's, which the motions come at, and a little less
const LOOK = 30;
const REST = 1000;

/**
 * Tells where the cursor goes, and which modifiers and buttons are held: nothing tells of those by itself, but
 * that the user does anything at all.
 */
export class Watch {
    constructor(tell) {
        demand(global, 'get_pointer');
        this._tellAll = tell;
        this._tracker = cursorTracker();
        this._moved = 0;
        this._frame = 0;
        this._told = 0; // when a place was, in microseconds
        this._look = 0;
        this._idleMonitor = global.backend.get_core_idle_monitor();
        this._rests = 0;
        this._begins = 0;
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
        if (state && !this._rests) {
            this._rests = this._idleMonitor.add_idle_watch(REST, () => this._restUntilUsed());
            this._lookOften();
        } else if (!state && this._rests) {
            this._idleMonitor.remove_watch(this._rests);
            this._rests = 0;
            this._stopLooking();
        }
    }

    _lookOften() {
        this._look = GLib.timeout_add(GLib.PRIORITY_DEFAULT, LOOK, () => {
            this._glance();
            return GLib.SOURCE_CONTINUE;
        });
    }

    _stopLooking() {
        if (this._look)
            GLib.source_remove(this._look);
        this._look = 0;
        if (this._begins)
            this._idleMonitor.remove_watch(this._begins);
        this._begins = 0;
    }

    // What is held then stays so until the user lets it go, which is something that he does.
    _restUntilUsed() {
        this._stopLooking();
        this._glance();
        this._begins = this._idleMonitor.add_user_active_watch(() => {
            this._begins = 0;
            this._glance();
            this._lookOften();
        });
    }

    _glance() {
        const [x, y, now] = where();
        if ((now & STATE) !== this._lastState)
            this._see(x, y, now);
    }

    // The first is told at once, and what follows at the pace of a display.
    _invalidated() {
        if (this._frame)
            return;
        const wait = Math.ceil(FRAME - (GLib.get_monotonic_time() - this._told) / 1000);
        if (wait <= 0) {
            this._tellPlace();
            return;
        }
        this._frame = GLib.timeout_add(GLib.PRIORITY_DEFAULT, wait, () => {
            this._frame = 0;
            this._tellPlace();
            return GLib.SOURCE_REMOVE;
        });
    }

    _tellPlace() {
        this._told = GLib.get_monotonic_time();
        this._see(...where());
    }

    _see(x, y, state) {
        this._lastState = state & STATE;
        this._tellAll(x, y, this._lastState);
    }
}
