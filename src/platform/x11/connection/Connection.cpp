#include "platform/x11/connection/Connection.h"

#include "platform/x11/connection/Needed.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <xcb/randr.h>
#include <xcb/shape.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>

// How events and replies are ordered.
//
// The server answers in the order in which it works: an event that stands before a reply in the
// stream happened before that request was carried out, and carries a sequence number lower than the
// request's. XCB sorts the stream into a queue of events and a table of replies, so the order is
// recovered by comparing sequence numbers.
//
// XCB reads the socket not only in xcb_poll_for_event but whenever it waits for a reply and
// whenever it writes. What was read then lies in memory, and the socket is not readable any more.
// So after each wait and each flush, if an event or an awaited reply may lie there, a request of no
// effect is sent, whose own reply makes the socket readable again. Nothing is ever handled from
// inside a wait or a flush: handlers run from `drain` only. A connection that is not watched is
// drained by its reader's own clock and needs no such request.
//
// A handler may run a modal loop, which drains again; so an event is out of the queue before it is
// handled, and nothing here is kept across a handler's call.

namespace platform::x11 {

namespace {

constexpr std::string_view advice = "log in to an X11 session";

std::string cannotOpen(const std::string& displayName) {
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    if (displayName.empty() && wayland && *wayland)
        return "this is a Wayland session without an X11 display; " + std::string(advice);
    if (displayName.empty()) return "no X11 display; start it in an X11 session, or set DISPLAY";
    return "cannot open display '" + displayName + "'; start it in an X11 session, or set DISPLAY";
}

std::string missing(std::string_view extension) {
    return "the X server lacks the extension " + std::string(extension);
}

} // namespace

std::string plainDisplayName(std::string name) {
    const auto screen = name.find('.', std::min(name.find_last_of(':'), name.size()));
    if (screen != std::string::npos) name.erase(screen);
    if (name.starts_with("unix:")) name.erase(0, name.find(':'));
    return name;
}

Connection::Opened Connection::open(const std::string& displayName, Descriptors& descriptors,
                                    Log& log, std::function<void()> lost) {
    const char* environment = std::getenv("DISPLAY");
    std::string name = !displayName.empty() ? displayName : environment ? environment : "";
    if (name.empty()) return {nullptr, cannotOpen(name)};

    int number = 0;
    Handle handle(xcb_connect(name.c_str(), &number));
    if (xcb_connection_has_error(handle.get())) return {nullptr, cannotOpen(name)};

    std::unique_ptr<Connection> made(
        new Connection(std::move(handle), name, number, descriptors, log, std::move(lost)));
    std::string error = made->setUp();
    if (!error.empty()) return {nullptr, error};
    return {std::move(made), {}};
}

Connection::Connection(Handle handle, std::string displayName, int screenNumber,
                       Descriptors& watcher, Log& writer, std::function<void()> lostHandler)
    : connection(std::move(handle)),
      name(std::move(displayName)),
      number(screenNumber),
      descriptors(watcher),
      log(writer),
      lost(std::move(lostHandler)) {
    constexpr std::size_t plenty = 32; // so that handling an event allocates nothing
    heldEvents.reserve(plenty);
    awaited.reserve(plenty);
}

Connection::~Connection() {
    if (!screen || gone) return;
    watch(false);
    // Disconnecting drops what the server has not read yet.
    sync();
}

std::string Connection::setUp() {
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (int i = 0; i < number && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    screen = screens.data;

    if (std::string error = negotiateExtensions(); !error.empty()) return error;
    if (std::string error = refuseXwayland(); !error.empty()) return error;
    internAtoms();
    findMasterPointer();
    watch(true);
    return {};
}

std::string Connection::negotiateExtensions() {
    xcb_connection_t* c = connection.get();
    for (xcb_extension_t* extension : {&xcb_randr_id, &xcb_xfixes_id, &xcb_input_id, &xcb_shape_id})
        xcb_prefetch_extension_data(c, extension);

    auto present = [&](xcb_extension_t& extension) {
        const xcb_query_extension_reply_t* data = xcb_get_extension_data(c, &extension);
        return data && data->present ? data : nullptr;
    };
    const auto* randr = present(xcb_randr_id);
    const auto* xfixes = present(xcb_xfixes_id);
    const auto* xinput = present(xcb_input_id);
    if (!randr) return missing("RANDR");
    if (!xfixes) return missing("XFIXES");
    if (!xinput) return missing("XInputExtension");
    if (!present(xcb_shape_id)) return missing("SHAPE");

    const auto randrAsked = xcb_randr_query_version(c, needed::randr.major, needed::randr.minor);
    const auto xfixesAsked =
        xcb_xfixes_query_version(c, needed::xfixes.major, needed::xfixes.minor);
    const auto xinputAsked =
        xcb_input_xi_query_version(c, needed::barrierHits.major, needed::barrierHits.minor);
    const auto randrHas = wait(randrAsked, xcb_randr_query_version_reply);
    const auto xfixesHas = wait(xfixesAsked, xcb_xfixes_query_version_reply);
    const auto xinputHas = wait(xinputAsked, xcb_input_xi_query_version_reply);
    const auto atLeast = [](const auto& has, const ExtensionVersion& lowest) {
        return has && ExtensionVersion{has->major_version, has->minor_version} >= lowest;
    };
    if (!atLeast(randrHas, needed::randr)) return missing("RANDR " + needed::randr.text());
    if (!atLeast(xfixesHas, needed::xfixes)) return missing("XFIXES " + needed::xfixes.text());
    if (!atLeast(xinputHas, needed::xinput))
        return missing("XInputExtension " + needed::xinput.text());

    randrFirstEvent = randr->first_event;
    xfixesFirstEvent = xfixes->first_event;
    xinputMajorOpcode = xinput->major_opcode;
    barrierHits = atLeast(xinputHas, needed::barrierHits);
    return {};
}

// Xwayland has X clients only to show to; it neither sees the pointer outside them nor moves it.
std::string Connection::refuseXwayland() {
    xcb_connection_t* c = connection.get();
    const std::string refusal = "this is Xwayland, where the pointer belongs to the Wayland "
                                "compositor; " +
                                std::string(advice);
    const auto extension = xcb_query_extension(c, 8, "XWAYLAND");
    const auto resources = xcb_randr_get_screen_resources_current(c, root());
    const auto found = wait(extension, xcb_query_extension_reply);
    const auto list = wait(resources, xcb_randr_get_screen_resources_current_reply);
    if (found && found->present) return refusal;
    if (!list) return missing("RANDR 1.3 resources");

    const xcb_randr_output_t* outputs = xcb_randr_get_screen_resources_current_outputs(list.get());
    std::vector<xcb_randr_get_output_info_cookie_t> asked;
    for (int i = 0; i < list->num_outputs; ++i)
        asked.push_back(xcb_randr_get_output_info(c, outputs[i], list->config_timestamp));
    bool isXwayland = false;
    for (const auto& cookie : asked) {
        const auto info = wait(cookie, xcb_randr_get_output_info_reply);
        if (!info) continue;
        const std::string_view output(
            reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get())),
            static_cast<std::size_t>(xcb_randr_get_output_info_name_length(info.get())));
        isXwayland |= output.starts_with("XWAYLAND");
    }
    return isXwayland ? refusal : std::string();
}

void Connection::internAtoms() {
    std::array<xcb_intern_atom_cookie_t, atomTexts.size()> asked{};
    for (std::size_t i = 0; i < atomTexts.size(); ++i)
        asked[i] =
            xcb_intern_atom(connection.get(), 0,
                            static_cast<std::uint16_t>(std::strlen(atomTexts[i])), atomTexts[i]);
    for (std::size_t i = 0; i < atomTexts.size(); ++i)
        if (const auto reply = wait(asked[i], xcb_intern_atom_reply)) atoms[i] = reply->atom;
}

void Connection::findMasterPointer() {
    xcb_connection_t* c = connection.get();
    xcb_discard_reply(c, xcb_query_pointer(c, root()).sequence);
    const auto found =
        wait(xcb_input_xi_get_client_pointer(c, XCB_NONE), xcb_input_xi_get_client_pointer_reply);
    if (found && found->set) pointerDevice = found->deviceid;
}

xcb_atom_t Connection::intern(std::string_view text) {
    const auto reply = wait(
        xcb_intern_atom(connection.get(), 0, static_cast<std::uint16_t>(text.size()), text.data()),
        xcb_intern_atom_reply);
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

void Connection::selectOnRoot(std::uint32_t eventMask, bool on) {
    rootMask = on ? rootMask | eventMask : rootMask & ~eventMask;
    xcb_change_window_attributes(connection.get(), root(), XCB_CW_EVENT_MASK, &rootMask);
}

void Connection::listen(Listener& listener, std::initializer_list<std::uint8_t> types) {
    for (std::uint8_t type : types)
        listeners[type].push_back(&listener);
    if (std::find(everyone.begin(), everyone.end(), &listener) == everyone.end())
        everyone.push_back(&listener);
}

void Connection::forget(Listener& listener) {
    for (auto& list : listeners)
        std::erase(list, &listener);
    std::erase(everyone, &listener);
    for (const Awaited& one : awaited)
        if (one.listener == &listener) xcb_discard_reply(connection.get(), one.sequence);
    std::erase_if(awaited, [&](const Awaited& one) { return one.listener == &listener; });
}

void Connection::awaitReply(unsigned sequence, Listener& listener) {
    awaited.push_back({sequence, &listener});
}

void Connection::flush() {
    xcb_flush(connection.get());
    wakeIfNeeded();
}

void Connection::sync() {
    wait(xcb_get_input_focus(connection.get()), xcb_get_input_focus_reply);
}

// Events that come meanwhile stay in XCB's queue.
void* Connection::waitInTime(unsigned sequence) {
    if (late) return nullptr;
    xcb_flush(connection.get());
    for (;;) {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(connection.get(), sequence, &reply, &error) != 0) {
            const Reply<xcb_generic_error_t> owned(error);
            wakeIfNeeded();
            return reply;
        }
        if (!waitForArrival(*patience)) break;
    }
    late = true;
    xcb_discard_reply(connection.get(), sequence);
    return nullptr;
}

void Connection::readBy(std::function<void()> readable) {
    reader = std::move(readable);
}

void Connection::watch(bool on) {
    if (watching == on || gone) return;
    watching = on;
    const int descriptor = xcb_get_file_descriptor(connection.get());
    if (!on) {
        descriptors.unwatch(descriptor);
        return;
    }
    descriptors.watchReadable(descriptor, [this] {
        if (reader)
            reader();
        else
            drain();
    });
    wakeIfNeeded();
}

bool Connection::waitForArrival(std::chrono::steady_clock::time_point deadline) {
    using namespace std::chrono;
    const nanoseconds left = deadline - steady_clock::now();
    if (gone || left <= nanoseconds::zero()) return false;
    pollfd arrival{xcb_get_file_descriptor(connection.get()), POLLIN, 0};
    const auto whole = floor<seconds>(left);
    const timespec limit{whole.count(), static_cast<long>((left - whole).count())};
    return ppoll(&arrival, 1, &limit, nullptr) == 1;
}

void Connection::wakeIfNeeded() {
    if (!watching) return;
    if (auto event = Reply<xcb_generic_event_t>(xcb_poll_for_queued_event(connection.get())))
        heldEvents.push_back(std::move(event));
    if (heldEvents.empty() && awaited.empty()) return;
    const auto cookie = xcb_get_input_focus(connection.get());
    xcb_discard_reply(connection.get(), cookie.sequence);
    xcb_flush(connection.get());
}

Reply<xcb_generic_event_t> Connection::nextEvent() {
    if (!heldEvents.empty()) {
        auto event = std::move(heldEvents.front());
        heldEvents.erase(heldEvents.begin());
        return event;
    }
    return Reply<xcb_generic_event_t>(xcb_poll_for_event(connection.get()));
}

void Connection::drain() {
    bool more = true;
    while (more) {
        while (auto event = nextEvent())
            dispatch(*event);
        more = dispatchReplies();
        for (std::size_t i = 0; i < everyone.size(); ++i)
            everyone[i]->batchEnded();
        xcb_flush(connection.get());
        if (auto event = Reply<xcb_generic_event_t>(xcb_poll_for_queued_event(connection.get()))) {
            heldEvents.push_back(std::move(event));
            more = true;
        }
        more |= dispatchReplies();
    }
    if (!gone && xcb_connection_has_error(connection.get())) endAfterLoss();
}

void Connection::dispatch(const xcb_generic_event_t& event) {
    if (event.response_type == 0) {
        const auto& error = reinterpret_cast<const xcb_generic_error_t&>(event);
        char text[96];
        std::snprintf(text, sizeof text, "X11 error %u of request %u.%u on 0x%x", error.error_code,
                      error.major_code, error.minor_code, error.resource_id);
        log.write(text);
        return;
    }
    const auto& interested = listeners[event.response_type & 0x7f];
    for (std::size_t i = 0; i < interested.size(); ++i)
        interested[i]->handle(event);
}

bool Connection::dispatchReplies() {
    bool any = false;
    for (std::size_t i = 0; i < awaited.size();) {
        void* raw = nullptr;
        xcb_generic_error_t* rawError = nullptr;
        const Awaited one = awaited[i];
        if (!xcb_poll_for_reply(connection.get(), one.sequence, &raw, &rawError)) {
            ++i;
            continue;
        }
        const Reply<void> reply(raw);
        const Reply<xcb_generic_error_t> error(rawError);
        awaited.erase(awaited.begin() + static_cast<std::ptrdiff_t>(i));
        one.listener->handleReply(one.sequence, reply.get());
        any = true;
        i = 0;
    }
    return any;
}

void Connection::endAfterLoss() {
    watch(false);
    gone = true;
    if (lost) lost();
}

} // namespace platform::x11
