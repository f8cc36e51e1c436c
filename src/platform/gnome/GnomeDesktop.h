#pragma once

#include "platform/wayland/Desktop.h"

namespace platform::gnome {

/// The GNOME Shell that the environment names; neither a desktop nor an error where there is none.
/// It is one also without the extension that does what the shell lets no client do: then nothing is
/// held, which the capabilities say. What is lent must outlive the desktop; `lost` is called once,
/// from the run loop.
wayland::OpenedDesktop openDesktop(Descriptors& descriptors, Log& log, std::function<void()> lost);

} // namespace platform::gnome
