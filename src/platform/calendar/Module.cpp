#include "platform/calendar/Evolution.h"
#include "platform/calendar/folder/Folder.h"

#include <ctime>

namespace {

std::time_t clockTime() {
    return std::time(nullptr);
}

} // namespace

extern "C" __attribute__((visibility("default"))) platform::calendar::Backend*
makeCalendarBackend(const char* folder, const char* journal) {
    using namespace platform::calendar;
    if (*folder != '\0') return new Folder(folder, clockTime, journal);
    return new Evolution(clockTime, journal);
}
