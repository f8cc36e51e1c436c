#include "platform/linux/http/Curl.h"

#include <dlfcn.h>
#include <optional>

namespace platform::linux {

namespace {

constexpr const char* fileName = "libcurl.so.4";

template <class Operation>
bool find(void* library, const char* name, Operation& operation) {
    operation = reinterpret_cast<Operation>(::dlsym(library, name));
    return operation != nullptr;
}

std::optional<Curl> loadLibrary() {
    void* const library = ::dlopen(fileName, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return std::nullopt;
    Curl curl{};
    if (find(library, "curl_global_init", curl.globalInit) &&
        find(library, "curl_easy_init", curl.easyInit) &&
        find(library, "curl_easy_cleanup", curl.easyCleanup) &&
        find(library, "curl_easy_setopt", curl.easySetopt) &&
        find(library, "curl_easy_perform", curl.easyPerform) &&
        find(library, "curl_easy_strerror", curl.easyStrerror) &&
        find(library, "curl_slist_append", curl.slistAppend) &&
        find(library, "curl_slist_free_all", curl.slistFreeAll) &&
        curl.globalInit(CURL_GLOBAL_DEFAULT) == CURLE_OK)
        return curl;
    return std::nullopt;
}

} // namespace

const Curl* Curl::load() {
    static const std::optional<Curl> loaded = loadLibrary();
    return loaded ? &*loaded : nullptr;
}

} // namespace platform::linux
