#pragma once

#include "platform/x11/connection/Connection.h"
#include "platform/x11/input/Pace.h"

namespace platform::x11 {

/// Reads a connection that a fast mouse fills. At rest the first event wakes the program and is
/// read at once. From then on the socket is left alone and what has come is read at the pace of a
/// display, so that a mouse costs one wake-up a frame whatever it sends; and after a few frames
/// without an event the pace ends.
class PacedReader {
  public:
    /// `isWaiting` tells whether an answer of the server is needed to go on; it is waited for, but
    /// not for long. A frame begins before what has come is handled, and ends afterwards.
    struct Frame {
        std::function<void()> begin, end;
    };
    PacedReader(Connection& connection, Descriptors& descriptors, std::function<bool()> isWaiting,
                Frame frame);
    ~PacedReader();
    PacedReader(const PacedReader&) = delete;
    PacedReader& operator=(const PacedReader&) = delete;

    /// To be called for each event that the pace is for, when it is read.
    void arrived();

  private:
    void tick();
    void read();
    void rest();

    Connection& connection;
    std::function<bool()> isWaiting;
    Frame frame;
    Pace pace;
    bool anyArrived = false;
    int emptyFrames = 0;
};

} // namespace platform::x11
