// What the compositor has for a script, as far as ours uses it. Time stands still but for `pass`.

let clock = 0;
Date.now = () => clock;
const calls = []; // of the bus: [member, arguments, answer]
const shortcuts = {};
let timers = [];

class Signal {
    constructor() { this.handlers = []; }
    connect(handler) { this.handlers.push(handler); }
    disconnect(handler) { this.handlers = this.handlers.filter(one => one !== handler); }
    emit() { for (const handler of this.handlers.slice()) handler(); }
}

class QTimer {
    constructor() {
        this.timeout = new Signal();
        this.active = false;
        timers.push(this);
    }
    start() {
        this.active = true;
        this.left = this.interval;
    }
    stop() { this.active = false; }
}

function pass(milliseconds) {
    for (let i = 0; i < milliseconds; ++i) {
        ++clock;
        for (const timer of timers)
            if (timer.active && --timer.left <= 0) {
                timer.left = timer.interval;
                if (timer.singleShot) timer.active = false;
                timer.timeout.emit();
            }
    }
}

function property(owner, name, signal, value) {
    owner[signal] = new Signal();
    Object.defineProperty(owner, name, {
        get: () => value,
        set(now) {
            if (now === value) return;
            value = now;
            owner[signal].emit();
        },
    });
}

const options = {}, workspace = {};
property(options, "edgeBarrier", "edgeBarrierChanged", 100);
property(workspace, "cursorPos", "cursorPosChanged", {x: 10, y: 10});
workspace.screens = [0, 1280].map(x => ({geometry: {x: x, y: 0, width: 1280, height: 720}}));
workspace.activeWindow = null;
// Its type is a number's.
options.cornerBarrierChanged = new Signal();
let corner = 1;
Object.defineProperty(options, "cornerBarrier", {
    get: () => corner,
    set(now) {
        if (Number(now) === corner) return;
        corner = Number(now);
        options.cornerBarrierChanged.emit();
    },
});
for (const side of ["Left", "Right"])
    workspace["slotSwitchDesktop" + side] = () => calls.push(["desktop", [side], null]);

function callDBus(service, path, face, member, ...words) {
    const isAsked = typeof words[words.length - 1] === "function";
    calls.push([member, isAsked ? words.slice(0, -1) : words, isAsked ? words.pop() : null]);
}
function registerShortcut(name, text, sequence, action) {
    shortcuts[sequence] = action;
    return true;
}

// For the tests.
const program = ":1.7", path = "/session/hold", script = "hold-1-1";
let number = 0;
function command(...words) {
    const poll = calls.filter(call => call[0] === "Poll").pop();
    poll[2](JSON.stringify([[++number, ...words]]));
}
function answerAlive(isThere) {
    for (const call of calls.filter(one => one[0] === "NameHasOwner")) call[2](isThere);
}
function at(x, y) { workspace.cursorPos = {x: x, y: y}; }
function barrier() { return options.edgeBarrier + " " + options.cornerBarrier; }
function allTold() { return calls.filter(call => call[0] === "Tell").map(call => call[1][1]).join(); }
function count(member) { return calls.filter(call => call[0] === member).length; }
