// Runs inside KWin and prints what kwin_bench wants to know: each time that the cursor changes monitors,
// how far it was on the one that it has left, and each change of what the program is to keep. In front of
// this text stands "edge", the first column of the right monitor.

let side = workspace.cursorPos.x >= edge ? 1 : 0;
let depth = 0;

workspace.cursorPosChanged.connect(() => {
    const beyond = workspace.cursorPos.x - edge;
    if ((beyond >= 0) === (side === 1)) {
        depth = Math.max(depth, beyond + 1);
        return;
    }
    print(`meter side ${beyond >= 0 ? 1 : 0} ${Date.now()} ${depth}`);
    side = beyond >= 0 ? 1 : 0;
    depth = beyond + 1;
});

function tellState(what) {
    const isUsers = options.edgeBarrier <= 1000 ? 1 : 0;
    print(`meter state ${what} ${Date.now()} ${isUsers} ${workspace.stackingOrder.length}`);
}
options.edgeBarrierChanged.connect(() => tellState("barrier"));
options.cornerBarrierChanged.connect(() => tellState("barrier"));
workspace.windowAdded.connect(() => tellState("windows"));
workspace.windowRemoved.connect(() => tellState("windows"));
workspace.screensChanged.connect(() => tellState("outputs"));
workspace.virtualScreenGeometryChanged.connect(() => tellState("outputs"));
tellState("begin");
