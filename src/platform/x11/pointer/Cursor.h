#pragma once

#include "platform/Cursor.h"
#include "platform/x11/connection/Connection.h"

namespace platform::x11 {

/// The server keeps the request with the connection, so a killed program's cursor comes back.
class Cursor final : public platform::Cursor {
  public:
    explicit Cursor(Connection& x) : connection(x) {}
    ~Cursor() override;
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

    void hide() override;
    /// Without a hide before it this does nothing.
    void show() override;
    bool isVisible() const override { return hidden == 0; }
    /// While it is on the cursor is drawn, whatever is asked for; then it is again as it was asked.
    void reveal(bool on);
    /// Hiding is never bound to the active application here, so there is nothing to set.
    void setConnectionProperty(std::string_view, bool) override {}

  private:
    void update();

    Connection& connection;
    long hidden = 0;
    bool revealed = false;
    bool isHidden = false; ///< by the server
};

} // namespace platform::x11
