#pragma once

#include "platform/Geometry.h"

#include <optional>
#include <vector>

namespace platform::session {

/// Adds up what a barrier cuts off the hand's motion, to what it was within one frame of a display.
/// A mouse at 125 Hz reports twice or three times in a frame and one at 8000 Hz a hundred times; a
/// report stands for the span since the one before it, and counts by the share of that span that
/// lies in the frame, so that the sum tells the speed of the hand and nothing of the mouse. Of a
/// device that reports less than once in a frame the last two reports are averaged: it counts whole
/// pixels, and one of a few may be wrong by a third.
class PushMeter {
  public:
    static constexpr double frame = 1.0 / 60; ///< seconds; summed up are the last 16 ms of it

    PushMeter();

    /// The hand's device reported a motion, `span` seconds after the one before it.
    void reported(double span);

    struct Piece {
        double time = 0; ///< seconds, of the clock of the events
        double span = 0; ///< seconds up to `time` in which it happened; 0 for an instant
        Point from;      ///< where the cursor was held
        Point cutOff;    ///< pixels; (0, 0) for a motion that no barrier stopped
        Point lead{};    ///< pixels on the way to the barrier, from where the cursor was put back
    };
    void add(const Piece& piece);

    struct Sum {
        Point from;
        Point cutOff;
        Point lead;
    };
    /// The frame up to the last piece, but nothing that an earlier call was about; nothing without
    /// a piece that a barrier stopped. The pieces are forgotten, but a slow device's last one.
    std::optional<Sum> take();
    /// The same in the middle of a frame, and nothing is forgotten: who pushes hard enough by then
    /// does so in the whole frame. Nothing of a slow device.
    std::optional<Sum> soFar() const;
    void clear();

  private:
    bool isSlow() const;
    std::optional<Sum> ofLastFrame() const;
    std::optional<Sum> ofLastTwo() const;

    std::vector<Piece> pieces;
    std::optional<Piece> earlier; ///< the last one that was taken
    double usualSpan = 0;         ///< between the reports of a hand that moves
    int reports = 0;              ///< that it is the mean of, about
};

} // namespace platform::session
