import Gio from 'gi://Gio';
import GLib from 'gi://GLib';

import {Client, part} from './client.js';
import {Accelerators} from './keys.js';
import {Main} from './shell.js';
import {Tray} from './tray.js';

const NAME = 'com.tamberlo.Shell';
const PATH = '/com/tamberlo/Shell';
const VERSION = 1;
const PROGRAM = /^com\.tamberlo\.[a-z-]+$/;

// Frees everything at once, whatever the programs do.
const FREE_ALL = '<Control><Alt><Super>Escape';

/**
 * The interface on the session bus. A method's name is that of the interface; what a program may ask for is
 * in Client. A call is taken from the process alone that owns the name which it has joined with.
 */
export class Service {
    constructor(extension) {
        this.accelerators = part(() => new Accelerators());
        this._clients = new Map(); // by the unique name of the connection
        this._bus = Gio.DBus.session;
        const file = extension.dir.get_child('com.tamberlo.Shell1.xml');
        const [, xml] = file.load_contents(null);
        this._object = Gio.DBusExportedObject.wrapJSObject(new TextDecoder().decode(xml), this);
        this._object.export(this._bus, PATH);
        this._tray = new Tray(this._bus, PROGRAM, name => this._processOf(name));
        this._name = Gio.bus_own_name_on_connection(this._bus, NAME,
            Gio.BusNameOwnerFlags.DO_NOT_QUEUE, null, null);
        this._escape = null;
        Main.layoutManager.connectObject('monitors-changed', () => {
            for (const client of this._clients.values())
                client.monitorsChanged();
        }, this);
    }

    destroy() {
        Main.layoutManager.disconnectObject(this);
        for (const client of this._clients.values())
            client.destroy();
        this._clients.clear();
        this._dropEscape();
        this.accelerators?.destroy();
        this._tray.destroy();
        Gio.bus_unown_name(this._name);
        this._object.unexport();
    }

    /**
     * Whether anything is in force has changed. The shortcut that frees all is there from the first time
     * on: its own keys may be what lets the cursor go, and holds it again when they are up.
     */
    clientChanged() {
        const isNeeded = [...this._clients.values()].some(client => client.wasBusy());
        if (isNeeded && this._escape === null)
            this._escape = this.accelerators?.grab(FREE_ALL, () => this._freeAll()) ?? null;
        else if (!isNeeded)
            this._dropEscape();
    }

    _dropEscape() {
        if (this._escape !== null)
            this.accelerators.ungrab(this._escape);
        this._escape = null;
    }

    _freeAll() {
        for (const client of this._clients.values())
            client.free('shortcut');
    }

    async JoinAsync([program], invocation) {
        const sender = invocation.get_sender();
        try {
            if (!PROGRAM.test(program))
                throw new Error(`${program} is none of the programs`);
            const [own, owner] = await Promise.all([this._processOf(sender), this._processOf(program)]);
            if (own !== owner)
                throw new Error(`${program} is another process`);
            this._clients.get(sender)?.destroy();
            const client = new Client(this._bus, sender, PATH, this);
            this._clients.set(sender, client);
            client.onGone(() => {
                this._clients.delete(sender);
                this.clientChanged();
            });
            invocation.return_value(new GLib.Variant('(uas)', [VERSION, client.lacks()]));
        } catch (error) {
            invocation.return_dbus_error('com.tamberlo.Shell1.Error.NotAProgram', error.message);
        }
    }

    async _processOf(name) {
        const reply = await this._bus.call('org.freedesktop.DBus', '/org/freedesktop/DBus',
            'org.freedesktop.DBus', 'GetConnectionUnixProcessID', new GLib.Variant('(s)', [name]),
            new GLib.VariantType('(u)'), Gio.DBusCallFlags.NONE, -1, null);
        return reply.deepUnpack()[0];
    }
}

// The others are the client's own, who answers with the values of the reply or with nothing.
for (const method of ['Hold', 'Release', 'Crossing', 'Warp', 'Where', 'Watch', 'Cover', 'Uncover', 'HideCursor', 'Grab',
    'Ungrab', 'Record', 'SwitchWorkspace']) {
    Service.prototype[`${method}Async`] = function (parameters, invocation) {
        const client = this._clients.get(invocation.get_sender());
        if (!client) {
            invocation.return_dbus_error('com.tamberlo.Shell1.Error.NotJoined', 'Join comes first.');
            return;
        }
        try {
            const answer = client[method](...parameters) ?? null;
            this.clientChanged();
            invocation.return_value(answer);
        } catch (error) {
            logError(error, method);
            invocation.return_dbus_error('com.tamberlo.Shell1.Error.Failed', error.message);
        }
    };
}
