import St from 'gi://St';

import {allowUnredirect, demand} from './release.js';
import {Main} from './shell.js';

/** Windows of one colour above everything else, full-screen windows and the overview included. */
export class Veils {
    constructor() {
        demand(Main.layoutManager, 'addTopChrome', 'removeChrome');
        this._actors = new Map(); // by the program's numbers
    }

    destroy() {
        for (const number of [...this._actors.keys()])
            this.remove(number);
    }

    isOn() {
        return this._actors.size > 0;
    }

    show(number, {area: [x, y, width, height], colour, opacity, catches}) {
        let actor = this._actors.get(number);
        if (actor && actor.reactive !== catches) {
            this.remove(number);
            actor = null;
        }
        if (!actor) {
            actor = new St.Widget({reactive: catches});
            // A full-screen window that is shown without being composed would cover it.
            if (this._actors.size === 0)
                allowUnredirect(false);
            this._actors.set(number, actor);
            Main.layoutManager.addTopChrome(actor, {affectsStruts: false, trackFullscreen: false});
        }
        // One that only moves need not be styled anew.
        const style = `background-color: #${colour.toString(16).padStart(6, '0')};`;
        if (actor.style !== style)
            actor.style = style;
        actor.set_position(x, y);
        actor.set_size(width, height);
        actor.opacity = Math.round(255 * Math.min(Math.max(opacity, 0), 1));
    }

    remove(number) {
        const actor = this._actors.get(number);
        if (!actor)
            return;
        this._actors.delete(number);
        Main.layoutManager.removeChrome(actor);
        actor.destroy();
        if (this._actors.size === 0)
            allowUnredirect(true);
    }
}
