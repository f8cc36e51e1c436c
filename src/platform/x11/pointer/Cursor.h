#pragma once

#include "platform/session/CountedCursor.h"
#include "platform/x11/connection/Connection.h"

namespace platform::x11 {

/// The server keeps the request with the connection, so a killed program's cursor comes back.
class Cursor final : public session::CountedCursor {
  public:
    explicit Cursor(Connection& x) : connection(x) {}
    ~Cursor() override;
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

  private:
    void setHidden(bool on) override;

    Connection& connection;
};

} // namespace platform::x11
