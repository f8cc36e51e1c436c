import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import Pango from 'gi://Pango';
import St from 'gi://St';

import {scrolled, scrollView, verticalBox} from './release.js';
import {Main, PopupMenu, Slider} from './shell.js';

const INTERFACE = 'com.canonical.dbusmenu';

/** What the program's menu says, as a tree of {id, label, enabled, kind, state, children}. */
function nodeOf([id, properties, children]) {
    const of = (name, otherwise) => properties[name]?.deepUnpack() ?? otherwise;
    return {
        id,
        label: of('label', '').replaceAll('__', '_'),
        enabled: of('enabled', true),
        kind: of('type', '') === 'separator' ? 'separator' : of('toggle-type', 'entry'),
        state: of('toggle-state', 0),
        isMenu: of('children-display', '') === 'submenu',
        children: children.map(child => nodeOf(child.deepUnpack())),
    };
}

/** The ticks of a slider are entries that are chosen one at a time; they come one after the other. */
function grouped(nodes) {
    const result = [];
    for (const node of nodes) {
        const last = result.at(-1);
        if (node.kind !== 'radio')
            result.push(node);
        else if (last?.kind === 'slider')
            last.ticks.push(node);
        else
            result.push({id: node.id, kind: 'slider', ticks: [node], children: []});
    }
    return result;
}

/** A slider that stands on its ticks alone, with the words of the one it stands on above it. */
class Ticks {
    constructor(node, choose) {
        this.item = new PopupMenu.PopupBaseMenuItem({activate: false});
        this._choose = choose;
        this._label = new St.Label();
        this._slider = new Slider(0);
        const box = verticalBox({x_expand: true});
        box.add_child(this._label);
        box.add_child(this._slider);
        this.item.add_child(box);
        this._slider.accessible_name = node.label ?? '';
        this._slider.connect('notify::value', () => this._moved());
        this._slider.connect('drag-end', () => this.update(this._node));
        this.update(node);
    }

    update(node) {
        this._node = node;
        this._current = Math.max(node.ticks.findIndex(tick => tick.state === 1), 0);
        this._label.text = node.ticks[this._current].label;
        if (this._slider._dragging)
            return;
        this._isOwn = true;
        this._slider.value = this._current / Math.max(node.ticks.length - 1, 1);
        this._isOwn = false;
    }

    _moved() {
        if (this._isOwn)
            return;
        const tick = Math.round(this._slider.value * (this._node.ticks.length - 1));
        if (tick === this._current)
            return;
        for (const each of this._node.ticks)
            each.state = 0;
        this._node.ticks[tick].state = 1;
        this._current = tick;
        this._label.text = this._node.ticks[tick].label;
        this._choose(this._node.ticks[tick].id);
    }
}

/** The menu that a program exports, inside a menu of the shell. It is asked for when it opens. */
export class ExportedMenu {
    constructor(bus, service, path, menu) {
        this._bus = bus;
        this._service = service;
        this._path = path;
        this._section = new PopupMenu.PopupMenuSection();
        menu.addMenuItem(this._section);
        menu.box.remove_child(this._section.actor);
        this._scroll = scrollView(this._section.actor);
        menu.box.add_child(this._scroll);
        this._shape = null;
        this._parts = new Map(); // by the entries' numbers
        this._cancelled = new Gio.Cancellable();
        this._subscriptions = ['LayoutUpdated', 'ItemsPropertiesUpdated'].map(signal =>
            bus.signal_subscribe(service, INTERFACE, signal, path, null, Gio.DBusSignalFlags.NONE,
                () => this.refresh()));
    }

    destroy() {
        this._cancelled.cancel();
        for (const subscription of this._subscriptions)
            this._bus.signal_unsubscribe(subscription);
    }

    /** The shell lets a menu grow beyond the monitor. The pixels are the theme's. */
    limit(height) {
        this._scroll.style = `max-height: ${Math.floor(height)}px;`;
    }

    // The one that the keys have come to.
    _reveal(item) {
        const [, top] = this._scroll.get_transformed_position();
        const [, at] = item.get_transformed_position();
        const shown = scrolled(this._scroll);
        const below = at + item.height - (top + this._scroll.height);
        if (at < top)
            shown.value -= top - at;
        else if (below > 0)
            shown.value += below;
    }

    async refresh() {
        try {
            const reply = await this._bus.call(this._service, this._path, INTERFACE, 'GetLayout',
                new GLib.Variant('(iias)', [0, -1, []]), new GLib.VariantType('(u(ia{sv}av))'),
                Gio.DBusCallFlags.NO_AUTO_START, -1, this._cancelled);
            if (this._cancelled.is_cancelled())
                return;
            const [, root] = reply.deepUnpack();
            this._show(nodeOf(root).children);
        } catch (error) {
            if (!error.matches(Gio.IOErrorEnum, Gio.IOErrorEnum.CANCELLED))
                console.warn(`the menu of ${this._service}: ${error.message}`);
        }
    }

    // What only says something else stays in place, under the pointer that moves a slider.
    _show(nodes) {
        const outline = list => list.map(node => [node.id, node.kind, outline(node.children)]);
        const shape = JSON.stringify(outline(nodes));
        if (shape !== this._shape) {
            this._section.removeAll();
            this._parts.clear();
            this._fill(this._section, nodes);
        }
        this._shape = shape;
        this._update(nodes);
    }

    _fill(menu, nodes) {
        for (const node of grouped(nodes)) {
            let part;
            if (node.kind === 'separator') {
                part = {item: new PopupMenu.PopupSeparatorMenuItem()};
            } else if (node.kind === 'slider') {
                part = new Ticks(node, id => this._chosen(id));
            } else if (node.isMenu && node.children.length > 0) {
                part = {item: new PopupMenu.PopupSubMenuMenuItem(node.label)};
                this._fill(part.item.menu, node.children);
            } else {
                part = {item: new PopupMenu.PopupMenuItem(node.label)};
                part.item.connect('activate', () => {
                    // What opens a window would have it behind the quick settings, which keep the keys.
                    if (node.kind === 'entry')
                        Main.panel.closeQuickSettings();
                    this._chosen(node.id);
                });
            }
            // Words begin below each other also where only some have a tick before them.
            part.item.setOrnament(PopupMenu.Ornament.NONE);
            part.item.label?.clutter_text.set({line_wrap: true, ellipsize: Pango.EllipsizeMode.NONE});
            part.item.connect('key-focus-in', () => this._reveal(part.item));
            menu.addMenuItem(part.item);
            this._parts.set(node.id, part);
        }
    }

    _update(nodes) {
        for (const node of grouped(nodes)) {
            const part = this._parts.get(node.id);
            if (part instanceof Ticks) {
                part.update(node);
            } else if (node.kind !== 'separator') {
                part.item.label.text = node.label;
                part.item.setSensitive(node.enabled);
                if (node.kind === 'checkmark')
                    part.item.setOrnament(node.state ? PopupMenu.Ornament.CHECK : PopupMenu.Ornament.NONE);
                this._update(node.children);
            }
        }
    }

    _chosen(id) {
        this._bus.call(this._service, this._path, INTERFACE, 'Event',
            new GLib.Variant('(isvu)', [id, 'clicked', new GLib.Variant('i', 0), 0]), null,
            Gio.DBusCallFlags.NO_AUTO_START, -1, null, null);
    }
}
