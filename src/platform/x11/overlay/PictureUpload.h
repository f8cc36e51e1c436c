#pragma once

#include "platform/Picture.h"
#include "platform/x11/connection/Connection.h"

namespace platform::x11 {

/// A pixmap of the server.
class Pixmap {
  public:
    Pixmap(Connection& connection, std::uint8_t depth, std::uint16_t width, std::uint16_t height);
    ~Pixmap();
    Pixmap(Pixmap&& other) noexcept;

    xcb_pixmap_t id() const { return pixmap; }

  private:
    xcb_connection_t* c;
    xcb_pixmap_t pixmap;
};

/// Whether pictures can be sent for windows of this depth (24 or 32): the server takes 32 bits a
/// pixel in this machine's byte order, and a row of this width in one request.
bool takesPictures(const Connection& connection, std::uint8_t depth, std::uint16_t width);

/// Sends a picture that the server takes with its alpha channel, for a visual of depth 32.
Pixmap uploadTranslucent(Connection& connection, Picture& picture, std::uint16_t width,
                         std::uint16_t height);

/// What a picture is without translucency: its colours at full strength, and the points (depth 1)
/// that are at least half opaque.
struct ShapedPixels {
    Pixmap colours;
    Pixmap shape;
};
ShapedPixels uploadShaped(Connection& connection, Picture& picture, std::uint16_t width,
                          std::uint16_t height);

} // namespace platform::x11
