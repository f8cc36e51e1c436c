#include "platform/qt/info/QtInfoWindows.h"

#include "platform/qt/info/InfoPanel.h"
#include "platform/qt/info/LinkLabel.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>
#include <utility>

namespace platform::qt {

namespace {

/// Makes its widgets when it is first shown: most starts never show it.
class QtInfoWindow final : public InfoWindow {
  public:
    using MakePanel = std::function<std::unique_ptr<InfoPanel>()>;

    using Shown = std::function<void(bool)>;
    using IsKeptAway = std::function<bool()>;

    QtInfoWindow(MakePanel makePanel, Shown tell, IsKeptAway away)
        : make(std::move(makePanel)), shown(std::move(tell)), isKeptAway(std::move(away)) {}
    ~QtInfoWindow() override { setInFront(false); }
    QtInfoWindow(const QtInfoWindow&) = delete;
    QtInfoWindow& operator=(const QtInfoWindow&) = delete;

    bool isVisible() const override { return inFront; }
    Rect frame() const override { return place; }

    void setFrame(Rect frame) override {
        place = frame;
        filled = false;
        if (inFront) update();
    }

    void setTitle(const std::string& newTitle) override {
        title = newTitle;
        if (panel) panel->setWindowTitle(QString::fromStdString(title));
    }

    void setViews(std::vector<InfoView> newViews) override {
        views = std::move(newViews);
        filled = false;
        if (inFront) update();
    }

    // A window that is shown after it was hidden always comes to the user's desktop.
    void setCollectionBehaviour(std::uint32_t) override {}

    void makeKeyAndOrderFront() override {
        if (isKeptAway()) return;
        setInFront(true);
        update();
    }

    void orderOut() override {
        if (panel) panel->hide();
        setInFront(false);
    }

  private:
    void setInFront(bool now) {
        if (std::exchange(inFront, now) != now) shown(now);
    }

    /// What the window shows once that it has a size.
    void update() {
        if (place.width <= 0 || place.height <= 0) return;
        if (!panel) panel = make();
        if (!std::exchange(filled, true)) {
            panel->setWindowTitle(QString::fromStdString(title));
            panel->setViews(views, static_cast<int>(std::lround(place.width)));
        }
        panel->showAt(fromMiddle());
    }

    /// The frame was laid out around the middle of the first screen, by distances in points.
    QPointF fromMiddle() const {
        const QScreen* first = QGuiApplication::primaryScreen();
        if (first == nullptr) return {};
        const QSizeF pixels = QSizeF(first->size()) * first->devicePixelRatio();
        return {place.x + place.width / 2 - pixels.width() / 2,
                pixels.height() / 2 - place.y - place.height / 2};
    }

    MakePanel make;
    Shown shown;
    IsKeptAway isKeptAway;
    std::unique_ptr<InfoPanel> panel;
    std::string title;
    std::vector<InfoView> views;
    Rect place;
    bool inFront = false;
    bool filled = false; ///< the panel holds the views; from then on its boxes have the states
};

} // namespace

std::unique_ptr<InfoWindow> QtInfoWindows::create(InfoTarget& target) {
    const auto follow = [this, &target](const InfoText& view, const std::string& link) {
        if (!view.asksTarget || !target.clickedOnLink(view, link)) openURL(link);
    };
    return std::make_unique<QtInfoWindow>(
        [this, &target, follow] {
            return std::make_unique<InfoPanel>(
                pictures, pictures.windowIcon(iconName),
                InfoPanel::Heard{
                    .pressed = [&target](const InfoButton& button) { target.pressed(button); },
                    .clicked = [&target](CheckBox& box) { target.clicked(box); },
                    .link = follow,
                    .leadsSomewhere =
                        [this](const std::string& link) { return !isDead || !isDead(link); }});
        },
        [this](bool isShown) {
            shownCount += isShown ? 1 : -1;
            if (!isShown && hidden) hidden();
        },
        [this] { return std::exchange(firstStaysAway, false); });
}

double QtInfoWindows::textHeight(const std::string& text, double width, double fontSize) const {
    return std::ceil(
        LinkLabel::heightOf(QString::fromStdString(text), InfoPanel::fontOfSize(fontSize), width));
}

Size QtInfoWindows::imageSize(const std::string& name) const {
    const QSizeF size = pictures.naturalSize(name);
    return {size.width(), size.height()};
}

} // namespace platform::qt
