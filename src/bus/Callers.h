#pragma once

#include "bus/Handles.h"

#include <map>
#include <string>
#include <vector>

namespace bus {

/// Lets the calls of the session's user through, and refuses everybody else's. The bus is asked who
/// a caller is when it calls for the first time, without waiting: its calls are kept back until
/// the answer is there, in their order. Main thread.
class Callers {
  public:
    /// False where that is not possible. The object must outlive the connection, or be told to
    /// forget it.
    bool attach(sd_bus& bus);
    /// That connection is no more.
    void forget();

  private:
    struct Caller {
        Callers* owner = nullptr;
        std::string name;
        bool isUser = false;
        Slot question;
        std::vector<Message> kept; ///< until it is known, or as long as they are on their way back
        std::size_t comeBack = 0;  ///< of those, so many
    };

    static int heard(sd_bus_message* message, void* own, sd_bus_error* error);
    static int answered(sd_bus_message* reply, void* caller, sd_bus_error* error);
    int decide(sd_bus_message& message);
    bool ask(Caller& caller);
    void refuse(Caller& caller);
    void sendBack(Caller& caller);

    sd_bus* bus = nullptr;
    Slot filter;
    std::map<std::string, Caller, std::less<>> callers; ///< by their unique names
};

} // namespace bus
