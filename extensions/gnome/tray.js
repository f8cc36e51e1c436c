import Gio from 'gi://Gio';
import GLib from 'gi://GLib';

import {hasQuickSettings} from './release.js';
import {ProductIndicator} from './toggle.js';

const PATH = '/StatusNotifierWatcher';
const WATCHER = `
<node>
  <interface name="org.kde.StatusNotifierWatcher">
    <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
    <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  </interface>
</node>`;
const MENU = `
<node>
  <interface name="com.tamberlo.ShellTray1">
    <method name="ShowMenu"/>
  </interface>
</node>`;

/**
 * A tray for the programs of the family alone, under the extension's own name and not that of trays: any
 * other program would take this for a place where its icon is seen.
 */
export class Tray {
    /** `processOf` tells the process that has a name on the bus. */
    constructor(bus, program, processOf) {
        this._bus = bus;
        this._program = program;
        this._processOf = processOf;
        this._indicators = new Map(); // by the names of the programs
        this._objects = [WATCHER, MENU].map(xml => Gio.DBusExportedObject.wrapJSObject(xml, this));
        for (const object of this._objects)
            object.export(bus, PATH);
    }

    destroy() {
        this._isGone = true;
        for (const object of this._objects)
            object.unexport();
        for (const indicator of this._indicators.values())
            indicator.destroy();
        this._indicators.clear();
    }

    get IsStatusNotifierHostRegistered() {
        return hasQuickSettings();
    }

    /** Opens the menu of the program whose icon the caller has registered. */
    ShowMenuAsync(_parameters, invocation) {
        const sender = invocation.get_sender();
        const indicator = [...this._indicators.values()].find(({service}) => service === sender);
        this._askedBy = indicator ? null : sender; // of an icon that is still being registered
        indicator?.open();
        invocation.return_value(null);
    }

    async RegisterStatusNotifierItemAsync([_service], invocation) {
        const sender = invocation.get_sender();
        invocation.return_value(null);
        try {
            const program = await this._idOf(sender);
            const [own, owner] = await Promise.all([this._processOf(sender), this._processOf(program)]);
            if (this._isGone || !this._program.test(program) || own !== owner)
                return;
            this._indicators.get(program)?.destroy();
            const indicator = new ProductIndicator(this._bus, program, sender);
            indicator.onGone(() => this._indicators.delete(program));
            this._indicators.set(program, indicator);
            if (this._askedBy === sender)
                indicator.open();
        } catch (error) {
            console.warn(`an icon is not shown: ${error.message}`);
        }
    }

    async _idOf(sender) {
        const reply = await this._bus.call(sender, '/StatusNotifierItem', 'org.freedesktop.DBus.Properties',
            'Get', new GLib.Variant('(ss)', ['org.kde.StatusNotifierItem', 'Id']),
            new GLib.VariantType('(v)'), Gio.DBusCallFlags.NO_AUTO_START, -1, null);
        return reply.recursiveUnpack()[0];
    }
}
