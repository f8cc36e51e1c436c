// Runs inside KWin, which lets any user load a script, and does there what no client can: it keeps the
// cursor on one output by KWin's own barrier between outputs, and tells where the cursor is. In front of
// this text the program puts three constants: "program" (its name on the session bus), "path" (of its
// object there) and "script" (what this script was loaded as).
//
// The program is asked for commands by a call that it answers when it has some. When it has gone, this
// script puts back what it has changed and unloads itself.

const bus = "org.freedesktop.DBus";
const face = "com.tamberlo.Script1";

// KWin sums up what is pushed against the edge of an output, and lets go where the sum is larger. The
// limit of its settings' file is 1000; a script's is what its type holds.
const closed = 1e8, largestOfUsers = 1000, usual = 100;

let held = null; // the frame of the output that the cursor is kept on
let goal = null; // where the program is about to put the cursor
let done = 0; // the number of the last command that was carried out
let asked = 0; // questions for commands so far
let waited = 0; // ticks that the last one has waited
let pause = 0; // milliseconds between two places that are told; 0 for none
let crossing = 0; // pixels that a push in a drag must have in a frame to cross; 0 for no such push
let drag = null; // the cursor's places of late, [time, x, y], while such a push may cross
let isAtEdge = false; // and the program has been told
let dozedAt = null; // the height at which a hand in a drag has rested at the edge

// KWin's type for the second one is a number.
function inForce() {
    return {edge: options.edgeBarrier, corner: Boolean(options.cornerBarrier)};
}

// What is in force without this script.
const users = inForce();
if (users.edge > largestOfUsers) users.edge = usual;
let ours = inForce();

function timer(milliseconds, isRepeated, action) {
    const made = new QTimer();
    made.interval = milliseconds;
    made.singleShot = !isRepeated;
    made.timeout.connect(action);
    return made;
}

function contains(frame, point) {
    return point.x >= frame.x && point.x < frame.x + frame.width && point.y >= frame.y
        && point.y < frame.y + frame.height;
}

function isOutside() {
    return held !== null && !contains(held, workspace.cursorPos);
}

// On the last column of pixels before another output, at the left or the right.
function touches() {
    if (held === null || isOutside()) return false;
    const {x, y} = workspace.cursorPos;
    const leads = step => !contains(held, {x: x + step, y: y})
        && workspace.screens.some(one => contains(one.geometry, {x: x + step, y: y}));
    return leads(-1) || leads(1);
}

// What nobody has changed is left to others: there may be a second script of the program.
let hasChanged = false, isPutting = false;
function put(edge, corner) {
    const isUsers = edge === users.edge && corner === users.corner;
    if (isUsers && !hasChanged) return;
    hasChanged = !isUsers;
    ours = {edge: edge, corner: corner};
    isPutting = true;
    options.edgeBarrier = edge;
    options.cornerBarrier = corner;
    isPutting = false;
}

// KWin makes the barrier higher for a window that is being moved.
function dragged() {
    const window = workspace.activeWindow;
    return Math.ceil(crossing / (window && (window.move || window.resize) ? 1.5 : 1));
}

// The barrier is one between all outputs. Beside the held one the others' edges stay as they are.
function apply() {
    if (goal)
        put(0, false);
    else if (held && !isOutside())
        put(drag ? dragged() : closed, false);
    else
        put(users.edge, users.corner);
}

// The user's settings were read anew, or another script has set them. Who insists would be answered
// without an end, and so comes back only a few times between two ticks.
let returns = 0;
function overwritten() {
    const {edge, corner} = inForce();
    if (isPutting || (edge === ours.edge && corner === ours.corner)) return;
    if (edge !== ours.edge && edge <= largestOfUsers) users.edge = edge;
    if (corner !== ours.corner) users.corner = corner;
    if (hasChanged && ++returns < 10) apply();
}

function tell(...words) {
    callDBus(program, path, face, "Tell", script, JSON.stringify(words));
}

// Each motion that is heard of costs KWin something. So the first one is, and then none before the pause
// is over, at the end of which the act is asked whether there is to be another pause.
function pacer(act, isDoneAtOnce) {
    let isOn = false, isHearing = false;
    const hear = isTo => {
        if (isTo === isHearing) return;
        isHearing = isTo;
        if (isTo)
            workspace.cursorPosChanged.connect(stirred);
        else
            workspace.cursorPosChanged.disconnect(stirred);
    };
    const rest = timer(1, true, () => {
        if (act()) return;
        rest.stop();
        hear(isOn);
    });
    function stirred() {
        hear(false);
        if (isDoneAtOnce) act();
        rest.start();
    }
    // Zero ends it. The place where it begins counts as a motion.
    return milliseconds => {
        if (isOn === milliseconds > 0) return;
        isOn = milliseconds > 0;
        rest.interval = milliseconds;
        if (isOn)
            stirred();
        else {
            rest.stop();
            hear(false);
        }
    };
}

// Sixty times a second: each look at the cursor asks KWin for it anew, and so there is only one.
let toldX = null, toldY = null;
function tellPlace(x, y) {
    toldX = x;
    toldY = y;
    callDBus(program, path, face, "Tell", script, `["place",${x},${y}]`);
}
const pacePlaces = pacer(() => {
    const {x, y} = workspace.cursorPos;
    if (toldX === x && toldY === y) return false;
    tellPlace(x, y);
    return true;
}, true);

// A cursor that has come to the edge may be dragging: the program's layers there tell it so. They are told
// of the cursor after this script is, and so the program is some time later.
const glance = 25;
const paceEdge = pacer(() => {
    const was = isAtEdge && (dozedAt === null || dozedAt === workspace.cursorPos.y);
    isAtEdge = touches();
    if (was && isAtEdge) return false;
    dozedAt = null;
    if (isAtEdge) tell("edge");
    return false;
}, false);

// While a push in a drag may cross, the program has the sum forgotten at the end of each frame: KWin lets
// go of what exceeds the barrier within one. A hand that rests need not be watched.
const frame = 16;
const doze = timer(3000, false, () => {
    dozedAt = workspace.cursorPos.y;
    tell("inside");
    endDrag(true);
});
function endDrag(isStillThere) {
    drag = null;
    isAtEdge = isStillThere;
    doze.stop();
    apply();
    watch();
}
function draggedOn() {
    const now = Date.now(), {x, y} = workspace.cursorPos;
    while (drag.length > 1 && drag[1][0] <= now - frame) drag.shift();
    if (isOutside()) {
        tell("crossed", drag[0][1], drag[0][2], x, y);
    } else if (touches()) {
        drag.push([now, x, y]);
        doze.start();
        return;
    } else {
        tell("inside");
    }
    endDrag(false);
}

// A place beside the held output is told at once, and each of them.
function moved() {
    if (drag) return draggedOn();
    if (goal && Math.abs(workspace.cursorPos.x - goal.x) < 2
        && Math.abs(workspace.cursorPos.y - goal.y) < 2) reached();
    else if (held) apply();
    if (isOutside() && !goal) tellPlace(workspace.cursorPos.x, workspace.cursorPos.y);
    watch();
}

// Only while each motion matters is each one heard of.
let isWatching = false;
function watch() {
    const isNeeded = goal !== null || drag !== null || isOutside();
    if (isNeeded !== isWatching) {
        isWatching = isNeeded;
        if (isNeeded)
            workspace.cursorPosChanged.connect(moved);
        else
            workspace.cursorPosChanged.disconnect(moved);
    }
    pacePlaces(isOutside() ? 0 : pause);
    paceEdge(held && crossing > 0 && !isNeeded ? glance : 0);
}

// The cursor has been put where it was to go, or there is no telling when.
function reached() {
    goal = null;
    apply();
    watch();
}
const patience = timer(100, false, reached);

let stop = () => {};

// The program has changed KWin's effect that hides the cursor: how to have the user's again.
let undoing = "";
function takeEffectBack() {
    if (undoing !== "")
        callDBus("org.kde.KWin", "/Effects", "org.kde.kwin.Effects", undoing, "hidecursor");
    undoing = "";
}

const commands = {
    // The frame of an output, or nothing to let the cursor go.
    hold(frame) {
        held = frame ? {x: frame[0], y: frame[1], width: frame[2], height: frame[3]} : null;
        drag = dozedAt = null;
        isAtEdge = false;
        apply();
        watch();
    },
    // The program moves the cursor there when it hears that this is done. No barrier stands meanwhile,
    // unless it lies around both.
    pass(x, y) {
        goal = {x: x, y: y};
        drag = null;
        if (held && !isOutside() && contains(held, goal)) goal = null;
        apply();
        watch();
        if (goal) patience.start();
    },
    // So many pixels in a frame, pushed in a drag against an edge that leads to another output, let the
    // cursor go there; none do with zero.
    crossing(pixels) {
        crossing = pixels;
        if (drag) endDrag(true);
        watch();
    },
    // The cursor is dragging, or is not.
    drag(isOn) {
        if (isOn && crossing > 0 && touches()) {
            drag = [[Date.now(), workspace.cursorPos.x, workspace.cursorPos.y]];
            doze.start();
            apply();
            watch();
        } else if (drag) {
            endDrag(true);
        }
    },
    places(milliseconds) {
        pause = milliseconds;
        watch();
    },
    // A key combination in Qt's words, under a name that KWin keeps in the user's settings. There is no
    // giving back but unloading the script.
    key(name, sequence) {
        registerShortcut(name, name, sequence, () => tell("key", sequence));
    },
    // The neighbouring virtual desktop, as the user's pager shows them.
    desktop(side) {
        if (side === "left")
            workspace.slotSwitchDesktopLeft();
        else
            workspace.slotSwitchDesktopRight();
    },
    // The method of KWin's effects that undoes what the program is about to do to that one; without a
    // name it is undone.
    effect(method) {
        if (method === "") takeEffectBack();
        undoing = method;
    },
    end() {
        takeEffectBack();
        held = goal = drag = null;
        pause = crossing = 0;
        options.edgeBarrierChanged.disconnect(overwritten);
        options.cornerBarrierChanged.disconnect(overwritten);
        apply();
        watch();
        stop();
        callDBus("org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting", "unloadScript", script);
    },
};

// A question that was asked anew is answered too, without commands.
function poll() {
    const question = ++asked;
    waited = 0;
    callDBus(program, path, face, "Poll", script, String(done), text => {
        const list = JSON.parse(text);
        let isLast = false;
        for (const [number, name, ...rest] of list) {
            commands[name](...rest);
            done = number;
            isLast = isLast || name === "end";
        }
        if (!isLast && (list.length > 0 || question === asked)) poll();
    });
}

// A call that fails has no answer here, so the bus is asked who is there. It gives a question 25 seconds
// for an answer, and so each is asked anew before; the program is woken by nothing else while it rests.
const rate = 250, longestWait = 20000;
const tick = timer(rate, true, () => {
    callDBus(bus, "/", bus, "NameHasOwner", program, isThere => {
        if (!isThere) commands.end();
    });
    if (++waited * rate >= longestWait) poll();
    returns = 0;
    if (held && !goal && !drag && (ours.edge === closed) === isOutside()) moved();
    overwritten();
});

options.edgeBarrierChanged.connect(overwritten);
options.cornerBarrierChanged.connect(overwritten);
stop = () => tick.stop();
tick.start();
poll();
