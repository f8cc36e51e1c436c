#pragma once

#include "platform/PopupLayer.h"
#include "platform/wayland/connection/Connection.h"
#include "platform/wayland/connection/Outputs.h"

#include <map>
#include <memory>
#include <vector>

namespace platform::wayland {

class PopupInput;

/// On each output a layer that nobody sees, for the pointer and the keys, and the popups as its
/// subsurfaces. They are above full-screen windows, panels and what is dark.
class PopupLayer final : public platform::PopupLayer {
  public:
    /// Calls an operation from the run loop, also while a modal alert runs.
    using Later = std::function<void(std::function<void()>)>;

    /// What is lent must outlive the object. `lasting` is told when it opens and when it closes.
    PopupLayer(Connection& connection, Outputs& outputs, Later later,
               std::function<void(bool isOpen)> lasting);
    ~PopupLayer() override;

    std::optional<Point> open(Listener listener) override;
    Rect roomAt(Point place) override;
    void show(int popup, const Picture& picture) override;
    void hide(int popup) override;
    void close() override;

  private:
    class Net;
    class Popup;
    class Room;

    Net* netAt(Point place) const;

    Connection& connection;
    Outputs& outputs;
    Later later;
    std::function<void(bool)> lasting;
    std::vector<std::unique_ptr<Net>> nets;
    std::map<int, std::unique_ptr<Popup>> popups;
    std::unique_ptr<PopupInput> input; ///< while it is open
};

} // namespace platform::wayland
