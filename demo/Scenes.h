#pragma once

#include "Stage.h"

namespace demo {

/// Each tries one thing with the program and tells what was seen. They are played in this order:
/// each begins where the one before ended.
void startsAndDarkens(Stage& stage);
void holdsTheCursor(Stage& stage);
void catchesClicks(Stage& stage);
void letsGoWhileTheKeysAreHeld(Stage& stage);
void letsAPushThrough(Stage& stage);
void leavesNothingBehind(Stage& stage);

} // namespace demo
