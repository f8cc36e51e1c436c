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
let answered = Date.now(); // when the program was heard last
let pause = 0; // milliseconds between two places that are told; 0 for none
let told = 0; // when the last place was told
let isWatching = false; // each motion of the cursor

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

// The barrier is one between all outputs. Beside the held one the others' edges stay as they are.
function apply() {
    if (goal)
        put(0, false);
    else if (held && !isOutside())
        put(closed, false);
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

function tellPlace() {
    told = Date.now();
    tell("place", workspace.cursorPos.x, workspace.cursorPos.y);
}
const late = timer(1, false, tellPlace);

// A place beside the held output is told at once, others at their pace, the last one included.
function moved() {
    if (goal && Math.abs(workspace.cursorPos.x - goal.x) < 2
        && Math.abs(workspace.cursorPos.y - goal.y) < 2) reached();
    else if (held) apply();
    if (isOutside() && !goal) {
        late.stop();
        tellPlace();
    } else if (pause > 0 && !late.active) {
        late.interval = Math.max(0, told + pause - Date.now());
        if (late.interval === 0)
            tellPlace();
        else
            late.start();
    }
    watch();
}

// Each motion costs KWin something, so that it is asked for only while it matters.
function watch() {
    const isNeeded = pause > 0 || goal !== null || isOutside();
    if (isNeeded === isWatching) return;
    isWatching = isNeeded;
    if (isNeeded)
        workspace.cursorPosChanged.connect(moved);
    else
        workspace.cursorPosChanged.disconnect(moved);
}

// The cursor has been put where it was to go, or there is no telling when.
function reached() {
    goal = null;
    apply();
    watch();
}
const patience = timer(100, false, reached);

let stop = () => {};

const commands = {
    // The frame of an output, or nothing to let the cursor go.
    hold(frame) {
        held = frame ? {x: frame[0], y: frame[1], width: frame[2], height: frame[3]} : null;
        apply();
        watch();
    },
    // The program moves the cursor there when it hears that this is done. No barrier stands meanwhile,
    // unless it lies around both.
    pass(x, y) {
        goal = {x: x, y: y};
        if (held && !isOutside() && contains(held, goal)) goal = null;
        apply();
        watch();
        if (goal) patience.start();
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
    end() {
        held = goal = null;
        pause = 0;
        options.edgeBarrierChanged.disconnect(overwritten);
        options.cornerBarrierChanged.disconnect(overwritten);
        apply();
        watch();
        stop();
        callDBus("org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting", "unloadScript", script);
    },
};

function poll() {
    callDBus(program, path, face, "Poll", script, String(done), text => {
        answered = Date.now();
        const list = JSON.parse(text);
        let isLast = false;
        for (const [number, name, ...rest] of list) {
            commands[name](...rest);
            done = number;
            isLast = isLast || name === "end";
        }
        if (!isLast) poll();
    });
}

// A call that fails has no answer here, so the bus is asked who is there; and an answer that was lost,
// as after the computer has slept, is asked for again.
const longestAnswer = 20000;
const tick = timer(250, true, () => {
    callDBus(bus, "/", bus, "NameHasOwner", program, isThere => {
        if (!isThere) commands.end();
    });
    if (Date.now() - answered > longestAnswer) {
        answered = Date.now();
        poll();
    }
    returns = 0;
    if (held && !goal && (ours.edge === closed) === isOutside()) moved();
    overwritten();
});

options.edgeBarrierChanged.connect(overwritten);
options.cornerBarrierChanged.connect(overwritten);
stop = () => tick.stop();
tick.start();
poll();
