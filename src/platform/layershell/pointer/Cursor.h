#pragma once

#include "platform/session/CountedCursor.h"

namespace platform::layershell {

/// Only the client that the pointer is over can hide it: here nothing is hidden.
class Cursor final : public session::CountedCursor {
  private:
    void setHidden(bool) override {}
};

} // namespace platform::layershell
