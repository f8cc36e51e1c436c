import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import GObject from 'gi://GObject';
import St from 'gi://St';

import {ExportedMenu} from './menu.js';
import {addIndicator, labels} from './release.js';
import {Main, QuickSettings} from './shell.js';

const ITEM = 'org.kde.StatusNotifierItem';
const ITEM_PATH = '/StatusNotifierItem';
const PRODUCT = 'com.tamberlo.Product1';

// Of the menu, in pixels: what is around its entries, and the least that makes sense of those.
const HEAD = 150;
const LEAST = 160;

const pathOf = program => `/${program.replaceAll('.', '/').replaceAll('-', '_')}`;

/** A program's switch in the quick settings, with its menu. Made of them when there is the first one. */
let Toggle = null;
const makeToggle = () => GObject.registerClass(
class ProductToggle extends QuickSettings.QuickMenuToggle {
    _init(bus, program, service, properties) {
        super._init({...labels(properties.title, properties.subtitle), toggleMode: false});
        this._bus = bus;
        this._program = program;
        this.menu.setHeader(properties.icon, properties.title);
        this._menu = new ExportedMenu(bus, service, properties.menu, this.menu);
        this.menu.connect('open-state-changed', (_menu, isOpen) => {
            if (!isOpen)
                return;
            this._limitSoon();
            this._menu.refresh();
        });
        this._soon = 0;
        this.connect('notify::allocation', () => this._limitSoon());
        this.connect('clicked', () => this._call('Toggle'));
        this.connect('destroy', () => {
            if (this._soon)
                GLib.source_remove(this._soon);
            this._menu.destroy();
            // The shell would keep it.
            this.menu.destroy();
        });
    }

    showFace({title, subtitle, icon}) {
        this.set({...labels(title, subtitle), gicon: icon});
        this.menu.setHeader(icon, title, subtitle);
        this._menu.refresh();
    }

    // Once it has its place, which a menu that was open before may still change.
    _limitSoon() {
        if (!this.menu?.isOpen)
            return;
        this._soon ||= GLib.idle_add(GLib.PRIORITY_DEFAULT, () => {
            this._soon = 0;
            this._limit();
            return GLib.SOURCE_REMOVE;
        });
    }

    // Down to the end of the monitor, without the header and the margins. The quick settings may still be on
    // their way to where they open.
    _limit() {
        const {scale_factor: scale} = St.ThemeContext.get_for_stage(global.stage);
        const {height} = Main.layoutManager.primaryMonitor;
        const [, above] = Main.panel.statusArea.quickSettings.menu.actor.get_transformed_position();
        const [, top] = this.get_transformed_position();
        const used = Main.panel.height + top - above + this.height;
        this._menu.limit(Math.max((height - used) / scale - HEAD, LEAST));
    }

    _call(method) {
        this._bus.call(this._program, pathOf(this._program), PRODUCT, method, null, null,
            Gio.DBusCallFlags.NO_AUTO_START, -1, null, null);
    }
});

/** The icon of a program in the panel, and its switch, for as long as the program has them registered. */
export class ProductIndicator {
    constructor(bus, program, service) {
        this.program = program;
        this._bus = bus;
        this.service = service;
        this._cancelled = new Gio.Cancellable();
        this._subscriptions = [
            bus.signal_subscribe(service, ITEM, null, ITEM_PATH, null, Gio.DBusSignalFlags.NONE,
                () => this._showFace()),
            bus.signal_subscribe(program, 'org.freedesktop.DBus.Properties', 'PropertiesChanged',
                pathOf(program), PRODUCT, Gio.DBusSignalFlags.NONE,
                (_bus, _sender, _path, _interface, _signal, changes) => {
                    const isActive = propertyOf(changes.get_child_value(1), 'Active');
                    if (isActive !== undefined)
                        this._showState(isActive);
                }),
        ];
        this._watchedName = Gio.bus_watch_name_on_connection(bus, service, Gio.BusNameWatcherFlags.NONE, null,
            () => {
                this.destroy();
                this._gone?.();
            });
        this._showFace();
    }

    /** Called when the program has taken its icon away, and this with it. */
    onGone(handler) {
        this._gone = handler;
    }

    destroy() {
        this._cancelled.cancel();
        for (const subscription of this._subscriptions)
            this._bus.signal_unsubscribe(subscription);
        this._subscriptions = [];
        if (this._watchedName)
            Gio.bus_unwatch_name(this._watchedName);
        this._watchedName = 0;
        for (const item of this._indicator?.quickSettingsItems ?? [])
            item.destroy();
        this._indicator?.destroy();
        this._indicator = null;
    }

    /** Opens the menu; where the program has not told all of it yet, as soon as it has. */
    open() {
        this._opensLater = !this._indicator;
        if (this._opensLater)
            return;
        Main.panel.statusArea.quickSettings.menu.open();
        this._toggle.menu.open();
    }

    async _get(destination, path, name) {
        const reply = await this._bus.call(destination, path, 'org.freedesktop.DBus.Properties', 'GetAll',
            new GLib.Variant('(s)', [name]), new GLib.VariantType('(a{sv})'),
            Gio.DBusCallFlags.NO_AUTO_START, -1, this._cancelled);
        return reply.get_child_value(0);
    }

    async _showFace() {
        try {
            const all = await this._get(this.service, ITEM_PATH, ITEM);
            if (this._cancelled.is_cancelled())
                return;
            // "Palisor: on", as a tool tip has it; a subtitle begins with a capital here.
            const [title, state = ''] = propertyOf(all, 'Title').split(': ');
            const subtitle = state.charAt(0).toLocaleUpperCase() + state.slice(1);
            const face = {title, subtitle, menu: propertyOf(all, 'Menu'), icon: iconOf(all)};
            if (!this._indicator)
                this._make(face);
            this._icon.gicon = face.icon;
            this._toggle.showFace(face);
            if (this._opensLater)
                this.open();
            const own = await this._get(this.program, pathOf(this.program), PRODUCT);
            this._showState(propertyOf(own, 'Active'));
        } catch (error) {
            this._report(error);
        }
    }

    _make(face) {
        this._indicator = new QuickSettings.SystemIndicator();
        this._icon = this._indicator._addIndicator();
        Toggle ??= makeToggle();
        this._toggle = new Toggle(this._bus, this.program, this.service, face);
        this._indicator.quickSettingsItems.push(this._toggle);
        addIndicator(this._indicator);
    }

    _showState(isActive) {
        if (this._indicator)
            this._toggle.checked = isActive;
    }

    _report(error) {
        if (!error.matches?.(Gio.IOErrorEnum, Gio.IOErrorEnum.CANCELLED))
            console.warn(`${this.program}: ${error.message}`);
    }
}

/**
 * The others stay unpacked: there are pictures and settings among them, and the garbage of those is more than
 * all else that a program leaves.
 */
const propertyOf = (all, name) => all.lookup_value(name, null)?.unpack();

/** The icon that the program has drawn for panels, in the panel's own colour. */
function iconOf(all) {
    const [name, folder] = ['IconName', 'IconThemePath'].map(each => propertyOf(all, each));
    const file = Gio.File.new_for_path(`${folder}/${name}.svg`);
    if (name && file.query_exists(null))
        return new Gio.FileIcon({file});
    return new Gio.ThemedIcon({name: name || 'view-dual-symbolic'});
}
