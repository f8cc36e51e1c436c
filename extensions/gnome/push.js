import GLib from 'gi://GLib';
import GObject from 'gi://GObject';
import Meta from 'gi://Meta';

import {where} from './cursor.js';
import {demand} from './release.js';

const FRAME = 16; // milliseconds: a signal for each motion costs the shell a third more
const PAUSE = 1000;

// The coordinate that a side's line stops.
const ACROSS = {left: 0, right: 0, top: 1, bottom: 1};

const WAY_OUT = {
    left: ({dx}) => [Math.min(dx, 0), 0],
    right: ({dx}) => [Math.max(dx, 0), 0],
    top: ({dy}) => [0, Math.min(dy, 0)],
    bottom: ({dy}) => [0, Math.max(dy, 0)],
};

/**
 * What the hand pushes against the held sides: the first is told at once, and what follows in batches. One
 * batch ends as soon as enough for a crossing was pushed.
 */
export class PushReport {
    constructor(tell) {
        demand(Meta, 'Barrier');
        if (GObject.signal_lookup('hit', Meta.Barrier.$gtype) === 0)
            throw new Error('the shell does not tell of what barriers stop');
        this._tellBatch = tell;
        this._crossing = 0;
        this._pieces = [];
        this._frame = []; // the last pieces: when, and how far
        this._way = 0; // of all of them
        this._timer = 0;
        this._soon = 0;
        this._hasHurried = false; // in this batch
        this._pausedUntil = 0; // in microseconds
    }

    destroy() {
        this.clear();
    }

    clear() {
        this._pieces = [];
        this._frame = [];
        this._way = 0;
        for (const source of [this._timer, this._soon]) {
            if (source)
                GLib.source_remove(source);
        }
        this._timer = 0;
        this._soon = 0;
        this._hasHurried = false;
    }

    /** Tells of nothing for a while: what a game keeps need not be tried at each of its pushes. */
    pause() {
        this.clear();
        this._pausedUntil = GLib.get_monotonic_time() + PAUSE * 1000;
    }

    /** So many pixels within a frame are told at once; with 0 none are. */
    setCrossing(pixels) {
        this._crossing = pixels;
    }

    /**
     * In a corner two sides are told of one motion, each of what it stopped. Where it is far from letting the
     * cursor out the program is told nothing, which would refuse it.
     */
    add(side, event) {
        const [dx, dy] = WAY_OUT[side](event);
        if ((dx === 0 && dy === 0) || this._crossing === 0 || this._isPaused())
            return;
        this._pieces.push({across: ACROSS[side], told: [event.x, event.y, dx, dy, event.time]});
        this._pushInFrame(event.time, Math.abs(dx + dy));
        if (!this._timer && this._isWeak()) {
            while (this._pieces[0].told[4] < event.time - 2 * FRAME)
                this._pieces.shift();
            return;
        }
        const isEnough = this._way >= this._crossing;
        if (!this._timer || (isEnough && !this._hasHurried))
            this._tellSoon();
        this._hasHurried ||= isEnough;
    }

    _isPaused() {
        if (this._pausedUntil === 0)
            return false;
        if (GLib.get_monotonic_time() < this._pausedUntil)
            return true;
        this._pausedUntil = 0;
        return false;
    }

    _isWeak() {
        return this._way < this._crossing / 2;
    }

    _pushInFrame(time, way) {
        this._frame.push([time, way]);
        this._way += way;
        while (this._frame[0][0] <= time - FRAME)
            this._way -= this._frame.shift()[1];
    }

    // Once the other side of a corner has been told of the same motion, and before the shell draws.
    _tellSoon() {
        this._soon ||= GLib.idle_add(GLib.PRIORITY_HIGH, () => {
            this._soon = 0;
            this._tell();
            this._timer ||= GLib.timeout_add(GLib.PRIORITY_DEFAULT, FRAME, () => this._tellMore());
            return GLib.SOURCE_REMOVE;
        });
    }

    _tellMore() {
        this._hasHurried = false;
        if (this._pieces.length === 0 || this._isWeak()) {
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
