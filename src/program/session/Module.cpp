#include "program/session/Module.h"

#include "platform/linux/files/Installation.h"

#include <dlfcn.h>

void* symbolOf(const char* module, const char* name) {
    const std::string path = platform::linux::modulePath(module);
    // To bind all of it at once would take two milliseconds of the start.
    void* const loaded = ::dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
    return loaded ? ::dlsym(loaded, name) : nullptr;
}
