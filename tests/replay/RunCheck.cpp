#include "replay/RunCheck.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace palisor {

namespace {

using platform::Point;
using platform::Rect;

/// The member's text in a record; empty where there is none. No text with a comma is asked for.
std::string member(const std::string& line, std::string_view name) {
    const auto key = '"' + std::string(name) + "\":";
    const auto found = line.find(key);
    if (found == std::string::npos) return {};
    const auto start = found + key.size();
    const auto end =
        line[start] == '[' ? line.find(']', start) + 1 : line.find_first_of(",}", start);
    return line.substr(start, end - start);
}

Point point(const std::string& line, std::string_view name) {
    Point read;
    std::sscanf(member(line, name).c_str(), "[%lf,%lf]", &read.x, &read.y);
    return read;
}

Rect rect(const std::string& line, std::string_view name) {
    Rect read;
    std::sscanf(member(line, name).c_str(), "[%lf,%lf,%lf,%lf]", &read.x, &read.y, &read.width,
                &read.height);
    return read;
}

std::string kindOf(const std::string& effectLine) {
    const auto text = member(effectLine, "effect");
    return text.size() < 2 ? "" : text.substr(1, text.size() - 2);
}

/// Whether a timer of these products is scheduled like this.
bool isKnownTimer(unsigned product, const std::string& selector, double interval, bool repeats) {
    struct Known {
        const char* selector;
        double interval;
        bool repeats;
        std::set<unsigned> only{}; ///< the products that have it; every product where there is none
    };
    static const Known table[] = {
        {"firstTime", 0.2, false},
        {"updateScreensSize", 3, true, {0, 1, 2, 3, 5, 8}},
        {"updateScreensSize", 0.1, true, {7}},
        {"hidecursor2", 0.01, true, {7}},
        {"hidecursor2", 0.005, true, {1, 7}},
        {"hidecursor", 0.2, false, {1}},
        {"hidecursor", 0.1, false, {1}},
        {"hidecursor", 0.4, false, {7}},
        {"dismissFocus", 0.5, false},
        {"enableMainMenu", 0.3, false},
        {"openMenu", 0.01, false, {1, 2, 5, 8}},
        {"otherMonitorsLight", 0.5, false, {1}},
        {"updateMenuItems", 0.1, false},
    };
    const bool afterWholeSeconds = selector == "hidecursor" && (product == 1 || product == 7) &&
                                   interval >= 1 && interval <= 30 &&
                                   interval == std::floor(interval) && !repeats;
    return afterWholeSeconds || std::ranges::any_of(table, [&](const Known& known) {
               return known.selector == selector && known.interval == interval &&
                      known.repeats == repeats &&
                      (known.only.empty() || known.only.contains(product));
           });
}

} // namespace

std::string RunCheck::read(const std::string& line) {
    std::string wrong;
    if (line.starts_with(R"({"show":"fields")"))
        wrong = fields(line);
    else if (line.starts_with(R"({"show":"timers")"))
        wrong = timers(line);
    else if (!line.starts_with(R"({"show")"))
        wrong = effect(line);
    previous = line;
    return wrong;
}

int RunCheck::count(std::string_view effect) const {
    return static_cast<int>(
        std::ranges::count_if(since, [&](const auto& line) { return kindOf(line) == effect; }));
}

std::string RunCheck::effect(const std::string& line) {
    const std::string kind = kindOf(line);
    since.push_back(line);
    if (!unsaved.empty() && kind != "synchronize") return unsaved + " is not synchronised at once";
    unsaved.clear();
    if (ends && kind != "synchronize" && kind != "alert" && kind != "terminate" && kind != "exit")
        return "it does not end after the warning";
    if (kind == "window" && member(line, "kind") == "\"dark\"") dark.insert(member(line, "id"));
    if (kind == "windowOut") dark.erase(member(line, "id"));
    hidden += (kind == "hideCursor") - (kind == "showCursor");
    assertions += (kind == "assertionCreate") - (kind == "assertionRelease");
    if (hidden < 0 || (hidden > 1 && product != 7)) return "the cursor is hidden or shown twice";
    if (kind == "showCursor" && product == 7) return "the cross-hair shows the cursor";
    if (assertions < 0 || assertions > (product == 3 ? 1 : 0)) return "one assertion too many";
    if (kind == "timer") return timer(line);
    if (kind == "write") return write(line);
    if (kind == "warp") return warped(line);
    if (kindOf(previous) == "warp" &&
        line.find(R"("suppressionInterval","seconds":0.25)") == line.npos)
        return "a warp leaves another interval of suppression";
    return {};
}

std::string RunCheck::timer(const std::string& line) const {
    const std::string selector = member(line, "selector");
    const bool known =
        isKnownTimer(product, selector.substr(1, selector.size() - 2),
                     std::stod(member(line, "interval")), member(line, "repeats") == "true");
    return known ? "" : "there is no such timer";
}

/// The record holds the timers one behind another, each as the effect tells of one.
std::string RunCheck::timers(const std::string& line) const {
    std::map<std::string, int> running;
    for (auto at = line.find("{\"selector\""); at != line.npos;
         at = line.find("{\"selector\"", at + 1)) {
        const std::string one = line.substr(at, line.find('}', at) + 1 - at);
        if (auto wrong = timer(one); !wrong.empty()) return wrong;
        ++running[member(one, "selector")];
    }
    if (running["\"updateScreensSize\""] != 1) return "the screens are not refreshed by one timer";
    if (running["\"hidecursor2\""] > 1) return "two timers hide the cursor again";
    if (running["\"hidecursor\""] > 2) return "more than two hides are pending";
    return {};
}

std::string RunCheck::write(const std::string& line) {
    const std::string key = member(line, "key");
    // The recorder's own, which saves in its own time.
    if (key != "\"customShortcut\"") unsaved = key;
    if (key != "\"ATTIVO\"") return {};
    const bool value = member(line, "value") == "true";
    ends = value == on && !value && product == 8;
    if (value == on && !ends) return "switched to what it was";
    on = value;
    return {};
}

std::string RunCheck::warped(const std::string& line) {
    const auto interval =
        kindOf(previous) == "suppressionInterval" ? member(previous, "seconds") : "";
    const bool paused = product == 5 && interval == "0.15";
    return interval == "0" || paused ? "" : "a warp without its interval of suppression: " + line;
}

std::string RunCheck::fields(const std::string& line) {
    std::string windows;
    for (const auto& id : dark)
        windows += (windows.empty() ? "" : ",") + id;
    const std::string listed = member(line, "AWindowsDark");
    // Ids of two digits sort as texts in another order.
    if (listed != "null" && listed.size() != windows.size() + 2) return "other windows are dark";
    if (listed == "null" && !dark.empty()) return "windows are dark that nobody knows";
    if (product == 8 && !on && !dark.empty()) return "dark although it is off";
    std::string wrong;
    if (records > 0 && records < events.size() && events[records])
        wrong = pointer(*events[records], lastFields, line);
    ++records;
    lastFields = line;
    since.clear();
    return wrong;
}

std::string RunCheck::pointer(const PointerStep& step, const std::string& before,
                              const std::string& after) {
    const auto was = [&](const char* name) { return point(before, name); };
    const auto is = [&](const char* name) { return point(after, name); };
    const bool unchanged = since.empty() && before == after;
    if (step.type == "keyDown") return unchanged ? "" : "a key press reaches the monitor";
    if (product == 8 && on) return held(step, before, after);
    if (product == 8) {
        ++outcomes["off"];
        return unchanged ? "" : "the barrier does something although it is off";
    }
    // A scroll event may be unwanted.
    if (product == 1 && step.type == "scrollWheel" && unchanged) return {};
    if (is("oldcordmouse") != was("cordmouse") || is("oldoldcordmouse") != was("oldcordmouse"))
        return "the history does not shift";
    const bool acts = count("warp") + count("postKey") > 0;
    if (!on) {
        ++outcomes["off"];
        return since.empty() && is("cordmouse") == was("cordmouse") ? ""
                                                                    : "it acts although it is off";
    }
    if (is("cordmouse") != step.at) return "the cursor's place is not the event's";
    if (!acts) {
        ++outcomes["inside"];
        return {};
    }
    ++outcomes["put back"];
    if (product == 1 || product == 7) return "the cursor is moved by a product that only hides it";
    if (member(before, "inHotArea") == "true") return "an edge fires twice";
    // A monitor may have come up beyond the edge since the screens were last measured.
    const Rect screen = rect(after, "switchedScreenRect");
    const Rect inset{screen.x + 2, screen.y + 2, screen.width - 4, screen.height - 4};
    const bool latched = member(after, "inHotArea") == "true";
    return latched == inset.contains(step.at) ? "the edge has the wrong latch" : "";
}

std::string RunCheck::held(const PointerStep& step, const std::string& before,
                           const std::string& after) {
    const auto was = [&](const char* name) { return point(before, name); };
    const auto is = [&](const char* name) { return point(after, name); };
    const Rect screen = rect(before, "switchedScreenRect");
    if (is("cordmouse") != step.at) return "the cursor's place is not the event's";
    if (screen.contains(step.at)) {
        ++outcomes["inside"];
        if (!since.empty()) return "something happens inside the screen";
        const bool shifted = is("oldcordmouse") == step.at && is("lastCoord") == step.at &&
                             is("oldoldcordmouse") == was("oldcordmouse");
        return shifted ? "" : "the history does not shift inside";
    }
    if (is("oldcordmouse") != was("oldcordmouse") ||
        is("oldoldcordmouse") != was("oldoldcordmouse"))
        return "the history shifts outside";
    const Rect now = rect(after, "switchedScreenRect");
    if (count("warp") == 0) {
        ++outcomes["crossed"];
        const double along = std::abs(step.at.x - was("oldcordmouse").x);
        const double across = std::abs(step.at.y - was("oldcordmouse").y);
        if (along <= 1 || along / 10 <= across) return "crossed by no push";
        if (member(before, "combo") == "true") return "crossed while the combination is held";
        if (step.isOnAScreen && !now.contains(step.at)) return "crossed and is outside";
        return step.isOnAScreen && is("lastCoord") != step.at ? "anchored elsewhere" : "";
    }
    ++outcomes["put back"];
    if (since.size() != 3) return "more is done than putting back";
    const bool right = step.at.x > was("lastCoord").x;
    const Point inside{right ? screen.x + screen.width - 1 : screen.x + 1, step.at.y};
    if (point(since[1], "to") != inside) return "put back elsewhere";
    return now == screen && is("lastCoord") == was("lastCoord") ? ""
                                                                : "anchored anew by putting back";
}

} // namespace palisor
