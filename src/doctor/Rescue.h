#pragma once

#include "doctor/Report.h"
#include "platform/Log.h"
#include "platform/linux/files/ProductBundle.h"

namespace doctor {

/// Mends what a dead or stuck program has left: ends one that does not answer, puts the colours of
/// the monitors and what was changed in the compositor back, has autostart entries start what is
/// there. Needs neither a bus nor, but for the colours, an X server, and takes a few seconds at
/// most. What it did is in the findings; none where there was nothing to do.
Report rescue(const platform::linux::ProductBundle& bundle, platform::Log& log);

} // namespace doctor
