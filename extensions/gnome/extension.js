import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';

import {Service} from './service.js';

/**
 * The hand of a program of the family inside the shell: it does what the program asks for over the session
 * bus, and has no rules of its own. Nothing happens before a program asks.
 */
export default class HandExtension extends Extension {
    enable() {
        this._service = new Service(this);
    }

    disable() {
        this._service?.destroy();
        this._service = null;
    }
}
