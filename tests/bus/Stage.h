#pragma once

#include "bus/Handles.h"
#include "testing/desktop/Product.h"

#include <functional>
#include <gtest/gtest.h>

namespace desktop {

/// What a command did.
struct Answer {
    int status = -1;
    std::string output, errors;
};

/// The product on a private desktop, a caller on its bus, and the command line.
struct BusStage : Product {
    explicit BusStage(const std::string& layoutText = "1920x1080+0+0,1280x1024+1920+56");

    /// The command, to its end.
    Answer command(const std::vector<std::string>& words,
                   const std::string& called = "palisor") const;

    using Arguments = std::function<void(sd_bus_message*)>;
    /// A call of the interface's method; the reply, or null and the error in `error`.
    bus::Message call(const char* method, const Arguments& arguments = {},
                      const char* interface = "com.tamberlo.Product1");
    /// The reply's variant is entered: the value can be read.
    bus::Message get(const char* property);
    bool set(const char* property, const Arguments& variant);
    bool isActive();
    std::string held();
    unsigned freed();

    /// Takes what arrives until `signal` ("PropertiesChanged", "Crossed") has come from the product
    /// and `accepts` it; false where that does not come. Only what comes after `listen` counts.
    void listen();
    bool hear(const char* signal, const std::function<bool(sd_bus_message*)>& accepts);
    /// The same until one announces that property.
    bool hearChange(const std::string& property);

    /// A new bus that can start the products that were built.
    void startBusWithServices();

    std::string error, errorText;

    sd_bus* caller();

  private:
    bus::Connection connection;
};

} // namespace desktop
