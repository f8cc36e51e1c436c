import Clutter from 'gi://Clutter';
import Meta from 'gi://Meta';
import St from 'gi://St';

import {Main, QuickSettings} from './shell.js';

// What the releases of the shell call differently, the newest first.

/** Throws where the shell has not all of these any more: whoever is made of them is not made. */
export function demand(owner, ...names) {
    const gone = names.filter(name => owner?.[name] === undefined);
    if (gone.length > 0)
        throw new Error(`the shell has no ${gone.join(', ')}`);
}

export function seat() {
    const backend = global.stage.context?.get_backend?.() ?? Clutter.get_default_backend();
    return backend.get_default_seat();
}

export function cursorTracker() {
    return global.backend.get_cursor_tracker?.() ?? Meta.CursorTracker.get_for_display(global.display);
}

/** A barrier along a line; the events of `directions` pass it. */
export function barrier(line) {
    const owner = 'backend' in Meta.Barrier.prototype ? {backend: global.backend} : {display: global.display};
    return new Meta.Barrier({...owner, ...line});
}

/** Whether a full-screen window may be shown without being composed, and so cover everything. */
export function allowUnredirect(allowed) {
    if (global.compositor?.disable_unredirect)
        global.compositor[allowed ? 'enable_unredirect' : 'disable_unredirect']();
    else
        Meta[allowed ? 'enable_unredirect_for_display' : 'disable_unredirect_for_display'](global.display);
}

export function verticalBox(properties) {
    const column = 'orientation' in St.BoxLayout.prototype
        ? {orientation: Clutter.Orientation.VERTICAL} : {vertical: true};
    return new St.BoxLayout({...column, ...properties});
}

export function scrollView(child) {
    const view = new St.ScrollView({overlay_scrollbars: true, x_expand: true});
    view.set_policy(St.PolicyType.NEVER, St.PolicyType.AUTOMATIC);
    if (view.add_actor)
        view.add_actor(child);
    else
        view.set_child(child);
    return view;
}

/** How far a view of `scrollView` is scrolled down. */
export function scrolled(view) {
    return view.vadjustment ?? view.vscroll.adjustment;
}

/** Whether there is a place for switches. */
export function hasQuickSettings() {
    const {quickSettings} = Main.panel.statusArea;
    return [quickSettings?.addExternalIndicator, quickSettings?._addItems].some(Boolean) &&
        ['QuickMenuToggle', 'SystemIndicator'].every(name => QuickSettings[name]);
}

/** Shows an indicator in the panel, and its switches in the quick settings. */
export function addIndicator(indicator) {
    const {quickSettings} = Main.panel.statusArea;
    if (quickSettings.addExternalIndicator) {
        quickSettings.addExternalIndicator(indicator);
    } else {
        quickSettings._indicators.add_child(indicator);
        quickSettings._addItems(indicator.quickSettingsItems);
    }
}

/** What a switch has to say: one line of it before 44. */
export function labels(title, subtitle) {
    return 'title' in QuickSettings.QuickMenuToggle.prototype ? {title, subtitle} : {label: title};
}
