import Meta from 'gi://Meta';

import {warp, where} from './cursor.js';
import {barrier, demand, seat} from './release.js';
import {Main} from './shell.js';

// A line may not begin below nought, and numbers of the protocol of barriers end here.
const LAST = 32767;
const BEYOND = 20000;
// The hot corner keeps its hits.
const CORNER = 64;

// A shell without these holds nothing, and is to have the rest.
const {POSITIVE_X, NEGATIVE_X, POSITIVE_Y, NEGATIVE_Y} = Meta.BarrierDirection ?? {};
const ALL = POSITIVE_X | NEGATIVE_X | POSITIVE_Y | NEGATIVE_Y;

/** The way out through each side. Barriers let through all directions that are named, and so all but that. */
const OUTWARDS = {right: POSITIVE_X, left: NEGATIVE_X, bottom: POSITIVE_Y, top: NEGATIVE_Y};

const isVertical = side => side === 'left' || side === 'right';

/** The sides of a box beyond whose line a part of another monitor lies. */
function innerSides(box, monitors) {
    return Object.keys(OUTWARDS).filter(side => monitors.some(other => ({
        left: other.x1 < box.x1,
        right: other.x2 > box.x2,
        top: other.y1 < box.y1,
        bottom: other.y2 > box.y2,
    })[side]));
}

const boxOf = ({x, y, width, height}) => ({x1: x, y1: y, x2: x + width, y2: y + height});

/**
 * Where the lines of a side stand. At the right and at the bottom there are two: with the border alone the
 * cursor is a pixel outside all the time, and with the last pixel alone it leaks in corners.
 */
function linesOf(side, box) {
    switch (side) {
    case 'left':
        return [box.x1];
    case 'right':
        return [box.x2 - 1, box.x2];
    case 'top':
        return [box.y1];
    default:
        return [box.y2 - 1, box.y2];
    }
}

/** How far the lines of a side go: beyond the corner where no monitor lies behind it. */
function spanOf(side, box, inner) {
    const [from, to, first, last] = isVertical(side)
        ? [box.y1, box.y2, 'top', 'bottom'] : [box.x1, box.x2, 'left', 'right'];
    return [
        inner.includes(first) ? from : Math.max(from - BEYOND, 0),
        inner.includes(last) ? to : Math.min(to + BEYOND, LAST),
    ];
}

/** Keeps the cursor on one monitor by the shell's own barriers, on those sides that lead to another one. */
export class Hold {
    /** `pushed` is told the side and the barrier's event of each motion that is stopped, where there is one. */
    constructor(pushed) {
        demand(Meta, 'Barrier', 'BarrierDirection');
        demand(seat(), 'warp_pointer');
        this._pushed = pushed;
        this._barriers = [];
        this._box = null;
    }

    destroy() {
        this.end();
    }

    isOn() {
        return this._box !== null;
    }

    /** A cursor that is elsewhere comes to `place`, or to the nearest one inside. */
    begin([x, y, width, height], place) {
        this._box = boxOf({x, y, width, height});
        this._build();
        const [atX, atY] = where();
        const to = place ?? [
            Math.min(Math.max(atX, x), x + width - 1),
            Math.min(Math.max(atY, y), y + height - 1),
        ];
        if (place || to[0] !== atX || to[1] !== atY)
            warp(...to);
    }

    end() {
        this._box = null;
        this._clear();
    }

    /** A monitor that is no more holds nobody; the program will say what is to be held then. */
    monitorsChanged() {
        if (!this._box)
            return;
        const {x1, y1, x2, y2} = this._box;
        const isStill = Main.layoutManager.monitors.map(boxOf)
            .some(box => box.x1 === x1 && box.y1 === y1 && box.x2 === x2 && box.y2 === y2);
        if (isStill)
            this._build();
        else
            this.end();
    }

    _clear() {
        for (const [made, hit] of this._barriers) {
            // The shell may keep a barrier that has been destroyed.
            if (hit)
                made.disconnect(hit);
            made.destroy();
        }
        this._barriers = [];
    }

    _build() {
        this._clear();
        const box = this._box;
        const inner = innerSides(box, Main.layoutManager.monitors.map(boxOf));
        for (const side of inner) {
            const [from, to] = spanOf(side, box, inner);
            for (const at of linesOf(side, box))
                this._line(side, OUTWARDS[side], at, from, to);
            this._cap(side, box, inner);
        }
    }

    // Above and to the left of nought no line can be drawn, so that a slanting way would lead around the end
    // of one that begins there.
    _cap(side, box, inner) {
        if (isVertical(side) && box.y1 === 0 && !inner.includes('top'))
            this._line(null, NEGATIVE_Y, 0, ...this._capSpan(side, box.x1, box.x2));
        else if (!isVertical(side) && box.x1 === 0 && !inner.includes('left'))
            this._line(null, NEGATIVE_X, 0, ...this._capSpan(side, box.y1, box.y2));
    }

    _capSpan(side, from, to) {
        return side === 'left' || side === 'top' ? [from, to] : [from + CORNER, to];
    }

    _line(side, blocked, at, from, to) {
        const lies = side ? isVertical(side) : blocked === NEGATIVE_X;
        const [x1, x2, y1, y2] = lies ? [at, at, from, to] : [from, to, at, at];
        const made = barrier({x1, x2, y1, y2, directions: ALL & ~blocked});
        const hit = side && this._pushed ? made.connect('hit', (_barrier, event) => this._pushed(side, event)) : 0;
        this._barriers.push([made, hit]);
    }
}
