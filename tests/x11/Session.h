#pragma once

#include "TestLoop.h"
#include "platform/x11/input/InputEvents.h"
#include "platform/x11/keys/Keyboard.h"
#include "platform/x11/overlay/Windows.h"
#include "platform/x11/pointer/Cursor.h"
#include "platform/x11/session/Focus.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <stdexcept>
#include <unistd.h>

namespace x11tests {

/// The services as a program has them.
struct Session {
    /// Gamma ramps are kept in `sharedFolder`, or in one of its own.
    explicit Session(const std::string& display, const std::string& gammaGuard,
                     bool serverHolds = true, const std::string& sharedFolder = {})
        : opened(platform::x11::Connection::open(display, loop, log, [this] { lost = true; })),
          connection(checked(opened)),
          openedInput(platform::x11::Connection::open(display, loop, log, [] {})),
          inputConnection(checked(openedInput)),
          displays(connection),
          hold(inputConnection, displays, serverHolds),
          pointer(inputConnection, displays, loop, hold),
          cursor(connection),
          keyboard(connection, log),
          input(inputConnection, loop, displays, pointer, hold, [this] { return ownWindowActive; }),
          windows(connection, displays, log, "overlay-tests",
                  {gammaGuard, sharedFolder.empty() ? ownFolder.path() : sharedFolder, loop}),
          focus(connection, static_cast<std::uint32_t>(getpid())) {}

    static platform::x11::Connection& checked(platform::x11::Connection::Opened& opened) {
        if (!opened.connection) throw std::runtime_error(opened.error);
        return *opened.connection;
    }

    /// The server has carried out everything that was asked for.
    void sync() {
        connection.sync();
        inputConnection.sync();
    }

    bool lost = false;
    bool ownWindowActive = false;
    testing_support::KeptLog log;
    testing_support::TempFolder ownFolder;
    TestLoop loop;
    platform::x11::Connection::Opened opened;
    platform::x11::Connection& connection;
    platform::x11::Connection::Opened openedInput;
    platform::x11::Connection& inputConnection;
    platform::x11::Displays displays;
    platform::x11::Hold hold;
    platform::x11::Pointer pointer;
    platform::x11::Cursor cursor;
    platform::x11::Keyboard keyboard;
    platform::x11::InputEvents input;
    platform::x11::Windows windows;
    platform::x11::Focus focus;
};

} // namespace x11tests
