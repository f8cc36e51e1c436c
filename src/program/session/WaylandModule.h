#pragma once

#include "platform/wayland/Desktop.h"

/// Joins the Wayland session that the environment names, through the module that knows its
/// compositor: neither a desktop nor an error where none is named, or none that the module knows.
/// Nothing of the session is changed by that. What is lent must outlive the desktop; `lost` is
/// called once from the run loop.
platform::wayland::OpenedDesktop openThroughModule(platform::Descriptors& descriptors,
                                                   platform::Log& log, std::function<void()> lost);
