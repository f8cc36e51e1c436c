import Gio from 'gi://Gio';
import GLib from 'gi://GLib';

import {Crossing} from './crossing.js';
import {HiddenCursor, STATE, warp, where} from './cursor.js';
import {Hold} from './hold.js';
import {Recording, switchWorkspace} from './keys.js';
import {PushReport} from './push.js';
import {Scheme} from './scheme.js';
import {Veils} from './veil.js';
import {Watch} from './watch.js';

const INTERFACE = 'com.tamberlo.Shell1';
const PATIENCE = 1000; // milliseconds: who does not answer for so long hangs, and nothing of his stays
const CALM = 250; // milliseconds, and once more: an answer to keys that went up has come
const LATE = 100_000; // microseconds: a bus that takes longer for its own answer

/** What `make` returns; null where the shell has no longer what it is made of. */
export function part(make) {
    try {
        return make();
    } catch (error) {
        console.warn(`Palisor does without: ${error.message}`);
        return null;
    }
}

/** What one program has asked for, and what it is told. A part that is not there does nothing. */
export class Client {
    constructor(bus, sender, path, service) {
        this._bus = bus;
        this._sender = sender;
        this._path = path;
        this._service = service;
        this._grabs = new Map(); // by the program's numbers
        this._silence = new Gio.Cancellable();
        this._wasBusy = false;
        this._begin();
        this._scheme = part(() => new Scheme(dark => this._tell('Dark', '(b)', [dark])));
        this._watchedName = Gio.bus_watch_name_on_connection(bus, sender, Gio.BusNameWatcherFlags.NONE, null,
            () => {
                this.destroy();
                this._gone?.();
            });
        this._heart = GLib.timeout_add(GLib.PRIORITY_DEFAULT, PATIENCE / 2, () => {
            this._ask();
            return GLib.SOURCE_CONTINUE;
        });
    }

    /** Called when the program has ended, and this with it. */
    onGone(handler) {
        this._gone = handler;
    }

    destroy() {
        this._end();
        this._scheme?.destroy();
        this._scheme = null;
        this._silence.cancel();
        if (this._heart)
            GLib.source_remove(this._heart);
        this._heart = 0;
        this._hearAgain();
        this._dropLate();
        if (this._watchedName)
            Gio.bus_unwatch_name(this._watchedName);
        this._watchedName = 0;
    }

    _begin() {
        this._push = part(() => new PushReport(pieces => this._tell('Pushed', '(a(ddddu))', [pieces])));
        this._crossing = part(() => new Crossing(() => {
            this._push?.pause();
            this._tell('Kept', '()', []);
        }));
        const pushed = this._push && ((side, event) => this._push.add(side, event));
        this._hold = part(() => new Hold(pushed));
        this._veils = part(() => new Veils());
        this._cursor = part(() => new HiddenCursor());
        this._watch = part(() => new Watch((x, y, state) => this._tell('Seen', '((dd)u)', [[x, y], state])));
        this._recording = new Recording((keycode, state) => this._tell('Typed', '(uu)', [keycode, state]));
    }

    /** By the names of the interface. */
    lacks() {
        const parts = {
            hold: this._hold,
            push: this._push,
            watch: this._watch,
            veil: this._veils,
            cursor: this._cursor,
            keys: this._service.accelerators,
        };
        return Object.keys(parts).filter(name => parts[name] === null);
    }

    _end() {
        const parts = [this._crossing, this._hold, this._push, this._veils, this._cursor, this._watch, this._recording];
        for (const each of parts)
            each?.destroy();
        for (const grab of this._grabs.values())
            this._service.accelerators.ungrab(grab);
        this._grabs.clear();
    }

    /** All that was asked for is undone; the program may ask again. */
    free(reason) {
        if (reason === 'shortcut')
            this._deafen();
        if (!this.isBusy())
            return;
        this._end();
        this._begin();
        this._tell('Freed', '(s)', [reason]);
        this._service.clientChanged();
    }

    // The shortcut's own modifiers may be what lets the cursor go, and a program holds it again when
    // they are up.
    _deafen() {
        this._hearAgain();
        let calm = 0;
        this._deaf = GLib.timeout_add(GLib.PRIORITY_DEFAULT, CALM, () => {
            calm = where()[2] & STATE ? 0 : calm + 1;
            if (calm < 2)
                return GLib.SOURCE_CONTINUE;
            this._deaf = 0;
            return GLib.SOURCE_REMOVE;
        });
    }

    _hearAgain() {
        if (this._deaf)
            GLib.source_remove(this._deaf);
        this._deaf = 0;
    }

    /** Whether anything that a user would be stuck with is in force. */
    isBusy() {
        const isBusy = [this._hold, this._veils, this._cursor, this._recording].some(each => each?.isOn());
        this._wasBusy ||= isBusy;
        return isBusy;
    }

    /** Whether it has ever been. */
    wasBusy() {
        return this._wasBusy || this.isBusy();
    }

    monitorsChanged() {
        this._hold?.monitorsChanged();
        this._service.clientChanged();
    }

    // A stopped program keeps its connection; the bus's library answers in any other.
    _ask() {
        if (!this.isBusy() || this._isAsking)
            return;
        this._isAsking = true;
        this._wait();
        this._ping(this._sender, () => {
            this._dropLate();
            this._isAsking = false;
        });
    }

    _wait() {
        this._late = GLib.timeout_add(GLib.PRIORITY_DEFAULT, PATIENCE, () => {
            this._late = 0;
            this._askBus();
            return GLib.SOURCE_REMOVE;
        });
    }

    // On a machine with much to do the bus itself is late, and nobody's answer could have come.
    _askBus() {
        const asked = GLib.get_monotonic_time();
        this._ping('org.freedesktop.DBus', () => {
            if (!this._isAsking)
                return;
            if (GLib.get_monotonic_time() - asked > LATE)
                this._wait();
            else
                this.free('silent');
        });
    }

    // Whatever comes is an answer. One that is awaited has the shell collect all its garbage every
    // ten seconds, also at rest, for which everything stands still for a frame.
    _ping(name, answered) {
        this._bus.call(name, '/', 'org.freedesktop.DBus.Peer', 'Ping', null, null,
            Gio.DBusCallFlags.NO_AUTO_START, GLib.MAXINT32, this._silence, () => {
                if (!this._silence.is_cancelled())
                    answered();
            });
    }

    _dropLate() {
        if (this._late)
            GLib.source_remove(this._late);
        this._late = 0;
    }

    _tell(signal, type, values) {
        this._bus.emit_signal(this._sender, this._path, INTERFACE, signal, new GLib.Variant(type, values));
    }

    Hold(area, moves, place) {
        if (this._deaf)
            return;
        this._hold?.begin(area, moves ? place : null);
        if (moves)
            this._crossing?.begin(area);
        else
            this._crossing?.end();
    }

    Release() {
        this._hold?.end();
        this._crossing?.end();
        this._push?.clear();
    }

    Crossing(pixels) {
        this._push?.setCrossing(pixels);
    }

    Warp([x, y]) {
        warp(x, y);
    }

    Where() {
        const [x, y, state] = where();
        return new GLib.Variant('((dd)u)', [[x, y], state]);
    }

    Watch(motion, state) {
        this._watch?.set(motion, state);
    }

    Cover(number, area, colour, opacity, catches) {
        if (this._deaf)
            return;
        this._afterCrossing(number, () => this._veils?.show(number, {area, colour, opacity, catches}));
    }

    Uncover(number) {
        this._afterCrossing(number, () => this._veils?.remove(number));
    }

    _afterCrossing(number, act) {
        if (this._crossing)
            this._crossing.then(number, act);
        else
            act();
    }

    HideCursor(hidden) {
        this._cursor?.set(hidden && !this._deaf);
    }

    Grab(number, accelerator) {
        this.Ungrab(number);
        const pressed = () => this._tell('Pressed', '(u)', [number]);
        const grab = this._service.accelerators?.grab(accelerator, pressed) ?? null;
        if (grab !== null)
            this._grabs.set(number, grab);
        return new GLib.Variant('(b)', [grab !== null]);
    }

    Ungrab(number) {
        if (this._grabs.has(number))
            this._service.accelerators.ungrab(this._grabs.get(number));
        this._grabs.delete(number);
    }

    Record(on) {
        return new GLib.Variant('(b)', [this._recording.set(on)]);
    }

    SwitchWorkspace(step) {
        switchWorkspace(step);
    }
}
