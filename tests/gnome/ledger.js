// Runs in the shell: keeps an account of what the extension's files make from now on, and of what is still
// there of it by the word of those who have it.
(() => {
    const {Gio, GLib, GObject, Meta} = imports.gi;
    const entries = [];
    const isTheirs = () => new Error().stack.includes('/palisor@tamberlo.com/');
    const enter = (kind, what, isThere) => entries.push({kind, what, isThere});
    // The account itself keeps no object, so that those are gone that nobody else keeps.
    const weakly = (object, isThere) => {
        const reference = new WeakRef(object);
        return () => {
            const found = reference.deref();
            return found !== undefined && isThere(found);
        };
    };
    // A gesture, a transition and what readers of the screen see end with their actor.
    const isGone = object =>
        object === null || GObject.Object.prototype.toString.call(object).includes('DISPOSED');
    const isDisposed = object => isGone(object) || ['get_actor', 'get_animatable', 'get_object'].some(owner =>
        typeof object[owner] === 'function' && isGone(object[owner]()));
    // Of 43: the switches' menus never let go of the stage, nor transitions of who waits for their end.
    const isShellsOwn = (object, signal) => signal === 'stopped' ||
        (object === global.stage && signal === 'notify::key-focus');

    // What `holder` does under that name goes into the account as well.
    function follow(holder, name, note) {
        const real = holder[name];
        holder[name] = function (...parameters) {
            const result = real.apply(this, parameters);
            if (isTheirs())
                note(result, parameters, this);
            return result;
        };
    }

    const main = GLib.MainContext.default();
    for (const name of ['timeout_add', 'timeout_add_seconds', 'idle_add'])
        follow(GLib, name, id => enter('source', name, () => main.find_source_by_id(id) !== null));
    for (const name of ['connect', 'connect_after']) {
        follow(GObject.Object.prototype, name, (id, [signal], object) => enter('signal', signal,
            weakly(object, each => !isDisposed(each) && !isShellsOwn(each, signal) &&
                GObject.signal_handler_is_connected(each, id))));
    }

    // Those that only have a number are gone when the number has been given back.
    function pair(holder, take, give, kind) {
        const open = new Set();
        follow(holder, take, (id, parameters) => {
            open.add(id);
            enter(kind, String(parameters[1]), () => open.has(id));
        });
        const real = holder[give];
        holder[give] = function (id, ...rest) {
            open.delete(id);
            return real.call(this, id, ...rest);
        };
    }
    pair(Meta.IdleMonitor.prototype, 'add_idle_watch', 'remove_watch', 'watch of idleness');
    pair(Gio.DBusConnection.prototype, 'signal_subscribe', 'signal_unsubscribe', 'subscription');
    pair(Gio, 'bus_watch_name_on_connection', 'bus_unwatch_name', 'watched name');
    pair(Gio, 'bus_own_name_on_connection', 'bus_unown_name', 'own name');

    follow(Gio.DBusExportedObject, 'wrapJSObject', object => enter('object on the bus',
        object.get_info().name, weakly(object, each => each.get_connection() !== null)));
    Meta.Barrier = new Proxy(Meta.Barrier, {
        construct(made, parameters) {
            const barrier = Reflect.construct(made, parameters);
            enter('barrier', `${barrier.x1},${barrier.y1}`, weakly(barrier, each => each.is_active()));
            return barrier;
        },
    });
    // Whoever can claim it again is the only one who has.
    follow(Meta.Display.prototype, 'grab_accelerator', (action, [accelerator]) =>
        action !== 0 && enter('shortcut', accelerator, () => {
            const again = global.display.grab_accelerator(accelerator, 0);
            if (again !== 0)
                global.display.ungrab_accelerator(again);
            return again === 0;
        }));

    globalThis.ledger = {
        made: () => [...new Set(entries.map(entry => entry.kind))].sort(),
        /** How many of each are left. */
        left: () => {
            imports.system.gc();
            const counts = {};
            for (const {kind, what} of entries.filter(entry => entry.isThere()))
                counts[`${kind} ${what}`] = (counts[`${kind} ${what}`] ?? 0) + 1;
            return counts;
        },
    };
    return true;
})()
