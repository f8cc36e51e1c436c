#include "program/session/Module.h"

#include "platform/linux/files/Installation.h"

#include <dlfcn.h>

void* symbolOf(const char* module, const char* name) {
    const std::string path = platform::linux::modulePath(module);
    void* const loaded = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    return loaded ? ::dlsym(loaded, name) : nullptr;
}
