#pragma once

#include "bus/Handles.h"

#include <random>
#include <string>
#include <vector>

namespace bus {

/// Calls of a product's object at random, the same ones for the same seed: right ones and such that
/// are wrong in one place or in all of them.
class RandomCalls {
  public:
    RandomCalls(unsigned seed, std::string busName);

    /// Not sent yet; null where the library does not let such a one be made.
    Message next(sd_bus* caller);

    unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }

  private:
    struct Target {
        const char* interface;
        const char* member;
        const char* arguments; ///< their types
    };

    std::string pick(const std::vector<std::string>& from) {
        return from[below(static_cast<unsigned>(from.size()))];
    }
    std::string word();
    std::string value();
    std::string noise();
    std::string type(int depth);
    bool append(sd_bus_message* message, const std::string& type);
    bool appendBasic(sd_bus_message* message, char type);

    std::mt19937 random;
    std::string name, path;
};

} // namespace bus
